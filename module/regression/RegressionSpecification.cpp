#include "module/regression/RegressionSpecification.h"

#include <vector>

namespace ozm::survival {

void RegressionSpecification::OnOpen() {
    SpecificationDialog::OnOpen();
    RegressionSettings& settings = state_.settings;
    settings.estimationAsked = false;
    SetValue(RegStrataCodes, settings.strata);
    SetValue(RegDifferentBaselines, settings.differentBaselines);
    SetValue(RegNonDefault, settings.nonDefaultEstimation);
    SetValue(RegMissing, int{settings.substituteMeans ? RegPutMeans : RegLeaveOut});
}

void RegressionSpecification::OnValueChanged(int control) {
    RegressionSettings& settings = state_.settings;
    switch (control) {
    case RegStrataCodes:
        settings.strata = ValueAs<std::vector<double>>(control);
        break;
    case RegDifferentBaselines:
        settings.differentBaselines = ValueAs<bool>(control);
        break;
    case RegNonDefault:
        settings.nonDefaultEstimation = ValueAs<bool>(control);
        settings.estimationAsked = settings.nonDefaultEstimation && Analysis().IsOleAutomation();
        break;
    case RegMissing:
        settings.substituteMeans = ValueAs<int>(control) == RegPutMeans;
        break;
    default:
        SpecificationDialog::OnValueChanged(control);
    }
}

} // namespace ozm::survival
