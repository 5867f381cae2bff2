#pragma once

#include <QByteArray>

namespace korvana {

/// The SVG of a chart with those glyphs of its font inside that its texts need (some 10 to 20 KiB), so that a
/// browser shows the same letters where the font is not installed. Programs that ignore fonts in files find a
/// list of similar ones.
[[nodiscard]] QByteArray withItsFont(QByteArray svg);

} // namespace korvana
