#include "module/regression/cox/FitCox.h"

#include "module/regression/cox/PartialLikelihood.h"

namespace ozm::survival {
namespace {

/// Covariates less their means, over their standard deviations, for as long as it lives.
class Standardised {
public:
    explicit Standardised(RegressionSample& sample) : sample_(sample) {
        for (std::size_t k = 0; k < sample_.Covariates(); ++k) {
            const CovariateSummary& of = sample_.Summary(k);
            for (double& x : sample_.Column(k))
                x = (x - of.mean) / of.deviation;
        }
    }
    ~Standardised() {
        for (std::size_t k = 0; k < sample_.Covariates(); ++k) {
            const CovariateSummary& of = sample_.Summary(k);
            for (double& x : sample_.Column(k))
                x = x * of.deviation + of.mean;
        }
    }
    Standardised(const Standardised&) = delete;
    Standardised& operator=(const Standardised&) = delete;

private:
    RegressionSample& sample_;
};

} // namespace

EstimationStatus FitCox(RegressionSample& sample, const IterationLimits& limits, const IterationWatch& watch,
                        std::span<double> parameters, NewtonEstimate& estimate) {
    const auto deviation = [&sample](std::size_t k) { return sample.Summary(k).deviation; };
    for (std::size_t k = 0; k < parameters.size(); ++k)
        parameters[k] *= deviation(k);
    EstimationStatus status = EstimationStatus::Success;
    {
        const Standardised standardised(sample);
        const OrderedSample ordered = sample.Ordered();
        PartialLikelihood likelihood(ordered);
        IterationLimits standardisedLimits = limits;
        standardisedLimits.negligibleStep = negligibleCoxStep;
        status = MaximiseByDampedNewton(likelihood, standardisedLimits, watch, parameters, estimate);
    }
    for (std::size_t k = 0; k < parameters.size(); ++k) {
        parameters[k] /= deviation(k);
        estimate.gradient[k] *= deviation(k);
        for (std::size_t l = 0; l < parameters.size(); ++l)
            estimate.covariance(k, l) /= deviation(k) * deviation(l);
    }
    return status;
}

} // namespace ozm::survival
