#pragma once

#include "module/lifetable/LifeSpecification.h"

namespace ozm::survival {

/// Specification of a life table that the data hold as a table: its three variables, and the number entering
/// the first interval. Until somebody gives that number, it is shown as the data have it.
class CDefineLifeTableDlg final : public LifeSpecification {
public:
    CDefineLifeTableDlg(CAnalysisSupport& host, SharedSettings& shared, LifeState& state);

protected:
    void OnOpen() override;
    void OnValueChanged(int control) override;
    bool OnCommand(int control) override;
    void TakeAll() override;
    bool SelectionsAreValid() override;
    void ShowAfterRun(const LifeResults& results) override;

private:
    [[nodiscard]] bool AllSelected() const;
    /// Shows the number that the data have, unless one was given.
    void ShowEntering();

    bool given_ = false; ///< whether the number shown was given, also while another dialog's settings hold
};

} // namespace ozm::survival
