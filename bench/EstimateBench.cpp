// The numbers of the product-limit estimate on sorted times.

#include "bench/Sizes.h"
#include "bench/Times.h"
#include "module/kaplan/ConfidenceLimits.h"
#include "module/kaplan/ProductLimit.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace {

using korvana::bench::Kind;
using korvana::bench::Times;
using korvana::bench::upToTenMillion;
namespace survival = ozm::survival;

/// Sorted times and room for their estimate.
struct Curve {
    std::vector<double> uncensored;
    std::vector<double> censored;
    std::vector<std::int32_t> ranks;
    std::vector<double> survival;
    std::vector<double> error;

    explicit Curve(std::int64_t size) {
        Times times(Kind::Continuous);
        for (std::int64_t i = 0; i < size; ++i) {
            const auto [time, event] = times.next();
            (event ? uncensored : censored).push_back(time);
        }
        std::sort(uncensored.begin(), uncensored.end());
        std::sort(censored.begin(), censored.end());
        ranks.resize(uncensored.size());
        survival.resize(uncensored.size());
        error.resize(uncensored.size());
    }

    void estimate() {
        survival::ComputeProductLimit(uncensored, censored, ranks, survival, error);
        benchmark::DoNotOptimize(error.data());
        benchmark::ClobberMemory();
    }
};

void productLimit(benchmark::State& state) {
    Curve curve(state.range(0));
    for ([[maybe_unused]] auto _ : state)
        curve.estimate();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void percentiles(benchmark::State& state) {
    Curve curve(state.range(0));
    curve.estimate();
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(survival::ComputeSurvivalPercentiles(curve.uncensored, curve.survival));
        benchmark::DoNotOptimize(
            survival::ComputePercentileLimits(curve.uncensored, curve.survival, curve.error, 1.96));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(productLimit)->Apply(upToTenMillion);
BENCHMARK(percentiles)->Apply(upToTenMillion);
