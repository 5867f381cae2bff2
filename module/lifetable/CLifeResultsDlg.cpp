#include "module/lifetable/CLifeResultsDlg.h"

#include "module/lifetable/FitTexts.h"
#include "module/lifetable/NumberList.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

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
    ofChosen_ = control >= LifeHazard && control <= LifePlotDensity;
    switch (control) {
    case LifeSummary:
        return WriteLifeTable(Report());
    case LifeParameters:
        return WriteParameterEstimates(Report());
    case LifeRanking:
        return WriteFitRanking(Report());
    case LifePlotModels:
        return PlotAllModels(Report(), state_.output.weighting);
    case LifeHazard:
        return WriteFittedFunction(Report(), LifeFunction::Hazard, Chosen());
    case LifeSurvival:
        return WriteFittedFunction(Report(), LifeFunction::Survival, Chosen());
    case LifeDensity:
        return WriteFittedFunction(Report(), LifeFunction::Density, Chosen());
    case LifePlotHazard:
        return PlotFittedFunction(Report(), LifeFunction::Hazard, Chosen());
    case LifePlotSurvival:
        return PlotFittedFunction(Report(), LifeFunction::Survival, Chosen());
    case LifePlotDensity:
        return PlotFittedFunction(Report(), LifeFunction::Density, Chosen());
    case LifeQuantiles:
        return Quantiles();
    case LifeAtTimes:
        return AtTimes();
    default:
        return OutputResult::Failed(StrLifeSystemError);
    }
}

OutputResult CLifeResultsDlg::RefuseList(std::string why) {
    whyBad_ = std::move(why);
    return OutputResult::Failed(StrLifeBadNumbers);
}

OutputResult CLifeResultsDlg::Quantiles() {
    const auto accept = [](double share) { return share > 0.0 && share < 1.0; };
    NumberList list = NumberList::Of(state_.output.proportions, accept);
    if (!list.bad.empty()) return RefuseList(Filled(StrLifeBadProportion, {list.bad}));
    if (list.numbers.empty()) list = NumberList::Of(LifeOutputSettings{}.proportions, accept);
    return WriteSurvivalTimes(Report(), list.numbers, state_.output.confidenceLevel);
}

OutputResult CLifeResultsDlg::AtTimes() {
    NumberList list = NumberList::Of(state_.output.times, [](double time) { return time >= 0.0; });
    if (!list.bad.empty()) return RefuseList(Filled(StrLifeBadTime, {list.bad}));
    const LifeTable& table = state_.results.table;
    if (list.numbers.empty())
        std::copy_if(table.lower.begin(), table.lower.begin() + table.rows, std::back_inserter(list.numbers),
                     [](double start) { return start > 0.0; });
    if (list.numbers.empty()) return RefuseList(std::string{Text(StrLifeNoTimes)});
    return WriteSurvivalAtTimes(Report(), list.numbers, state_.output.confidenceLevel);
}

std::string CLifeResultsDlg::WhyNoFits() const {
    const LifeResults& results = state_.results;
    if (results.fits.stop == FitStop::NoVariance) return "\n" + DescribeStop(results.fits);
    std::vector<std::string> reasons;
    for (const Distribution family : allDistributions)
        if (!ofChosen_ || family == Chosen()) AddReasons(reasons, results.fits, family, results.table);
    std::string text;
    for (const std::string& reason : reasons)
        text += "\n" + reason;
    return text;
}

std::string CLifeResultsDlg::Reason(int message) const {
    if (message == StrLifeNoFits) return WhyNoFits();
    return message == StrLifeBadNumbers ? "\n" + whyBad_ : std::string{};
}

} // namespace ozm::survival
