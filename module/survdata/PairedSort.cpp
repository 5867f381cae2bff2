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

// 256 places to write to, in each of the two lists, stay in the nearest cache. Wider digits need fewer
// passes, but each takes longer by more than that.
constexpr unsigned digitBits = 8;
constexpr std::size_t digitValues = std::size_t{1} << digitBits;

/// Two lists of equal length, of which one is sorted into the other.
struct Lists {
    std::span<double> keys;
    std::span<std::int32_t> companions;
};

/// A stable sort by digits of an unsigned pattern, least significant first (Knuth, vol. 3, 5.2.5): by the
/// uppermost ones in which the patterns, from `least` to `greatest`, vary, at most `mostDigits`. A digit that
/// is the same in all entries is skipped. `from` and `to` are exchanged with each digit; `from` holds the
/// entries at the end, after a stop too.
template <unsigned mostDigits, class Pattern, class PatternOf>
Status RadixSort(Lists& from, Lists& to, Pattern least, Pattern greatest, PatternOf patternOf,
                 StopPoll stop) {
    const std::size_t n = from.keys.size();
    const auto bits = static_cast<unsigned>(std::bit_width(greatest - least));
    const unsigned digits = std::min(mostDigits, (bits + digitBits - 1) / digitBits);
    const unsigned below = bits - std::min(bits, digits * digitBits);
    const auto digitOf = [&](const Lists& lists, std::size_t i, unsigned digit) {
        const Pattern pattern = patternOf(lists.keys[i], lists.companions[i]) - least;
        return static_cast<std::size_t>(pattern >> (below + digit * digitBits)) & (digitValues - 1);
    };

    std::array<std::array<std::uint32_t, digitValues>, mostDigits> counts{};
    for (std::size_t i = 0; i < n; ++i) {
        if (i % stepsPerPoll == 0 && stop()) return Status::Stopped;
        for (unsigned d = 0; d < digits; ++d)
            ++counts[d][digitOf(from, i, d)];
    }
    for (unsigned d = 0; d < digits; ++d) {
        auto& places = counts[d];
        if (places[digitOf(from, 0, d)] == n) continue;
        std::uint32_t place = 0;
        for (auto& count : places)
            place += std::exchange(count, place);
        for (std::size_t i = 0; i < n; ++i) {
            // The source stays whole until the digit is done, so a stop is possible here.
            if (i % stepsPerPoll == 0 && stop()) return Status::Stopped;
            const std::uint32_t target = places[digitOf(from, i, d)]++;
            to.keys[target] = from.keys[i];
            to.companions[target] = from.companions[i];
        }
        std::swap(from, to);
    }
    return Status::Success;
}

/// Copies entries that are not there yet.
void CopyInto(const Lists& target, const Lists& from) {
    if (from.keys.data() == target.keys.data()) return;
    std::ranges::copy(from.keys, target.keys.begin());
    std::ranges::copy(from.companions, target.companions.begin());
}

/// Moves nearly sorted entries to the target, which may be where they are, and each to its place on the way:
/// a stable insertion sort. It ends when no step is left; the target then has only a part of them, or, where
/// it is the source, all in some order.
Status InsertInto(const Lists& target, const Lists& from, std::size_t& stepsLeft, StopPoll stop) {
    const auto& [keys, companions] = target;
    const bool inPlace = from.keys.data() == keys.data();
    for (std::size_t i = 0; i < from.keys.size() && stepsLeft > 0; ++i) {
        if (i % stepsPerPoll == 0 && stop()) return Status::Stopped;
        const double key = from.keys[i];
        const std::int32_t companion = from.companions[i];
        std::size_t place = i;
        for (; place > 0 && keys[place - 1] > key && stepsLeft > 0; --place, --stepsLeft) {
            keys[place] = keys[place - 1];
            companions[place] = companions[place - 1];
        }
        if (inPlace && place == i) continue;
        keys[place] = key;
        companions[place] = companion;
    }
    return Status::Success;
}

/// By the uppermost digits of their patterns times are in order but for a few neighbours as a rule; where
/// they are not, as with times in a small part of their range, all digits put them in order.
Status SortByDigits(const Lists& times, const Lists& scratch, StopPoll stop) {
    double smallest = times.keys[0];
    double largest = times.keys[0];
    for (const double key : times.keys) {
        smallest = key < smallest ? key : smallest;
        largest = key > largest ? key : largest;
    }
    const std::uint64_t least = OrderedBits(smallest);
    const std::uint64_t greatest = OrderedBits(largest);
    const auto pattern = [](double key, std::int32_t) { return OrderedBits(key); };
    Lists from = times;
    Lists to = scratch;
    std::size_t stepsLeft = 4 * times.keys.size();
    Status status = RadixSort<4>(from, to, least, greatest, pattern, stop);
    if (status == Status::Success) {
        status = InsertInto(times, from, stepsLeft, stop);
        if (status == Status::Success && stepsLeft > 0) return status;
    }
    CopyInto(times, from);
    if (status != Status::Success) return status;
    from = times;
    to = scratch;
    status = RadixSort<8>(from, to, least, greatest, pattern, stop);
    CopyInto(times, from);
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

    const Status status = SortByDigits({keys, companions}, {scratchKeys, scratchCompanions}, stop);
    const bool tied = std::adjacent_find(keys.begin(), keys.end()) != keys.end();
    return {status, tied ? TieOrder::Stable : TieOrder::Exact};
}

Status RestoreHeapOrder(std::span<double> keys, std::span<std::int32_t> companions,
                        std::span<double> scratchKeys, std::span<std::int32_t> scratchCompanions,
                        StopPoll stop) {
    if (keys.size() < 2) return Status::Success;
    Lists from{keys, companions};
    Lists to{scratchKeys, scratchCompanions};
    const auto [least, greatest] = std::ranges::minmax(companions);
    const Status status = RadixSort<4>(
        from, to, OrderedBits(least), OrderedBits(greatest),
        [](double, std::int32_t companion) { return OrderedBits(companion); }, stop);
    CopyInto({keys, companions}, from);
    return status == Status::Success ? HeapSort(keys, companions, stop) : status;
}

} // namespace ozm::survival
