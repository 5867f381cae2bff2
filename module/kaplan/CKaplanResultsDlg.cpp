#include "module/kaplan/CKaplanResultsDlg.h"

#include "module/kaplan/ConfidenceLimits.h"
#include "module/resources/Kaplan.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <string>

namespace ozm::survival {

CKaplanResultsDlg::CKaplanResultsDlg(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state)
    : ResultsDialog(host, kaplanResultsTemplate, kaplanResultsInterface, shared), state_(state) {}

void CKaplanResultsDlg::OnOpen() {
    SetValue(KaplanLevel, state_.settings.confidenceLevel);
    std::string summary{Text(StrKmResultsTitle)};
    for (const std::string& line : KaplanSummaryLines(Analysis(), Shared(), state_.results))
        summary += "\n" + line;
    const bool all = AllPlotted(state_.results);
    if (!all) summary += "\n" + Filled(StrKmPlotsHint, {FormatCount(mostPlotted)});
    SetValue(KaplanSummaryBox, std::move(summary));
    PutSetting("DefaultPlot", all ? "PlotOfSurvivalTimesVsCumProportionSurviving" : "SurvivalCurve");
}

void CKaplanResultsDlg::OnValueChanged(int control) {
    if (control == KaplanLevel) state_.settings.confidenceLevel = ValueAs<double>(KaplanLevel);
}

OutputResult CKaplanResultsDlg::Output(int control) {
    switch (control) {
    case KaplanSummary:
        return WriteKaplanReport(Analysis(), Shared(), state_.results);
    case KaplanPercentiles:
        return Percentiles();
    case KaplanPlot1:
    case KaplanPlot1Again:
        return RangeHolds(KaplanLevel) ? Plot(KaplanPlot::Survival, control) : OutputResult::NotMade();
    case KaplanCurve:
        return RangeHolds(KaplanLevel) ? PlotSurvivalCurve(Analysis(), Shared(), state_.results, Level())
                                       : OutputResult::NotMade();
    case KaplanPlot2:
        return Plot(KaplanPlot::LogTime, control);
    case KaplanPlot3:
        return Plot(KaplanPlot::LogLog, control);
    default:
        return {};
    }
}

double CKaplanResultsDlg::Level() const {
    const double level = state_.settings.confidenceLevel;
    return Contains(Template().Find(KaplanLevel)->range, level) ? std::clamp(level, 0.0, 1.0) : level;
}

OutputResult CKaplanResultsDlg::Plot(KaplanPlot plot, int control) {
    if (!AllPlotted(state_.results))
        Analysis().DspMessageBox(MessageStyle::Information, this, StrOnly32000Plotted,
                                 OutputName(control) + "\n" +
                                     Filled(StrKmPlotsHint, {FormatCount(mostPlotted)}));
    return PlotKaplan(Analysis(), Shared(), state_.results, plot, Level());
}

OutputResult CKaplanResultsDlg::Percentiles() {
    const OutputResult result = WritePercentiles(Analysis(), state_.results, Level());
    if (result.made) NameLimitColumns(Analysis(), Level());
    return result;
}

} // namespace ozm::survival
