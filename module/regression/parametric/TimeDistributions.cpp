#include "module/regression/parametric/TimeDistributions.h"

#include "module/regression/parametric/NormalHazard.h"
#include "module/survdata/NormalQuantile.h"

#include <cmath>
#include <numbers>
#include <numeric>

namespace ozm::survival {
namespace {

const double halfLogTwoPi = 0.5 * std::log(2.0 * std::numbers::pi);

} // namespace

double LogNormalTail(double z) {
    constexpr double asymptoticFrom = 35.0;
    if (z < -1.0) return std::log1p(-0.5 * std::erfc(-z / std::numbers::sqrt2));
    if (z <= asymptoticFrom) return std::log(0.5 * std::erfc(z / std::numbers::sqrt2));
    const double r = 1.0 / (z * z);
    return -0.5 * z * z - std::log(z) - halfLogTwoPi + std::log1p(-r * (1.0 - 3.0 * r * (1.0 - 5.0 * r)));
}

double FittedTimes::Location(std::span<const double> covariates) const {
    return std::inner_product(covariates.begin(), covariates.end(), parameters.begin(), Constant());
}

double FittedTimes::Score(double time, double location) const {
    return ((OfLogarithm() ? std::log(time) : time) - location) / Sigma();
}

double FittedTimes::ScoreOfSurvival(double survival) const {
    return HasSigma() ? -NormalQuantile(survival) : std::log(-std::log(survival));
}

double FittedTimes::LogHazard(double score) const {
    constexpr double surviving = -6.0; // from here down -ln S is 1 - S and half its square
    if (!HasSigma()) return score;
    if (score > surviving) return std::log(-LogNormalTail(score));
    const double logDeath = LogNormalTail(-score);
    return logDeath + 0.5 * std::exp(logDeath);
}

double FittedTimes::LogHazardSlope(double score) const {
    if (!HasSigma()) return 1.0;
    if (score > 0.0) return NormalHazard(score) * std::exp(-LogHazard(score));
    return std::exp(-0.5 * score * score - halfLogTwoPi - LogNormalTail(score) - LogHazard(score));
}

} // namespace ozm::survival
