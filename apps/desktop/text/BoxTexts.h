#pragma once

class QMessageBox;

namespace korvana::desktop {

/// To be called once a message box has its texts, which may quote paths and names of the data: they are shown
/// as plain text, can be selected, and never make the box wider than the screen, even without a blank in
/// them.
void quoteSafely(QMessageBox& box);

} // namespace korvana::desktop
