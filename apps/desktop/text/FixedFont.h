#pragma once

#include <QFont>

namespace korvana::desktop {

/// The fixed-width font of reports and files: the same on every machine, since it comes with the program, and
/// of the same size as the application's own font.
[[nodiscard]] QFont fixedFont();

} // namespace korvana::desktop
