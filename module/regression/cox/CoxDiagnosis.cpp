#include "module/regression/cox/CoxDiagnosis.h"

#include "module/regression/cox/FitCox.h"
#include "module/regression/cox/PartialLikelihood.h"
#include "module/regression/estimation/Dependence.h"
#include "module/regression/estimation/LeastCurvature.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace ozm::survival {
namespace {

/// By how much, at most, a value among those who die is below the largest among those at risk with them; and
/// whether any such group has different values at all.
struct Shortfall {
    double most = 0.0;
    bool varies = false;
};

template <class Value>
Shortfall LargestShortfall(const OrderedSample& sample, Value value) {
    Shortfall result;
    std::size_t i = 0;
    for (const std::int32_t size : sample.blocks) {
        const std::size_t end = i + static_cast<std::size_t>(size);
        double least = std::numeric_limits<double>::infinity();
        double largest = -least;
        while (i < end) {
            std::size_t next = i;
            for (; next < end && sample.times[next] == sample.times[i]; ++next) {
                least = std::min(least, value(next));
                largest = std::max(largest, value(next));
            }
            for (; i < next; ++i) {
                if (sample.complete[i] == 0) continue;
                result.most = std::max(result.most, largest - value(i));
                result.varies = result.varies || least < largest;
            }
        }
    }
    return result;
}

bool IsMonotone(const OrderedSample& sample, std::size_t k, double sign) {
    const double* const x = sample.Column(k);
    const Shortfall shortfall = LargestShortfall(sample, [&](std::size_t i) { return sign * x[i]; });
    return shortfall.varies && shortfall.most == 0.0;
}

double LargestOf(std::span<const double> values) {
    double largest = 0.0;
    for (const double each : values)
        largest = std::max(largest, std::abs(each));
    return largest;
}

/// A little less than the largest predictor that there is a likelihood for.
constexpr double likelihoodEnds = 249.0;

double RangeOf(std::span<const double> values) {
    const auto [least, largest] = std::ranges::minmax(values);
    return largest - least;
}

/// A copy of the covariates, less their means, over their standard deviations.
class Standardised {
public:
    explicit Standardised(const RegressionSample& sample)
        : x_(sample.Cases() * sample.Covariates()), ordered_(sample.Ordered()) {
        const std::size_t n = sample.Cases();
        for (std::size_t k = 0; k < sample.Covariates(); ++k)
            for (std::size_t i = 0; i < n; ++i)
                x_[k * n + i] = (sample.Column(k)[i] - sample.Summary(k).mean) / sample.Summary(k).deviation;
        ordered_.stride = n;
        ordered_.x = x_;
    }
    Standardised(const Standardised&) = delete;
    Standardised& operator=(const Standardised&) = delete;

    [[nodiscard]] std::vector<double> Predictors(std::span<const double> parameters) const {
        std::vector<double> predictors(ordered_.cases, 0.0);
        for (std::size_t k = 0; k < parameters.size(); ++k)
            for (std::size_t i = 0; i < predictors.size(); ++i)
                predictors[i] += ordered_.Column(k)[i] * parameters[k];
        return predictors;
    }
    /// Where the iteration from zeros has its last likelihood.
    [[nodiscard]] std::vector<double> Maximise() const {
        constexpr IterationLimits limits{1e-5, 100, negligibleCoxStep};
        PartialLikelihood likelihood(ordered_);
        std::vector<double> parameters(ordered_.covariates, 0.0);
        std::vector<double> last = parameters;
        NewtonEstimate estimate;
        const IterationWatch watch = [&last](int, double, std::span<const double> at) {
            last.assign(at.begin(), at.end());
            return false;
        };
        (void)MaximiseByDampedNewton(likelihood, limits, watch, parameters, estimate);
        return last;
    }
    [[nodiscard]] std::optional<double> LogLikelihood(std::span<const double> parameters) const {
        PartialLikelihood likelihood(ordered_);
        double value = 0.0;
        if (likelihood.LogLikelihood(parameters, value) != EstimationStatus::Success) return std::nullopt;
        return value;
    }
    /// False where there is no likelihood.
    bool Derive(std::span<const double> parameters, ParameterVector& gradient,
                SquareMatrix& information) const {
        PartialLikelihood likelihood(ordered_);
        double value = 0.0;
        if (likelihood.LogLikelihood(parameters, value) != EstimationStatus::Success) return false;
        likelihood.Derivatives(std::span{gradient}.first(parameters.size()), information);
        return true;
    }
    /// Their part in the directions in which the likelihood hardly curves.
    [[nodiscard]] std::vector<double> Flattest(std::span<const double> parameters) const {
        ParameterVector gradient{};
        SquareMatrix information;
        (void)Derive(parameters, gradient, information);
        return FlatPart(information, parameters);
    }

private:
    std::vector<double> x_;
    OrderedSample ordered_;
};

} // namespace

