#include "module/ksample/WeightedLogRank.h"

#include "module/survdata/ChiSquareTail.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <utility>

namespace ozm::survival {
namespace {

/// The covariance while groups shrink. Between two changes of n(g) or n(h), V(g,h) grows by n(g) n(h) times
/// the growth of B = sum of c / n^2, and V(g,g) besides by n(g) times that of A = sum of c / n, where c = w^2
/// d (n - d) / (n - 1). So a term is brought up to date when one of its groups changes, not at each failure.
class Covariance {
public:
    explicit Covariance(std::span<const double> atRisk)
        : atRisk_(atRisk), matrix_(atRisk.size() * atRisk.size()), sumA_(atRisk.size()),
          sumB_(matrix_.size()) {}

    void AddFailures(double n, double d, double weight) {
        if (n <= 1.0) return;
        const double c = weight * weight * d * (n - d) / (n - 1.0);
        a_ += c / n;
        b_ += c / (n * n);
    }
    /// Before the number at risk in a group changes.
    void BringUpToDate(std::size_t g) {
        const std::size_t k = atRisk_.size();
        matrix_[g * k + g] += (a_ - sumA_[g]) * atRisk_[g];
        sumA_[g] = a_;
        for (std::size_t h = 0; h < k; ++h) {
            double& term = sumB_[std::min(g, h) * k + std::max(g, h)];
            matrix_[std::min(g, h) * k + std::max(g, h)] -= (b_ - term) * (atRisk_[g] * atRisk_[h]);
            term = b_;
        }
    }
    /// At the end, when nobody is at risk any more.
    [[nodiscard]] std::vector<double> Take() {
        const std::size_t k = atRisk_.size();
        for (std::size_t g = 0; g < k; ++g)
            for (std::size_t h = 0; h < g; ++h)
                matrix_[g * k + h] = matrix_[h * k + g];
        return std::move(matrix_);
    }

private:
    std::span<const double> atRisk_;
    std::vector<double> matrix_;
    std::vector<double> sumA_;
    std::vector<double> sumB_;
    double a_ = 0.0;
    double b_ = 0.0;
};

double WeightAt(LogRankWeight weight, double atRisk, double survival) {
    switch (weight) {
    case LogRankWeight::TaroneWare:
        return std::sqrt(atRisk);
    case LogRankWeight::PetoPeto:
        return survival;
    case LogRankWeight::LogRank:
        break;
    }
    return 1.0;
}

ChiSquareTest Statistic(double chiSquare, int df) {
    if (df < 1) return {};
    return {chiSquare, df, ChiSquareUpperTail(chiSquare, df)};
}

std::size_t GroupOf(const PooledObservation& o) {
    return static_cast<std::size_t>(o.group) - 1;
}

/// Holm's step-down adjustment of the pairs that have a probability.
void Adjust(std::vector<PairTest>& pairs) {
    std::vector<PairTest*> order;
    for (PairTest& pair : pairs)
        if (pair.test.df > 0) order.push_back(&pair);
    std::sort(order.begin(), order.end(), [](const PairTest* a, const PairTest* b) {
        return std::pair{a->test.p, a} < std::pair{b->test.p, b};
    });
    double least = 0.0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        least = std::max(least, std::min(1.0, static_cast<double>(order.size() - i) * order[i]->test.p));
        order[i]->adjusted = least;
    }
}

} // namespace

