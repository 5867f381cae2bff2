#pragma once

#include <QFont>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <string_view>

namespace korvana {

/// Decimal points, no grouping, in any locale.
[[nodiscard]] QLocale plainLocale();

/// The text on one line, cut with an ellipsis at `width` pixels.
[[nodiscard]] QString elidedLine(std::string_view text, const QFont& font, int width);

/// The text broken between words into lines of `width` pixels; beyond `most` lines it is cut with an
/// ellipsis.
[[nodiscard]] QStringList wrappedLines(std::string_view text, const QFont& font, int width, int most);

} // namespace korvana
