#include "module/regression/results/CoxCurves.h"

#include "module/regression/results/CovariateValues.h"
#include "module/regression/results/CoxOutput.h"
#include "module/regression/results/ParameterTables.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

namespace ozm::survival {
std::vector<StratumCurve> CurvesAt(const RegReportOf& of, std::span<const double> covariates) {
    const RegressionResults& results = of.Results();
    const OrderedSample sample = results.sample.Ordered();
    const RiskSets sets = RiskSetsOf(results);
    double predictor = 0.0;
    for (std::size_t k = 0; k < covariates.size(); ++k)
        predictor += results.estimates[k] * (covariates[k] - results.sample.Summary(k).mean);
    const double z = ConfidenceZ(of.state.output.confidenceLevel);
    std::vector<StratumCurve> curves(sample.blocks.size());
    std::size_t begin = 0;
    for (std::size_t block = 0; block < sample.blocks.size(); ++block) {
        const std::size_t stratum = StratumOfBlock(results, block);
        StratumCurve& curve = curves[stratum];
        curve.stratum = stratum;
        const auto times = sample.times.subspan(begin, static_cast<std::size_t>(sample.blocks[block]));
        curve.leaving.assign(times.rbegin(), times.rend());
        curve.points = CoxSurvival(sets, block, covariates, predictor, results.estimate.covariance, z);
        begin += times.size();
    }
    return curves;
}

std::vector<StratumCurve> CurvesAtMeans(const RegReportOf& of) {
    return CurvesAt(of, CovariateMeans(of.Results()));
}

OutputResult WriteCurves(const RegReportOf& of, const std::vector<StratumCurve>& curves,
                         const CurveTable& what, const std::string& furtherNote) {
    const RegressionResults& results = of.Results();
    const double level = of.state.output.confidenceLevel;
    const CellFormat general = CellFormat::general(8);
    const CellFormat share = CellFormat::fixed(6);
    ResultTable table{Whole(what.title)};
    table.AddFootnote(Whole(what.note));
    if (!furtherNote.empty()) table.AddFootnote(furtherNote);
    std::optional<ResultTable::Texts> stratum;
    if (results.Stratified()) stratum = table.AddTexts({"stratum", StrCoxColStratum});
    const auto time = table.AddNumbers({"time", StrRegColTime1, StrRegColTime2}, general);
    const auto atRisk = table.AddIntegers({"atRisk", StrRegColAtRisk1, StrRegColAtRisk2});
    const auto events = table.AddIntegers({"events", StrRegColEvents});
    const auto hazard = table.AddNumbers(
        {"cumulativeHazard", StrRegColCumulative1, StrCoxColHazard2, Whole(StrCoxHazardInFull)}, general);
    const auto error = table.AddNumbers(
        {"standardError", StrCoxColHazard2, StrCoxColHazardError2, Whole(StrCoxHazardErrorInFull)}, general);
    const auto survival = table.AddNumbers(
        {"survival", StrRegColCumulative1, StrRegColSurvival2, Whole(StrRegSurvivalInFull)}, share);
    const auto lower =
        AddLimit(table, "survivalLower", false, level, StrRegColSurvival2, StrRegSurvivalInFull, share);
    const auto upper =
        AddLimit(table, "survivalUpper", true, level, StrRegColSurvival2, StrRegSurvivalInFull, share);
    std::optional<ResultTable::Numbers> atZero;
    if (what.atZero)
        atZero = table.AddNumbers(
            {"hazardAtZero", StrCoxColAtZero1, StrCoxColAtZero2, Whole(StrCoxAtZeroInFull)}, general);
    std::size_t rows = 0;
    for (const StratumCurve& curve : curves)
        rows += curve.points.size();
    if (!table.AddRows(of.host, rows)) return OutputResult::Failed(StrRegNoMemory);
    const double toZero = std::exp(-MeanPredictor(results));
    FiniteCells cells;
    const auto put = [&](ResultTable::Numbers column, std::size_t row, double value) {
        cells.Put(table, column, row, value);
    };
    std::size_t row = 0;
    for (const StratumCurve& curve : curves) {
        const std::string name = stratum ? StratumName(of, curve.stratum) : std::string{};
        for (const CoxSurvivalPoint& point : curve.points) {
            if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
            if (stratum) table[*stratum][row] = name;
            table[time][row] = point.time;
            table[atRisk][row] = static_cast<std::int32_t>(point.atRisk);
            table[events][row] = static_cast<std::int32_t>(point.events);
            put(hazard, row, point.cumulativeHazard);
            put(error, row, point.cumulativeError);
            put(survival, row, point.survival);
            put(lower, row, point.lower);
            put(upper, row, point.upper);
            if (atZero) put(*atZero, row, point.cumulativeHazard * toZero);
            ++row;
        }
    }
    cells.AddNote(table);
    return table.Write(of.host);
}

OutputResult WriteCoxSurvival(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    return WriteCurves(of, CurvesAtMeans(of), {StrCoxTableTitle, StrCoxNoteTable, true}, {});
}

} // namespace ozm::survival
