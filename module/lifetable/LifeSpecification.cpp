#include "module/lifetable/LifeSpecification.h"

#include "module/lifetable/RunLifeTable.h"
#include "module/resources/StepNumbers.h"

namespace ozm::survival {

LifeSpecification::LifeSpecification(CAnalysisSupport& host, const DialogTemplate& dialogTemplate,
                                     const AutomationInterface& automation, SharedSettings& shared,
                                     LifeState& state, InputDataType form)
    : SpecificationDialog(host, dialogTemplate, automation, shared, AnalysisType::LifeTables), state_(state),
      form_(form) {}

void LifeSpecification::OnOpen() {
    SpecificationDialog::OnOpen();
    SetValue(LifeInputType, static_cast<int>(form_));
    SetValue(LifeCorrect, Settings().correct);
}

void LifeSpecification::OnValueChanged(int control) {
    switch (control) {
    case LifeInputType:
        ChooseForm(static_cast<InputDataType>(ValueAs<int>(control)));
        break;
    case LifeCorrect:
        Settings().correct = ValueAs<bool>(control);
        break;
    default:
        SpecificationDialog::OnValueChanged(control);
    }
}

void LifeSpecification::ChooseForm(InputDataType chosen) {
    if (chosen != form_ && chosen == InputDataType::Table) TurnWeightsOff(this);
    Shared().inputDataType = chosen;
    if (chosen != form_) ExitDialog(StepSpecifyLifeTables, ExitMode::SwitchForm, LifeInputType);
}

void LifeSpecification::Run() {
    if (!SelectionsAreValid()) return;
    const bool computed = RunLifeTable(Analysis(), Shared(), state_, this);
    ShowAfterRun(state_.results);
    Leave(computed, StepLifeResults, StepSpecifyLifeTables);
}

void LifeSpecification::TurnWeightsOff(CAnalysisDialog* window) {
    if (Analysis().WeightVariable() == 0) return;
    Analysis().DspMessageBox(MessageStyle::Warning, window, StrLifeWeightsOff);
    Analysis().TurnWeightsOff();
}

} // namespace ozm::survival
