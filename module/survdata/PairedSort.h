#pragma once

#include "module/survdata/Status.h"
#include "module/survdata/StopPoll.h"

#include <cstdint>
#include <span>

namespace ozm::survival {

/// Sorts keys ascending in place and moves each companion with its key (classic heap sort, Williams 1964).
/// Not stable, but its order of tied companions is part of what reports show, so the steps are fixed. Keys
/// and companions are equally long; keys hold no NaN; -0 and 0 are equal. Fewer than two entries are left as
/// they are. Returns Success, or Stopped when the poll asked for it: the arrays are then a permutation of
/// what they were.
Status HeapSortWithIndex(std::span<double> keys, std::span<std::int32_t> companions, StopPoll stop = {});

/// The same steps with 16-bit companions, at least two entries.
Status HeapSortWithIndex(std::span<double> keys, std::span<std::int16_t> companions, StopPoll stop = {});

/// How the companions of tied keys came out of `SortTimes`.
enum class TieOrder : std::uint8_t {
    Exact,  ///< as `HeapSortWithIndex` gives them
    Stable, ///< in the order in which they stood before
};

struct SortOutcome {
    Status status = Status::Success;
    TieOrder tieOrder = TieOrder::Exact;
};

/// Sorts like `HeapSortWithIndex`, faster where many entries allow it. The keys always come out the same;
/// companions do when all keys are distinct, since then only one order is sorted. With ties among many
/// entries they come out stable, and the answer says so; `RestoreHeapOrder` makes them exact when somebody
/// wants to see them. The scratch spans are as long as the keys; what they held is lost..
SortOutcome SortTimes(std::span<double> keys, std::span<std::int32_t> companions,
                      std::span<double> scratchKeys, std::span<std::int32_t> scratchCompanions,
                      StopPoll stop = {});

/// Turns the stable order of `SortTimes` into the heap sort's, for companions that were ascending before the
/// sort (case numbers in reading order): sorted by companion the entries stand as they were read, and the
/// heap sort's steps do the rest. Copies of one case share key and number, so their order among themselves
/// does not show.
Status RestoreHeapOrder(std::span<double> keys, std::span<std::int32_t> companions,
                        std::span<double> scratchKeys, std::span<std::int32_t> scratchCompanions,
                        StopPoll stop = {});

} // namespace ozm::survival
