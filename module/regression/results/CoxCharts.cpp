#include "module/regression/results/CovariateValues.h"
#include "module/regression/results/CoxCurves.h"
#include "module/regression/results/CoxOutput.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

/// Of more curves than this, limits hide each other, and numbers at risk leave them no room.
constexpr std::size_t mostInDetail = 12;

std::string CurveName(const RegReportOf& of, const StratumCurve& curve, int withoutStrata) {
    return of.Results().Stratified() ? StratumName(of, curve.stratum) : Whole(withoutStrata);
}

ChartSeries Series(const StratumCurve& curve, std::string legend, ChartSeries::Role role) {
    ChartSeries series;
    series.legend = std::move(legend);
    series.style = ChartSeries::Style::Step;
    series.role = role;
    series.group = static_cast<int>(curve.stratum);
    return series;
}

/// A step function from 1 at time 0 to the last time of the stratum.
void FillSteps(ChartSeries& series, const StratumCurve& curve, double CoxSurvivalPoint::*value) {
    series.x.push_back(0.0);
    series.y.push_back(1.0);
    for (const CoxSurvivalPoint& point : curve.points) {
        series.x.push_back(point.time);
        series.y.push_back(point.*value);
    }
    if (!curve.leaving.empty() && series.x.back() < curve.leaving.back()) {
        series.x.push_back(curve.leaving.back());
        series.y.push_back(series.y.back());
    }
}

ChartSeries Estimate(const RegReportOf& of, const StratumCurve& curve) {
    ChartSeries series =
        Series(curve, CurveName(of, curve, StrRegLegendEstimate), ChartSeries::Role::Estimate);
    FillSteps(series, curve, &CoxSurvivalPoint::survival);
    series.leaving = curve.leaving;
    return series;
}

void AddLimits(const RegReportOf& of, const StratumCurve& curve, CChartInfo& chart) {
    const std::string percent = LevelInPercent(of.state.output.confidenceLevel);
    ChartSeries lower = Series(curve, percent + Whole(StrRegColLower), ChartSeries::Role::LowerBound);
    ChartSeries upper = Series(curve, percent + Whole(StrRegColUpper), ChartSeries::Role::UpperBound);
    FillSteps(lower, curve, &CoxSurvivalPoint::lower);
    FillSteps(upper, curve, &CoxSurvivalPoint::upper);
    chart.series.push_back(std::move(lower));
    chart.series.push_back(std::move(upper));
}

} // namespace

OutputResult PlotCoxSurvival(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    CChartInfo chart = SurvivalChart(CChartInfo::Kind::Step, StrRegSurvivalTitle);
    for (const StratumCurve& curve : CurvesAtMeans(of))
        chart.series.push_back(Estimate(of, curve));
    chart.numbersAtRisk = chart.series.size() <= mostInDetail;
    chart.notes.emplace_back(Text(StrRegNoteSurvivalMeans));
    return ShowChart(of.host, chart);
}

OutputResult PlotCoxLogLog(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    CChartInfo chart;
    chart.kind = CChartInfo::Kind::Step;
    chart.title = Text(StrCoxLogLogTitle);
    chart.xAxis.title = Text(StrCoxAxisLogTime);
    chart.yAxis.title = Text(StrCoxAxisLogHazard);
    std::size_t atZero = 0;
    for (const StratumCurve& curve : CurvesAtMeans(of)) {
        ChartSeries series = Series(curve, CurveName(of, curve, StrCoxAllCases), ChartSeries::Role::Estimate);
        for (const CoxSurvivalPoint& point : curve.points) {
            if (!(point.time > 0.0)) {
                atZero += point.events;
                continue;
            }
            series.x.push_back(std::log(point.time));
            series.y.push_back(std::log(point.cumulativeHazard));
        }
        if (!series.x.empty()) chart.series.push_back(std::move(series));
    }
    if (chart.series.empty()) return OutputResult::Failed(StrFewerThan3Values);
    if (of.Results().Stratified()) chart.notes.emplace_back(Text(StrCoxNoteLogLog));
    if (atZero > 0)
        chart.notes.push_back(Filled(StrCoxNoteTimeZero, {FormatCount(static_cast<long long>(atZero))}));
    return ShowChart(of.host, chart);
}

OutputResult PlotCoxAtValues(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    if (of.state.output.covariateValues.size() > of.Results().Parameters())
        return OutputResult::Failed(StrRegTooManyValues);
    const CovariateValues values = ValuesForPlot(of);
    const std::vector<StratumCurve> curves = CurvesAt(of, values.values);
    const bool computable = std::ranges::all_of(curves, [](const StratumCurve& curve) {
        return std::ranges::all_of(curve.points, [](const CoxSurvivalPoint& point) {
            return std::isfinite(point.lower) && std::isfinite(point.upper) && point.cumulativeHazard > 0.0;
        });
    });
    if (!computable) return OutputResult::Failed(StrRegValuesTooFar);
    CChartInfo chart = SurvivalChart(CChartInfo::Kind::Step, StrRegUserTitle);
    chart.notes.push_back(values.described);
    const bool limits = curves.size() <= mostInDetail;
    chart.numbersAtRisk = limits;
    if (!limits) chart.notes.emplace_back(Text(StrCoxNoteNoLimits));
    for (const StratumCurve& curve : curves) {
        chart.series.push_back(Estimate(of, curve));
        if (limits) AddLimits(of, curve, chart);
    }
    const OutputResult written =
        WriteCurves(of, curves, {StrRegUserTableTitle, StrCoxNoteUserTable, false}, values.described);
    return written.made ? ShowChart(of.host, chart) : written;
}

} // namespace ozm::survival
