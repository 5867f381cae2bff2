#include "module/lifetable/CDefineLifeRawDlg.h"

#include <algorithm>
#include <cstdint>
#include <string>

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

int CDefineLifeRawDlg::Decimals(const ControlTemplate& control, double number) const {
    const int most = LifeSpecification::Decimals(control, number);
    if (control.id != LifeStep) return most;
    // No zeros at the end: 1 and 0.25, not 1.00000000.
    const std::string shortest = NumberInWords(number);
    if (shortest.find('e') != std::string::npos) return most;
    const std::size_t point = std::min(shortest.find('.'), shortest.size() - 1);
    return std::min(most, static_cast<int>(shortest.size() - 1 - point));
}

void CDefineLifeRawDlg::ShowIntervalMode() {
    const bool byStep = Settings().byStep;
    SetValue(LifeIntervalMode, int{byStep ? LifeByStep : LifeByNumber});
    Enable(LifeIntervals, !byStep);
    Enable(LifeStep, byStep);
}

} // namespace ozm::survival
