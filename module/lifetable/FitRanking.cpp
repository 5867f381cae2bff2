#include "module/lifetable/FitRanking.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {

std::vector<RankedFit> RankFits(const DistributionFits& fits, const LifeTable& table,
                                double logLikelihoodOfData) {
    std::vector<RankedFit> ranked;
    for (std::size_t f = 0; f < distributions; ++f)
        for (std::size_t w = 0; w < weightings; ++w) {
            const DistributionFit& fit = fits.fits[f][w];
            RankedFit& place = ranked.emplace_back();
            place.family = static_cast<Distribution>(f);
            place.weighting = w;
            place.adequate = fit.IsShown() && std::isfinite(fit.logLikelihood);
            if (!place.adequate) continue;
            place.test = TestFit(fit, place.family, table, logLikelihoodOfData);
            place.akaike = 2.0 * ParameterCount(place.family) - 2.0 * fit.logLikelihood;
        }
    std::ranges::stable_sort(ranked, [](const RankedFit& one, const RankedFit& other) {
        if (one.adequate != other.adequate) return one.adequate;
        return one.adequate && one.akaike < other.akaike;
    });
    return ranked;
}

} // namespace ozm::survival
