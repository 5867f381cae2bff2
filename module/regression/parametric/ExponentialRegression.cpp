#include "module/regression/parametric/ExponentialRegression.h"

#include "module/regression/parametric/PackedCholesky.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

namespace ozm::survival {
namespace {

/// Log-likelihood, gradient and information of the log hazard's coefficients theta, the constant last.
class Likelihood {
public:
    explicit Likelihood(const CensoredCases& cases)
        : cases_(cases), order_(cases.covariates + 1), eventSums_(order_, 0.0), exposure_(cases.Cases()),
          gradient_(order_), information_(PackedCholesky::SizeOf(order_)) {
        for (std::size_t i = 0; i < cases.Cases(); ++i) {
            if (cases.status[i] != CensoredCases::complete) continue;
            eventSums_.back() += 1.0;
            for (std::size_t k = 0; k < cases.covariates; ++k)
                eventSums_[k] += cases.Column(k)[i];
        }
        time_ = std::accumulate(cases.y.begin(), cases.y.end(), 0.0);
    }

    [[nodiscard]] std::size_t Order() const { return order_; }
    [[nodiscard]] double Events() const { return eventSums_.back(); }
    [[nodiscard]] double Time() const { return time_; }
    [[nodiscard]] std::span<const double> Gradient() const { return gradient_; }
    [[nodiscard]] std::span<const double> Information() const { return information_; }

    double Evaluate(std::span<const double> theta) {
        const std::size_t q = cases_.covariates;
        std::ranges::fill(exposure_, 0.0);
        for (std::size_t k = 0; k < q; ++k)
            for (std::size_t i = 0; i < exposure_.size(); ++i)
                exposure_[i] += theta[k] * cases_.Column(k)[i];
        for (std::size_t i = 0; i < exposure_.size(); ++i)
            exposure_[i] = cases_.y[i] * std::exp(exposure_[i]);
        const double c = std::exp(theta[q]);
        for (std::size_t k = 0; k <= q; ++k)
            for (std::size_t l = 0; l <= k; ++l) {
                double sum = 0.0;
                for (std::size_t i = 0; i < exposure_.size(); ++i)
                    sum += (k < q ? cases_.Column(k)[i] : 1.0) * (l < q ? cases_.Column(l)[i] : 1.0) *
                           exposure_[i];
                information_[PackedCholesky::SizeOf(k) + l] = c * sum;
            }
        const std::span<const double> last = std::span{information_}.last(order_);
        for (std::size_t k = 0; k <= q; ++k)
            gradient_[k] = eventSums_[k] - last[k];
        return std::inner_product(theta.begin(), theta.end(), eventSums_.begin(), 0.0) - last[q];
    }

private:
    const CensoredCases& cases_;
    std::size_t order_;
    double time_ = 0.0;
    std::vector<double> eventSums_; ///< of the covariates over the events, then the events
    std::vector<double> exposure_;  ///< t e
    std::vector<double> gradient_;
    std::vector<double> information_;
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
    for (std::size_t k = 0; k < cases.covariates; ++k) {
        const std::span<const double> x = cases.Column(k);
        const auto n = static_cast<double>(x.size());
        const double mean = x[0] + std::accumulate(x.begin(), x.end(), 0.0, [&x](double sum, double each) {
                                       return sum + (each - x[0]);
                                   }) / n;
        const double squares = std::accumulate(x.begin(), x.end(), 0.0, [mean](double sum, double each) {
            return sum + (each - mean) * (each - mean);
        });
        steps[k] /= std::sqrt(squares / n);
    }
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
            if (!std::isfinite(fit.logLikelihood)) break;
            const auto factor = PackedCholesky::Of(likelihood.Information(), likelihood.Order());
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
