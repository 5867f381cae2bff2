#include "module/kaplan/ConfidenceLimits.h"
#include "module/kaplan/CurveThinning.h"
#include "module/kaplan/KaplanOutput.h"
#include "module/resources/Kaplan.h"
#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/survdata/InputHeader.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"
#include "module/survdata/StopTest.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
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

/// What the legend of a picture names: the time variable, and the meaning of the codes.
struct CurveNames {
    std::string times;
    std::string complete;
    std::string censored;

    CurveNames(CAnalysisSupport& host, const SharedSettings& shared) {
        const auto inBrackets = [](const std::string& text) { return " (" + text + ")"; };
        const int variable = shared.First(ListCensoring);
        times = inBrackets(TimesName(host, shared));
        complete = inBrackets(MeaningOfCode(host, variable, shared.completeCode));
        censored = inBrackets(MeaningOfCode(host, variable, shared.censoredCode));
    }
};

/// The four series of a survival curve: the estimate as a step function, its band, and the censored
/// observations on it.
struct SurvivalSeries {
    ChartSeries estimate;
    ChartSeries lower;
    ChartSeries upper;
    ChartSeries censored;

    SurvivalSeries(const CurveNames& names, double level) {
        using Style = ChartSeries::Style;
        using Role = ChartSeries::Role;
        const std::string percent = LevelInPercent(level);
        estimate = Series(std::string{Text(StrKmLegendEstimate)} + names.times, Style::Step, Role::Estimate);
        lower = Series(percent + std::string{Text(StrKmLevelLower)}, Style::Step, Role::LowerBound);
        upper = Series(percent + std::string{Text(StrKmLevelUpper)}, Style::Step, Role::UpperBound);
        censored =
            Series(std::string{Text(StrKmLegendCensored)} + names.censored, Style::Markers, Role::Censored);
        censored.marker = ChartSeries::Marker::Plus;
    }

    /// Moves the series into a chart. The curve goes on to the last observation when that is censored; the
    /// band goes as far as the curve, unless the last event leaves nobody at risk.
    void Move(double last, CChartInfo& chart) {
        for (ChartSeries* series : {&estimate, &lower, &upper})
            if (series->x.back() < last) Add(*series, last, series->y.back());
        chart.kind = CChartInfo::Kind::Step;
        chart.yAxis.min = 0.0;
        chart.yAxis.max = 1.0;
        chart.series = {std::move(estimate), std::move(lower), std::move(upper)};
        if (!censored.x.empty()) chart.series.push_back(std::move(censored));
    }
};

/// Plot 1, which begins at 1: every observation that is plotted.
std::size_t FillSurvival(const KaplanResults& results, const CurveNames& names, double level,
                         CChartInfo& chart) {
    SurvivalSeries series(names, level);
    const double z = ConfidenceZ(level);
    std::size_t values = 0;
    for (ChartSeries* each : {&series.estimate, &series.lower, &series.upper})
        Add(*each, 0.0, 1.0);
    double last = 0.0;
    ForEachObservation(results, mostPlotted, [&](const KaplanRow& row) {
        ++values;
        last = row.time;
        series.estimate.leaving.push_back(row.time);
        if (row.censored) {
            Add(series.censored, row.time, row.survival);
            return true;
        }
        Add(series.estimate, row.time, row.survival);
        const ConfidenceLimits limits = LogMinusLogLimits(row.survival, row.standardError, z);
        if (std::isnan(limits.lower)) return true;
        Add(series.lower, row.time, limits.lower);
        Add(series.upper, row.time, limits.upper);
        return true;
    });
    series.estimate.staying = static_cast<double>(results.Valid()) - static_cast<double>(values);
    series.Move(last, chart);
    return values;
}

double LastTime(const KaplanResults& results) {
    const double complete = results.UncensoredTimes().back();
    return results.censored == 0 ? complete : std::max(complete, results.CensoredTimes().back());
}

