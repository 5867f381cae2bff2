#include "module/frame/Steps.h"

#include "module/frame/CDefineTask.h"
#include "module/frame/CSurvival.h"
#include "module/frame/SurvivalState.h"
#include "module/kaplan/CDefineKaplanDlg.h"
#include "module/kaplan/CKaplanResultsDlg.h"
#include "module/ksample/CDefineKSDlg.h"
#include "module/ksample/CKsResultsDlg.h"
#include "module/lifetable/CDefineLifeRawDlg.h"
#include "module/lifetable/CDefineLifeTableDlg.h"
#include "module/lifetable/CLifeResultsDlg.h"
#include "module/regression/CDefineRegDlg.h"
#include "module/regression/CDefineRegDlg2.h"
#include "module/regression/CRegResultsDlg.h"
#include "module/regression/CRegSpecDlg.h"
#include "module/regression/RegEstDlg.h"
#include "module/regression/RegressionModels.h"
#include "module/regression/RunRegression.h"
#include "module/resources/Shared.h"
#include "module/resources/StepNumbers.h"
#include "module/twosample/CDefineTwoDlg.h"
#include "module/twosample/CTwoResultsDlg.h"

#include <exception>
#include <memory>
#include <new>
#include <utility>

namespace ozm::survival {
namespace {

/// Makes a step's dialog and hands it to the host. A failure, running out of memory included, ends the
/// sequence.
template <class Dialog, class... State>
int OpenStep(CAnalysisSupport& analysis, State&... state) {
    ModuleState().shared.Enter(analysis);
    auto dialog = std::make_unique<Dialog>(analysis, state...);
    return CAnalysisModelessDialog::CreateAnalysisDialog(std::move(dialog)) ? StepInProgress : StepEnd;
}

/// A dialog that vanished without a message would look cancelled.
void TellUnexpected(CAnalysisSupport& analysis, const char* why) noexcept {
    try {
        analysis.DspMessageBox(MessageStyle::Error, nullptr, StrUnexpectedError, why);
    } catch (...) { // NOLINT(bugprone-empty-catch): nothing is left to report it with
    }
}

/// The module's boundary: no exception leaves a step. It ends the sequence, or leads to another step.
template <StepFunction Step, StepNumber Otherwise = StepEnd>
int Guarded(CAnalysisSupport& analysis) {
    try {
        return Step(analysis);
    } catch (const std::bad_alloc&) {
        TellUnexpected(analysis, "Not enough memory.");
    } catch (const std::exception& error) {
        TellUnexpected(analysis, error.what());
    } catch (...) {
        TellUnexpected(analysis, "");
    }
    return Otherwise;
}

int InitializeStep(CAnalysisSupport& analysis) {
    return analysis.InitializeAfterFileChanged();
}

constexpr SEQFUNCTTBL table[] = {
    {StepInitialize, Guarded<InitializeStep>, StepStart},
    {StepStart, Guarded<CSurvival::StartAnalysis>, 0},
    {StepSpecifyLifeTables, Guarded<CSurvival::SpecifyLifeTables>, 0},
    {StepSpecifyKaplan, Guarded<CSurvival::SpecifyKaplan>, 0},
    {StepSpecifyTwoSamples, Guarded<CSurvival::SpecifyTwoSamples>, 0},
    {StepSpecifyKSamples, Guarded<CSurvival::SpecifyKSamples>, 0},
    {StepSpecifyRegression, Guarded<CSurvival::SpecifyRegression>, 0},
    {StepLifeResults, Guarded<CSurvival::LifeResults>, 0},
    {StepKaplanResults, Guarded<CSurvival::KaplanResults>, 0},
    {StepTwoResults, Guarded<CSurvival::TwoResults>, 0},
    {StepKsResults, Guarded<CSurvival::KsResults>, 0},
    {StepRegSpec, Guarded<CSurvival::RegSpec, StepSpecifyRegression>, 0},
    {StepRegressionResults, Guarded<CSurvival::RegressionResults>, 0},
    {StepRegEst, Guarded<CSurvival::RegEst, StepSpecifyRegression>, 0},
};

} // namespace

std::span<const SEQFUNCTTBL> StepTable() {
    return table;
}

int CSurvival::StartAnalysis(CAnalysisSupport& analysis) {
    return OpenStep<CDefineTask>(analysis, ModuleState());
}

int CSurvival::SpecifyLifeTables(CAnalysisSupport& analysis) {
    SurvivalState& state = ModuleState();
    switch (state.shared.inputDataType) {
    case InputDataType::Raw:
        return OpenStep<CDefineLifeRawDlg>(analysis, state.shared, state.lifeTables);
    case InputDataType::Table:
        return OpenStep<CDefineLifeTableDlg>(analysis, state.shared, state.lifeTables);
    }
    return StepEnd;
}

int CSurvival::LifeResults(CAnalysisSupport& analysis) {
    return OpenStep<CLifeResultsDlg>(analysis, ModuleState().shared, ModuleState().lifeTables);
}

int CSurvival::SpecifyKaplan(CAnalysisSupport& analysis) {
    return OpenStep<CDefineKaplanDlg>(analysis, ModuleState().shared, ModuleState().kaplan);
}

int CSurvival::KaplanResults(CAnalysisSupport& analysis) {
    return OpenStep<CKaplanResultsDlg>(analysis, ModuleState().shared, ModuleState().kaplan);
}

int CSurvival::SpecifyTwoSamples(CAnalysisSupport& analysis) {
    return OpenStep<CDefineTwoDlg>(analysis, ModuleState().shared, ModuleState().twoSamples);
}

int CSurvival::TwoResults(CAnalysisSupport& analysis) {
    return OpenStep<CTwoResultsDlg>(analysis, ModuleState().shared, ModuleState().twoSamples);
}

int CSurvival::SpecifyKSamples(CAnalysisSupport& analysis) {
    return OpenStep<CDefineKSDlg>(analysis, ModuleState().shared, ModuleState().kSamples);
}

int CSurvival::SpecifyRegression(CAnalysisSupport& analysis) {
    SurvivalState& state = ModuleState();
    if (state.regression.settings.kind == RegressionKind::TimeDependent)
        return OpenStep<CDefineRegDlg2>(analysis, state.shared, state.regression);
    return OpenStep<CDefineRegDlg>(analysis, state.shared, state.regression);
}

int CSurvival::RegSpec(CAnalysisSupport& analysis) {
    SurvivalState& state = ModuleState();
    if (!state.regression.settings.nonDefaultEstimation && !analysis.IsOleAutomation())
        return OpenStep<CRegSpecDlg>(analysis, state.shared, state.regression);
    return PrepareRegression(analysis, state.shared, state.regression, nullptr) ? StepRegEst
                                                                                : StepSpecifyRegression;
}

int CSurvival::RegEst(CAnalysisSupport& analysis) {
    SurvivalState& state = ModuleState();
    RegressionState& regression = state.regression;
    bool estimated = regression.results.held;
    if (!estimated && analysis.IsOleAutomation() && !regression.settings.estimationAsked) {
        // Not those of an earlier run, which no dialog shows.
        regression.settings.UseDefaultEstimation();
        estimated = EstimateRegression(analysis, regression, nullptr);
    } else if (!estimated) {
        RegEstDlg dialog(analysis,
                         RegEstDlg::TemplateFor(state.shared.timeVariables, regression.settings.kind),
                         regression);
        estimated = dialog.DoModal() == 0;
    }
    if (!estimated) regression.results.Release(); // the specification prepares the data anew
    return estimated ? StepRegressionResults : StepSpecifyRegression;
}

int CSurvival::KsResults(CAnalysisSupport& analysis) {
    return OpenStep<CKsResultsDlg>(analysis, ModuleState().shared, ModuleState().kSamples);
}

int CSurvival::RegressionResults(CAnalysisSupport& analysis) {
    return OpenStep<CRegResultsDlg>(analysis, ModuleState().shared, ModuleState().regression);
}

} // namespace ozm::survival
