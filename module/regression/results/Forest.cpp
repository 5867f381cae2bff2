#include "module/regression/results/Forest.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

/// The logarithm of ratios beyond which there is nothing to see.
constexpr double farthest = 35.0;

void Add(ChartSeries& series, double x, double y) {
    series.x.push_back(x);
    series.y.push_back(y);
}

struct Forest {
    ChartSeries ratios;
    ChartSeries limits;
    std::vector<std::string> names; ///< from the top down
    std::vector<std::string> leftOut;
};

/// A covariate per line; the places count upwards, so the first covariate has the last one.
Forest Plant(const RegressionResults& results, double z) {
    Forest forest;
    std::vector<std::size_t> shown;
    const auto error = [&](std::size_t k) { return std::sqrt(results.estimate.covariance(k, k)); };
    for (std::size_t k = 0; k < results.names.size(); ++k) {
        if (std::abs(results.estimates[k]) + z * error(k) < farthest)
            shown.push_back(k);
        else
            forest.leftOut.push_back(results.names[k]);
    }
    double place = static_cast<double>(shown.size());
    for (const std::size_t k : shown) {
        const double beta = results.estimates[k];
        forest.names.push_back(results.names[k]);
        Add(forest.ratios, std::exp(beta), place);
        Add(forest.limits, std::exp(beta - z * error(k)), place);
        Add(forest.limits, std::exp(beta + z * error(k)), place);
        Add(forest.limits, std::numeric_limits<double>::quiet_NaN(), place); // a gap
        place -= 1.0;
    }
    return forest;
}

} // namespace

OutputResult PlotForest(const RegReportOf& of, const ForestTexts& texts) {
    const StatusLine line(of.host, StrRegFitting);
    const double level = of.state.output.confidenceLevel;
    const std::string percent = LevelInPercent(level);
    Forest forest = Plant(of.Results(), ConfidenceZ(level));
    if (forest.names.empty()) return OutputResult::Failed(texts.noRatio);
    CChartInfo chart;
    chart.title = Filled(texts.title, {percent});
    chart.xAxis.title = Text(texts.axis);
    chart.xAxis.logarithmic = true;
    const auto top = static_cast<double>(forest.names.size()) + 0.5;
    chart.yAxis.min = 0.5;
    chart.yAxis.max = top;
    chart.yAxis.names.assign(forest.names.rbegin(), forest.names.rend());
    chart.notes.emplace_back(Text(texts.note));
    if (!forest.leftOut.empty())
        chart.notes.push_back(Filled(StrRegNoteForestOut, {Listed(forest.leftOut, StrAnd)}));
    forest.ratios.legend = Text(texts.legend);
    forest.ratios.style = ChartSeries::Style::Markers;
    forest.ratios.marker = ChartSeries::Marker::Square;
    forest.limits.legend = Filled(StrRegLegendLimits, {percent});
    ChartSeries none;
    none.legend = Text(StrRegLegendNoEffect);
    none.role = ChartSeries::Role::LowerBound; // thin and dashed
    none.group = 1;
    Add(none, 1.0, 0.5);
    Add(none, 1.0, top);
    chart.series.push_back(std::move(none));
    chart.series.push_back(std::move(forest.limits));
    chart.series.push_back(std::move(forest.ratios));
    return ShowChart(of.host, chart);
}

} // namespace ozm::survival
