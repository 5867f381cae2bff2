#pragma once

#include "module/regression/RegressionSpecification.h"

namespace ozm::survival {

/// Specification of a regression model: model, times and censoring indicator, covariates, strata. OK checks
/// the selections and goes on to the preparation of the data.
class CDefineRegDlg final : public RegressionSpecification {
public:
    CDefineRegDlg(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state);

protected:
    void OnOpen() override;
    void OnValueChanged(int control) override;
    void Run() override;

private:
    /// The settings of strata are greyed out for a model that has none.
    void ShowStrata();
    /// False after a message about what is wrong.
    bool SelectionsAreValid();
    bool CovariatesAreValid();
};

} // namespace ozm::survival
