#pragma once

#include "module/groups/GroupCurves.h"
#include "module/ksample/KsState.h"
#include "module/resources/KSamples.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ResultsDialog.h"

#include <string>

namespace ozm::survival {

/// Results of the comparison of several groups.
class CKsResultsDlg final : public ResultsDialog {
public:
    CKsResultsDlg(CAnalysisSupport& host, SharedSettings& shared, KsState& state);

protected:
    void OnOpen() override;
    OutputResult Output(int control) override;
    [[nodiscard]] std::string Reason(int message) const override;
    void ReleaseResults() override { state_.results.Release(); }
    [[nodiscard]] bool HasResults() const override { return state_.results.observations.Size() > 0; }
    [[nodiscard]] int SpecificationStep() const override { return StepSpecifyKSamples; }
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrKsNoMemory; }

private:
    [[nodiscard]] OutputResult PlotOf(const NamedGroups& groups) const;
    [[nodiscard]] NamedGroups Groups() const { return {Shared(), Shared().groupCodes}; }

    KsState& state_;
};

} // namespace ozm::survival
