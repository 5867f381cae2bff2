#pragma once

#include "module/regression/EstimationDialog.h"
#include "support/dialogs/CAnalysisModalDialog.h"

namespace ozm::survival {

/// Estimation of prepared data with criterion, number of iterations and start values of the user's: OK
/// estimates, and closes the dialog where that succeeds. Its result is then 0.
class RegEstDlg final : public EstimationDialog<CAnalysisModalDialog> {
public:
    /// By the number of time variables and the model, which of the three templates it has.
    static const DialogTemplate& TemplateFor(int timeVariables, RegressionKind kind);

    RegEstDlg(CAnalysisSupport& host, const DialogTemplate& dialogTemplate, RegressionState& state);

protected:
    void OnOpen() override;
    bool OnCommand(int control) override;

private:
    bool Estimate();
    bool StartValuesAreValid();
    bool EditStartValues();
    bool ReviewExpressions();
};

} // namespace ozm::survival
