#include "module/twosample/CTwoResultsDlg.h"

#include "module/resources/Resources.h"
#include "module/resources/TwoSamples.h"

#include <string>

namespace ozm::survival {

CTwoResultsDlg::CTwoResultsDlg(CAnalysisSupport& host, SharedSettings& shared, TwoState& state)
    : ResultsDialog(host, twoResultsTemplate, twoResultsInterface, shared), state_(state) {}

void CTwoResultsDlg::OnOpen() {
    std::string summary{Text(StrTwoTitle)};
    for (const std::string& line : TwoSummaryLines(Analysis(), Shared(), state_.results.Sample()))
        summary += "\n" + line;
    SetValue(TwoSummaryBox, std::move(summary));
}

OutputResult CTwoResultsDlg::Output(int control) {
    const PooledSample sample = state_.results.Sample();
    if (!headerWritten_) WriteTwoHeader(Analysis(), Shared(), sample);
    headerWritten_ = true;
    switch (control) {
    case TwoSummary:
        return WriteTestSummary(Analysis(), sample);
    case TwoGehan:
        return WriteTest(Analysis(), sample, TwoTest::Gehan);
    case TwoCoxF:
        return WriteTest(Analysis(), sample, TwoTest::CoxF);
    case TwoCoxMantel:
        return WriteTest(Analysis(), sample, TwoTest::CoxMantel);
    case TwoLogRank:
        return WriteTest(Analysis(), sample, TwoTest::LogRank);
    case TwoPetoPeto:
        return WriteTest(Analysis(), sample, TwoTest::PetoPeto);
    case TwoLifeTables:
        return WriteGroupLifeTables(Analysis(), Shared(), sample);
    case TwoPlotSurviving:
        return PlotGroupSurvival(Analysis(), Groups(), sample, SurvivalPlot::PerInterval);
    case TwoPlotCumulative:
        return PlotGroupSurvival(Analysis(), Groups(), sample, SurvivalPlot::Cumulative);
    default:
        return {};
    }
}

std::string CTwoResultsDlg::Reason(int message) const {
    return GroupLifeTablesReason(Analysis(), Groups(), state_.results.Sample(), message);
}

} // namespace ozm::survival
