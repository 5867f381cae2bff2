#pragma once

#include <QByteArray>

namespace korvana {

/// Embeds into the SVG of a chart the glyphs that its texts need (some 10 to 20 KiB), so that a browser shows
/// the same letters without the font installed. Programs that ignore embedded fonts find a list of similar
/// ones.
[[nodiscard]] QByteArray withItsFont(QByteArray svg);

} // namespace korvana
