#include "module/regression/estimation/ModelTests.h"

#include "module/regression/estimation/LuFactors.h"
#include "module/survdata/ChiSquareTail.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>

namespace ozm::survival {
namespace {

/// b'V^-1 b as z'R^-1 z with z = b / standard error, and R the correlations. The determinant of many strong
/// correlations is small without R being singular: it is raised by a factor to R, which z'R^-1 z then lacks.
double WaldStatistic(std::span<const double> estimates, const SquareMatrix& covariance) {
    constexpr double raise = 0x1p20;
    const auto error = [&covariance](std::size_t k) { return std::sqrt(covariance(k, k)); };
    SquareMatrix correlations;
    ParameterVector z{};
    for (std::size_t k = 0; k < estimates.size(); ++k) {
        z[k] = estimates[k] / error(k);
        for (std::size_t l = 0; l < estimates.size(); ++l)
            correlations(k, l) = raise * covariance(k, l) / (error(k) * error(l));
    }
    const std::optional<LuFactors> factors = LuFactors::Of(correlations, estimates.size());
    if (!factors) return std::numeric_limits<double>::quiet_NaN();
    ParameterVector solution = z;
    factors->Solve(solution);
    return raise * std::inner_product(z.begin(), z.end(), solution.begin(), 0.0);
}

} // namespace

ChiSquareStatistic ChiSquareOf(double value, int df) {
    return {value, df, ChiSquareUpperTail(value, df)};
}

ModelTests TestModel(std::span<const double> estimates, const NewtonEstimate& estimate) {
    const auto df = static_cast<int>(estimates.size());
    return {ChiSquareOf(2.0 * (estimate.logLikelihood - estimate.nullLogLikelihood), df),
            ChiSquareOf(estimate.nullScore, df),
            ChiSquareOf(WaldStatistic(estimates, estimate.covariance), df)};
}

std::vector<std::size_t> ParametersOffTheMaximum(std::span<const double> estimates,
                                                 const NewtonEstimate& estimate) {
    constexpr double threeDigits = 0.0005;
    const SquareMatrix& v = estimate.covariance;
    std::vector<std::size_t> off;
    for (std::size_t k = 0; k < estimates.size(); ++k) {
        double step = 0.0;
        for (std::size_t l = 0; l < estimates.size(); ++l)
            step += v(k, l) * estimate.gradient[l];
        const bool near =
            std::abs(step) <= threeDigits * std::max(std::abs(estimates[k]), std::sqrt(v(k, k)));
        if (!near) off.push_back(k); // also where there is no covariance
    }
    return off;
}

} // namespace ozm::survival
