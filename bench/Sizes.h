#pragma once

#include <benchmark/benchmark.h>

namespace korvana::bench {

/// From ten thousand cases to ten million, in milliseconds.
inline void upToTenMillion(benchmark::internal::Benchmark* one) {
    one->RangeMultiplier(10)->Range(10'000, 10'000'000)->Unit(benchmark::kMillisecond);
}

} // namespace korvana::bench
