#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "host/results/ResultsBook.h"

namespace korvana::test {

inline constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
inline constexpr double infinite = std::numeric_limits<double>::infinity();

/// Mark-up, quotes, line ends, a terminal escape, two-byte and four-byte characters, and bytes that are no
/// UTF-8.
inline const std::string awkwardText = "<&\"'>,\r\n\x1b[1m \xC3\xA4 \xF0\x9D\x84\x9E \xFF\xC3";

/// All kinds of columns, with an empty cell, an infinity and a text that needs care.
inline Spreadsheet smallSheet() {
    Spreadsheet sheet;
    sheet.title = "Survival function";
    sheet.notes = {"Greenwood's standard error."};
    sheet.rowHeadings = {"Case 1", "Case 2", "Case 17"};
    sheet.columns.push_back(
        {"Survival", "Time", ozm::CellFormat::fixed(3), std::vector<double>{1, 10.5, notANumber}});
    sheet.columns.push_back(
        {"Number", "at Risk", ozm::CellFormat::integer(), std::vector<std::int32_t>{60, -59, 8}});
    sheet.columns.push_back({"Status", "", {}, Spreadsheet::Dictionary{{0, 1, 7}, {"complete", "censored"}}});
    sheet.columns.push_back({"Cumulatv", "Survival", {}, std::vector<double>{1.0 / 3.0, infinite, 1e-9}});
    sheet.columns.push_back({"Label", "", {}, std::vector<std::string>{"a,b", "say \"no\"", awkwardText}});
    return sheet;
}

inline ozm::ChartSeries series(std::string legend, std::vector<double> x, std::vector<double> y,
                               ozm::ChartSeries::Style style = ozm::ChartSeries::Style::Line) {
    ozm::ChartSeries one;
    one.legend = std::move(legend);
    one.x = std::move(x);
    one.y = std::move(y);
    one.style = style;
    return one;
}

/// A step function with its bounds and censored observations.
inline ozm::CChartInfo stepChart() {
    using Series = ozm::ChartSeries;
    ozm::CChartInfo info;
    info.title = "Estimate & bounds <Group 1>";
    info.xAxis.title = "Survival time";
    info.yAxis = {"Proportion surviving", 0.0, 1.0};
    info.kind = ozm::CChartInfo::Kind::Step;
    info.series = {series("Estimate", {0, 2, 5, 9}, {1, 0.8, 0.5, 0.2}, Series::Style::Step),
                   series("Bounds", {0, 2, 5, 9}, {1, 0.6, 0.3, 0.05}, Series::Style::Step),
                   series("Bounds", {0, 2, 5, 9}, {1, 0.95, 0.7, 0.4}, Series::Style::Step),
                   series("Censored", {3, 6}, {0.8, 0.5}, Series::Style::Markers)};
    info.series[1].role = Series::Role::LowerBound;
    info.series[2].role = Series::Role::UpperBound;
    info.series[3].role = Series::Role::Censored;
    info.series[3].marker = Series::Marker::Plus;
    return info;
}

inline ResultsBook smallBook() {
    ResultsBook book;
    book.analysis = "Kaplan-Meier";
    book.source = "data/" + awkwardText;
    book.notes = {"2 cases were left out."};
    book.messages = {{14152, "The last time is censored.", "group 1", ResultMessage::Severity::Warning},
                     {0, awkwardText, "", ResultMessage::Severity::Error}};
    book.append(Report{"Summary " + awkwardText, {"Cases 60", "", awkwardText}});
    book.append(smallSheet());
    book.append(Chart{stepChart()});
    book.append(Report{"", {"second report"}});
    book.append(Chart{stepChart()});
    book.iterations = {"1  -120.5"};
    return book;
}

} // namespace korvana::test
