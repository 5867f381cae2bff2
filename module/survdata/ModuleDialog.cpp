#include "module/survdata/ModuleDialog.h"

#include "module/resources/Shared.h"
#include "module/survdata/CodeDecimals.h"
#include "module/survdata/SelectedVariables.h"

#include <utility>

namespace ozm::survival {

ModuleDialog::ModuleDialog(CAnalysisSupport& host, const DialogTemplate& dialogTemplate,
                           const AutomationInterface& automation, SharedSettings& shared)
    : CAnalysisModelessDialog(host, dialogTemplate), shared_(shared) {
    AttachAutomation(automation);
}

int ModuleDialog::Decimals(const ControlTemplate& control, double number) const {
    const bool ofCodes = control.kind == ControlKind::CodeField || control.kind == ControlKind::CodeList;
    return ofCodes ? CodeDecimals(number) : CAnalysisModelessDialog::Decimals(control, number);
}

bool ModuleDialog::CommonCommand(int control) {
    switch (control) {
    case CaseWeights:
        Analysis().DefineWeight();
        return true;
    case SelectCases:
        Analysis().DefineSelCond();
        return true;
    default:
        return false;
    }
}

void ModuleDialog::ShowSelections() {
    const ControlTemplate* control = Template().Find(SpecifyVariables);
    if (control != nullptr) {
        VariableSelection selection;
        for (const RoleTemplate& role : control->roles) {
            const bool unusedTimes = role.list == ListSurvivalTimes && shared_.timeVariables == 0;
            selection.push_back(unusedTimes ? std::vector<int>{} : shared_.lists[role.list]);
        }
        SetValue(SpecifyVariables, std::move(selection));
    }
    for (const auto& [field, code] :
         {std::pair{SpecifyCompleteCode, shared_.completeCode}, {SpecifyCensoredCode, shared_.censoredCode}})
        if (Template().Find(field) != nullptr) SetValue(field, code);
}

bool ModuleDialog::TakeSelection(int control) {
    switch (control) {
    case SpecifyVariables: {
        const auto& selection = ValueAs<VariableSelection>(control);
        const ControlTemplate* found = Template().Find(control);
        for (std::size_t role = 0; role < selection.size(); ++role) {
            const std::size_t list = found->roles[role].list;
            TakeList(Analysis(), shared_, list, selection[role]);
            if (list == ListSurvivalTimes)
                shared_.timeVariables = static_cast<std::int16_t>(selection[role].size());
        }
        return true;
    }
    case SpecifyCompleteCode:
        shared_.completeCode = KeptCode(ValueAs<double>(control));
        return true;
    case SpecifyCensoredCode:
        shared_.censoredCode = KeptCode(ValueAs<double>(control));
        return true;
    default:
        return false;
    }
}

void ModuleDialog::ShowMessage(int id, std::string_view detail) {
    Analysis().DspMessageBox(MessageStyle::Refusal, this, id, detail);
}

} // namespace ozm::survival
