#pragma once

#include <vector>

class QBoxLayout;
class QWidget;

namespace korvana::desktop {

class ControlField;

/// Lays fields out one below the other: those with a caption in two aligned columns, runs of buttons equally
/// wide, all others over the full width. Fields that grow share the remaining height.
void layOutFields(QWidget& onto, const std::vector<ControlField*>& fields);

/// A scroll area for what does not fit the screen; otherwise it cannot be seen.
QWidget* scrollable(QWidget* content);

} // namespace korvana::desktop
