#pragma once

#include "module/kaplan/KaplanOutput.h"
#include "module/kaplan/KaplanState.h"
#include "module/resources/StringIds.h"
#include "module/survdata/ModuleDialog.h"

namespace ozm::survival {

/// Results of the Kaplan-Meier analysis: one button, one output. Cancel goes back to the specification
/// dialog. Closing releases the results of the run.
class CKaplanResultsDlg final : public ModuleDialog {
public:
    CKaplanResultsDlg(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state);

protected:
    void OnOpen() override;
    void OnCommand(int control) override;
    void OnValueChanged(int control) override;
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrKaplanNoMemory; }

private:
    /// Makes one output and shows the message of what went wrong.
    void Show(int message);
    /// A level outside 0..1 is told, reset to its default, and false answered.
    bool LevelIsValid();
    void Plot(KaplanPlot plot);
    void Percentiles();

    KaplanState& state_;
};

} // namespace ozm::survival
