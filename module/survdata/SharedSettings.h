#pragma once

#include "module/resources/SelectionListIds.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ozm {
class CAnalysisSupport;
}

namespace ozm::survival {

/// A code that has not been chosen: all bits set, a NaN, which matches no value.
inline constexpr double unsetCode = std::bit_cast<double>(~std::uint64_t{0});
/// A code as it is stored: any NaN becomes the one above.
inline double KeptCode(double code) {
    return std::isnan(code) ? unsetCode : code;
}

enum class AnalysisType : std::int16_t {
    LifeTables = 1,
    KaplanMeier,
    TwoSamples,
    MultipleSamples,
    Regression
};
enum class InputDataType : std::int16_t {
    Raw = 1,
    Table
}; ///< of life tables: one case per observation, or intervals

/// The eleven lists of selected variables (numbers from 1), one set for all dialogs.
using SelectionLists = std::array<std::vector<int>, SelectionListCount>;

/// Areas through which reading passes and routines exchange data with the host; registered with it as
/// commons.
struct WorkAreas {
    std::array<double, 76> values{};  ///< values of the current case, in the order of `variables`
    std::array<double, 76> missing{}; ///< missing-data codes of the same variables
    std::array<std::int32_t, 76> variables{};
    /// Of the last complete reading pass: observations read, valid, then the counts of `ReadingCounts` from
    /// `missingCode` on in their order.
    std::array<std::int32_t, 14> counts{};
    std::array<double, 8> statistics{}; ///< of the last computation; each analysis documents its own
};

/// What every analysis shares: selections, codes and what is known of the data.
struct SharedSettings {
    /// The analysis object that these selections and results belong to; only compared, never used.
    const CAnalysisSupport* owner = nullptr;
    /// Releases the results of all analyses; none where there is nothing to release.
    void (*releaseResults)() = nullptr;
    AnalysisType analysisType = AnalysisType::LifeTables;
    InputDataType inputDataType = InputDataType::Raw;
    std::int16_t timeVariables = 0; ///< 0 none yet; 1 times; 2 dates; 6 month, day, year twice
    SelectionLists lists;
    /// The names of the variables in each list, to find them again in other data.
    std::array<std::vector<std::string>, SelectionListCount> listNames;
    double completeCode = unsetCode;
    double censoredCode = unsetCode;
    /// Of the groups that are compared, or of the strata, in their order; at most 32767.
    std::vector<double> groupCodes;
    std::string reportTitle;
    std::string reportTitleLower;
    std::string fileName;
    int cases = 0;
    int variables = 0;
    WorkAreas work;

    /// An analysis object acts: from now on these are its own, and results of any other one are released.
    void Enter(const CAnalysisSupport& host) {
        if (owner != &host && releaseResults != nullptr) releaseResults();
        owner = &host;
    }

    [[nodiscard]] const std::vector<int>& List(SelectionListId id) const { return lists[id]; }
    std::vector<int>& List(SelectionListId id) { return lists[id]; }

    /// The time variables in use: none while `timeVariables` is 0, even if the list has some.
    [[nodiscard]] std::span<const int> Times() const {
        return timeVariables == 0 ? std::span<const int>{} : std::span<const int>{lists[ListSurvivalTimes]};
    }
    /// The first variable of a list, 0 when it is empty.
    [[nodiscard]] int First(SelectionListId id) const { return lists[id].empty() ? 0 : lists[id].front(); }
};

} // namespace ozm::survival
