#include "apps/desktop/dialogs/MakeField.h"

#include "apps/desktop/dialogs/CodeField.h"
#include "apps/desktop/dialogs/CodeListField.h"
#include "apps/desktop/dialogs/EditFields.h"
#include "apps/desktop/dialogs/LineField.h"
#include "apps/desktop/dialogs/ListField.h"
#include "apps/desktop/dialogs/NumberListField.h"
#include "apps/desktop/dialogs/TableField.h"
#include "apps/desktop/dialogs/VariableField.h"

namespace korvana::desktop {

ControlField* makeField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent) {
    switch (control.kind) {
    case ozm::ControlKind::PushButton:
        return new ButtonField(control, host, parent);
    case ozm::ControlKind::CheckBox:
        return new CheckField(control, host, parent);
    case ozm::ControlKind::RadioGroup:
        return new RadioField(control, host, parent);
    case ozm::ControlKind::Integer:
        return new IntegerField(control, host, parent);
    case ozm::ControlKind::Real:
    case ozm::ControlKind::Text:
        return new LineField(control, host, parent);
    case ozm::ControlKind::CodeField:
        return new CodeField(control, host, parent);
    case ozm::ControlKind::List:
        if (!control.columns.empty()) return new TableField(control, host, parent);
        return new ListField(control, host, parent);
    case ozm::ControlKind::VariableSelection:
        return new VariableField(control, host, parent);
    case ozm::ControlKind::CodeList:
        return new CodeListField(control, host, parent);
    case ozm::ControlKind::NumberList:
        return new NumberListField(control, host, parent);
    case ozm::ControlKind::TextList:
        return new TextListField(control, host, parent);
    case ozm::ControlKind::Summary:
        return new SummaryField(control, host, parent);
    }
    return new SummaryField(control, host, parent);
}

} // namespace korvana::desktop
