#pragma once

#include "module/groups/PooledSample.h"
#include "module/survdata/CaseReader.h"
#include "module/survdata/SharedSettings.h"
#include "module/survdata/WorkArray.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace ozm::survival {

/// The four lists of times that a reading pass fills, all of one capacity.
class GroupLists {
public:
    static constexpr std::int32_t fixedCapacity = 250;
    static constexpr std::int32_t largestCapacity = 2000;

    /// The fixed capacity if the data have at most that many cases and no weights; else one entry per case,
    /// at most `largestCapacity`; with weights always `largestCapacity`.
    static std::int32_t CapacityFor(std::int32_t cases, bool weighted);

    /// False when the host refused one.
    [[nodiscard]] bool Obtain(CAnalysisSupport& host, std::int32_t capacity);

    /// Appends a time to the list of its group (1 or 2) and status; false when that list is full.
    bool Append(const Observation& observation);

    [[nodiscard]] std::array<GroupCount, 2> Counts() const;
    /// Writes them all: uncensored and censored of group 1, then of group 2. `pooled` has room for all.
    void Pool(std::span<PooledObservation> pooled) const;

private:
    struct List {
        WorkArray<double, fixedCapacity> times;
        std::size_t count = 0;
    };
    std::array<List, 4> lists_;
};

/// What a run leaves for the results dialog: the pooled sample, sorted.
struct TwoResults {
    /// Fixed storage for as many observations as fixed lists of unweighted cases can give.
    WorkArray<PooledObservation, GroupLists::fixedCapacity> observations;
    std::array<GroupCount, 2> groups;

    [[nodiscard]] PooledSample Sample() const { return {observations.Span(), groups}; }
    void Release() {
        observations.Release();
        groups = {};
    }
};

/// What the dialogs of the analysis edit.
struct TwoSettings {
    std::array<double, 2> codes{unsetCode, unsetCode}; ///< of the groups
};

/// Everything of the analysis that lives from its specification dialog to its results.
struct TwoState {
    TwoSettings settings;
    TwoResults results;
};

} // namespace ozm::survival
