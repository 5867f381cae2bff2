#pragma once

#include "module/resources/TwoSamples.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ResultsDialog.h"
#include "module/twosample/TwoOutput.h"
#include "module/twosample/TwoState.h"

namespace ozm::survival {

/// Results of the two-sample comparison. The report's header stands above the first output.
class CTwoResultsDlg final : public ResultsDialog {
public:
    CTwoResultsDlg(CAnalysisSupport& host, SharedSettings& shared, TwoState& state);

protected:
    void OnOpen() override;
    int Output(int control) override;
    [[nodiscard]] std::string Reason(int message) const override;
    void ReleaseResults() override { state_.results.Release(); }
    [[nodiscard]] int SpecificationStep() const override { return StepSpecifyTwoSamples; }
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrTwoNoMemory; }

private:
    TwoState& state_;
    bool headerWritten_ = false;
};

} // namespace ozm::survival
