#include "module/regression/parametric/EstimateSteps.h"
#include "module/regression/results/CovariateValues.h"
#include "module/regression/results/FittedCurve.h"
#include "module/regression/results/ParameterTables.h"
#include "module/regression/results/ParametricOutput.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"

#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

OutputResult WriteSurvivalAt(const RegReportOf& of, const Predictor& predictor,
                             const std::string& described) {
    const RegressionSample& sample = of.Results().sample;
    const std::vector<EstimateStep> steps = EstimateSteps(sample.Times(), sample.Complete());
    ResultTable table{Whole(StrRegUserTableTitle)};
    table.AddFootnote(Whole(StrParNoteUserTable));
    table.AddFootnote(described);
    EventColumns events(table);
    FittedColumns fitted(table, of.state.output.confidenceLevel);
    if (!table.AddRows(of.host, steps.size())) return OutputResult::Failed(StrRegNoMemory);
    for (std::size_t row = 0; row < steps.size(); ++row) {
        if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
        events.Fill(table, row, steps[row]);
        fitted.Fill(table, row, predictor.SurvivalAt(steps[row].at));
    }
    fitted.AddNotes(table);
    return table.Write(of.host);
}

OutputResult WriteQuartiles(const RegReportOf& of, const Predictor& predictor, const std::string& described) {
    static constexpr std::array rows{std::pair{StrParRowLower, 0.75}, std::pair{StrParRowMedian, 0.5},
                                     std::pair{StrParRowUpper, 0.25}};
    const double level = of.state.output.confidenceLevel;
    const CellFormat format = CellFormat::general(8);
    const bool isNormal = of.Results().kind == RegressionKind::Normal;
    ResultTable table{Whole(StrParQuartilesTitle)};
    table.AddFootnote(described);
    table.AddFootnote(Whole(isNormal ? StrParNoteTimes : StrParNoteTimesLog));
    const auto share =
        table.AddNumbers({"surviving", StrParColShare1, StrRegColSurvival2, Whole(StrParSurvivingInFull)},
                         CellFormat::fixed(2));
    const auto time = table.AddNumbers({"time", StrRegColTime1, StrRegColTime2}, format);
    const auto error = table.AddNumbers(
        {"standardError", StrRegColError1, StrRegColError2, Whole(StrParTimeErrorInFull)}, format);
    const auto lower = AddLimit(table, "timeLower", false, level, StrRegColTime2, StrParTimeInFull, format);
    const auto upper = AddLimit(table, "timeUpper", true, level, StrRegColTime2, StrParTimeInFull, format);
    if (!table.AddRows(of.host, rows.size())) return OutputResult::Failed(StrRegNoMemory);
    const double largest = LargestTime(of.Results().sample);
    bool anyBeyond = false;
    bool anyNegative = false;
    FiniteCells cells;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const Prediction predicted = predictor.TimeOf(rows[row].second);
        table.NameRow(Whole(rows[row].first));
        table[share][row] = rows[row].second;
        cells.Put(table, time, row, predicted.value);
        cells.Put(table, error, row, predicted.error);
        cells.Put(table, lower, row, predicted.lower);
        cells.Put(table, upper, row, predicted.upper);
        anyBeyond = anyBeyond || predicted.value > largest;
        anyNegative = anyNegative || predicted.value < 0.0;
    }
    if (anyBeyond) table.AddFootnote(Filled(StrParNoteBeyond, {FormatNumber(largest)}));
    if (anyNegative) table.AddFootnote(Whole(StrParNoteNegative));
    cells.AddNote(table);
    return table.Write(of.host);
}

CChartInfo Chart(const RegReportOf& of, const Predictor& predictor) {
    const std::string percent = LevelInPercent(of.state.output.confidenceLevel);
    ChartSeries fitted = FittedSeries(Whole(StrRegLegendEstimate), ChartSeries::Role::Estimate);
    ChartSeries lower = FittedSeries(percent + Whole(StrRegColLower), ChartSeries::Role::LowerBound);
    ChartSeries upper = FittedSeries(percent + Whole(StrRegColUpper), ChartSeries::Role::UpperBound);
    const auto add = [](ChartSeries& series, double x, double y) {
        series.x.push_back(x);
        series.y.push_back(y);
    };
    for (const double time : CurveTimes(predictor, LargestTime(of.Results().sample))) {
        const Prediction survival = predictor.SurvivalAt(time);
        add(fitted, time, survival.value);
        if (!std::isfinite(survival.lower) || !std::isfinite(survival.upper)) continue;
        add(lower, time, survival.lower);
        add(upper, time, survival.upper);
    }
    fitted.leaving = AscendingTimes(of.Results().sample);
    CChartInfo chart = SurvivalChart(CChartInfo::Kind::Line, StrRegUserTitle);
    chart.series.push_back(std::move(fitted));
    if (lower.x.empty()) return chart; // there are no standard errors
    chart.series.push_back(std::move(lower));
    chart.series.push_back(std::move(upper));
    return chart;
}

} // namespace

OutputResult PlotPredictions(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    if (of.state.output.covariateValues.size() > of.Results().names.size())
        return OutputResult::Failed(StrRegTooManyValues);
    const CovariateValues values = ValuesForPlot(of);
    const Predictor predictor = PredictorAt(of, values.values);
    const bool hasErrors = !std::isnan(of.Results().estimate.covariance(0, 0));
    if (!std::isfinite(predictor.Location()) || (hasErrors && !std::isfinite(predictor.LocationError())))
        return OutputResult::Failed(StrRegValuesTooFar);
    if (const OutputResult written = WriteSurvivalAt(of, predictor, values.described); !written.made)
        return written;
    if (const OutputResult written = WriteQuartiles(of, predictor, values.described); !written.made)
        return written;
    CChartInfo chart = Chart(of, predictor);
    chart.notes.push_back(values.described);
    AddNoteBelowZero(predictor, chart.notes);
    return ShowChart(of.host, chart);
}

} // namespace ozm::survival
