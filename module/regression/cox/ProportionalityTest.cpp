#include "module/regression/cox/ProportionalityTest.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace ozm::survival {
namespace {

double Correlation(std::span<const double> ranks, const SchoenfeldResiduals& residuals,
                   const SquareMatrix& covariance, std::size_t k) {
    std::vector<double> scaled(ranks.size());
    double mean = 0.0;
    for (std::size_t d = 0; d < ranks.size(); ++d) {
        for (std::size_t l = 0; l < residuals.covariates; ++l)
            scaled[d] += covariance(k, l) * residuals.Row(d)[l];
        mean += scaled[d] / static_cast<double>(ranks.size());
    }
    double xy = 0.0;
    double xx = 0.0;
    double yy = 0.0;
    for (std::size_t d = 0; d < ranks.size(); ++d) {
        xy += ranks[d] * (scaled[d] - mean);
        xx += ranks[d] * ranks[d];
        yy += (scaled[d] - mean) * (scaled[d] - mean);
    }
    return xy / std::sqrt(xx * yy);
}

} // namespace

std::vector<double> RanksOfDeaths(const OrderedSample& sample, const SchoenfeldResiduals& residuals) {
    std::vector<std::size_t> order(residuals.Deaths());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto time = [&](std::size_t death) { return sample.times[residuals.places[death]]; };
    std::ranges::sort(order, {}, time);
    std::vector<double> ranks(order.size());
    for (std::size_t i = 0; i < order.size();) {
        std::size_t end = i + 1;
        while (end < order.size() && time(order[end]) == time(order[i]))
            ++end;
        for (std::size_t tied = i; tied < end; ++tied)
            ranks[order[tied]] = (static_cast<double>(i + 1) + static_cast<double>(end)) / 2.0;
        i = end;
    }
    return ranks;
}

ProportionalityTest TestProportionality(const OrderedSample& sample, const SchoenfeldResiduals& residuals,
                                        const SquareMatrix& covariance) {
    const std::size_t covariates = residuals.covariates;
    std::vector<double> ranks = RanksOfDeaths(sample, residuals);
    for (double& rank : ranks) // centred: mid-ranks have the mean of the ranks
        rank -= (static_cast<double>(ranks.size()) + 1.0) / 2.0;
    double squares = 0.0;
    ParameterVector sum{};
    for (std::size_t d = 0; d < ranks.size(); ++d) {
        squares += ranks[d] * ranks[d];
        for (std::size_t k = 0; k < covariates; ++k)
            sum[k] += ranks[d] * residuals.Row(d)[k];
    }
    const double scale = squares > 0.0 ? static_cast<double>(ranks.size()) / squares : 0.0;
    ProportionalityTest test;
    double overall = 0.0;
    for (std::size_t k = 0; k < covariates; ++k) {
        double product = 0.0;
        for (std::size_t l = 0; l < covariates; ++l)
            product += covariance(k, l) * sum[l];
        test.covariates.push_back(ChiSquareOf(scale * product * product / covariance(k, k), 1));
        test.correlation.push_back(Correlation(ranks, residuals, covariance, k));
        overall += sum[k] * product;
    }
    test.overall = ChiSquareOf(scale * overall, static_cast<int>(covariates));
    return test;
}

} // namespace ozm::survival
