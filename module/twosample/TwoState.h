#pragma once

#include "module/survdata/CaseReader.h"
#include "module/survdata/HostArray.h"
#include "module/twosample/PooledSample.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace ozm::survival {

/// The four lists of times that a reading pass fills, all of one capacity: fixed ones for small data, else
/// from the host.
class GroupLists {
public:
    static constexpr std::int32_t fixedCapacity = 250;
    static constexpr std::int32_t largestCapacity = 2000;

    /// The fixed lists while the data have at most `fixedCapacity` cases and no weights; else one entry per
    /// case but at most `largestCapacity`, which is also what weighted cases get. False when the host refused
    /// one.
    [[nodiscard]] bool Obtain(CAnalysisSupport& host, std::int32_t cases, bool weighted);
    void Release();
    [[nodiscard]] std::int32_t Capacity() const { return capacity_; }

    /// Appends a time to the list of its group (1 or 2) and status; false when that list is full.
    bool Append(const Observation& observation);

    [[nodiscard]] GroupCounts Counts() const;
    /// How many observations there are in all.
    [[nodiscard]] std::size_t Size() const;
    /// Writes them all: uncensored and censored of group 1, then of group 2. `pooled` has `Size()` entries.
    void Pool(std::span<PooledObservation> pooled) const;

private:
    struct List {
        std::int16_t group;
        bool complete;
        std::span<double> times{};
        std::size_t count = 0;
    };

    std::int32_t capacity_ = 0;
    std::array<List, 4> lists_{{{1, true}, {1, false}, {2, true}, {2, false}}};
    std::array<HostArray<double>, 4> host_;
    std::array<std::array<double, fixedCapacity>, 4> fixed_{};
};

/// What a run leaves for the results dialog.
class TwoResults {
public:
    /// Room for the pooled sample: a fixed array for as many observations as fixed lists of unweighted cases
    /// give, else from the host. False when it refused.
    [[nodiscard]] bool Obtain(CAnalysisSupport& host, std::size_t observations);
    void Release();

    [[nodiscard]] std::span<PooledObservation> Observations() { return observations_; }
    [[nodiscard]] PooledSample Sample() const { return {observations_, counts}; }

    GroupCounts counts;

private:
    std::span<PooledObservation> observations_;
    HostArray<PooledObservation> host_;
    std::array<PooledObservation, GroupLists::fixedCapacity> fixed_{};
};

/// Everything of the analysis that lives from its specification dialog to its results.
struct TwoState {
    GroupLists lists; ///< in use while a run reads
    TwoResults results;
};

} // namespace ozm::survival
