#include "module/regression/cox/RiskSets.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {

RiskSets::RiskSets(const OrderedSample& sample, std::span<const double> estimates, double constant)
    : covariates_(sample.covariates), predictors_(sample.cases) {
    // Sums are about the covariates of the first case: small differences of large values keep their digits.
    ParameterVector origin{};
    double predictor = -constant;
    for (std::size_t k = 0; k < covariates_ && sample.cases > 0; ++k) {
        origin[k] = sample.Column(k)[0];
        predictor += origin[k] * estimates[k];
    }
    std::ranges::fill(predictors_, predictor);
    for (std::size_t k = 0; k < covariates_; ++k) {
        const double* const column = sample.Column(k);
        for (std::size_t i = 0; i < sample.cases; ++i)
            predictors_[i] += (column[i] - origin[k]) * estimates[k];
    }
    std::size_t i = 0;
    for (std::size_t block = 0; block < sample.blocks.size(); ++block) {
        const std::size_t begin = i;
        const std::size_t end = begin + static_cast<std::size_t>(sample.blocks[block]);
        RiskSet set;
        ParameterVector s1{};
        for (; i < end; ++i) {
            const double w = std::exp(predictors_[i]);
            set.weights += w;
            for (std::size_t k = 0; k < covariates_; ++k)
                s1[k] += w * (sample.Column(k)[i] - origin[k]);
            if (sample.complete[i] == 0) continue;
            if (set.events++ == 0) set.first = i;
            if (i + 1 != end && !(sample.times[i + 1] < sample.times[i])) continue;
            set.time = sample.times[i];
            set.block = block;
            set.atRisk = i + 1 - begin;
            sets_.push_back(set);
            for (std::size_t k = 0; k < covariates_; ++k)
                means_.push_back(origin[k] + s1[k] / set.weights);
            set.events = 0;
        }
    }
}

} // namespace ozm::survival
