#pragma once

#include <QFont>

namespace korvana::desktop {

/// The font of reports and files, in which columns stand in line: the same on every machine, for it comes
/// with the program. As large as the application's own.
[[nodiscard]] QFont fixedFont();

} // namespace korvana::desktop
