// The tests of several samples on cases in memory: sorting, Gehan's scores with their test, the log-rank
// test.

#include "bench/Times.h"
#include "module/groups/GehanRanks.h"
#include "module/ksample/KSampleTest.h"
#include "module/ksample/WeightedLogRank.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

namespace survival = ozm::survival;

/// As many cases as a comparison takes, in so many groups, unsorted.
struct Cases {
    std::vector<survival::PooledObservation> observations;
    std::vector<survival::GroupCount> groups;

    explicit Cases(std::int64_t count) : groups(static_cast<std::size_t>(count)) {
        korvana::bench::Times times(korvana::bench::Kind::Continuous);
        for (int i = 0; i < 32767; ++i) {
            const auto [time, event] = times.next();
            const auto g = static_cast<std::size_t>(i) * 7919 % groups.size();
            observations.push_back(
                {time, static_cast<std::int16_t>(event ? 1 : 0), static_cast<std::int16_t>(g + 1)});
            ++(event ? groups[g].uncensored : groups[g].censored);
        }
    }
    [[nodiscard]] survival::PooledSample sample() const { return {observations, groups}; }
};

void sortPooled(benchmark::State& state) {
    const Cases cases(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        auto sorted = cases.observations;
        survival::SortPooled(sorted);
        benchmark::DoNotOptimize(sorted.data());
    }
}

void gehanTest(benchmark::State& state) {
    Cases cases(state.range(0));
    survival::SortPooled(cases.observations);
    std::vector<survival::GehanRanks> ranks(cases.observations.size());
    std::vector<double> scores(cases.observations.size());
    std::vector<double> sums(cases.groups.size());
    for ([[maybe_unused]] auto _ : state) {
        survival::ComputeGehanScores(cases.observations, ranks, scores);
        survival::AddUpScores(cases.sample(), scores, sums);
        benchmark::DoNotOptimize(survival::ComputeKSampleTest(cases.sample(), scores, sums));
    }
}

void logRankTest(benchmark::State& state) {
    Cases cases(state.range(0));
    survival::SortPooled(cases.observations);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(survival::TestOfDifferences(
            survival::ComputeWeightedLogRank(cases.sample(), survival::LogRankWeight::LogRank)));
}

void pairs(benchmark::State& state) {
    Cases cases(state.range(0));
    survival::SortPooled(cases.observations);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(survival::ComparePairs(cases.sample()));
}

} // namespace

BENCHMARK(sortPooled)->Arg(2)->Arg(10)->Arg(250)->Unit(benchmark::kMillisecond);
BENCHMARK(gehanTest)->Arg(2)->Arg(10)->Arg(250)->Unit(benchmark::kMillisecond);
BENCHMARK(logRankTest)->Arg(2)->Arg(10)->Arg(250)->Unit(benchmark::kMillisecond);
BENCHMARK(pairs)->Arg(2)->Arg(10)->Arg(250)->Unit(benchmark::kMillisecond);
