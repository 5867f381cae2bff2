#pragma once

#include <QByteArray>
#include <QFont>

namespace korvana {

/// The one font of charts, sized in pixels so that a picture, a page and a window share one layout. It comes
/// with the program. Needs a QGuiApplication.
[[nodiscard]] QFont chartFont(int pixels, bool bold = false);

/// The file of that font.
[[nodiscard]] QByteArray chartFontData(bool bold);

/// For a window on a system without any font: uses the charts' font for the desktop too.
void useChartFontWhereThereIsNone();

} // namespace korvana
