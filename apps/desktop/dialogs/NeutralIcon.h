#pragma once

#include <QIcon>

namespace korvana::desktop {

/// The icon of entries and buttons. Only the analysis knows what picture an icon number means, so all have
/// the same one: a sheet of paper, in the colour of the text beside it.
QIcon neutralIcon();

} // namespace korvana::desktop
