#include "module/kaplan/CKaplanResultsDlg.h"

#include "module/resources/Kaplan.h"
#include "module/resources/Resources.h"
#include "module/survdata/CodeComparison.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <cmath>
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

int CKaplanResultsDlg::Output(int control) {
    switch (control) {
    case KaplanSummary:
        return WriteKaplanReport(Analysis(), Shared(), state_.results);
    case KaplanPercentiles:
        return LevelIsValid() ? Percentiles() : 0;
    case KaplanPlot1:
    case KaplanPlot1Again:
        return LevelIsValid() ? Plot(KaplanPlot::Survival, control) : 0;
    case KaplanCurve:
        return LevelIsValid() ? PlotSurvivalCurve(Analysis(), Shared(), state_.results, Level()) : 0;
    case KaplanPlot2:
        return Plot(KaplanPlot::LogTime, control);
    case KaplanPlot3:
        return Plot(KaplanPlot::LogLog, control);
    default:
        return 0;
    }
}

bool CKaplanResultsDlg::LevelIsValid() {
    double& level = state_.settings.confidenceLevel;
    if (std::isnan(level) || GreaterThan(0.0, level) || GreaterThan(level, 1.0)) {
        const std::string given = FormatNumber(level, 17);
        level = KaplanSettings::defaultLevel;
        SetValue(KaplanLevel, level);
        ShowMessage(StrInvalidLevel, "The level given was " + given + ".");
        return false;
    }
    return true;
}

double CKaplanResultsDlg::Level() const {
    return std::clamp(state_.settings.confidenceLevel, 0.0, 1.0);
}

int CKaplanResultsDlg::Plot(KaplanPlot plot, int control) {
    if (!AllPlotted(state_.results))
        Analysis().DspMessageBox(MessageStyle::Information, this, StrOnly32000Plotted,
                                 OutputName(control) + "\n" +
                                     Filled(StrKmPlotsHint, {FormatCount(mostPlotted)}));
    return PlotKaplan(Analysis(), Shared(), state_.results, plot, Level());
}

int CKaplanResultsDlg::Percentiles() {
    const int message = WritePercentiles(Analysis(), state_.results, Level());
    if (message == 0) NameLimitColumns(Analysis(), Level());
    return message;
}

} // namespace ozm::survival