WeightedLogRank ComputeWeightedLogRank(const PooledSample& sample, LogRankWeight weight) {
    const std::size_t k = sample.groups.size();
    WeightedLogRank sums{
        .observed = std::vector<double>(k), .expected = std::vector<double>(k), .covariance = {}};
    std::vector<double> atRisk(k);
    for (std::size_t g = 0; g < k; ++g)
        atRisk[g] = sample.groups[g].All();
    Covariance covariance(atRisk);
    const auto& all = sample.observations;
    double survival = 1.0;
    for (std::size_t begin = 0; begin < all.size();) {
        // Failures come first among equal times.
        std::size_t failures = begin;
        while (failures < all.size() && all[failures].time == all[begin].time && all[failures].Failed())
            ++failures;
        std::size_t end = failures;
        while (end < all.size() && all[end].time == all[begin].time)
            ++end;
        if (failures > begin) {
            const auto n = static_cast<double>(all.size() - begin);
            const auto d = static_cast<double>(failures - begin);
            const double w = WeightAt(weight, n, survival);
            for (std::size_t g = 0; g < k; ++g)
                sums.expected[g] += w * (d * atRisk[g] / n);
            for (std::size_t i = begin; i < failures; ++i)
                sums.observed[GroupOf(all[i])] += w;
            covariance.AddFailures(n, d, w);
            survival *= (n - d) / n;
        }
        for (; begin < end; ++begin) {
            covariance.BringUpToDate(GroupOf(all[begin]));
            atRisk[GroupOf(all[begin])] -= 1.0;
        }
    }
    sums.covariance = covariance.Take();
    return sums;
}

ChiSquareTest TestOfDifferences(const WeightedLogRank& sums) {
    // V is singular by itself, as its rows add up to 0: the last group is left out. Elimination without
    // exchange of rows serves a positive semidefinite matrix; a row that vanishes depends on those above it.
    const std::size_t k = sums.Groups();
    std::vector<double> v = sums.covariance;
    std::vector<double> rest(k);
    for (std::size_t g = 0; g < k; ++g)
        rest[g] = sums.observed[g] - sums.expected[g];
    double chiSquare = 0.0;
    int df = 0;
    for (std::size_t g = 0; g + 1 < k; ++g) {
        const double pivot = v[g * k + g];
        if (!(pivot > 1e-9 * sums.covariance[g * k + g])) continue;
        ++df;
        chiSquare += rest[g] * rest[g] / pivot;
        for (std::size_t h = g + 1; h + 1 < k; ++h) {
            const double factor = v[g * k + h] / pivot;
            rest[h] -= factor * rest[g];
            for (std::size_t j = h; j + 1 < k; ++j)
                v[h * k + j] -= factor * v[g * k + j];
        }
    }
    return Statistic(chiSquare, df);
}

ChiSquareTest TestOfTrend(const WeightedLogRank& sums, std::span<const double> scores) {
    // The variance does not change when a constant is taken off the scores, but its rounding does.
    const std::size_t k = sums.Groups();
    const double middle = std::accumulate(scores.begin(), scores.end(), 0.0) / static_cast<double>(k);
    double difference = 0.0;
    double variance = 0.0;
    double scale = 0.0;
    for (std::size_t g = 0; g < k; ++g) {
        const double score = scores[g] - middle;
        difference += score * (sums.observed[g] - sums.expected[g]);
        for (std::size_t h = 0; h < k; ++h)
            variance += score * (scores[h] - middle) * sums.covariance[g * k + h];
        scale += score * score * sums.covariance[g * k + g];
    }
    return variance > 1e-12 * scale ? Statistic(difference * difference / variance, 1) : ChiSquareTest{};
}

std::vector<PairTest> ComparePairs(const PooledSample& sample) {
    const std::size_t k = sample.groups.size();
    std::vector<std::vector<PooledObservation>> groups(k);
    for (const PooledObservation& o : sample.observations)
        groups[GroupOf(o)].push_back(o);
    std::vector<PairTest> pairs;
    std::vector<PooledObservation> both;
    for (std::size_t g = 0; g < k; ++g) {
        for (PooledObservation& o : groups[g])
            o.group = 1;
        for (std::size_t h = g + 1; h < k; ++h) {
            for (PooledObservation& o : groups[h])
                o.group = 2;
            both.clear();
            std::merge(groups[g].begin(), groups[g].end(), groups[h].begin(), groups[h].end(),
                       std::back_inserter(both), PooledBefore);
            const std::array counts{sample.groups[g], sample.groups[h]};
            const WeightedLogRank sums = ComputeWeightedLogRank({both, counts}, LogRankWeight::LogRank);
            pairs.push_back({.first = static_cast<int>(g),
                             .second = static_cast<int>(h),
                             .test = TestOfDifferences(sums)});
        }
    }
    Adjust(pairs);
    return pairs;
}

} // namespace ozm::survival
