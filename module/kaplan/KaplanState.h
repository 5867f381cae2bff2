#pragma once

#include "module/kaplan/ProductLimit.h"
#include "module/resources/Kaplan.h"
#include "module/survdata/CaseReader.h"
#include "module/survdata/PairedSort.h"
#include "module/survdata/WorkArray.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace ozm::survival {

/// What the dialogs of the analysis edit.
struct KaplanSettings {
    double confidenceLevel = kaplanDefaultLevel;
};

/// The seven arrays of one run, all of one capacity.
struct KaplanArrays {
    static constexpr std::int32_t fixedCapacity = 2500;
    static constexpr std::int32_t largestCapacity = 10'000'000;
    /// The host memory that an observation needs.
    static constexpr std::size_t bytesPerObservation = 4 * sizeof(double) + 3 * sizeof(std::int32_t);

    /// The fixed capacity if the data have at most that many cases and no weights; else twice the number of
    /// cases, at most `largestCapacity`; with weights always `largestCapacity`.
    static std::int32_t CapacityFor(std::int32_t cases, bool weighted);

    /// False when the host refused one.
    [[nodiscard]] bool Obtain(CAnalysisSupport& host, std::int32_t capacity);
    void Release();
    [[nodiscard]] std::int32_t Capacity() const { return static_cast<std::int32_t>(uncensoredTimes.Size()); }

    template <class T>
    using Array = WorkArray<T, fixedCapacity>;
    Array<double> uncensoredTimes;
    Array<double> censoredTimes;
    Array<double> survival;
    Array<double> standardError;
    Array<std::int32_t> uncensoredCases;
    Array<std::int32_t> censoredCases;
    Array<std::int32_t> ranks;
};

/// What a run leaves for the results dialog. The arrays are valid up to the counts.
struct KaplanResults {
    KaplanArrays arrays;
    ReadingCounts counts;
    std::int32_t uncensored = 0; ///< U
    std::int32_t censored = 0;   ///< C
    Percentiles percentiles;
    TieOrder uncensoredOrder = TieOrder::Exact;
    TieOrder censoredOrder = TieOrder::Exact;

    [[nodiscard]] std::int32_t Valid() const { return uncensored + censored; } ///< N

    [[nodiscard]] std::span<const double> UncensoredTimes() const {
        return Used(arrays.uncensoredTimes, uncensored);
    }
    [[nodiscard]] std::span<const double> CensoredTimes() const {
        return Used(arrays.censoredTimes, censored);
    }
    [[nodiscard]] std::span<const double> Survival() const { return Used(arrays.survival, uncensored); }
    [[nodiscard]] std::span<const double> StandardError() const {
        return Used(arrays.standardError, uncensored);
    }
    [[nodiscard]] std::span<const std::int32_t> UncensoredCases() const {
        return Used(arrays.uncensoredCases, uncensored);
    }
    [[nodiscard]] std::span<const std::int32_t> CensoredCases() const {
        return Used(arrays.censoredCases, censored);
    }

    void Release() {
        arrays.Release();
        uncensored = censored = 0;
    }

private:
    template <class T>
    static std::span<const T> Used(const KaplanArrays::Array<T>& array, std::int32_t count) {
        return array.First(static_cast<std::size_t>(count));
    }
};

/// Everything of the analysis that lives from its specification dialog to its results.
struct KaplanState {
    KaplanSettings settings;
    KaplanResults results;
};

} // namespace ozm::survival
