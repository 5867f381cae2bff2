#pragma once

#include "module/resources/TwoSamples.h"
#include "module/survdata/SpecificationDialog.h"
#include "module/twosample/TwoState.h"

namespace ozm::survival {

/// Specification of the two-sample comparison: time variables, censoring indicator and grouping variable with
/// their codes.
class CDefineTwoDlg final : public SpecificationDialog {
public:
    CDefineTwoDlg(CAnalysisSupport& host, SharedSettings& shared, TwoState& state);

    /// The code of group 1 or 2.
    [[nodiscard]] double& CodeForGroup(int group);

protected:
    void OnOpen() override;
    void OnValueChanged(int control) override;
    void Run() override;
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrTwoNoMemory; }

private:
    /// False when a message was shown.
    bool SelectionsAreValid();
    /// Whether both group codes are set and each occurs among the selected cases. If the host cannot list the
    /// codes, or not all of them, the run decides.
    bool GroupCodesAreValid();

    TwoState& state_;
};

} // namespace ozm::survival
