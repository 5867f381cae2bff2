#pragma once

#include "module/ksample/KsState.h"
#include "module/resources/KSamples.h"
#include "module/survdata/SpecificationDialog.h"

namespace ozm::survival {

/// Specification of the comparison of several groups: time variables, censoring indicator with its codes,
/// grouping variable with the codes of the groups.
class CDefineKSDlg final : public SpecificationDialog {
public:
    CDefineKSDlg(CAnalysisSupport& host, SharedSettings& shared, KsState& state);

protected:
    void OnOpen() override;
    void OnValueChanged(int control) override;
    void Run() override;
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrKsNoMemory; }

private:
    /// False when a message was shown.
    bool SelectionsAreValid();
    /// The codes of the groups into the shared settings: those given, else all that selected cases have,
    /// ascending. False when a message was shown.
    bool TakeGroups();
    bool Refuse(int message, const std::string& detail);

    KsState& state_;
};

} // namespace ozm::survival
