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

#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

ChartSeries KaplanMeier(const RegressionSample& sample, std::span<const EstimateStep> steps) {
    ChartSeries series;
    series.legend = Text(StrParLegendKaplan);
    series.style = ChartSeries::Style::Step;
    series.group = 1;
    series.x.push_back(0.0);
    series.y.push_back(1.0);
    for (const EstimateStep& step : steps) {
        series.x.push_back(step.at);
        series.y.push_back(step.survival);
    }
    series.leaving = AscendingTimes(sample);
    if (series.x.back() < series.leaving.back()) {
        series.x.push_back(series.leaving.back());
        series.y.push_back(series.y.back());
    }
    return series;
}

} // namespace

OutputResult PlotFittedSurvival(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    const RegressionSample& sample = of.Results().sample;
    const Predictor predictor = PredictorAt(of, CovariateMeans(of.Results()));
    CChartInfo chart = SurvivalChart(CChartInfo::Kind::Line, StrRegSurvivalTitle);
    ChartSeries fitted = FittedSeries(Whole(StrParLegendFitted), ChartSeries::Role::Estimate);
    for (const double time : CurveTimes(predictor, LargestTime(sample))) {
        fitted.x.push_back(time);
        fitted.y.push_back(predictor.SurvivalAt(time).value);
    }
    chart.series.push_back(std::move(fitted));
    chart.series.push_back(KaplanMeier(sample, EstimateSteps(sample.Times(), sample.Complete())));
    chart.notes.emplace_back(Text(StrParNoteTable));
    AddNoteBelowZero(predictor, chart.notes);
    return ShowChart(of.host, chart);
}

OutputResult WriteFittedSurvival(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    const RegressionSample& sample = of.Results().sample;
    const std::vector<EstimateStep> steps = EstimateSteps(sample.Times(), sample.Complete());
    const Predictor predictor = PredictorAt(of, CovariateMeans(of.Results()));
    const CellFormat share = CellFormat::fixed(6);
    ResultTable table{Whole(StrParTableTitle)};
    table.AddFootnote(Whole(StrParNoteTable));
    EventColumns events(table);
    const auto kaplan = table.AddNumbers(
        {"kaplanMeier", StrParColKaplan1, StrParColKaplan2, Whole(StrParKaplanInFull)}, share);
    const auto kaplanError = table.AddNumbers(
        {"kaplanMeierError", 0, StrParColKaplanError2, Whole(StrParKaplanErrorInFull)}, share);
    FittedColumns fitted(table, of.state.output.confidenceLevel);
    if (!table.AddRows(of.host, steps.size())) return OutputResult::Failed(StrRegNoMemory);
    for (std::size_t row = 0; row < steps.size(); ++row) {
        if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
        events.Fill(table, row, steps[row]);
        table[kaplan][row] = steps[row].survival;
        table[kaplanError][row] = steps[row].error;
        fitted.Fill(table, row, predictor.SurvivalAt(steps[row].at));
    }
    std::vector<std::string> notes;
    AddNoteBelowZero(predictor, notes);
    for (std::string& note : notes)
        table.AddFootnote(std::move(note));
    fitted.AddNotes(table);
    return table.Write(of.host);
}

} // namespace ozm::survival
