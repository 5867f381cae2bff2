#pragma once

#include "module/frame/SurvivalState.h"
#include "module/survdata/ModuleDialog.h"

namespace ozm::survival {

/// The startup dialog: a list of analyses, and the host's dialogs for data, case weights and selection
/// conditions.
class CDefineTask final : public ModuleDialog {
public:
    CDefineTask(CAnalysisSupport& host, SurvivalState& state);

protected:
    void OnOpen() override;
    void OnUse() override { Shared().Enter(Analysis()); }
    bool OnCommand(int control) override;
    void OnValueChanged(int control) override;

private:
    bool PerformSelected();
    /// Starts the analysis of a command; an unknown command does nothing.
    bool Perform(int command);
    void ResetSelections();

    SurvivalState& state_;
};

} // namespace ozm::survival
