#pragma once

#include "module/survdata/Status.h"
#include "module/survdata/StopPoll.h"

#include <cstdint>
#include <span>

namespace ozm::survival {

/// Sorts keys ascending in place and moves each companion with its key (classic heap sort, Williams 1964).
/// Not stable, but reports show the order of tied companions, so the steps are fixed. Keys and companions are
/// equally long; keys hold no NaN; -0 and 0 are equal. Fewer than two entries are left as they are. Returns
/// Success, or Stopped when the poll asked to stop: the arrays are then a permutation of what they were.
Status HeapSortWithIndex(std::span<double> keys, std::span<std::int32_t> companions, StopPoll stop = {});

/// The same steps with 16-bit companions, at least two entries.
Status HeapSortWithIndex(std::span<double> keys, std::span<std::int16_t> companions, StopPoll stop = {});

/// How the companions of tied keys came out of `SortTimes`.
enum class TieOrder : std::uint8_t {
    Exact,  ///< as `HeapSortWithIndex` gives them
    Stable, ///< in the order that they had before
};

struct SortOutcome {
    Status status = Status::Success;
    TieOrder tieOrder = TieOrder::Exact;
};

/// Sorts like `HeapSortWithIndex`, but faster for many entries. The keys always come out the same; so do the
/// companions when all keys are distinct. With ties among many entries the companions are in stable order,
/// which the result says; `RestoreHeapOrder` puts them into the heap sort's order when it is needed. The
/// scratch spans are as long as the keys; their contents are lost.
SortOutcome SortTimes(std::span<double> keys, std::span<std::int32_t> companions,
                      std::span<double> scratchKeys, std::span<std::int32_t> scratchCompanions,
                      StopPoll stop = {});

/// Turns the stable order of `SortTimes` into the heap sort's, for companions that were ascending before the
/// sort (case numbers in reading order): sorted by companion the entries are in the order in which they were
/// read, and the heap sort's steps do the rest. Copies of one case share key and number, so their order among
/// themselves does not show.
Status RestoreHeapOrder(std::span<double> keys, std::span<std::int32_t> companions,
                        std::span<double> scratchKeys, std::span<std::int32_t> scratchCompanions,
                        StopPoll stop = {});

} // namespace ozm::survival
