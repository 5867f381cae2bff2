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
    std::int16_t analysisType;
    int step;
};

constexpr AnalysisCommand commands[] = {
    {StrLifeTables, 1, StepSpecifyLifeTables}, {StrKaplanMeier, 2, StepSpecifyKaplan},
    {StrTwoSamples, 3, StepSpecifyTwoSamples}, {StrKSamples, 4, StepSpecifyKSamples},
    {StrRegression, 5, StepSpecifyRegression}, {StrTimeDependent, 5, StepSpecifyRegression},
};

std::span<const ChoiceTemplate> Entries() {
    return taskTemplate.Find(TaskList)->choices;
}

/// The first entry with the command, the first entry of all when none has it.
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

void CDefineTask::OnCommand(int control) {
    switch (control) {
    case ControlOk:
    case TaskList:
        PerformSelected();
        break;
    case ControlCancel:
        Analysis().Dialogs().EnableStartupMenus(true);
        ExitDialog(StepEnd, ExitMode::Back);
        break;
    case TaskOpenData:
        if (Analysis().Dialogs().OpenDataFile())
            ResetSelections();
        else
            Analysis().Dialogs().RestoreResultsWindows(*this);
        break;
    case TaskResetSelections:
        ResetSelections();
        break;
    default:
        CommonCommand(control);
    }
}

void CDefineTask::PerformSelected() {
    const auto position = static_cast<std::size_t>(ValueAs<int>(TaskList));
    if (position < Entries().size()) Perform(Entries()[position].command);
}

void CDefineTask::Perform(int command) {
    const auto* const found =
        std::find_if(std::begin(commands), std::end(commands),
                     [command](const AnalysisCommand& row) { return row.command == command; });
    if (found == std::end(commands)) return;
    state_.startupPosition = PositionOf(command);
    state_.shared.analysisType = found->analysisType;
    if (command == StrRegression || command == StrTimeDependent) {
        const bool timeDependent = command == StrTimeDependent;
        state_.regression.settings.modelKind = timeDependent ? 5 : 1;
        state_.regression.settings.timeDependentCovariates = timeDependent ? 4 : 0;
        state_.shared.timeVariables = 0;
    }
    Analysis().Dialogs().EnableStartupMenus(false);
    ExitDialog(found->step, ExitMode::Forward);
}

void CDefineTask::ResetSelections() {
    state_.ClearSelections();
    Analysis().Dialogs().RestoreResultsWindows(*this);
}

} // namespace ozm::survival
