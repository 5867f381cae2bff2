#include "module/regression/parametric/ParametricResiduals.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {

ParametricResiduals ComputeParametricResiduals(const FittedTimes& fitted, std::span<const double> times,
                                               std::span<const std::uint8_t> complete,
                                               std::span<const double> x, std::size_t stride) {
    const std::size_t cases = times.size();
    ParametricResiduals residuals;
    residuals.location.assign(cases, fitted.Constant());
    for (std::size_t k = 0; k < fitted.Covariates(); ++k)
        for (std::size_t i = 0; i < cases; ++i)
            residuals.location[i] += fitted.parameters[k] * x[k * stride + i];
    residuals.score.resize(cases);
    residuals.coxSnell.resize(cases);
    residuals.martingale.resize(cases);
    residuals.deviance.resize(cases);
    for (std::size_t i = 0; i < cases; ++i) {
        const double event = complete[i] != 0 ? 1.0 : 0.0;
        const double score = fitted.Score(times[i], residuals.location[i]);
        const double logHazard = fitted.LogHazard(score);
        const double hazard = std::exp(logHazard);
        const double martingale = event - hazard;
        const double squared = -2.0 * (martingale + (complete[i] != 0 ? logHazard : 0.0));
        residuals.score[i] = score;
        residuals.coxSnell[i] = hazard;
        residuals.martingale[i] = martingale;
        residuals.deviance[i] = std::copysign(std::sqrt(std::max(squared, 0.0)), martingale);
    }
    return residuals;
}

} // namespace ozm::survival
