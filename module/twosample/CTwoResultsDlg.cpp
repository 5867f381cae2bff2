#include "module/twosample/CTwoResultsDlg.h"

#include "module/resources/ControlIds.h"
#include "module/resources/Resources.h"
#include "module/resources/StepNumbers.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace ozm::survival {
namespace {

struct TestButton {
    int control;
    TwoTest test;
};

constexpr TestButton testButtons[] = {
    {TwoGehan, TwoTest::Gehan},     {TwoCoxF, TwoTest::CoxF},         {TwoCoxMantel, TwoTest::CoxMantel},
    {TwoLogRank, TwoTest::LogRank}, {TwoPetoPeto, TwoTest::PetoPeto},
};

} // namespace

CTwoResultsDlg::CTwoResultsDlg(CAnalysisSupport& host, SharedSettings& shared, TwoState& state)
    : ModuleDialog(host, TwoResultsTemplate(), TwoResultsInterface(), shared), state_(state) {}

void CTwoResultsDlg::OnOpen() {
    state_.results.headerWritten = false;
    std::string summary{Text(StrTwoTitle)};
    for (const std::string& line : TwoSummaryLines(Analysis(), Shared(), state_.results.counts))
        summary += "\n" + line;
    SetValue(TwoSummaryBox, std::move(summary));
}

void CTwoResultsDlg::OnCommand(int control) {
    if (control == ControlCancel) {
        state_.results.Release();
        Analysis().Dialogs().RestoreResultsWindows(*this);
        ExitDialog(StepSpecifyTwoSamples, ExitMode::Back);
        return;
    }
    const ControlTemplate* button = Template().Find(control);
    if (CommonCommand(control) || button == nullptr || button->kind != ControlKind::PushButton) return;
    WriteTwoHeader(Analysis(), Shared(), state_.results);
    if (const int message = Output(control); message != 0) ShowMessage(message);
}

int CTwoResultsDlg::Output(int control) {
    const PooledSample sample = state_.results.Sample();
    const auto* const button =
        std::find_if(std::begin(testButtons), std::end(testButtons),
                     [control](const TestButton& row) { return row.control == control; });
    if (button != std::end(testButtons)) return WriteTest(Analysis(), sample, button->test);
    switch (control) {
    case TwoSummary:
        return WriteTestSummary(Analysis(), sample);
    case TwoLifeTables:
        return WriteGroupLifeTables(Analysis(), Shared(), sample);
    case TwoPlotSurviving:
        return PlotGroupSurvival(Analysis(), Shared(), sample, SurvivalPlot::PerInterval);
    case TwoPlotCumulative:
        return PlotGroupSurvival(Analysis(), Shared(), sample, SurvivalPlot::Cumulative);
    default:
        return 0;
    }
}

} // namespace ozm::survival
