#include "module/survdata/SpecificationDialog.h"

#include "module/resources/StepNumbers.h"

namespace ozm::survival {

void SpecificationDialog::OnOpen() {
    ShowSelections();
}

void SpecificationDialog::OnValueChanged(int control) {
    TakeSelection(control);
}

void SpecificationDialog::OnCommand(int control) {
    switch (control) {
    case ControlOk:
        Run();
        break;
    case ControlCancel:
        ExitDialog(StepStart, ExitMode::Back);
        break;
    default:
        CommonCommand(control);
    }
}

void SpecificationDialog::Leave(bool computed, int resultsStep, int specificationStep) {
    if (computed)
        ExitDialog(resultsStep, ExitMode::Forward);
    else
        ExitDialog(specificationStep, ExitMode::Back);
}

} // namespace ozm::survival
