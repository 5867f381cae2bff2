#include "module/lifetable/CDefineLifeRawDlg.h"

#include <cstdint>

namespace ozm::survival {

CDefineLifeRawDlg::CDefineLifeRawDlg(CAnalysisSupport& host, SharedSettings& shared, LifeState& state)
    : LifeSpecification(host, lifeRawTemplate, lifeRawInterface, shared, state, InputDataType::Raw) {}

void CDefineLifeRawDlg::OnOpen() {
    LifeSpecification::OnOpen();
    SetValue(LifeIntervals, int{Settings().intervals});
    SetValue(LifeStep, Settings().step);
    ShowIntervalMode();
}

void CDefineLifeRawDlg::OnValueChanged(int control) {
    switch (control) {
    case LifeIntervalMode:
        Settings().byStep = ValueAs<int>(control) == LifeByStep;
        ShowIntervalMode();
        break;
    case LifeIntervals:
        Settings().intervals = static_cast<std::int16_t>(ValueAs<int>(control));
        break;
    case LifeStep:
        Settings().step = ValueAs<double>(control);
        break;
    default:
        LifeSpecification::OnValueChanged(control);
    }
}

void CDefineLifeRawDlg::ShowIntervalMode() {
    const bool byStep = Settings().byStep;
    SetValue(LifeIntervalMode, int{byStep ? LifeByStep : LifeByNumber});
    Enable(LifeIntervals, !byStep);
    Enable(LifeStep, byStep);
}

} // namespace ozm::survival
