#pragma once

#include "module/kaplan/KaplanState.h"
#include "module/resources/Kaplan.h"
#include "module/survdata/SpecificationDialog.h"

namespace ozm::survival {

/// Specification of the Kaplan-Meier analysis: time variables, censoring indicator and its codes.
class CDefineKaplanDlg final : public SpecificationDialog {
public:
    CDefineKaplanDlg(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state);

protected:
    void Run() override;
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrKaplanNoMemory; }

private:
    KaplanState& state_;
};

} // namespace ozm::survival
