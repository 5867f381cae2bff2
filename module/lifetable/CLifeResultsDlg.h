#pragma once

#include "module/lifetable/LifeOutput.h"
#include "module/lifetable/LifeState.h"
#include "module/resources/LifeTables.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ResultsDialog.h"

#include <string>

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
    [[nodiscard]] std::string Reason(int message) const override;
    [[nodiscard]] int SpecificationStep() const override { return StepSpecifyLifeTables; }
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrLifeNoMemory; }

private:
    [[nodiscard]] LifeReportOf Report() const { return {Analysis(), Shared(), state_.results}; }

    [[nodiscard]] Distribution Chosen() const { return state_.output.distribution; }
    OutputResult Quantiles();
    OutputResult AtTimes();
    OutputResult RefuseList(std::string why);
    /// Why no fit can be shown: of the chosen distribution, or of all.
    [[nodiscard]] std::string WhyNoFits() const;

    LifeState& state_;
    bool ofChosen_ = false; ///< the output that is made needs fits of the chosen distribution
    std::string whyBad_;    ///< why the list of numbers that an output needs cannot be used
};

} // namespace ozm::survival
