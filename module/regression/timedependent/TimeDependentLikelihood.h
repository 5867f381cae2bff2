#pragma once

#include "module/regression/estimation/LikelihoodModel.h"
#include "module/regression/timedependent/CovariateTable.h"
#include "module/regression/timedependent/ValueAt.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace ozm::survival {

/// While a likelihood is computed: the share of it that is done. Returns whether the user wants to stop.
using EvaluationWatch = std::function<bool(double)>;

/// The partial log-likelihood of the proportional hazards model with covariates z(t) that depend on the time
/// (Cox 1972, J. Roy. Statist. Soc. B 34:187-220; Breslow's treatment of ties), its gradient and observed
/// information. Over the times t with d events, with those at risk R(t), all cases of the block whose time is
/// not below t, and w = exp(z(t)'b), S0 = sum of w over R(t), m = sum of w z(t) / S0:
///
///   L = sum of z(t)'b over the events - sum of d ln S0
///   U = sum of z(t) - m over the events
///   I = sum of d/S0 times the sum of w (z(t) - m)(z(t) - m)' over R(t)
///
/// There is no likelihood where a predictor z(t)'b is beyond 75 at any time at which a case leaves, events or
/// not, or where a covariate has no value then. The cost is proportional to the square of the cases.
///
/// Sums over R(t) of products of fixed covariates are formed case by case at the end, from each case's sum of
/// d w/S0; only covariates that change have products of their own at every time. Gradient and information are
/// computed with the likelihood: nearly every one that the iteration computes it goes on from.
class TimeDependentLikelihood final : public LikelihoodModel {
public:
    /// Of the sample its order, times and events are used. All must outlive it; `room` is for values of the
    /// covariates (`CovariateTable`). The watch is called at least after every few milliseconds.
    TimeDependentLikelihood(const OrderedSample& sample, TimeCovariates& covariates, std::span<double> room,
                            EvaluationWatch watch);

    [[nodiscard]] std::size_t Parameters() const override { return parameters_; }
    /// Once a likelihood was computed.
    [[nodiscard]] double NegligibleStep(std::size_t parameter) const override;
    /// NoLikelihood where |z(t)'b| is beyond 75, InvalidOperation without a value, Stopped. Most vectors show
    /// by their size that they are within.
    EstimationStatus Check(std::span<const double> parameters) override;
    EstimationStatus LogLikelihood(std::span<const double> parameters, double& value) override;
    void Derivatives(std::span<double> gradient, SquareMatrix& information) override;
    void Gradient(std::span<double> gradient) override;

    /// After InvalidOperation: what has no value.
    [[nodiscard]] const std::optional<ValueAt>& Missing() const { return missing_; }
    /// After NoLikelihood: the covariate with the largest part in the first predictor beyond the bound.
    [[nodiscard]] const std::optional<ValueAt>& Beyond() const { return beyond_; }

private:
    /// Goes through all times; computes likelihood and derivatives, or only tests the bounds.
    EstimationStatus Visit(std::span<const double> parameters, bool compute);
    void Predict(std::span<const double> parameters);
    /// Whether all predictors at a time are within the bound, by the largest values then.
    [[nodiscard]] bool SurelyWithin(std::size_t time, double largestFixed) const;
    void AddTime(const RiskTime& at, const RiskSetAt& set, const WeightedSums& sums);
    /// Why the likelihood ends at a time: the first case in the order of an evaluation says so.
    EstimationStatus WhyNot(const RiskTime& at, const CaseColumns& changing,
                            std::span<const double> parameters);
    void Clear();
    void SumInformation();

    const OrderedSample& sample_;
    TimeCovariates& covariates_;
    CovariateTable table_;
    EvaluationWatch watch_;
    RiskSetPass pass_;
    std::size_t parameters_;
    std::size_t stride_;            ///< of columns by case
    double pairs_ = 0.0;            ///< cases at risk, over all times
    std::vector<double> centres_;   ///< the mean of each fixed covariate
    std::vector<double> changingB_; ///< coefficients of the changing covariates
    std::vector<double> predictor_; ///< of the fixed covariates, by case
    bool finite_ = true;            ///< they are
    std::vector<double> weights_;   ///< at the time being visited
    std::vector<double> share_;     ///< as in `SpreadSums`
    std::vector<double> ofChanging_;
    std::vector<double> pairSums_;
    double logLikelihood_ = 0.0;
    ParameterVector gradient_{};
    SquareMatrix information_; ///< of the fixed covariates, while times are visited: sums of d m m'
    std::optional<ValueAt> missing_;
    std::optional<ValueAt> beyond_;
};

} // namespace ozm::survival
