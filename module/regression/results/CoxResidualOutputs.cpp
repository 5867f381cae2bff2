#include "module/regression/cox/CoxResiduals.h"
#include "module/regression/results/CoxOutput.h"
#include "module/regression/results/FiniteCells.h"
#include "module/regression/results/ResidualChart.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"

#include <cstddef>
#include <vector>

namespace ozm::survival {
OutputResult PlotCoxResiduals(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    const OrderedSample sample = of.Results().sample.Ordered();
    const RiskSets sets = RiskSetsOf(of.Results());
    const CoxResiduals residuals = ComputeCoxResiduals(sample, sets);
    CChartInfo chart = ResidualChart({StrCoxMartingaleTitle, StrCoxAxisPredictor, StrCoxAxisMartingale},
                                     sets.Predictors(), residuals.martingale, sample.complete);
    chart.notes.push_back(Whole(StrCoxNoteMartingale));
    return ShowChart(of.host, chart);
}

OutputResult WriteCoxResiduals(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    const OrderedSample sample = of.Results().sample.Ordered();
    const auto cases = of.Results().sample.CaseNumbers();
    const RiskSets sets = RiskSetsOf(of.Results());
    const CoxResiduals residuals = ComputeCoxResiduals(sample, sets);
    const CellFormat format = CellFormat::general(8);
    ResultTable table{Whole(StrRegResidualsTitle)};
    table.AddNote(Whole(StrRegNoteCensored));
    table.AddFootnote(Whole(StrCoxNotePredictor));
    table.AddFootnote(Whole(StrCoxNoteMartingale));
    const auto number = table.AddIntegers({"caseNumber", StrRegColCase1, StrRegColCaseNumber});
    const auto time = table.AddNumbers({"time", StrRegColTime1, StrRegColTime2}, format);
    const auto mark = table.AddMarks({"censored", StrRegColCensored}, censoredMarks);
    const auto predictor = table.AddNumbers(
        {"linearPredictor", StrRegColPredictor1, StrRegColPredictor2, Whole(StrRegPredictorInFull)}, format);
    const auto martingale = table.AddNumbers(
        {"martingale", StrRegColMartingale1, StrRegColResidual2, Whole(StrRegMartingaleInFull)}, format);
    const auto deviance = table.AddNumbers({"deviance", StrRegColDeviance1, StrRegColResidual2}, format);
    if (!table.AddRows(of.host, sample.cases)) return OutputResult::Failed(StrRegNoMemory);
    const std::vector<std::size_t> order = InOrderOfCases(cases);
    FiniteCells cells;
    for (std::size_t row = 0; row < order.size(); ++row) {
        if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
        const std::size_t i = order[row];
        table[number][row] = cases[i];
        table[time][row] = sample.times[i];
        table[mark][row] = sample.complete[i] != 0 ? 0 : 1;
        cells.Put(table, predictor, row, sets.Predictors()[i]);
        cells.Put(table, martingale, row, residuals.martingale[i]);
        cells.Put(table, deviance, row, residuals.deviance[i]);
    }
    cells.AddNote(table);
    return table.Write(of.host);
}

} // namespace ozm::survival
