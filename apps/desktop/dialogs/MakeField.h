#pragma once

#include "apps/desktop/dialogs/ControlField.h"

namespace korvana::desktop {

/// The field that draws a control of any kind.
ControlField* makeField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);

} // namespace korvana::desktop
