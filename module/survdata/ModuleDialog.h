#pragma once

#include "module/survdata/SharedSettings.h"
#include "support/dialogs/CAnalysisModelessDialog.h"

#include <string_view>

namespace ozm::survival {

/// What the module's dialogs have in common: the shared settings (the selection lists among them), and the
/// buttons for case weights and selection conditions.
class ModuleDialog : public CAnalysisModelessDialog {
public:
    ModuleDialog(CAnalysisSupport& host, const DialogTemplate& dialogTemplate,
                 const AutomationInterface& automation, SharedSettings& shared);

    /// Codes have as many decimals as about eight digits leave room for.
    [[nodiscard]] int Decimals(const ControlTemplate& control, double number) const override;

protected:
    [[nodiscard]] SharedSettings& Shared() const { return shared_; }

    /// Performs the action of a button that many dialogs have. False for any other button.
    bool CommonCommand(int control);

    /// Fills the controls of a selection of times and censoring indicator, with its codes, from the shared
    /// settings.
    void ShowSelections();
    /// Copies such a control's value into the shared settings. False for any other control.
    bool TakeSelection(int control);

    /// Shows why the dialog cannot use what the user entered.
    void ShowMessage(int id, std::string_view detail = {});

private:
    SharedSettings& shared_;
};

} // namespace ozm::survival
