#pragma once

#include "module/resources/SelectionListIds.h"

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace ozm::survival {

/// A code that has not been chosen matches no value. The all-bits-set pattern is a NaN.
inline constexpr double unsetCode = std::numeric_limits<double>::quiet_NaN();

/// The eleven lists of selected variables (numbers from 1), one set for all dialogs.
using SelectionLists = std::array<std::vector<int>, SelectionListCount>;

/// Areas through which reading passes and routines exchange data with the host; registered with it as
/// commons.
struct WorkAreas {
    std::array<double, 76> values{};  ///< values of the case in hand, in the order of `variables`
    std::array<double, 76> missing{}; ///< missing-data codes of the same variables
    std::array<std::int32_t, 76> variables{};
    /// Of the last complete reading pass: observations read, valid, then the counts of `ReadingCounts` from
    /// `missingCode` on in their order.
    std::array<std::int32_t, 14> counts{};
    std::array<double, 8> statistics{}; ///< of the last computation; an analysis says which
};

/// What every analysis shares: selections, codes and what is known of the data.
struct SharedSettings {
    std::int16_t analysisType =
        1; ///< 1 life tables, 2 Kaplan-Meier, 3 two samples, 4 k samples, 5 regression
    std::int16_t inputDataType = 1; ///< 1 raw data, 2 a table of survival times (life tables only)
    std::int16_t timeVariables = 0; ///< 0 none yet; 1 times; 2 dates; 6 month, day, year twice
    SelectionLists lists;
    double completeCode = unsetCode;
    double censoredCode = unsetCode;
    std::array<double, 2> groupCodes{unsetCode, unsetCode};
    std::string reportTitle;
    std::string reportTitleLower;
    std::string fileName;
    int cases = 0;
    int variables = 0;
    WorkAreas work;

    [[nodiscard]] const std::vector<int>& List(SelectionListId id) const { return lists[id]; }
    std::vector<int>& List(SelectionListId id) { return lists[id]; }

    /// The time variables in force: none while their number is 0, whatever the list still holds.
    [[nodiscard]] std::span<const int> Times() const {
        return timeVariables == 0 ? std::span<const int>{} : std::span<const int>{lists[ListSurvivalTimes]};
    }
    /// The first variable of a list, 0 when it is empty.
    [[nodiscard]] int First(SelectionListId id) const { return lists[id].empty() ? 0 : lists[id].front(); }
};

} // namespace ozm::survival
