#pragma once

#include "module/lifetable/LifeState.h"
#include "module/resources/LifeTables.h"
#include "module/survdata/SpecificationDialog.h"

namespace ozm::survival {

/// What the two forms of the specification have in common, raw data and a table as input. Choosing the other
/// input type closes this form and opens the other one; selections and settings stay.
class LifeSpecification : public SpecificationDialog {
protected:
    LifeSpecification(CAnalysisSupport& host, const DialogTemplate& dialogTemplate,
                      const AutomationInterface& automation, SharedSettings& shared, LifeState& state,
                      InputDataType form);

    void OnOpen() override;
    void OnValueChanged(int control) override;
    void Run() final;
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrLifeNoMemory; }

    [[nodiscard]] LifeSettings& Settings() const { return state_.settings; }

    /// False after a message about what is wrong.
    virtual bool SelectionsAreValid() = 0;
    /// Shows the settings that a run changed or found out.
    virtual void ShowAfterRun(const LifeResults& results) = 0;

    /// Tables have no case weights: where they are on, says so over `window` and turns them off.
    void TurnWeightsOff(CAnalysisDialog* window);

private:
    void ChooseForm(InputDataType chosen);

    LifeState& state_;
    InputDataType form_;
};

} // namespace ozm::survival
