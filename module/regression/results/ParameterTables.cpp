#include "module/regression/results/ParameterTables.h"

#include "module/regression/results/ModelResults.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/StatusLine.h"

#include <cmath>
#include <string>
#include <string_view>

namespace ozm::survival {
namespace {

constexpr CellFormat estimateFormat = CellFormat::general(8);

/// A square spreadsheet of the parameters.
template <class Cell>
OutputResult WriteMatrix(const RegReportOf& of, int title, CellFormat format, int note, const Cell& cell) {
    const RegressionResults& results = of.Results();
    const std::size_t size = results.Parameters();
    ResultTable table{Whole(title)};
    if (note != 0) table.AddFootnote(Whole(note));
    std::vector<ResultTable::Numbers> columns;
    for (std::size_t k = 0; k < size; ++k)
        columns.push_back(
            table.AddNumbers({.id = "covariate" + std::to_string(k + 1), .named = results.names[k]}, format));
    if (!table.AddRows(of.host, size)) return OutputResult::Failed(StrRegNoMemory);
    for (std::size_t row = 0; row < size; ++row) {
        if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
        table.NameRow(results.names[row]);
        for (std::size_t k = 0; k < size; ++k)
            table[columns[k]][row] = cell(row, k);
    }
    return table.Write(of.host);
}

} // namespace

TestColumns::TestColumns(ResultTable& table)
    : value_(table.AddNumbers({"chiSquare", StrRegColChiSquare, 0, Whole(StrRegChiSquareInFull)},
                              estimateFormat)),
      df_(table.AddNumbers({"df", StrRegColDf}, CellFormat::integer())),
      p_(table.AddNumbers({"p", StrRegColP}, CellFormat::probability())) {}

void TestColumns::Fill(ResultTable& table, std::size_t row, const ChiSquareStatistic& test) const {
    table[df_][row] = test.df;
    if (!std::isfinite(test.value)) return;
    table[value_][row] = test.value;
    table[p_][row] = test.p;
}

ResultTable::Numbers AddLimit(ResultTable& table, std::string_view id, bool upper, double level, int heading2,
                              int ofWhat, CellFormat format) {
    const std::string percent = LevelInPercent(level);
    return table.AddNumbers(
        {.id = id,
         .heading2 = heading2,
         .inFull = Filled(upper ? StrRegUpperInFull : StrRegLowerInFull, {percent, Whole(ofWhat)}),
         .named = percent + Whole(upper ? StrRegColUpper : StrRegColLower)},
        format);
}

ParameterColumns::ParameterColumns(ResultTable& table, double level)
    : z_(ConfidenceZ(level)), beta_(table.AddNumbers({"beta", StrRegColBeta}, estimateFormat)),
      error_(table.AddNumbers({"standardError", StrRegColError1, StrRegColError2}, estimateFormat)),
      t_(table.AddNumbers({"t", StrRegColT}, estimateFormat)),
      exp_(table.AddNumbers({"expBeta", StrRegColExp1}, estimateFormat)),
      lower_(AddLimit(table, "expBetaLower", false, level, StrRegColExp1, StrRegColExp1, estimateFormat)),
      upper_(AddLimit(table, "expBetaUpper", true, level, StrRegColExp1, StrRegColExp1, estimateFormat)),
      wald_(table.AddNumbers({"wald", StrRegColWald1, StrRegColWald2, Whole(StrRegWaldInFull)},
                             estimateFormat)),
      p_(table.AddNumbers({"p", StrRegColP}, CellFormat::probability())) {}

void ParameterColumns::Fill(ResultTable& table, std::size_t row, double beta, double variance) {
    const auto put = [&](ResultTable::Numbers column, double value) {
        cells_.Put(table, column, row, value);
    };
    const double error = std::sqrt(variance);
    const ChiSquareStatistic wald = ChiSquareOf(beta / error * (beta / error), 1);
    put(beta_, beta);
    put(error_, error);
    put(t_, beta / error);
    put(exp_, std::exp(beta));
    put(lower_, std::exp(beta - z_ * error));
    put(upper_, std::exp(beta + z_ * error));
    put(wald_, wald.value);
    put(p_, wald.p);
}

void ParameterColumns::AddNotes(ResultTable& table, int noteOnExponent) const {
    table.AddFootnote(Whole(noteOnExponent));
    table.AddFootnote(Whole(StrRegNoteWald));
    cells_.AddNote(table);
}

OutputResult WriteParameters(const RegReportOf& of) {
    const RegressionResults& results = of.Results();
    ResultTable table{Whole(StrRegParametersTitle)};
    table.IsEssential();
    ParameterColumns columns(table, of.state.output.confidenceLevel);
    const auto gradient = table.AddNumbers({"gradient", StrRegColGradient}, estimateFormat);
    if (!table.AddRows(of.host, results.Parameters())) return OutputResult::Failed(StrRegNoMemory);
    for (std::size_t k = 0; k < results.Parameters(); ++k) {
        if (ResultTable::StopsAt(of.host, k)) return OutputResult::NotMade();
        table.NameRow(results.names[k]);
        columns.Fill(table, k, results.estimates[k], results.estimate.covariance(k, k));
        table[gradient][k] = results.estimate.gradient[k];
    }
    columns.AddNotes(table, ResultsOf(results.kind).noteOnExponent);
    table.AddFootnote(Whole(ResultsOf(results.kind).noteOnMeasures));
    table.AddFootnote(Filled(StrRegNoteCriterion, {FormatNumber(results.criterion, 7)}));
    return table.Write(of.host);
}

OutputResult WriteParameterCovariances(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    const SquareMatrix& covariance = of.Results().estimate.covariance;
    const OutputResult written = WriteMatrix(of, StrRegCovariancesTitle, estimateFormat, StrRegNoteCovariance,
                                             [&](std::size_t k, std::size_t l) { return covariance(k, l); });
    if (!written.made) return written;
    return WriteMatrix(
        of, StrRegCorrelationsTitle, CellFormat::fixed(6), 0, [&](std::size_t k, std::size_t l) {
            return k == l ? 1.0 : covariance(k, l) / std::sqrt(covariance(k, k) * covariance(l, l));
        });
}

OutputResult WriteCovariateMeans(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    const RegressionResults& results = of.Results();
    ResultTable table{Whole(StrRegMeansTitle)};
    const auto mean = table.AddNumbers({"mean", StrRegColMean}, CellFormat::general(10));
    const auto deviation = table.AddNumbers(
        {"standardDeviation", StrRegColDeviation1, StrRegColDeviation2, Whole(StrRegDeviationInFull)},
        CellFormat::general(10));
    const auto values = table.AddIntegers({"values", StrRegColValues});
    const auto missing = table.AddIntegers({"missing", StrRegColMissing});
    if (!table.AddRows(of.host, results.sample.Covariates())) return OutputResult::Failed(StrRegNoMemory);
    bool anyMissing = false;
    for (std::size_t k = 0; k < results.sample.Covariates(); ++k) {
        if (ResultTable::StopsAt(of.host, k)) return OutputResult::NotMade();
        const CovariateSummary& summary = results.sample.Summary(k);
        table.NameRow(results.names[k]);
        table[mean][k] = summary.mean;
        table[deviation][k] = summary.deviation;
        table[values][k] = summary.values;
        table[missing][k] = results.missing[k];
        anyMissing = anyMissing || results.missing[k] > 0;
    }
    if (anyMissing)
        table.AddFootnote(Whole(results.meansSubstituted ? StrRegNoteReplaced : StrRegNoteLeftOut));
    return table.Write(of.host);
}

} // namespace ozm::survival
