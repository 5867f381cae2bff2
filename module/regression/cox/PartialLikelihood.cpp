#include "module/regression/cox/PartialLikelihood.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {
namespace {

constexpr double largestPredictor = 250.0;

} // namespace

PartialLikelihood::PartialLikelihood(const OrderedSample& sample)
    : sample_(sample), kernels_(UsableRiskSetKernels().front()), weight_(sample.cases), share_(sample.cases),
      expected_(sample.cases), observed_(sample.cases) {}

EstimationStatus PartialLikelihood::Check(std::span<const double> parameters) {
    return kernels_.predict(sample_, parameters, largestPredictor, weight_) ? EstimationStatus::Success
                                                                            : EstimationStatus::NoLikelihood;
}

EstimationStatus PartialLikelihood::LogLikelihood(std::span<const double> parameters, double& value) {
    if (const EstimationStatus status = Check(parameters); status != EstimationStatus::Success) return status;
    double overEvents = 0.0;
    for (std::size_t i = 0; i < sample_.cases; ++i) {
        if (sample_.complete[i] != 0) overEvents += weight_[i];
        weight_[i] = std::exp(weight_[i]);
    }
    value = overEvents - SumOverGroups();
    return EstimationStatus::Success;
}

double PartialLikelihood::SumOverGroups() {
    double sum = 0.0;
    std::size_t i = 0;
    for (const std::int32_t size : sample_.blocks) {
        double atRisk = 0.0;
        double events = 0.0;
        std::size_t open = i; // the first event of a group that has not ended
        for (const std::size_t end = i + static_cast<std::size_t>(size); i < end; ++i) {
            atRisk += weight_[i];
            share_[i] = 0.0;
            observed_[i] = sample_.complete[i];
            if (sample_.complete[i] == 0) continue;
            if (events == 0.0) open = i;
            events += 1.0;
            if (i + 1 != end && !(sample_.times[i + 1] < sample_.times[i])) continue;
            share_[i] = events / atRisk;
            sum += events * std::log(atRisk);
            events = 0.0;
        }
        if (events > 0.0)
            std::fill(observed_.begin() + static_cast<std::ptrdiff_t>(open),
                      observed_.begin() + static_cast<std::ptrdiff_t>(i), std::uint8_t{0});
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
    kernels_.sum(sample_, {weight_, share_, expected_, observed_}, gradient, information);
}

} // namespace ozm::survival
