#pragma once

#include "module/regression/EstimationDialog.h"
#include "module/survdata/ModuleDialog.h"

namespace ozm::survival {

/// Estimation from default start values: shows the model in words; OK reads the data and estimates.
class CRegSpecDlg final : public EstimationDialog<ModuleDialog> {
public:
    CRegSpecDlg(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state);

protected:
    void OnOpen() override;
    bool OnCommand(int control) override;
    /// The model was chosen for the earlier data.
    void OnDataChanged() override;

private:
    bool Estimate();
};

} // namespace ozm::survival
