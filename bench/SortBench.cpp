// The heap sort, whose order of tied cases reports show, against the method for large samples.

#include "bench/Sizes.h"
#include "bench/Times.h"
#include "module/survdata/PairedSort.h"

#include <benchmark/benchmark.h>

#include <numeric>
#include <vector>

namespace {

using korvana::bench::Kind;
using korvana::bench::Times;
using korvana::bench::upToTenMillion;
namespace survival = ozm::survival;

struct Sample {
    std::vector<double> keys;
    std::vector<std::int32_t> companions;

    Sample(Kind kind, std::size_t size) : keys(size), companions(size) {
        Times times(kind);
        for (double& key : keys)
            key = times.next().time;
        std::iota(companions.begin(), companions.end(), 1);
    }
};

/// Runs `sort` on a fresh copy of the same sample each time; the copying is not timed.
template <class Sort>
void sortFresh(benchmark::State& state, Kind kind, Sort sort) {
    const Sample sample(kind, static_cast<std::size_t>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        Sample copy = sample;
        state.ResumeTiming();
        sort(copy);
        benchmark::DoNotOptimize(copy.keys.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void heapSort(benchmark::State& state, Kind kind) {
    sortFresh(state, kind, [](Sample& s) { survival::HeapSortWithIndex(s.keys, s.companions); });
}

void sortTimes(benchmark::State& state, Kind kind) {
    Sample scratch(kind, static_cast<std::size_t>(state.range(0)));
    sortFresh(state, kind, [&](Sample& s) {
        survival::SortTimes(s.keys, s.companions, scratch.keys, scratch.companions);
    });
}

/// The cost of putting tied cases into the heap sort's order afterwards.
void restoreHeapOrder(benchmark::State& state, Kind kind) {
    Sample scratch(kind, static_cast<std::size_t>(state.range(0)));
    sortFresh(state, kind, [&](Sample& s) {
        survival::SortTimes(s.keys, s.companions, scratch.keys, scratch.companions);
        survival::RestoreHeapOrder(s.keys, s.companions, scratch.keys, scratch.companions);
    });
}

} // namespace

BENCHMARK_CAPTURE(heapSort, continuous, Kind::Continuous)->Apply(upToTenMillion);
BENCHMARK_CAPTURE(sortTimes, continuous, Kind::Continuous)->Apply(upToTenMillion);
BENCHMARK_CAPTURE(heapSort, ties, Kind::Ties)->Apply(upToTenMillion);
BENCHMARK_CAPTURE(sortTimes, ties, Kind::Ties)->Apply(upToTenMillion);
BENCHMARK_CAPTURE(restoreHeapOrder, ties, Kind::Ties)->Apply(upToTenMillion);
