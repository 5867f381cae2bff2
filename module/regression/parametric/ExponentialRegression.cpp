#include "module/regression/parametric/ExponentialRegression.h"

#include "module/regression/parametric/CaseSums.h"
#include "module/regression/parametric/PackedCholesky.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace ozm::survival {
namespace {

/// Log-likelihood, gradient and information of the log hazard's coefficients theta, the constant last.
class Likelihood {
public:
    explicit Likelihood(const CensoredCases& cases)
        : kernels_(UsableCaseKernels().front()), order_(cases.covariates + 1),
          blocks_(cases, AllPlaces(cases.Cases()), CovariateScales::None(cases.covariates)),
          times_(InBlocks(cases.y, AllPlaces(cases.Cases()))), roots_(blocks_.Blocks()), eventSums_(order_),
          gradient_(order_) {
        std::vector<Eight> events(blocks_.Blocks());
        for (std::size_t i = 0; i < cases.Cases(); ++i)
            events[i / 8].values[i % 8] = cases.status[i] == CensoredCases::complete ? 1.0 : 0.0;
        kernels_.sum(blocks_, events, eventSums_);
        Eight time{};
        for (const Eight& each : times_)
            for (std::size_t l = 0; l < 8; ++l)
                time.values[l] += each.values[l];
        time_ = time.Sum();
    }

    [[nodiscard]] std::size_t Order() const { return order_; }
    [[nodiscard]] double Events() const { return eventSums_.back(); }
    [[nodiscard]] double Time() const { return time_; }
    [[nodiscard]] std::span<const double> Gradient() const { return gradient_; }
    [[nodiscard]] const SquareMatrix& Information() const { return information_; }

    double Evaluate(std::span<const double> theta) {
        kernels_.predict(blocks_, theta, roots_);
        for (std::size_t b = 0; b < roots_.size(); ++b)
            for (std::size_t l = 0; l < 8; ++l)
                roots_[b].values[l] = std::sqrt(times_[b].values[l] * std::exp(roots_[b].values[l]));
        kernels_.multiply(blocks_, roots_, information_);
        const std::size_t constant = order_ - 1; // its row has the sums of the expected events
        double value = -information_(constant, constant);
        for (std::size_t k = 0; k < order_; ++k) {
            gradient_[k] = eventSums_[k] - information_(constant, k);
            value += theta[k] * eventSums_[k];
        }
        return value;
    }

private:
    CaseKernels kernels_;
    std::size_t order_;
    CaseBlocks blocks_;
    std::vector<Eight> times_;
    std::vector<Eight> roots_;      ///< of the expected events of each case, t c e
    std::vector<double> eventSums_; ///< of the covariates over the events, then the events
    double time_ = 0.0;
    std::vector<double> gradient_;
    SquareMatrix information_;
};

ExponentialStatus Check(const CensoredCases& cases) {
    using enum ExponentialStatus;
    if (cases.Cases() == 0) return NoCases;
    if (cases.covariates == 0) return NoCovariates;
    if (std::ranges::any_of(cases.status, [](auto status) { return status > CensoredCases::complete; }))
        return NotAFlag;
    if (std::ranges::any_of(cases.y, [](double time) { return time < 0.0; })) return NegativeTime;
    const auto events = std::ranges::count(cases.status, CensoredCases::complete);
    if (events == 0) return NoEvents;
    if (std::ranges::all_of(cases.y, [](double time) { return time == 0.0; })) return NoTime;
    if (static_cast<std::ptrdiff_t>(cases.covariates) + 1 > events) return TooFewEvents;
    return Success;
}

/// 0, not -0, where there is nothing to negate: it is shown.
std::vector<double> Negated(std::span<const double> values) {
    std::vector<double> negated;
    for (const double value : values)
        negated.push_back(0.0 - value);
    return negated;
}

/// What a step of each parameter is negligible by.
std::vector<double> NegligibleSteps(const CensoredCases& cases) {
    std::vector<double> steps(cases.covariates + 1, negligibleExponentialStep);
    const CovariateScales scales = CovariateScales::Standard(cases);
    for (std::size_t k = 0; k < cases.covariates; ++k)
        steps[k] /= scales.scale[k];
    return steps;
}

/// Newton's iteration.
struct Iteration {
    Likelihood& likelihood;
    const IterationLimits& limits;
    const IterationWatch& watch;
    std::vector<double> negligible;

    ExponentialStatus Run(std::vector<double>& theta, ExponentialFit& fit) const {
        double before = 0.0;
        for (int n = 1; n <= std::max(limits.most, 1); ++n) {
            fit.iterations = n;
            fit.logLikelihood = likelihood.Evaluate(theta);
            const double rise = fit.logLikelihood - before;
            const bool settled = rise >= 0.0 && rise <= limits.criterion * -before;
            before = fit.logLikelihood;
            if (watch(n, fit.logLikelihood, Negated(theta))) return ExponentialStatus::Stopped;
            if (!std::isfinite(fit.logLikelihood)) return ExponentialStatus::NotFinite;
            const auto factor =
                PackedCholesky::Of(Pack(likelihood.Information(), likelihood.Order()), likelihood.Order());
            std::vector<double> step(likelihood.Gradient().begin(), likelihood.Gradient().end());
            if (factor) fit.lost = factor->FirstLost();
            if (!factor || !factor->Solve(step)) return ExponentialStatus::Singular;
            if (settled && IsSmall(step, theta)) {
                fit.covariance = factor->Inverse();
                return ExponentialStatus::Success;
            }
            std::ranges::transform(theta, step, theta.begin(), std::plus<>());
        }
        return ExponentialStatus::TooManyIterations;
    }

private:
    [[nodiscard]] bool IsSmall(std::span<const double> step, std::span<const double> theta) const {
        for (std::size_t j = 0; j < step.size(); ++j) {
            const double size = std::abs(step[j]);
            if (!(size < std::abs(theta[j]) * limits.criterion) && !(size <= negligible[j])) return false;
        }
        return true;
    }
};

} // namespace

ExponentialStatus FitExponential(const CensoredCases& cases, const IterationLimits& limits,
                                 const IterationWatch& watch, std::span<const double> start,
                                 ExponentialFit& fit) {
    fit = {};
    fit.lost = cases.covariates + 1;
    if (const ExponentialStatus status = Check(cases); status != ExponentialStatus::Success) return status;
    Likelihood likelihood(cases);
    const double rate = std::log(likelihood.Events() / likelihood.Time());
    fit.nullLogLikelihood = likelihood.Events() * rate - likelihood.Events();
    std::vector<double> theta(cases.covariates + 1, 0.0);
    theta.back() = rate;
    if (!start.empty()) theta = Negated(start);
    const Iteration iteration{likelihood, limits, watch, NegligibleSteps(cases)};
    const ExponentialStatus status = iteration.Run(theta, fit);
    fit.parameters = Negated(theta);
    fit.gradient = Negated(likelihood.Gradient());
    return status;
}

} // namespace ozm::survival
