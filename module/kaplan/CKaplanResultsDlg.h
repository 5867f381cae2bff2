#pragma once

#include "module/kaplan/KaplanOutput.h"
#include "module/kaplan/KaplanState.h"
#include "module/resources/Kaplan.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ResultsDialog.h"

namespace ozm::survival {

/// Results of the Kaplan-Meier analysis.
class CKaplanResultsDlg final : public ResultsDialog {
public:
    CKaplanResultsDlg(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state);

protected:
    void OnOpen() override;
    void OnValueChanged(int control) override;
    OutputResult Output(int control) override;
    void ReleaseResults() override { state_.results.Release(); }
    [[nodiscard]] bool HasResults() const override { return state_.results.Valid() > 0; }
    [[nodiscard]] int SpecificationStep() const override { return StepSpecifyKaplan; }
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrKaplanNoMemory; }

private:
    /// The confidence level: one outside 0..1 by a rounding error means the end itself. At an invalid level
    /// all limits are empty.
    [[nodiscard]] double Level() const;
    OutputResult Plot(KaplanPlot plot, int control);
    OutputResult Percentiles();

    KaplanState& state_;
};

} // namespace ozm::survival
