#pragma once

#include "module/regression/estimation/SquareMatrix.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace ozm::survival {

/// How an evaluation or an estimation ended. The numbers are known to users.
enum class EstimationStatus : std::int16_t {
    Success = 0,
    Stopped = 4,
    Singular = 101,
    NotConverged = 102,
    NoLikelihood = 103,     ///< cannot be computed for these parameters
    InvalidOperation = 200, ///< in an expression of a covariate
};

/// A model whose parameters are estimated by Newton's method.
class LikelihoodModel {
public:
    virtual ~LikelihoodModel() = default;

    [[nodiscard]] virtual std::size_t Parameters() const = 0;
    /// A step of a parameter that is not longer is what rounding leaves of 0, on the parameter's scale.
    [[nodiscard]] virtual double NegligibleStep(std::size_t /*parameter*/) const { return 0.0; }
    /// Whether there is a log-likelihood at a vector, in less time than it takes to compute it: the status
    /// that `LogLikelihood` would have.
    virtual EstimationStatus Check(std::span<const double> parameters) = 0;
    /// The log-likelihood at a vector; NoLikelihood or InvalidOperation where there is none.
    virtual EstimationStatus LogLikelihood(std::span<const double> parameters, double& value) = 0;
    /// Gradient and observed information at the vector whose log-likelihood was computed last, successfully.
    virtual void Derivatives(std::span<double> gradient, SquareMatrix& information) = 0;
    /// The gradient alone, there, in less time.
    virtual void Gradient(std::span<double> gradient) = 0;
};

} // namespace ozm::survival
