#include "module/regression/cox/CoxSurvival.h"

#include <cmath>

namespace ozm::survival {
namespace {

double QuadraticForm(const SquareMatrix& matrix, std::span<const double> q) {
    double sum = 0.0;
    for (std::size_t k = 0; k < q.size(); ++k)
        for (std::size_t l = 0; l < q.size(); ++l)
            sum += q[k] * matrix(k, l) * q[l];
    return sum;
}

} // namespace

std::vector<CoxSurvivalPoint> CoxSurvival(const RiskSets& sets, std::size_t block,
                                          std::span<const double> covariates, double predictor,
                                          const SquareMatrix& covariance, double z) {
    std::vector<CoxSurvivalPoint> points;
    const double ratio = std::exp(predictor);
    double baseline = 0.0;
    double counting = 0.0; // sum of d/S0^2
    ParameterVector q{};
    for (std::size_t i = sets.Count(); i-- > 0;) {
        const RiskSet& set = sets[i];
        if (set.block != block) continue;
        const double hazard = sets.Hazard(i);
        baseline += hazard;
        counting += hazard / set.weights;
        for (std::size_t k = 0; k < covariates.size(); ++k)
            q[k] += (covariates[k] - sets.Mean(i)[k]) * hazard;
        CoxSurvivalPoint& point = points.emplace_back();
        point.time = set.time;
        point.events = set.events;
        point.atRisk = set.atRisk;
        point.hazard = ratio * hazard;
        point.cumulativeHazard = ratio * baseline;
        point.cumulativeError =
            ratio * std::sqrt(counting + QuadraticForm(covariance, std::span{q}.first(covariates.size())));
        point.survival = std::exp(-point.cumulativeHazard);
        const double factor = std::exp(z * point.cumulativeError / point.cumulativeHazard);
        point.lower = std::exp(-point.cumulativeHazard * factor);
        point.upper = std::exp(-point.cumulativeHazard / factor);
    }
    return points;
}

} // namespace ozm::survival
