#include "module/regression/cox/PartialLikelihood.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace ozm::survival {
namespace {

constexpr double largestPredictor = 250.0;

/// Puts the cases, by their places, into eight results in turn, which do not wait for each other.
template <class Combine>
std::array<double, 8> InTurn(std::size_t cases, Combine combine) {
    std::array<double, 8> results{};
    std::size_t i = 0;
    for (; i + results.size() <= cases; i += results.size())
        for (std::size_t l = 0; l < results.size(); ++l)
            results[l] = combine(results[l], i + l);
    for (std::size_t l = 0; i < cases; ++i, ++l)
        results[l] = combine(results[l], i);
    return results;
}

} // namespace

PartialLikelihood::PartialLikelihood(const OrderedSample& sample)
    : sample_(sample), kernels_(UsableRiskSetKernels().front()), weight_(sample.cases), share_(sample.cases),
      meanRoot_(sample.cases), expected_(sample.cases), observed_(sample.cases) {
    for (std::size_t k = 0; k < sample_.covariates; ++k)
        largest_[k] =
            std::ranges::max(InTurn(sample_.cases, [x = sample_.Column(k)](double largest, std::size_t i) {
                return std::max(largest, std::abs(x[i]));
            }));
    std::size_t first = 0;
    for (const std::int32_t size : sample_.blocks) {
        const std::size_t end = first + static_cast<std::size_t>(size);
        FindGroups(first, end);
        first = end;
    }
}

void PartialLikelihood::FindGroups(std::size_t first, std::size_t end) {
    std::int32_t events = 0;
    std::size_t open = first; // the first event of a group that has not ended
    for (std::size_t i = first; i < end; ++i) {
        if (sample_.complete[i] == 0) continue;
        if (events++ == 0) open = i;
        if (i + 1 != end && !(sample_.times[i + 1] < sample_.times[i])) continue;
        groups_.push_back({static_cast<std::int32_t>(i), events, 1.0 / std::sqrt(events)});
        std::copy_n(sample_.complete.begin() + static_cast<std::ptrdiff_t>(open), i + 1 - open,
                    observed_.begin() + static_cast<std::ptrdiff_t>(open));
        events = 0;
    }
}

EstimationStatus PartialLikelihood::Predict(std::span<const double> parameters) {
    return kernels_.predict(sample_, parameters, largestPredictor, weight_) ? EstimationStatus::Success
                                                                            : EstimationStatus::NoLikelihood;
}

EstimationStatus PartialLikelihood::Check(std::span<const double> parameters) {
    double bound = 0.0;
    for (std::size_t k = 0; k < parameters.size(); ++k)
        bound += largest_[k] * std::abs(parameters[k]);
    // Rounding moves neither this nor any eta by 1.
    return bound < largestPredictor - 1.0 ? EstimationStatus::Success : Predict(parameters);
}

EstimationStatus PartialLikelihood::LogLikelihood(std::span<const double> parameters, double& value) {
    if (const EstimationStatus status = Predict(parameters); status != EstimationStatus::Success)
        return status;
    double overEvents = 0.0;
    for (std::size_t i = 0; i < sample_.cases; ++i) {
        overEvents += sample_.complete[i] != 0 ? weight_[i] : 0.0;
        weight_[i] = std::exp(weight_[i]);
    }
    value = overEvents - SumOverGroups();
    return EstimationStatus::Success;
}

double PartialLikelihood::SumOverGroups() {
    std::size_t i = 0;
    for (const std::int32_t size : sample_.blocks) {
        double atRisk = 0.0;
        for (const std::size_t end = i + static_cast<std::size_t>(size); i < end; ++i)
            expected_[i] = atRisk += weight_[i];
    }
    double sum = 0.0;
    for (const Group& group : groups_) {
        const auto last = static_cast<std::size_t>(group.last);
        share_[last] = group.events / expected_[last];
        meanRoot_[last] = group.perRoot * share_[last];
        sum += group.events * std::log(expected_[last]);
    }
    return sum;
}

void PartialLikelihood::ExpectEvents() {
    std::size_t end = sample_.cases;
    for (std::size_t b = sample_.blocks.size(); b-- > 0;) {
        double hazard = 0.0;
        const std::size_t first = end - static_cast<std::size_t>(sample_.blocks[b]);
        for (std::size_t i = end; i-- > first;) {
            hazard += share_[i];
            expected_[i] = weight_[i] * hazard;
        }
        end = first;
    }
}

void PartialLikelihood::Derivatives(std::span<double> gradient, SquareMatrix& information) {
    ExpectEvents();
    kernels_.sum(sample_, {weight_, meanRoot_, expected_, observed_}, gradient, information);
}

void PartialLikelihood::Gradient(std::span<double> gradient) {
    ExpectEvents();
    for (std::size_t i = 0; i < sample_.cases; ++i)
        expected_[i] = observed_[i] - expected_[i];
    for (std::size_t k = 0; k < sample_.covariates; ++k) {
        const auto sums = InTurn(sample_.cases, [x = sample_.Column(k), this](double sum, std::size_t i) {
            return sum + expected_[i] * x[i];
        });
        gradient[k] = std::accumulate(sums.begin(), sums.end(), 0.0);
    }
}

} // namespace ozm::survival
