#pragma once

namespace korvana::desktop {

/// Makes `QSettings` the user's settings of the program, all in one file. Settings that an earlier version
/// kept elsewhere are moved there. To be called once, when the application object exists.
void useUserSettings();

} // namespace korvana::desktop
