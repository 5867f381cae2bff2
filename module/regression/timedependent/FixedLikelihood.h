#pragma once

#include "module/regression/cox/PartialLikelihood.h"
#include "module/regression/timedependent/TimeCovariates.h"
#include "module/regression/timedependent/ValueAt.h"

#include <optional>
#include <span>
#include <vector>

namespace ozm::survival {

/// The likelihood of `TimeDependentLikelihood` where no covariate changes with the time, at the cost of the
/// fixed model: it is that model's, with the tighter bound of the predictor. Covariates are taken less their
/// means, which changes the likelihood by nothing but rounding; the bound is of their values as they are.
class FixedLikelihood final : public LikelihoodModel {
public:
    /// Of the sample its order, times and events are used; it must outlive this. Takes up to 16 bytes per
    /// case and covariate, and 57 per case.
    FixedLikelihood(const OrderedSample& sample, TimeCovariates& covariates);
    FixedLikelihood(const FixedLikelihood&) = delete;
    FixedLikelihood& operator=(const FixedLikelihood&) = delete;

    [[nodiscard]] std::size_t Parameters() const override { return ordered_.covariates; }
    [[nodiscard]] double NegligibleStep(std::size_t parameter) const override;
    EstimationStatus Check(std::span<const double> parameters) override;
    EstimationStatus LogLikelihood(std::span<const double> parameters, double& value) override;
    void Derivatives(std::span<double> gradient, SquareMatrix& information) override;
    void Gradient(std::span<double> gradient) override;

    /// What has no value, if anything: every evaluation is then an InvalidOperation.
    [[nodiscard]] const std::optional<ValueAt>& Missing() const { return missing_; }
    /// After NoLikelihood: the covariate with the largest part in the first predictor beyond the bound.
    [[nodiscard]] const std::optional<ValueAt>& Beyond() const { return beyond_; }

private:
    std::vector<double> values_; ///< by covariate and case
    std::vector<double> centred_;
    OrderedSample ordered_;
    std::optional<ValueAt> missing_;
    std::optional<ValueAt> beyond_;
    std::vector<double> predictor_;
    PartialLikelihood likelihood_;
};

} // namespace ozm::survival
