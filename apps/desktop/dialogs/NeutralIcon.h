#pragma once

#include <QIcon>

namespace korvana::desktop {

/// The sign of an entry or a button that has an icon. Which picture a number means is known to the analysis
/// alone, so all have the same one: a sheet of paper, in the colours of the text beside it.
QIcon neutralIcon();

} // namespace korvana::desktop
