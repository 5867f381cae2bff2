#include "module/regression/parametric/Predictions.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ozm::survival {

Predictor::Predictor(const FittedTimes& fitted, const SquareMatrix& covariance,
                     std::span<const double> covariates, double z)
    : fitted_(fitted), z_(z), location_(fitted.Location(covariates)), variance_(0.0) {
    const std::size_t q = covariates.size();
    const auto a = [&](std::size_t k) { return k < q ? covariates[k] : 1.0; };
    for (std::size_t k = 0; k <= q; ++k) {
        for (std::size_t l = 0; l <= q; ++l)
            variance_ += a(k) * a(l) * covariance(k, l);
        if (fitted.HasSigma()) withSigma_ += a(k) * covariance(k, q + 1);
    }
    if (fitted.HasSigma()) ofSigma_ = covariance(q + 1, q + 1);
}

double Predictor::ErrorWith(double score) const {
    const double variance =
        fitted_.HasSigma() ? variance_ + 2.0 * score * withSigma_ + score * score * ofSigma_ : variance_;
    return std::sqrt(std::max(variance, 0.0)); // below 0 by rounding
}

Prediction Predictor::SurvivalAt(double time) const {
    const double score = fitted_.Score(time, location_);
    if (score == -std::numeric_limits<double>::infinity()) return {1.0, 0.0, 1.0, 1.0};
    const double logHazard = fitted_.LogHazard(score);
    const double hazard = std::exp(logHazard);
    const double error = fitted_.LogHazardSlope(score) * ErrorWith(score) / fitted_.Sigma();
    return {std::exp(-hazard), std::exp(logHazard - hazard) * error,
            std::exp(-std::exp(logHazard + z_ * error)), std::exp(-std::exp(logHazard - z_ * error))};
}

Prediction Predictor::TimeOf(double survival) const {
    const double score = fitted_.ScoreOfSurvival(survival);
    const double response = location_ + fitted_.Sigma() * score;
    const double error = ErrorWith(score);
    const double lower = response - z_ * error;
    const double upper = response + z_ * error;
    if (!fitted_.OfLogarithm()) return {response, error, lower, upper};
    return {std::exp(response), std::exp(response) * error, std::exp(lower), std::exp(upper)};
}

} // namespace ozm::survival
