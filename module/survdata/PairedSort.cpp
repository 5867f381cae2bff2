#include "module/survdata/PairedSort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <utility>

namespace ozm::survival {
namespace {

/// How many steps pass between two stop tests: some hundred microseconds.
constexpr std::size_t stepsPerPoll = std::size_t{1} << 14;

/// Below this many entries the heap sort is fast enough and its order exact.
constexpr std::size_t radixFrom = 20000;

// Positions count from 1 here, as in the usual statement of the steps; element k is at index k - 1.
template <class Companion>
Status HeapSort(std::span<double> keys, std::span<Companion> companions, StopPoll stop) {
    const std::size_t n = keys.size();
    if (n < 2) return Status::Success;
    const auto key = [&](std::size_t k) -> double& { return keys[k - 1]; };
    const auto companion = [&](std::size_t k) -> Companion& { return companions[k - 1]; };

    std::size_t l = n / 2 + 1;
    std::size_t ir = n;
    for (std::size_t step = 1;; ++step) {
        if (step % stepsPerPoll == 0 && stop()) return Status::Stopped;
        double t = 0.0;
        Companion tc{};
        if (l > 1) {
            --l;
            t = key(l);
            tc = companion(l);
        } else {
            t = key(ir);
            tc = companion(ir);
            key(ir) = key(1);
            companion(ir) = companion(1);
            --ir;
            if (ir == 1) {
                key(1) = t;
                companion(1) = tc;
                return Status::Success;
            }
        }
        std::size_t i = l;
        std::size_t j = 2 * l;
        while (j <= ir) {
            if (j < ir && key(j + 1) > key(j)) ++j;
            if (!(key(j) > t)) break;
            key(i) = key(j);
            companion(i) = companion(j);
            i = j;
            j *= 2;
        }
        key(i) = t;
        companion(i) = tc;
    }
}

/// Bit patterns whose unsigned order is that of the numbers; adding 0 makes -0 and 0 one key.
std::uint64_t OrderedBits(double x) {
    const auto pattern = std::bit_cast<std::uint64_t>(x + 0.0);
    const std::uint64_t negative = pattern >> 63;
    return pattern ^ (negative != 0 ? ~std::uint64_t{0} : std::uint64_t{1} << 63);
}

std::uint32_t OrderedBits(std::int32_t x) {
    return static_cast<std::uint32_t>(x) ^ (std::uint32_t{1} << 31);
}

constexpr unsigned digitBits = 11;
constexpr std::size_t digitValues = std::size_t{1} << digitBits;

/// A stable sort by the digits of an unsigned pattern, least significant first (Knuth, vol. 3, 5.2.5). A
/// digit that is the same in all entries is skipped. Sorted entries end up in `keys` and `companions`.
template <unsigned patternBits, class PatternOf>
Status RadixSort(std::span<double> keys, std::span<std::int32_t> companions, std::span<double> scratchKeys,
                 std::span<std::int32_t> scratchCompanions, PatternOf patternOf, StopPoll stop) {
    constexpr unsigned digits = (patternBits + digitBits - 1) / digitBits;
    // On the stack this would be nearly 100 kB: more than a host's thread may have left. The module has one
    // thread.
    static std::array<std::array<std::uint32_t, digitValues>, digits> counts;
    for (auto& digit : counts)
        digit.fill(0);
    const std::size_t n = keys.size();
    const auto digitOf = [](auto pattern, unsigned digit) {
        return static_cast<std::size_t>(pattern >> (digit * digitBits)) & (digitValues - 1);
    };
    for (std::size_t i = 0; i < n; ++i) {
        const auto pattern = patternOf(keys[i], companions[i]);
        for (unsigned d = 0; d < digits; ++d)
            ++counts[d][digitOf(pattern, d)];
        if (i % stepsPerPoll == 0 && stop()) return Status::Stopped;
    }

    double* fromKeys = keys.data();
    std::int32_t* fromCompanions = companions.data();
    double* toKeys = scratchKeys.data();
    std::int32_t* toCompanions = scratchCompanions.data();
    Status status = Status::Success;
    for (unsigned d = 0; d < digits && status == Status::Success; ++d) {
        auto& places = counts[d];
        const auto first = patternOf(fromKeys[0], fromCompanions[0]);
        if (places[digitOf(first, d)] == n) continue;
        std::uint32_t place = 0;
        for (auto& count : places)
            place += std::exchange(count, place);
        for (std::size_t i = 0; i < n; ++i) {
            // The source stays whole until the digit is done, so a stop is possible here.
            if (i % stepsPerPoll == 0 && stop()) {
                status = Status::Stopped;
                break;
            }
            const std::uint32_t to = places[digitOf(patternOf(fromKeys[i], fromCompanions[i]), d)]++;
            toKeys[to] = fromKeys[i];
            toCompanions[to] = fromCompanions[i];
        }
        if (status != Status::Success) break;
        std::swap(fromKeys, toKeys);
        std::swap(fromCompanions, toCompanions);
    }
    if (fromKeys != keys.data()) {
        std::copy_n(fromKeys, n, keys.data());
        std::copy_n(fromCompanions, n, companions.data());
    }
    return status;
}

} // namespace

Status HeapSortWithIndex(std::span<double> keys, std::span<std::int32_t> companions, StopPoll stop) {
    return HeapSort(keys, companions, stop);
}

Status HeapSortWithIndex(std::span<double> keys, std::span<std::int16_t> companions, StopPoll stop) {
    return HeapSort(keys, companions, stop);
}

SortOutcome SortTimes(std::span<double> keys, std::span<std::int32_t> companions,
                      std::span<double> scratchKeys, std::span<std::int32_t> scratchCompanions,
                      StopPoll stop) {
    if (keys.size() < radixFrom) return {HeapSort(keys, companions, stop), TieOrder::Exact};

    const Status status = RadixSort<64>(
        keys, companions, scratchKeys, scratchCompanions,
        [](double key, std::int32_t) { return OrderedBits(key); }, stop);
    const bool tied = std::adjacent_find(keys.begin(), keys.end()) != keys.end();
    return {status, tied ? TieOrder::Stable : TieOrder::Exact};
}

Status RestoreHeapOrder(std::span<double> keys, std::span<std::int32_t> companions,
                        std::span<double> scratchKeys, std::span<std::int32_t> scratchCompanions,
                        StopPoll stop) {
    if (keys.size() < 2) return Status::Success;
    const Status status = RadixSort<32>(
        keys, companions, scratchKeys, scratchCompanions,
        [](double, std::int32_t companion) { return OrderedBits(companion); }, stop);
    return status == Status::Success ? HeapSort(keys, companions, stop) : status;
}

} // namespace ozm::survival
