#pragma once

#include "module/regression/RegressionState.h"
#include "module/resources/Regression.h"

#include <array>
#include <charconv>
#include <cstdint>

namespace ozm::survival {

/// A criterion as it was typed: settings keep it in single precision, and 0.00001 would come back a little
/// below the least that is accepted.
inline double AsTyped(double criterion) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.begin(), text.end(), static_cast<float>(criterion)).ptr;
    double typed = criterion;
    (void)std::from_chars(text.begin(), end, typed);
    return typed;
}

/// What the dialogs of an estimation have in common: criterion and largest number of iterations. `Base` is a
/// dialog class.
template <class Base>
class EstimationDialog : public Base {
public:
    template <class... Arguments>
    explicit EstimationDialog(RegressionState& state, Arguments&&... arguments)
        : Base(std::forward<Arguments>(arguments)...), state_(state) {}

protected:
    [[nodiscard]] RegressionState& State() const { return state_; }
    [[nodiscard]] int NotEnoughMemoryString() const override { return StrRegNoMemory; }

    void ShowLimits() {
        this->SetValue(RegCriterion, AsTyped(state_.settings.convergenceCriterion));
        this->SetValue(RegIterations, int{state_.settings.maximumIterations});
    }

    /// Puts them into the settings; false after a message about one that is out of range and was reset.
    bool TakeLimits() {
        const bool criterionHolds = this->RangeHolds(RegCriterion);
        state_.settings.convergenceCriterion =
            static_cast<float>(this->template ValueAs<double>(RegCriterion));
        if (!criterionHolds) return false;
        const bool iterationsHold = this->RangeHolds(RegIterations);
        state_.settings.maximumIterations =
            static_cast<std::int16_t>(this->template ValueAs<int>(RegIterations));
        return iterationsHold;
    }

private:
    RegressionState& state_;
};

} // namespace ozm::survival
