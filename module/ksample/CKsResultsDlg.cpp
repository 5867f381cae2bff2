#include "module/ksample/CKsResultsDlg.h"

#include "module/ksample/KsOutput.h"
#include "module/resources/Resources.h"

#include <string>

namespace ozm::survival {

CKsResultsDlg::CKsResultsDlg(CAnalysisSupport& host, SharedSettings& shared, KsState& state)
    : ResultsDialog(host, ksResultsTemplate, ksResultsInterface, shared), state_(state) {}

void CKsResultsDlg::OnOpen() {
    const NamedGroups groups = Groups();
    std::string summary{Text(StrKsTitle)};
    for (const std::string& line : KsSummaryLines({Analysis(), groups, state_.results}))
        summary += "\n" + line;
    SetValue(KsSummaryBox, std::move(summary));
}

OutputResult CKsResultsDlg::Output(int control) {
    const NamedGroups groups = Groups();
    const KsReportOf of{Analysis(), groups, state_.results};
    switch (control) {
    case KsSummary:
        return WriteKsSummary(of);
    case KsScores:
        return WriteKsScores(of);
    case KsDescriptive:
        return WriteKsDescriptive(of);
    case KsHistogram:
        return PlotKsHistogram(of);
    case KsLifeTables:
        return WriteKsLifeTables(of);
    case KsPlotSurviving:
        return PlotOf(groups);
    case KsCurves:
        return WriteKsCurves(of);
    case KsLogRankTests:
        return WriteLogRankTests(of);
    case KsPairs:
        return WritePairTests(of);
    default:
        return {};
    }
}

OutputResult CKsResultsDlg::PlotOf(const NamedGroups& groups) const {
    OutputResult plot =
        PlotGroupSurvival(Analysis(), groups, state_.results.Sample(), SurvivalPlot::PerInterval);
    if (plot.message == StrLtFewerThan3Cases) plot.message = StrKsFewerThan3Values;
    return plot;
}

std::string CKsResultsDlg::Reason(int message) const {
    return GroupLifeTablesReason(Analysis(), Groups(), state_.results.Sample(),
                                 message == StrKsFewerThan3Values ? StrLtFewerThan3Cases : message);
}

} // namespace ozm::survival
