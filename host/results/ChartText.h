#pragma once

#include <QFont>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <string_view>

namespace korvana {

/// The one font of charts, sized in pixels so that a picture, a page and a window share one layout.
[[nodiscard]] QFont chartFont(int pixels, bool bold = false);

/// Decimal points, no grouping, whatever the user's locale.
[[nodiscard]] QLocale plainLocale();

/// The text on one line, cut with an ellipsis at `width` pixels.
[[nodiscard]] QString elidedLine(std::string_view text, const QFont& font, int width);

/// The text broken between words into lines of `width` pixels; what goes beyond `most` lines is cut with an
/// ellipsis.
[[nodiscard]] QStringList wrappedLines(std::string_view text, const QFont& font, int width, int most);

} // namespace korvana
