#include "support/dialogs/ControlValue.h"

#include <limits>

namespace ozm {

ControlValue InitialValue(const ControlTemplate& control) {
    switch (control.kind) {
    case ControlKind::PushButton:
        return std::monostate{};
    case ControlKind::CheckBox:
        return false;
    case ControlKind::RadioGroup:
        return 1;
    case ControlKind::Integer:
        return 0;
    case ControlKind::List:
        return control.columns.empty() ? 0 : noEntry;
    case ControlKind::Real:
        return 0.0;
    case ControlKind::CodeField:
        return std::numeric_limits<double>::quiet_NaN();
    case ControlKind::Text:
    case ControlKind::Summary:
        return std::string{};
    case ControlKind::VariableSelection:
        return VariableSelection(control.roles.size());
    case ControlKind::CodeList:
    case ControlKind::NumberList:
        return std::vector<double>{};
    case ControlKind::TextList:
        return std::vector<std::string>{};
    }
    return std::monostate{};
}

} // namespace ozm
