#pragma once

#include "module/regression/cox/OrderedSample.h"
#include "module/regression/cox/RiskSetSums.h"
#include "module/regression/estimation/LikelihoodModel.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ozm::survival {

/// The partial log-likelihood of the proportional hazards model (Cox 1972, J. Roy. Statist. Soc. B
/// 34:187-220) with Breslow's treatment of ties (1974, Biometrics 30:89-99), its gradient and observed
/// information. With eta = x'b and w = exp(eta), over the groups of tied events, each with d events, a risk
/// set R of all cases of its block up to the group's last event, S0 = sum of w, S1 = sum of w x and S2 = sum
/// of w x x' over R:
///
///   L = sum of eta over the events - sum of d ln S0
///   U = sum of x over the events - sum of d S1/S0
///   I = sum of d (S2/S0 - (S1/S0)(S1/S0)')
///
/// A group ends at an event that is the last case of its block, or after which time falls; events whose group
/// does not end (the last case of the block is censored at their time) stay out of U and I, but not of L.
///
/// With a(i), the sum of d/S0 over the groups that have case i at risk, the sums over groups of d S1/S0 and
/// d S2/S0 are sums over cases of a w x and a w x x', which are formed in blocks of cases; only S1 is carried
/// along. The cost is proportional to cases times the square of the covariates.
class PartialLikelihood final : public LikelihoodModel {
public:
    /// The sample must outlive it, unchanged. Takes up to 49 bytes per case.
    explicit PartialLikelihood(const OrderedSample& sample);

    [[nodiscard]] std::size_t Parameters() const override { return sample_.covariates; }
    /// NoLikelihood where |eta| is beyond 250. Most vectors show by their size that it is not.
    EstimationStatus Check(std::span<const double> parameters) override;
    EstimationStatus LogLikelihood(std::span<const double> parameters, double& value) override;
    void Derivatives(std::span<double> gradient, SquareMatrix& information) override;
    void Gradient(std::span<double> gradient) override;

private:
    /// A group of tied events that ends.
    struct Group {
        std::int32_t last; ///< the event that ends it
        std::int32_t events;
        double perRoot; ///< 1 / sqrt(events)
    };

    /// The groups of a block, and which events are theirs.
    void FindGroups(std::size_t first, std::size_t end);
    EstimationStatus Predict(std::span<const double> parameters);
    /// The sum of d ln S0 over the groups; leaves d/S0 and its like at their ends.
    double SumOverGroups();
    void ExpectEvents();

    const OrderedSample& sample_;
    RiskSetKernels kernels_;
    ParameterVector largest_{}; ///< magnitude of each covariate
    std::vector<Group> groups_;
    std::vector<double> weight_; ///< as in `RiskSetTerms`
    std::vector<double> share_;  ///< d/S0 at the end of a group, else 0
    std::vector<double> meanRoot_;
    std::vector<double> expected_; ///< before: the sum of w over those at risk
    std::vector<std::uint8_t> observed_;
};

} // namespace ozm::survival
