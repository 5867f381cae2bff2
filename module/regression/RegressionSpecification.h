#pragma once

#include "module/regression/RegressionState.h"
#include "module/resources/Regression.h"
#include "module/survdata/SpecificationDialog.h"

namespace ozm::survival {

/// What the specifications of regression models have in common: strata, missing values, and whether the
/// estimation has settings of its own.
class RegressionSpecification : public SpecificationDialog {
protected:
    RegressionSpecification(CAnalysisSupport& host, const DialogTemplate& dialogTemplate,
                            const AutomationInterface& automation, SharedSettings& shared,
                            RegressionState& state)
        : SpecificationDialog(host, dialogTemplate, automation, shared, AnalysisType::Regression),
          state_(state) {}

    void OnOpen() override;
    void OnValueChanged(int control) override;
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrRegNoMemory; }
    [[nodiscard]] RegressionState& State() const { return state_; }

private:
    RegressionState& state_;
};

} // namespace ozm::survival
