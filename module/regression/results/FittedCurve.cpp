#include "module/regression/results/FittedCurve.h"

#include "module/regression/results/ParameterTables.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <utility>

namespace ozm::survival {

double LargestTime(const RegressionSample& sample) {
    return std::ranges::max(sample.Times());
}

std::vector<double> AscendingTimes(const RegressionSample& sample) {
    std::vector<double> times(sample.Times().begin(), sample.Times().end());
    std::ranges::sort(times);
    return times;
}

std::vector<double> CurveTimes(const Predictor& predictor, double largest) {
    constexpr int pieces = 120;
    std::vector<double> times;
    for (int i = 0; i <= pieces; ++i) {
        const double share = static_cast<double>(i) / pieces;
        times.push_back(share * largest);
        const double time = predictor.TimeOf(1.0 - share).value;
        if (time > 0.0 && time < largest) times.push_back(time);
    }
    std::ranges::sort(times);
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

ChartSeries FittedSeries(std::string legend, ChartSeries::Role role) {
    ChartSeries series;
    series.legend = std::move(legend);
    series.role = role;
    return series;
}

void AddNoteBelowZero(const Predictor& predictor, std::vector<std::string>& notes) {
    constexpr double shows = 0.001;
    const double dead = 1.0 - predictor.SurvivalAt(0.0).value;
    if (dead > shows) notes.push_back(Filled(StrParNoteBelowZero, {FormatNumber(100.0 * dead, 3)}));
}

EventColumns::EventColumns(ResultTable& table)
    : time_(table.AddNumbers({"time", StrRegColTime1, StrRegColTime2}, CellFormat::general(8))),
      atRisk_(table.AddIntegers({"atRisk", StrRegColAtRisk1, StrRegColAtRisk2})),
      events_(table.AddIntegers({"events", StrRegColEvents})) {}

void EventColumns::Fill(ResultTable& table, std::size_t row, const EstimateStep& step) const {
    table[time_][row] = step.at;
    table[atRisk_][row] = static_cast<std::int32_t>(step.atRisk);
    table[events_][row] = static_cast<std::int32_t>(step.events);
}

FittedColumns::FittedColumns(ResultTable& table, double level)
    : survival_(
          table.AddNumbers({"survival", StrParColFitted1, StrRegColSurvival2, Whole(StrParFittedInFull)},
                           CellFormat::fixed(6))),
      error_(table.AddNumbers(
          {"standardError", StrRegColError1, StrRegColError2, Whole(StrParFittedErrorInFull)},
          CellFormat::fixed(6))),
      lower_(AddLimit(table, "survivalLower", false, level, StrRegColSurvival2, StrParFittedInFull,
                      CellFormat::fixed(6))),
      upper_(AddLimit(table, "survivalUpper", true, level, StrRegColSurvival2, StrParFittedInFull,
                      CellFormat::fixed(6))) {}

void FittedColumns::Fill(ResultTable& table, std::size_t row, const Prediction& survival) {
    cells_.Put(table, survival_, row, survival.value);
    cells_.Put(table, error_, row, survival.error);
    cells_.Put(table, lower_, row, survival.lower);
    cells_.Put(table, upper_, row, survival.upper);
}

} // namespace ozm::survival
