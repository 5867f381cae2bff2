#pragma once

class QMessageBox;

namespace korvana::desktop {

/// Shows a message box that has its texts and buttons, and waits for its answer. Every box is shown by this.
///
/// Texts may quote paths and names of the data: they are shown as plain text, can be selected, and never make
/// the box wider than the screen, even without a blank in them. Escape, Alt+F4 and the close button answer
/// Cancel, else No, else OK, whatever other buttons there are.
int showBox(QMessageBox& box);

} // namespace korvana::desktop
