#pragma once

#include "module/regression/estimation/SquareMatrix.h"
#include "module/regression/parametric/TimeDistributions.h"

#include <span>

namespace ozm::survival {

/// A predicted quantity, its standard error and limits by the delta method.
struct Prediction {
    double value = 0.0;
    double error = 0.0;
    double lower = 0.0;
    double upper = 0.0;
};

/// What a fitted model predicts of somebody with given covariates. Uncertain are all parameters, sigma
/// included: with a = (x, 1) and V their covariance, the location a'b and sigma s together have the variance
/// (a, s)'V(a, s).
class Predictor {
public:
    /// `z` is the normal quantile of the confidence level. Refers to the model's parameters.
    Predictor(const FittedTimes& fitted, const SquareMatrix& covariance, std::span<const double> covariates,
              double z);

    [[nodiscard]] double Location() const { return location_; }
    [[nodiscard]] double LocationError() const { return ErrorWith(0.0); }

    /// The share that survives a time. The limits are those of ln(-ln S), so that they stay in 0..1; at a
    /// time that everybody survives they are 1.
    [[nodiscard]] Prediction SurvivalAt(double time) const;
    /// The time that a share of 0..1 survives. The limits are those of its logarithm, except in the normal
    /// model, where they are those of the time itself: there it may be below 0.
    [[nodiscard]] Prediction TimeOf(double survival) const;

private:
    [[nodiscard]] double ErrorWith(double score) const;

    FittedTimes fitted_;
    double z_;
    double location_;
    double variance_;        ///< of the location
    double withSigma_ = 0.0; ///< its covariance with sigma
    double ofSigma_ = 0.0;   ///< the variance of sigma
};

} // namespace ozm::survival
