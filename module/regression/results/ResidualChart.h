#pragma once

#include "support/CChartInfo.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace ozm::survival {

/// Titles of a chart, by their numbers in the string table.
struct ChartTitles {
    int chart;
    int x;
    int y;
};

/// A point per case, in one series of the uncensored and another of the censored ones, if there are any.
/// Points that are not finite are left out.
CChartInfo ResidualChart(const ChartTitles& titles, std::span<const double> x, std::span<const double> y,
                         std::span<const std::uint8_t> complete);

/// The marks of uncensored and of censored cases in tables.
inline constexpr std::array<std::string_view, 2> censoredMarks{"", "+"};

/// The places of the cases by their case numbers; copies of a case as they stand.
std::vector<std::size_t> InOrderOfCases(std::span<const std::int32_t> caseNumbers);

} // namespace ozm::survival
