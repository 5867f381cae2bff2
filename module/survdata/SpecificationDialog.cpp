#include "module/survdata/SpecificationDialog.h"

#include "module/resources/Shared.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/SelectionChecks.h"

#include <string>

namespace ozm::survival {

void SpecificationDialog::OnOpen() {
    ShowSelections();
}

void SpecificationDialog::OnUse() {
    if (Shared().owner == &Analysis()) return;
    Shared().Enter(Analysis());
    Shared().analysisType = type_;
    TakeAll();
}

void SpecificationDialog::TakeAll() {
    for (const ControlTemplate& control : Template().controls)
        if (!std::holds_alternative<std::monostate>(Value(control.id))) OnValueChanged(control.id);
}

void SpecificationDialog::OnValueChanged(int control) {
    TakeSelection(control);
}

bool SpecificationDialog::OnCommand(int control) {
    switch (control) {
    case ControlOk:
        Run();
        return ClosedForward();
    case ControlCancel:
        ExitDialog(StepStart, ExitMode::Back);
        return true;
    default:
        return CommonCommand(control);
    }
}

bool SpecificationDialog::CommonSelectionsAreValid() {
    const int message = CheckSelections(Shared());
    if (message == 0) return true;
    std::string detail;
    if (message == StrIdenticalCensoringCodes)
        detail = DescribeCodes(Analysis(), Shared().First(ListCensoring));
    if (const auto times = Shared().Times(); message == StrInvalidTimeVariables && !times.empty())
        detail = Filled(StrSelectedVariables, {FormatCount(static_cast<long long>(times.size())),
                                               QuotedNames(Analysis(), times, StrAnd)});
    ShowMessage(message, detail);
    return false;
}

void SpecificationDialog::Leave(bool computed, int resultsStep, int specificationStep) {
    if (computed)
        ExitDialog(resultsStep, ExitMode::Forward);
    else
        ExitDialog(specificationStep, ExitMode::Back);
}

} // namespace ozm::survival
