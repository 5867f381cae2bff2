#include "module/regression/cox/Concordance.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace ozm::survival {
namespace {

/// How many of the cases put into it have a predictor below, or equal to, another one: a binary indexed tree
/// over the ranks of the predictors (Fenwick 1994, Software: Practice and Experience 24:327-336).
class RankCounts {
public:
    explicit RankCounts(std::size_t ranks) : counts_(ranks + 1) {}
    void Add(std::size_t rank) {
        ++all_;
        for (std::size_t i = rank + 1; i < counts_.size(); i += i & (~i + 1))
            ++counts_[i];
    }
    [[nodiscard]] double Below(std::size_t rank) const {
        std::int64_t sum = 0;
        for (std::size_t i = rank; i > 0; i -= i & (~i + 1))
            sum += counts_[i];
        return static_cast<double>(sum);
    }
    [[nodiscard]] double Equal(std::size_t rank) const { return Below(rank + 1) - Below(rank); }
    [[nodiscard]] double All() const { return static_cast<double>(all_); }

private:
    std::vector<std::int64_t> counts_;
    std::int64_t all_ = 0;
};

/// The pairs of one case: their number, and what they score.
struct PairsOfCase {
    double pairs = 0.0;
    double score = 0.0;
};

/// A stratum.
struct Block {
    const OrderedSample& sample;
    std::size_t begin;
    std::size_t end;
    std::vector<std::size_t> ranks; ///< of the predictors, from `begin` on; equal ones have the same
};

std::vector<std::size_t> RanksOf(std::span<const double> predictors) {
    std::vector<double> sorted(predictors.begin(), predictors.end());
    std::ranges::sort(sorted);
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    std::vector<std::size_t> ranks;
    for (const double each : predictors)
        ranks.push_back(static_cast<std::size_t>(std::ranges::lower_bound(sorted, each) - sorted.begin()));
    return ranks;
}

/// The cases of a time that died, from the end of those of that time.
std::size_t DeathsBegin(const Block& block, std::size_t begin, std::size_t end) {
    while (begin < end && block.sample.complete[begin] == 0)
        ++begin;
    return begin;
}

/// Pairs of each death with those who outlived it: from the longest time down.
void PairDeaths(const Block& block, Concordance& found, std::span<PairsOfCase> cases) {
    RankCounts later(block.ranks.size());
    for (std::size_t i = block.begin; i < block.end;) {
        std::size_t end = i + 1;
        while (end < block.end && block.sample.times[end] == block.sample.times[i])
            ++end;
        const std::size_t deaths = DeathsBegin(block, i, end);
        for (; i < deaths; ++i)
            later.Add(block.ranks[i - block.begin]);
        for (std::size_t death = deaths; death < end; ++death) {
            const std::size_t rank = block.ranks[death - block.begin];
            const double below = later.Below(rank);
            const double equal = later.Equal(rank);
            found.concordant += below;
            found.tied += equal;
            found.discordant += later.All() - below - equal;
            cases[death].pairs += later.All();
            cases[death].score += below + equal / 2.0;
        }
        for (; i < end; ++i)
            later.Add(block.ranks[i - block.begin]);
    }
}

/// Pairs of each case with the deaths that it outlived: from the shortest time up.
void PairSurvivors(const Block& block, std::span<PairsOfCase> cases) {
    RankCounts deaths(block.ranks.size());
    for (std::size_t end = block.end; end > block.begin;) {
        std::size_t begin = end - 1;
        while (begin > block.begin && block.sample.times[begin - 1] == block.sample.times[end - 1])
            --begin;
        const std::size_t first = DeathsBegin(block, begin, end);
        const auto pair = [&](std::size_t from, std::size_t to) {
            for (std::size_t i = from; i < to; ++i) {
                const std::size_t rank = block.ranks[i - block.begin];
                const double equal = deaths.Equal(rank);
                cases[i].pairs += deaths.All();
                cases[i].score += deaths.All() - deaths.Below(rank) - equal / 2.0;
            }
        };
        pair(first, end);
        for (std::size_t i = first; i < end; ++i)
            deaths.Add(block.ranks[i - block.begin]);
        pair(begin, first);
        end = begin;
    }
}

} // namespace

Concordance ComputeConcordance(const OrderedSample& sample, std::span<const double> predictors) {
    Concordance found;
    std::vector<PairsOfCase> cases(sample.cases);
    std::size_t begin = 0;
    for (const std::int32_t size : sample.blocks) {
        const std::size_t end = begin + static_cast<std::size_t>(size);
        const Block block{sample, begin, end, RanksOf(predictors.subspan(begin, end - begin))};
        PairDeaths(block, found, cases);
        PairSurvivors(block, cases);
        begin = end;
    }
    found.value = found.Pairs() > 0.0 ? (found.concordant + found.tied / 2.0) / found.Pairs()
                                      : std::numeric_limits<double>::quiet_NaN();
    double squares = 0.0;
    for (const PairsOfCase& of : cases) {
        const double derivative = of.score - found.value * of.pairs;
        squares += derivative * derivative;
    }
    found.error = std::sqrt(squares) / found.Pairs();
    return found;
}

} // namespace ozm::survival
