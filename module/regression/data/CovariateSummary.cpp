#include "module/regression/data/CovariateSummary.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace ozm::survival {
namespace {

bool HasValue(double x) {
    return !std::isnan(x);
}

/// The sum of a function of the values that there are, by eight sums that do not wait for each other.
template <class Function>
double SumOverValues(std::span<const double> column, Function function) {
    constexpr std::size_t lanes = 8;
    std::array<double, lanes> sums{};
    const std::size_t whole = column.size() / lanes * lanes;
    for (std::size_t i = 0; i < whole; i += lanes)
        for (std::size_t l = 0; l < lanes; ++l)
            sums[l] += HasValue(column[i + l]) ? function(column[i + l]) : 0.0;
    for (std::size_t i = whole; i < column.size(); ++i)
        sums[i - whole] += HasValue(column[i]) ? function(column[i]) : 0.0;
    return std::accumulate(sums.begin(), sums.end(), 0.0);
}

} // namespace

CovariateSummary SummaryOf(std::span<const double> column) {
    CovariateSummary summary;
    const auto first = std::ranges::find_if(column, HasValue);
    summary.values = static_cast<std::int32_t>(std::ranges::count_if(column, HasValue));
    summary.missing = static_cast<std::int32_t>(column.size()) - summary.values;
    if (summary.values == 0) return summary;
    const double origin = *first;
    const double offset =
        SumOverValues(column, [origin](double value) { return value - origin; }) / summary.values;
    summary.mean = origin + offset;
    if (summary.values < 2) return summary;
    const auto deviation = [origin, offset](double value) { return (value - origin) - offset; };
    const double rest = SumOverValues(column, deviation); // what rounding leaves of it
    const double squares =
        SumOverValues(column, [&](double value) { return deviation(value) * deviation(value); });
    summary.deviation =
        std::sqrt(std::max(squares - rest * rest / summary.values, 0.0) / (summary.values - 1));
    return summary;
}

} // namespace ozm::survival
