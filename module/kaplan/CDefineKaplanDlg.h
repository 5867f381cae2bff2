#pragma once

#include "module/kaplan/KaplanState.h"
#include "module/resources/StringIds.h"
#include "module/survdata/ModuleDialog.h"

namespace ozm::survival {

/// Specification of the Kaplan-Meier analysis: time variables, censoring indicator and its codes. OK checks
/// them and runs the analysis; Cancel goes back to the startup dialog.
class CDefineKaplanDlg final : public ModuleDialog {
public:
    CDefineKaplanDlg(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state);

protected:
    void OnOpen() override;
    void OnCommand(int control) override;
    void OnValueChanged(int control) override;
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrKaplanNoMemory; }

private:
    void Run();

    KaplanState& state_;
};

} // namespace ozm::survival
