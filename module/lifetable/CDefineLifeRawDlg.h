#pragma once

#include "module/lifetable/LifeSpecification.h"

namespace ozm::survival {

/// Specification of a life table of raw data: time variables, censoring indicator with its codes, and the
/// rule for the intervals.
class CDefineLifeRawDlg final : public LifeSpecification {
public:
    CDefineLifeRawDlg(CAnalysisSupport& host, SharedSettings& shared, LifeState& state);

protected:
    void OnOpen() override;
    void OnValueChanged(int control) override;
    bool SelectionsAreValid() override { return CommonSelectionsAreValid(); }
    /// The step size may have been given up.
    void ShowAfterRun(const LifeResults& /*results*/) override { ShowIntervalMode(); }
    [[nodiscard]] int Decimals(const ControlTemplate& control, double number) const override;

private:
    /// Of the number of intervals and the step size, only the one in use can be set.
    void ShowIntervalMode();
};

} // namespace ozm::survival
