#include "module/frame/CDefineTask.h"

#include "module/resources/Startup.h"
#include "module/resources/StepNumbers.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace ozm::survival {
namespace {

struct AnalysisCommand {
    int command;
    AnalysisType analysisType;
    int step;
};

constexpr AnalysisCommand commands[] = {
    {StrLifeTables, AnalysisType::LifeTables, StepSpecifyLifeTables},
    {StrKaplanMeier, AnalysisType::KaplanMeier, StepSpecifyKaplan},
    {StrTwoSamples, AnalysisType::TwoSamples, StepSpecifyTwoSamples},
    {StrKSamples, AnalysisType::MultipleSamples, StepSpecifyKSamples},
    {StrRegression, AnalysisType::Regression, StepSpecifyRegression},
    {StrTimeDependent, AnalysisType::Regression, StepSpecifyRegression},
};

std::span<const ChoiceTemplate> Entries() {
    return taskTemplate.Find(TaskList)->choices;
}

/// The first entry with this command, or the first entry of all when none has it.
int PositionOf(int command) {
    const auto entries = Entries();
    const auto found = std::find_if(entries.begin(), entries.end(), [command](const ChoiceTemplate& entry) {
        return entry.command == command;
    });
    return found != entries.end() ? static_cast<int>(found - entries.begin()) : 0;
}

} // namespace

CDefineTask::CDefineTask(CAnalysisSupport& host, SurvivalState& state)
    : ModuleDialog(host, taskTemplate, startupInterface, state.shared), state_(state) {}

void CDefineTask::OnOpen() {
    Analysis().Dialogs().EnableStartupMenus(true);
    SetValue(TaskList, state_.startupPosition);
}

void CDefineTask::OnValueChanged(int control) {
    if (control == TaskList) state_.startupPosition = ValueAs<int>(TaskList);
}

bool CDefineTask::OnCommand(int control) {
    switch (control) {
    case ControlOk:
    case TaskList:
        return PerformSelected();
    case ControlCancel:
        Analysis().Dialogs().EnableStartupMenus(true);
        ExitDialog(StepEnd, ExitMode::Back);
        return true;
    case TaskOpenData:
        if (!Analysis().Dialogs().OpenDataFile()) {
            Analysis().Dialogs().RestoreResultsWindows(*this);
            return false;
        }
        ResetSelections();
        return true;
    case TaskResetSelections:
        ResetSelections();
        return true;
    default:
        return CommonCommand(control);
    }
}

bool CDefineTask::PerformSelected() {
    const auto position = static_cast<std::size_t>(ValueAs<int>(TaskList));
    return position < Entries().size() && Perform(Entries()[position].command);
}

bool CDefineTask::Perform(int command) {
    const auto* const found =
        std::find_if(std::begin(commands), std::end(commands),
                     [command](const AnalysisCommand& row) { return row.command == command; });
    if (found == std::end(commands)) return false;
    state_.startupPosition = PositionOf(command);
    state_.shared.analysisType = found->analysisType;
    if (command == StrRegression || command == StrTimeDependent) {
        const bool timeDependent = command == StrTimeDependent;
        state_.regression.settings.kind =
            timeDependent ? RegressionKind::TimeDependent : RegressionKind::ProportionalHazards;
        state_.regression.settings.timeDependentCovariates = timeDependent ? 4 : 0;
        state_.shared.timeVariables = 0;
    }
    Analysis().Dialogs().EnableStartupMenus(false);
    ExitDialog(found->step, ExitMode::Forward);
    return true;
}

void CDefineTask::ResetSelections() {
    state_.ClearSelections();
    Analysis().Dialogs().RestoreResultsWindows(*this);
}

} // namespace ozm::survival
