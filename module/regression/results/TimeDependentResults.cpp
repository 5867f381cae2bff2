#include "module/regression/data/ExpressionCovariates.h"
#include "module/regression/results/Forest.h"
#include "module/regression/results/TimeDependentOutput.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/resources/TimeDependent.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <string>
#include <vector>

namespace ozm::survival {
namespace {

/// Of each covariate the values that the cases have at their own times.
OutputResult WriteMeans(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    const RegressionResults& results = of.Results();
    const RegressionSample& sample = results.sample;
    ExpressionCovariates covariates(of.host, results.compiled.Expressions(), sample, results.covariates,
                                    results.compiled.TimeReference());
    ResultTable table{Whole(StrRegMeansTitle)};
    const auto mean = table.AddNumbers({"mean", StrRegColMean}, CellFormat::general(10));
    const auto deviation = table.AddNumbers(
        {"standardDeviation", StrRegColDeviation1, StrRegColDeviation2, Whole(StrRegDeviationInFull)},
        CellFormat::general(10));
    const auto count = table.AddIntegers({"values", StrRegColValues});
    if (!table.AddRows(of.host, covariates.Count())) return OutputResult::Failed(StrRegNoMemory);
    std::vector<double> values(sample.Cases());
    for (std::size_t k = 0; k < covariates.Count(); ++k) {
        if (StopRequested(of.host)) return OutputResult::NotMade();
        for (std::size_t i = 0; i < values.size(); ++i)
            covariates.Evaluate(k, i, sample.Times()[i], {&values[i], 1});
        const CovariateSummary summary = SummaryOf(values);
        table.NameRow(results.names[k]);
        table[mean][k] = summary.mean;
        table[deviation][k] = summary.deviation;
        table[count][k] = summary.values;
    }
    table.AddFootnote(Whole(StrTimeMeansNote));
    return table.Write(of.host);
}

OutputResult PlotHazardRatios(const RegReportOf& of) {
    return PlotForest(
        of, {StrCoxForestTitle, StrCoxAxisRatio, StrCoxLegendRatio, StrCoxNoteForest, StrCoxNoRatio});
}

// What rests on one value of each covariate per case is not among them.
constexpr ModelOutput outputs[] = {{RegForest, PlotHazardRatios}, {RegStratified, WriteStratifiedAnalysis}};

} // namespace

const ModelResults timeDependentResults{.title = StrTimeOut,
                                        .lineOfModel = StrRegTies,
                                        .hasScoreTest = true,
                                        .exponents = StrRegNoteExp,
                                        .noteOnCriterion = StrRegNoteCriterion,
                                        .noteOnCovariance = StrRegNoteCovariance,
                                        .outputs = outputs,
                                        .means = WriteMeans};

OutputResult WriteDefinitions(CAnalysisSupport& host, std::span<const DefinedCovariate> covariates) {
    ResultTable table{Whole(StrTimeTableTitle) + Whole(StrTimeTableTitle2)};
    const auto name = table.AddTexts({"name", StrTimeColName});
    const auto expression = table.AddTexts({"expression", StrTimeColExpression});
    if (!table.AddRows(host, covariates.size())) return OutputResult::Failed(StrRegNoMemory);
    for (std::size_t k = 0; k < covariates.size(); ++k) {
        table[name][k] = covariates[k].name;
        table[expression][k] = covariates[k].expression;
    }
    return table.Write(host);
}

} // namespace ozm::survival
