#include "module/lifetable/CLifeResultsDlg.h"

#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <string>

namespace ozm::survival {

CLifeResultsDlg::CLifeResultsDlg(CAnalysisSupport& host, SharedSettings& shared, LifeState& state)
    : ResultsDialog(host, lifeResultsTemplate, lifeResultsInterface, shared), state_(state) {}

void CLifeResultsDlg::OnOpen() {
    const LifeOutputSettings& output = state_.output;
    SetValue(LifeDistribution, static_cast<int>(output.distribution) + 1);
    SetValue(LifeWeighting, static_cast<int>(output.weighting) + 1);
    SetValue(LifeProportions, output.proportions);
    SetValue(LifeTimes, output.times);
    SetValue(LifeLevel, output.confidenceLevel);
    std::string summary = Trimmed(StrLifeResults);
    for (const std::string& line : LifeSummaryLines(Report()))
        summary += "\n" + line;
    SetValue(LifeSummaryBox, std::move(summary));
}

void CLifeResultsDlg::OnValueChanged(int control) {
    LifeOutputSettings& output = state_.output;
    switch (control) {
    case LifeDistribution:
        output.distribution = static_cast<Distribution>(ValueAs<int>(control) - 1);
        break;
    case LifeWeighting:
        output.weighting = static_cast<std::size_t>(ValueAs<int>(control)) - 1;
        break;
    case LifeProportions:
        output.proportions = ValueAs<std::string>(control);
        break;
    case LifeTimes:
        output.times = ValueAs<std::string>(control);
        break;
    case LifeLevel:
        output.confidenceLevel = ValueAs<double>(control);
        break;
    default:
        break;
    }
}

OutputResult CLifeResultsDlg::Output(int control) {
    switch (control) {
    case LifeSummary:
        return WriteLifeTable(Report());
    default:
        return OutputResult::Failed(StrLifeSystemError);
    }
}

} // namespace ozm::survival
