#include "module/regression/parametric/FitCensoredNormal.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace ozm::survival {
namespace {

bool IsConfined(std::uint8_t status) {
    return status == CensoredCases::confined;
}

/// Rules of the data's shape: the first that they break.
EmStatus CheckSizes(const CensoredCases& cases, const EmLimits& limits, std::size_t parameters) {
    using enum EmStatus;
    const std::size_t n = cases.Cases();
    if (n == 0 || cases.status.size() != n) return WrongCases;
    if (std::ranges::any_of(cases.status, [](auto each) { return each > CensoredCases::confined; }))
        return WrongCases;
    if (std::ranges::any_of(cases.status, IsConfined) && cases.upper.size() != n) return WrongCases;
    if (parameters != cases.covariates + 2 || parameters > mostParameters) return WrongParameters;
    if (cases.covariates > 0 &&
        (cases.stride < n || cases.x.size() < (cases.covariates - 1) * cases.stride + n))
        return WrongCovariates;
    if (limits.tolerances.size() != parameters) return WrongTolerances;
    return Success;
}

} // namespace

EmStatus FitCensoredNormal(const CensoredCases& cases, const EmLimits& limits, const IterationWatch& watch,
                           std::span<double> parameters, int& iterations,
                           std::optional<CensoredNormal>& model) {
    using enum EmStatus;
    iterations = 0;
    model.reset();
    if (const EmStatus status = CheckSizes(cases, limits, parameters.size()); status != Success)
        return status;
    std::size_t known = 0;
    for (std::size_t i = 0; i < cases.Cases(); ++i) {
        known += static_cast<std::size_t>(cases.status[i] != CensoredCases::censored);
        if (IsConfined(cases.status[i]) && !cases.IsComplete(i) && !(cases.upper[i] > cases.y[i]))
            return BoundsReversed;
    }
    if (known < parameters.size()) return TooFewUncensored;
    model.emplace(cases);
    if (model->IsSingular()) return Singular;
    if (parameters.back() > 0.0)
        model->MoveTo(parameters);
    else if (!model->MoveToLeastSquares())
        return SingularStart;
    else
        model->Report(parameters);
    std::vector<double> next(parameters.size());
    while (iterations < limits.most) {
        model->Step();
        model->Report(next);
        if (!std::ranges::all_of(next, [](double each) { return std::isfinite(each); })) return NotFinite;
        bool settled = true;
        for (std::size_t k = 0; k < next.size(); ++k)
            settled &= std::abs(next[k] - parameters[k]) <= limits.tolerances[k];
        std::ranges::copy(next, parameters.begin());
        ++iterations;
        if (watch(iterations, std::numeric_limits<double>::quiet_NaN(), parameters)) return Stopped;
        if (settled) return Success;
    }
    return TooManyIterations;
}

} // namespace ozm::survival
