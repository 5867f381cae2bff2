#pragma once

#include "module/groups/PooledSample.h"
#include "module/ksample/KSampleTest.h"
#include "module/survdata/WorkArray.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ozm::survival {

/// What the dialogs of the analysis edit.
struct KsSettings {
    std::vector<double> codes; ///< of the groups; empty: all that selected cases have
};

/// The cases of a run.
struct KsArrays {
    static constexpr std::int32_t mostCases = 32767;
    static constexpr std::int32_t mostGroups = 250;
    static constexpr std::int32_t fixedCapacity = 5000;
    static constexpr std::int32_t largestCapacity = 10'000'000;

    /// The fixed capacity while the data have at most that many cases and no weights; else one entry per case
    /// but at most `largestCapacity`, which is also what weighted cases get.
    static std::int32_t CapacityFor(std::int32_t cases, bool weighted);

    template <class T>
    using Array = WorkArray<T, fixedCapacity>;
};

/// What a run leaves for the results dialog.
struct KsResults {
    KsArrays::Array<PooledObservation> observations; ///< sorted
    KsArrays::Array<double> scores;                  ///< of each
    std::vector<GroupCount> groups;
    std::vector<double> sums; ///< of scores, of each group
    KSampleStatistic test;

    [[nodiscard]] PooledSample Sample() const { return {observations.Span(), groups}; }
    void Release() {
        observations.Release();
        scores.Release();
        groups.clear();
        sums.clear();
    }
};

/// Everything of the analysis that lives from its specification dialog to its results.
struct KsState {
    KsSettings settings;
    KsResults results;
};

} // namespace ozm::survival
