// Life tables of times in memory: counting, the table, its medians and the twelve fits.

#include "bench/Times.h"
#include "module/lifetable/DistributionFits.h"
#include "module/lifetable/MedianLife.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace {

using korvana::bench::Case;
namespace survival = ozm::survival;

std::vector<Case> casesOf(std::int64_t size) {
    korvana::bench::Times times(korvana::bench::Kind::Continuous);
    std::vector<Case> cases;
    cases.reserve(static_cast<std::size_t>(size));
    for (std::int64_t i = 0; i < size; ++i)
        cases.push_back(times.next());
    return cases;
}

survival::IntervalCounts count(const std::vector<Case>& cases) {
    double largest = 0;
    for (const Case& one : cases)
        largest = std::max(largest, one.time);
    survival::Tabulation tabulation(survival::IntervalsByNumber(largest));
    for (const Case& one : cases)
        tabulation.Add(one.time, one.event);
    survival::IntervalCounts counts = tabulation.Counts();
    counts.DropEmptyEnd();
    return counts;
}

void fit(const survival::IntervalCounts& counts) {
    survival::LifeTable table;
    benchmark::DoNotOptimize(survival::ComputeLifeTable(counts, survival::Correction::On, table));
    benchmark::DoNotOptimize(survival::ComputeMedianLives(table));
    benchmark::DoNotOptimize(survival::FitDistributions(table));
}

/// From the times, in the order of the file.
void lifeTable(benchmark::State& state) {
    const auto cases = casesOf(state.range(0));
    for ([[maybe_unused]] auto _ : state)
        fit(count(cases));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// From the counts.
void twelveFits(benchmark::State& state) {
    const auto counts = count(casesOf(250'000));
    for ([[maybe_unused]] auto _ : state)
        fit(counts);
}

} // namespace

BENCHMARK(lifeTable)->Arg(250'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(twelveFits)->Unit(benchmark::kMicrosecond);
