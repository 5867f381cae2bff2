#pragma once

#include "module/lifetable/LifeOutput.h"
#include "module/lifetable/LifeState.h"
#include "module/resources/LifeTables.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ResultsDialog.h"

namespace ozm::survival {

/// Results of a life table: the table, the fitted distributions, and what follows from these.
class CLifeResultsDlg final : public ResultsDialog {
public:
    CLifeResultsDlg(CAnalysisSupport& host, SharedSettings& shared, LifeState& state);

protected:
    void OnOpen() override;
    void OnValueChanged(int control) override;
    OutputResult Output(int control) override;
    void ReleaseResults() override { state_.results.Release(); }
    [[nodiscard]] bool HasResults() const override { return state_.results.held; }
    [[nodiscard]] int SpecificationStep() const override { return StepSpecifyLifeTables; }
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrLifeNoMemory; }

private:
    [[nodiscard]] LifeReportOf Report() const { return {Analysis(), Shared(), state_.results}; }

    LifeState& state_;
};

} // namespace ozm::survival
