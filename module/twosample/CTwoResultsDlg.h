#pragma once

#include "module/resources/StringIds.h"
#include "module/survdata/ModuleDialog.h"
#include "module/twosample/TwoOutput.h"
#include "module/twosample/TwoState.h"

namespace ozm::survival {

/// Results of the two-sample comparison: one button, one output. Cancel goes back to the specification
/// dialog. Closing releases the results of the run.
class CTwoResultsDlg final : public ModuleDialog {
public:
    CTwoResultsDlg(CAnalysisSupport& host, SharedSettings& shared, TwoState& state);

protected:
    void OnOpen() override;
    void OnCommand(int control) override;
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrTwoNoMemory; }

private:
    /// Makes the output of a button and answers the message of what went wrong, 0 for none.
    int Output(int control);

    TwoState& state_;
};

} // namespace ozm::survival
