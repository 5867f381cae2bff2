#pragma once

#include <vector>

class QBoxLayout;
class QWidget;

namespace korvana::desktop {

class ControlField;

/// Lays fields out one below the other: those with a caption in two aligned columns, runs of buttons equally
/// wide, all others over the whole width. Fields that grow share the height that is left over.
void layOutFields(QWidget& onto, const std::vector<ControlField*>& fields);

/// A widget that scrolls what does not fit the screen, and otherwise does not show that it could.
QWidget* scrollable(QWidget* content);

} // namespace korvana::desktop