std::vector<Diagnosis::Unbounded> FindUnbounded(const RegressionSample& sample) {
    std::vector<Diagnosis::Unbounded> unbounded;
    const OrderedSample ordered = sample.Ordered();
    for (std::size_t k = 0; k < ordered.covariates; ++k)
        for (const double sign : {1.0, -1.0})
            if (IsMonotone(ordered, k, sign)) unbounded.push_back({k, sign > 0.0});
    return unbounded;
}

bool MayBeUnbounded(const RegressionSample& sample, std::span<const double> parameters,
                    const NewtonEstimate& estimate) {
    constexpr double farOut = 20.0;
    constexpr double moving = 0.1;
    const auto rangeOf = [&](auto&& each) {
        std::vector<double> predictor(sample.Cases(), 0.0);
        for (std::size_t k = 0; k < parameters.size(); ++k)
            for (std::size_t i = 0; i < predictor.size(); ++i)
                predictor[i] += (sample.Column(k)[i] - sample.Summary(k).mean) * each(k);
        return RangeOf(predictor);
    };
    const auto step = [&](std::size_t k) {
        double sum = 0.0;
        for (std::size_t l = 0; l < parameters.size(); ++l)
            sum += estimate.covariance(k, l) * estimate.gradient[l];
        return sum;
    };
    return !(rangeOf([&](std::size_t k) { return parameters[k]; }) < farOut) || !(rangeOf(step) < moving);
}

std::vector<std::size_t> FindUnboundedTogether(const RegressionSample& sample) {
    constexpr double farOut = 5.0;
    constexpr double further = 150.0; // hazard ratios far beyond all data
    constexpr double lost = 0.01;
    constexpr double considerable = 0.001;
    const Standardised standardised(sample);
    const std::vector<double> reached = standardised.Maximise();
    std::vector<std::size_t> together;
    const std::vector<double> predictors = standardised.Predictors(reached);
    if (!(RangeOf(predictors) > farOut)) return together;
    const std::vector<double> direction = standardised.Flattest(reached);
    const double range = RangeOf(standardised.Predictors(direction));
    if (!(range > 0.0)) return together;
    const double room =
        (likelihoodEnds - LargestOf(predictors)) / LargestOf(standardised.Predictors(direction));
    const double length = std::clamp(room, 0.0, further / range);
    std::vector<double> beyond = reached;
    double most = 0.0;
    for (std::size_t k = 0; k < direction.size(); ++k) {
        beyond[k] += length * direction[k];
        most = std::max(most, std::abs(direction[k]));
    }
    // Where there is a maximum the likelihood falls on the way.
    const std::optional<double> here = standardised.LogLikelihood(reached);
    const std::optional<double> there = standardised.LogLikelihood(beyond);
    if (!here || !there || *there < *here - lost) return together;
    for (std::size_t k = 0; k < direction.size(); ++k)
        if (std::abs(direction[k]) >= considerable * most) together.push_back(k);
    if (together.size() < 2) together.clear(); // one alone is known exactly
    return together;
}

std::optional<Diagnosis::Dependence> FindDependence(const RegressionSample& sample) {
    constexpr double leastInformation = 1e-13; // of an event, on the standardised scale
    const std::size_t p = sample.Covariates();
    const Standardised standardised(sample);
    ParameterVector gradient{};
    SquareMatrix information;
    if (!standardised.Derive(std::vector<double>(p), gradient, information)) return std::nullopt;
    const double least = leastInformation * sample.Events();
    return DependenceIn(information, p, least);
}

Diagnosis DiagnoseCox(const RegressionSample& sample, std::span<const double> parameters,
                      const NewtonEstimate& estimate, EstimationStatus status) {
    Diagnosis diagnosis;
    diagnosis.unbounded = FindUnbounded(sample);
    if (diagnosis.unbounded.empty() &&
        (status != EstimationStatus::Success || MayBeUnbounded(sample, parameters, estimate)))
        diagnosis.unboundedTogether = FindUnboundedTogether(sample);
    if (status == EstimationStatus::Singular) diagnosis.dependence = FindDependence(sample);
    return diagnosis;
}

} // namespace ozm::survival
