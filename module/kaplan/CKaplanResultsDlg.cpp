#include "module/kaplan/CKaplanResultsDlg.h"

#include "module/resources/ControlIds.h"
#include "module/resources/Resources.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/CodeComparison.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace ozm::survival {

CKaplanResultsDlg::CKaplanResultsDlg(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state)
    : ModuleDialog(host, KaplanResultsTemplate(), KaplanResultsInterface(), shared), state_(state) {}

void CKaplanResultsDlg::OnOpen() {
    SetValue(KaplanLevel, state_.settings.confidenceLevel);
    std::string summary{Text(StrKmResultsTitle)};
    for (const std::string& line : KaplanSummaryLines(Analysis(), Shared(), state_.results))
        summary += "\n" + line;
    SetValue(KaplanSummaryBox, std::move(summary));
}

void CKaplanResultsDlg::OnValueChanged(int control) {
    if (control == KaplanLevel) state_.settings.confidenceLevel = ValueAs<double>(KaplanLevel);
}

void CKaplanResultsDlg::OnCommand(int control) {
    switch (control) {
    case ControlCancel:
        state_.results.Release();
        Analysis().Dialogs().RestoreResultsWindows(*this);
        ExitDialog(StepSpecifyKaplan, ExitMode::Back);
        break;
    case KaplanSummary:
        Show(WriteKaplanReport(Analysis(), Shared(), state_.results));
        break;
    case KaplanPercentiles:
        Percentiles();
        break;
    case KaplanPlot1:
    case KaplanPlot1Again:
        if (LevelIsValid()) Plot(KaplanPlot::Survival);
        break;
    case KaplanPlot2:
        Plot(KaplanPlot::LogTime);
        break;
    case KaplanPlot3:
        Plot(KaplanPlot::LogLog);
        break;
    default:
        CommonCommand(control);
    }
}

void CKaplanResultsDlg::Show(int message) {
    if (message != 0) ShowMessage(message);
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

void CKaplanResultsDlg::Plot(KaplanPlot plot) {
    if (static_cast<std::size_t>(state_.results.Valid()) > mostPlotted)
        Analysis().DspMessageBox(MessageStyle::Information, this, StrOnly32000Plotted);
    // A level a rounding error outside 0..1 is accepted: it means the end itself.
    Show(PlotKaplan(Analysis(), state_.results, plot, std::clamp(state_.settings.confidenceLevel, 0.0, 1.0)));
}

void CKaplanResultsDlg::Percentiles() {
    if (!LevelIsValid()) return;
    const double level = std::clamp(state_.settings.confidenceLevel, 0.0, 1.0);
    const int message = WritePercentiles(Analysis(), state_.results, level);
    Show(message);
    if (message == 0) NameLimitColumns(Analysis(), level);
}

} // namespace ozm::survival
