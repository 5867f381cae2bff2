#pragma once

#include "module/groups/GroupCurves.h"
#include "module/resources/StepNumbers.h"
#include "module/resources/TwoSamples.h"
#include "module/survdata/ResultsDialog.h"
#include "module/twosample/TwoOutput.h"
#include "module/twosample/TwoState.h"

namespace ozm::survival {

/// Results of the two-sample comparison. The report's header comes before the first output.
class CTwoResultsDlg final : public ResultsDialog {
public:
    CTwoResultsDlg(CAnalysisSupport& host, SharedSettings& shared, TwoState& state);

protected:
    void OnOpen() override;
    OutputResult Output(int control) override;
    [[nodiscard]] std::string Reason(int message) const override;
    void ReleaseResults() override { state_.results.Release(); }
    [[nodiscard]] bool HasResults() const override { return state_.results.observations.Size() > 0; }
    [[nodiscard]] int SpecificationStep() const override { return StepSpecifyTwoSamples; }
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrTwoNoMemory; }

private:
    [[nodiscard]] NamedGroups Groups() const { return {Shared(), Shared().groupCodes}; }

    TwoState& state_;
    bool headerWritten_ = false;
};

} // namespace ozm::survival
