#pragma once

#include "module/regression/RegressionState.h"
#include "module/regression/results/ModelResults.h"
#include "module/regression/results/RegOutput.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ResultsDialog.h"

#include <string>

namespace ozm::survival {

/// Results of a regression model.
class CRegResultsDlg final : public ResultsDialog {
public:
    CRegResultsDlg(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state);

protected:
    void OnOpen() override;
    void OnValueChanged(int control) override;
    OutputResult Output(int control) override;
    void ReleaseResults() override { state_.results.Release(); }
    [[nodiscard]] bool HasResults() const override { return state_.results.held; }
    [[nodiscard]] std::string Reason(int message) const override;
    [[nodiscard]] int SpecificationStep() const override { return StepSpecifyRegression; }
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrRegNoMemory; }

private:
    [[nodiscard]] RegReportOf Report() const { return {Analysis(), Shared(), state_}; }

    void DisableOutputsOfOthers(const ModelResults& model);
    /// Lets people edit the covariate values for the user-defined plot. False when they cancelled it.
    bool AskForValues();

    RegressionState& state_;
    int refused_ = 0; ///< the last button whose output the model has not
};

} // namespace ozm::survival
