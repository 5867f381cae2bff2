#include "module/kaplan/ConfidenceLimits.h"
#include "module/kaplan/KaplanOutput.h"
#include "module/resources/Resources.h"
#include "module/resources/StringIds.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"

#include <cmath>
#include <string>
#include <utility>

namespace ozm::survival {
namespace {

ChartSeries Series(std::string legend, ChartSeries::Style style, ChartSeries::Role role) {
    ChartSeries series;
    series.legend = std::move(legend);
    series.style = style;
    series.role = role;
    return series;
}

void Add(ChartSeries& series, double x, double y) {
    series.x.push_back(x);
    series.y.push_back(y);
}

/// Plot 1: the estimate as a step function that begins at 1, its band, and the censored observations on it.
std::size_t FillSurvival(const KaplanResults& results, double level, CChartInfo& chart) {
    using Style = ChartSeries::Style;
    using Role = ChartSeries::Role;
    const std::string percent = LevelInPercent(level);
    ChartSeries estimate = Series(std::string{Text(StrKmLegendEstimate)}, Style::Step, Role::Estimate);
    ChartSeries lower = Series(percent + std::string{Text(StrKmLevelLower)}, Style::Step, Role::LowerBound);
    ChartSeries upper = Series(percent + std::string{Text(StrKmLevelUpper)}, Style::Step, Role::UpperBound);
    ChartSeries censored = Series(std::string{Text(StrKmLegendCensored)}, Style::Markers, Role::Censored);
    censored.marker = ChartSeries::Marker::Plus;

    const double z = ConfidenceZ(level);
    std::size_t values = 0;
    Add(estimate, 0.0, 1.0);
    Add(lower, 0.0, 1.0);
    Add(upper, 0.0, 1.0);
    double last = 0.0;
    ForEachObservation(results, mostPlotted, [&](const KaplanRow& row) {
        ++values;
        last = row.time;
        estimate.leaving.push_back(row.time);
        if (row.censored) {
            Add(censored, row.time, row.survival);
            return;
        }
        Add(estimate, row.time, row.survival);
        const ConfidenceLimits limits = LogMinusLogLimits(row.survival, row.standardError, z);
        if (std::isnan(limits.lower)) return;
        Add(lower, row.time, limits.lower);
        Add(upper, row.time, limits.upper);
    });
    estimate.staying = static_cast<double>(results.Valid()) - static_cast<double>(values);
    // The curve goes on to the last observation when that one is censored.
    if (estimate.x.back() < last) {
        Add(estimate, last, estimate.y.back());
        Add(lower, last, lower.y.back());
        Add(upper, last, upper.y.back());
    }
    chart.kind = CChartInfo::Kind::Step;
    chart.yAxis.min = 0.0;
    chart.yAxis.max = 1.0;
    chart.series = {std::move(estimate), std::move(lower), std::move(upper)};
    if (!censored.x.empty()) chart.series.push_back(std::move(censored));
    return values;
}

/// Plots 2 and 3: the uncensored observations, those left out whose logarithm does not exist.
std::size_t FillLogarithmic(const KaplanResults& results, bool logSurvival, CChartInfo& chart) {
    ChartSeries series =
        Series(std::string{Text(StrKmLegendObserved)}, ChartSeries::Style::Line, ChartSeries::Role::Estimate);
    series.marker = ChartSeries::Marker::Circle;
    ForEachObservation(results, mostPlotted, [&](const KaplanRow& row) {
        if (row.censored || !(row.time > 0.0) || (logSurvival && !(row.survival > 0.0))) return;
        Add(series, std::log(row.time), logSurvival ? std::log(row.survival) : row.survival);
    });
    chart.kind = CChartInfo::Kind::Line;
    const std::size_t values = series.x.size();
    chart.series = {std::move(series)};
    return values;
}

struct PlotTexts {
    int title;
    int xAxis;
    int yAxis;
};

PlotTexts TextsOf(KaplanPlot plot) {
    switch (plot) {
    case KaplanPlot::Survival:
        return {StrKmPlot1, StrKmAxisTime, StrKmAxisSurviving};
    case KaplanPlot::LogTime:
        return {StrKmPlot2, StrKmAxisLogTime, StrKmAxisSurviving};
    case KaplanPlot::LogLog:
        break;
    }
    return {StrKmPlot3, StrKmAxisLogTime, StrKmAxisLogSurviving};
}

} // namespace

int PlotKaplan(CAnalysisSupport& host, const KaplanResults& results, KaplanPlot plot, double level) {
    const PlotTexts texts = TextsOf(plot);
    CChartInfo chart;
    chart.title = Trimmed(texts.title);
    chart.xAxis.title = Trimmed(texts.xAxis);
    chart.yAxis.title = Trimmed(texts.yAxis);
    const std::size_t values = plot == KaplanPlot::Survival
                                   ? FillSurvival(results, level, chart)
                                   : FillLogarithmic(results, plot == KaplanPlot::LogLog, chart);
    if (values < 3) return StrFewerThan3Values;
    const short outcome = host.NewGeneralMultipleChartLongEx(chart);
    host.c_gr0(chart);
    return outcome == 0 ? 0 : StrGraphicsError;
}

} // namespace ozm::survival
