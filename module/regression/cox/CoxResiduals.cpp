#include "module/regression/cox/CoxResiduals.h"

#include <cmath>

namespace ozm::survival {

CoxResiduals ComputeCoxResiduals(const OrderedSample& sample, const RiskSets& sets) {
    CoxResiduals residuals{std::vector<double>(sample.cases), std::vector<double>(sample.cases)};
    std::size_t set = sets.Count();
    std::size_t end = sample.cases;
    for (std::size_t block = sample.blocks.size(); block-- > 0;) {
        const std::size_t begin = end - static_cast<std::size_t>(sample.blocks[block]);
        double hazard = 0.0; // cumulative, up to the time of the case
        for (std::size_t i = end; i-- > begin;) {
            // A case is at risk in all sets that end with it or after it.
            while (set > 0 && sets[set - 1].block == block &&
                   sets[set - 1].first + sets[set - 1].events > i) {
                --set;
                hazard += sets.Hazard(set);
            }
            const double observed = sample.complete[i] != 0 ? 1.0 : 0.0;
            const double m = observed - hazard * std::exp(sets.Predictors()[i]);
            const double log = observed > 0.0 ? std::log(observed - m) : 0.0;
            residuals.martingale[i] = m;
            residuals.deviance[i] = std::copysign(std::sqrt(std::fmax(-2.0 * (m + observed * log), 0.0)), m);
        }
        end = begin;
    }
    return residuals;
}

SchoenfeldResiduals ComputeSchoenfeldResiduals(const OrderedSample& sample, const RiskSets& sets) {
    SchoenfeldResiduals residuals{sample.covariates, {}, {}};
    for (std::size_t s = 0; s < sets.Count(); ++s)
        for (std::size_t i = sets[s].first; i < sets[s].first + sets[s].events; ++i) {
            residuals.places.push_back(i);
            for (std::size_t k = 0; k < sample.covariates; ++k)
                residuals.values.push_back(sample.Column(k)[i] - sets.Mean(s)[k]);
        }
    return residuals;
}

SchoenfeldResiduals Scaled(const SchoenfeldResiduals& residuals, const SquareMatrix& covariance,
                           std::span<const double> estimates) {
    SchoenfeldResiduals scaled = residuals;
    const auto deaths = static_cast<double>(residuals.Deaths());
    for (std::size_t d = 0; d < residuals.Deaths(); ++d)
        for (std::size_t k = 0; k < residuals.covariates; ++k) {
            double sum = 0.0;
            for (std::size_t l = 0; l < residuals.covariates; ++l)
                sum += covariance(k, l) * residuals.Row(d)[l];
            scaled.Row(d)[k] = deaths * sum + estimates[k];
        }
    return scaled;
}

} // namespace ozm::survival