/// The survival curve of all observations, thinned on the way, without a copy of them. Of tied complete
/// observations the last has the estimate at their time. False when the user stopped it.
bool FillWholeCurve(CAnalysisSupport& host, const KaplanResults& results, const CurveNames& names,
                    double level, CChartInfo& chart) {
    constexpr std::size_t rowsPerPoll = std::size_t{1} << 14;
    const CurvePage page{.end = LastTime(results)};
    const double z = ConfidenceZ(level);
    ThinnedSteps estimate(page);
    ThinnedSteps lower(page);
    ThinnedSteps upper(page);
    ThinnedMarks censored(page);
    GatheredTimes leaving(page.end);
    for (ThinnedSteps* each : {&estimate, &lower, &upper})
        each->Add(0.0, 1.0);
    const auto place = [&](const KaplanRow& row) {
        estimate.Add(row.time, row.survival);
        const ConfidenceLimits limits = LogMinusLogLimits(row.survival, row.standardError, z);
        if (std::isnan(limits.lower)) return;
        lower.Add(row.time, limits.lower);
        upper.Add(row.time, limits.upper);
    };
    KaplanRow tied;
    bool any = false;
    std::size_t rows = 0;
    const bool all =
        ForEachObservation(results, static_cast<std::size_t>(results.Valid()), [&](const KaplanRow& row) {
            if (rows++ % rowsPerPoll == 0 && StopRequested(host)) return false;
            leaving.Add(row.time);
            if (row.censored) {
                censored.Add(row.time, row.survival);
                return true;
            }
            if (any && tied.time < row.time) place(tied);
            any = true;
            tied = row;
            return true;
        });
    if (!all) return false;
    place(tied);
    for (ThinnedSteps* each : {&estimate, &lower, &upper})
        each->Close();
    SurvivalSeries series(names, level);
    const auto take = [](ChartSeries& to, auto& from) {
        to.x = std::move(from.x);
        to.y = std::move(from.y);
    };
    take(series.estimate, estimate);
    take(series.lower, lower);
    take(series.upper, upper);
    take(series.censored, censored);
    series.estimate.leaving = std::move(leaving.times);
    series.estimate.leavingCounts = std::move(leaving.counts);
    series.estimate.leavingStep = leaving.Step();
    series.Move(page.end, chart);
    return true;
}

/// Plots 2 and 3: the uncensored observations. Those without a logarithm are left out and counted in notes.
std::size_t FillLogarithmic(const KaplanResults& results, const CurveNames& names, bool logSurvival,
                            CChartInfo& chart) {
    ChartSeries series = Series(std::string{Text(StrKmLegendObserved)} + names.complete,
                                ChartSeries::Style::Line, ChartSeries::Role::Estimate);
    series.marker = ChartSeries::Marker::Circle;
    std::int32_t timeZero = 0;
    std::int32_t survivalZero = 0;
    ForEachObservation(results, mostPlotted, [&](const KaplanRow& row) {
        if (row.censored) return true;
        if (!(row.time > 0.0))
            ++timeZero;
        else if (logSurvival && !(row.survival > 0.0))
            ++survivalZero;
        else
            Add(series, std::log(row.time), logSurvival ? std::log(row.survival) : row.survival);
        return true;
    });
    if (timeZero > 0) chart.notes.push_back(Filled(StrKmNoteTimeZero, {FormatCount(timeZero)}));
    if (survivalZero > 0) chart.notes.push_back(Filled(StrKmNoteSurvivalZero, {FormatCount(survivalZero)}));
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

OutputResult PlotKaplan(CAnalysisSupport& host, const SharedSettings& shared, const KaplanResults& results,
                        KaplanPlot plot, double level) {
    const CurveNames names(host, shared);
    const PlotTexts texts = TextsOf(plot);
    CChartInfo chart;
    chart.title = Text(texts.title);
    chart.xAxis.title = Text(texts.xAxis);
    chart.yAxis.title = Text(texts.yAxis);
    const std::size_t values = plot == KaplanPlot::Survival
                                   ? FillSurvival(results, names, level, chart)
                                   : FillLogarithmic(results, names, plot == KaplanPlot::LogLog, chart);
    if (values < 3) return OutputResult::Failed(StrFewerThan3Values);
    if (!AllPlotted(results))
        chart.notes.push_back(
            Filled(StrKmNoteOnlyFirst, {FormatCount(mostPlotted), FormatCount(results.Valid())}));
    return ShowChart(host, chart);
}

OutputResult PlotSurvivalCurve(CAnalysisSupport& host, const SharedSettings& shared,
                               const KaplanResults& results, double level) {
    const StatusLine line(host, StrPrinting);
    CChartInfo chart;
    chart.title = Text(StrKmCurve);
    chart.xAxis.title = Text(StrKmAxisTime);
    chart.yAxis.title = Text(StrKmAxisSurviving);
    const CurveNames names(host, shared);
    if (AllPlotted(results))
        FillSurvival(results, names, level, chart);
    else if (!FillWholeCurve(host, results, names, level, chart))
        return OutputResult::NotMade();
    if (!AllPlotted(results)) chart.notes.push_back(Filled(StrKmNoteThinned, {FormatCount(results.Valid())}));
    return ShowChart(host, chart);
}

} // namespace ozm::survival
