#include "module/regression/parametric/EstimateSteps.h"

#include "module/kaplan/ProductLimit.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {

std::vector<EstimateStep> EstimateSteps(std::span<const double> values,
                                        std::span<const std::uint8_t> complete) {
    std::vector<double> uncensored;
    std::vector<double> censored;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!std::isnan(values[i])) (complete[i] != 0 ? uncensored : censored).push_back(values[i]);
    std::ranges::sort(uncensored);
    std::ranges::sort(censored);
    std::vector<std::int32_t> ranks(uncensored.size());
    std::vector<double> survival(uncensored.size());
    std::vector<double> error(uncensored.size());
    ComputeProductLimit(uncensored, censored, ranks, survival, error);

    const std::size_t all = uncensored.size() + censored.size();
    std::vector<EstimateStep> steps;
    EstimateStep step;
    for (std::size_t i = 0; i < uncensored.size();) {
        const std::size_t first = i;
        while (i < uncensored.size() && uncensored[i] == uncensored[first])
            ++i;
        step.at = uncensored[first];
        step.atRisk = all + 1 - static_cast<std::size_t>(ranks[first]);
        step.events = i - first;
        step.before = step.survival;
        step.survival = survival[i - 1];
        step.error = error[i - 1];
        step.hazard += static_cast<double>(step.events) / static_cast<double>(step.atRisk);
        steps.push_back(step);
    }
    return steps;
}

const EstimateStep* StepAt(std::span<const EstimateStep> steps, double value) {
    const auto after = std::ranges::upper_bound(steps, value, {}, &EstimateStep::at);
    return after == steps.begin() ? nullptr : &*(after - 1);
}

} // namespace ozm::survival
