#include "module/regression/estimation/DampedNewton.h"

#include "module/regression/estimation/LuFactors.h"
#include "support/CodeComparison.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>

namespace ozm::survival {
namespace {

constexpr int mostHalvings = 7;

/// The state of an iteration.
struct Iteration {
    LikelihoodModel& model;
    std::span<double> parameters;
    double logLikelihood = 0.0;
    ParameterVector gradient{};
    SquareMatrix information;
    ParameterVector step{};

    EstimationStatus Evaluate() { return model.LogLikelihood(parameters, logLikelihood); }
    void Derive() { model.Derivatives(std::span{gradient}.first(parameters.size()), information); }
    void Move(double sign) {
        for (std::size_t k = 0; k < parameters.size(); ++k)
            parameters[k] += sign * step[k];
    }
};

/// Tries the full step, then halves it. False when no step is left.
EstimationStatus TakeStep(Iteration& at, double before, bool& taken) {
    at.Move(1.0);
    // What the likelihood is there does not matter, as the step is halved in any case.
    if (const EstimationStatus status = at.model.Check(at.parameters); status != EstimationStatus::Success)
        return status;
    taken = false;
    for (int halving = 0; halving < mostHalvings && !taken; ++halving) {
        for (double& each : at.step)
            each /= 2.0;
        at.Move(-1.0);
        if (const EstimationStatus status = at.Evaluate(); status != EstimationStatus::Success) return status;
        taken = before <= at.logLikelihood;
    }
    if (taken) return EstimationStatus::Success;
    at.Move(-1.0);
    at.step.fill(0.0);
    return at.Evaluate();
}

double LargestChange(const Iteration& at, double negligibleStep) {
    double largest = 0.0;
    for (std::size_t k = 0; k < at.parameters.size(); ++k) {
        if (std::abs(at.step[k]) <= std::max(negligibleStep, at.model.NegligibleStep(k))) continue;
        largest = std::max(largest, std::abs(at.step[k] / at.parameters[k]));
    }
    return largest;
}

bool HasConverged(const Iteration& at, double before, const IterationLimits& limits) {
    double change = std::abs(at.logLikelihood - before);
    if (!CodesEqual(at.logLikelihood, 0.0)) change /= at.logLikelihood;
    return limits.criterion > change && limits.criterion > LargestChange(at, limits.negligibleStep);
}

/// What is known with all parameters 0, which `at` has.
EstimationStatus EvaluateNullModel(Iteration& at, NewtonEstimate& estimate) {
    if (const EstimationStatus status = at.Evaluate(); status != EstimationStatus::Success) return status;
    at.Derive();
    estimate.nullLogLikelihood = at.logLikelihood;
    estimate.nullScore = std::numeric_limits<double>::quiet_NaN();
    const std::size_t size = at.parameters.size();
    if (const std::optional<LuFactors> factors = LuFactors::Of(at.information, size)) {
        ParameterVector solution = at.gradient;
        factors->Solve(solution);
        estimate.nullScore = std::inner_product(
            solution.begin(), solution.begin() + static_cast<std::ptrdiff_t>(size), at.gradient.begin(), 0.0);
    }
    return EstimationStatus::Success;
}

bool AllZero(std::span<const double> parameters) {
    return std::ranges::all_of(parameters, [](double each) { return each == 0.0; });
}

} // namespace

EstimationStatus MaximiseByDampedNewton(LikelihoodModel& model, const IterationLimits& limits,
                                        const IterationWatch& watch, std::span<double> parameters,
                                        NewtonEstimate& estimate) {
    ParameterVector zeros{};
    Iteration at{model, std::span{zeros}.first(parameters.size()), {}, {}, {}, {}};
    EstimationStatus status = EvaluateNullModel(at, estimate);
    if (status != EstimationStatus::Success) return status;
    at.parameters = parameters;
    if (!AllZero(parameters)) {
        status = at.Evaluate();
        if (status != EstimationStatus::Success) return status;
        at.Derive();
    }
    for (int k = 1;; ++k) {
        estimate.iterations = k;
        estimate.logLikelihood = at.logLikelihood;
        if (watch(k, at.logLikelihood, parameters)) return EstimationStatus::Stopped;
        const double before = at.logLikelihood;
        const std::optional<LuFactors> factors = LuFactors::Of(at.information, parameters.size());
        if (!factors) return EstimationStatus::Singular;
        at.step = at.gradient;
        factors->Solve(at.step);
        bool taken = false;
        status = TakeStep(at, before, taken);
        if (status != EstimationStatus::Success) return status;
        if (!taken && k == 1) return EstimationStatus::NoLikelihood;
        estimate.logLikelihood = at.logLikelihood;
        if (HasConverged(at, before, limits)) {
            model.Gradient(std::span{estimate.gradient}.first(parameters.size()));
            if (watch(k + 1, at.logLikelihood, parameters)) return EstimationStatus::Stopped;
            estimate.covariance = factors->Inverse();
            return EstimationStatus::Success;
        }
        at.Derive();
        estimate.gradient = at.gradient;
        if (k > limits.most) return EstimationStatus::NotConverged;
    }
}

} // namespace ozm::survival
