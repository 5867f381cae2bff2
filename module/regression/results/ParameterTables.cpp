#include "module/regression/results/ParameterTables.h"

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
    for (std::size_t k = 0; k < size; ++k) {
        const ParameterRole role = RoleOf(results, k);
        const std::string id = role == ParameterRole::Coefficient ? "covariate" + std::to_string(k + 1)
                               : role == ParameterRole::Constant  ? "constant"
                                                                  : "sigma";
        columns.push_back(table.AddNumbers({.id = id, .named = results.parameterNames[k]}, format));
    }
    if (!table.AddRows(of.host, size)) return OutputResult::Failed(StrRegNoMemory);
    for (std::size_t row = 0; row < size; ++row) {
        if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
        table.NameRow(results.parameterNames[row]);
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

ParameterRole RoleOf(const RegressionResults& results, std::size_t parameter) {
    const std::size_t covariates = results.names.size();
    if (parameter < covariates) return ParameterRole::Coefficient;
    return parameter == covariates ? ParameterRole::Constant : ParameterRole::Scale;
}

ParameterColumns::Limits ParameterColumns::AddLimits(ResultTable& table, const char* lowerId,
                                                     const char* upperId, double level, int of) {
    const auto lower = AddLimit(table, lowerId, false, level, of, of, estimateFormat);
    return {lower, AddLimit(table, upperId, true, level, of, of, estimateFormat)};
}

ParameterColumns::ParameterColumns(ResultTable& table, double level, const ModelResults& model)
    : model_(model), z_(ConfidenceZ(level)), beta_(table.AddNumbers({"beta", StrRegColBeta}, estimateFormat)),
      error_(table.AddNumbers({"standardError", StrRegColError1, StrRegColError2}, estimateFormat)),
      t_(table.AddNumbers({"t", StrRegColT}, estimateFormat)),
      limits_(model.noteOnParameters != 0
                  ? std::optional{AddLimits(table, "betaLower", "betaUpper", level, StrRegColBeta)}
                  : std::nullopt),
      exponent_(model.exponents != 0
                    ? std::optional{Exponent{
                          table.AddNumbers({"expBeta", StrRegColExp1}, estimateFormat),
                          AddLimits(table, "expBetaLower", "expBetaUpper", level, StrRegColExp1)}}
                    : std::nullopt),
      wald_(table.AddNumbers({"wald", StrRegColWald1, StrRegColWald2, Whole(StrRegWaldInFull)},
                             estimateFormat)),
      p_(table.AddNumbers({"p", StrRegColP}, CellFormat::probability())) {}

void ParameterColumns::Put(ResultTable& table, const Limits& limits, std::size_t row, double lower,
                           double upper) {
    cells_.Put(table, limits.lower, row, lower);
    cells_.Put(table, limits.upper, row, upper);
}

void ParameterColumns::Fill(ResultTable& table, std::size_t row, double beta, double variance,
                            ParameterRole role) {
    const double error = std::sqrt(variance);
    const bool isScale = role == ParameterRole::Scale;
    const double reach = z_ * error;
    const double factor = std::exp(reach / beta); // of the limits of a scale
    cells_.Put(table, beta_, row, beta);
    cells_.Put(table, error_, row, error);
    if (limits_)
        Put(table, *limits_, row, isScale ? beta / factor : beta - reach,
            isScale ? beta * factor : beta + reach);
    if (isScale) return;
    const ChiSquareStatistic wald = ChiSquareOf(beta / error * (beta / error), 1);
    cells_.Put(table, t_, row, beta / error);
    cells_.Put(table, wald_, row, wald.value);
    cells_.Put(table, p_, row, wald.p);
    if (!exponent_ || role != ParameterRole::Coefficient) return;
    cells_.Put(table, exponent_->value, row, std::exp(beta));
    Put(table, exponent_->limits, row, std::exp(beta - reach), std::exp(beta + reach));
}

void ParameterColumns::AddNotes(ResultTable& table) const {
    for (const int note : {model_.exponents, model_.noteOnParameters, int{StrRegNoteWald}})
        if (note != 0) table.AddFootnote(Whole(note));
    cells_.AddNote(table);
}

std::vector<std::string> FarFromMaximum(const RegressionResults& results) {
    std::vector<std::string> names;
    if (!ResultsOf(results.kind).tellsDistance) return names;
    for (const std::size_t k : ParametersOffTheMaximum(results.estimates, results.estimate))
        names.push_back(results.parameterNames[k]);
    return names;
}

OutputResult WriteParameters(const RegReportOf& of) {
    const RegressionResults& results = of.Results();
    const ModelResults& model = ResultsOf(results.kind);
    ResultTable table{Whole(StrRegParametersTitle)};
    table.IsEssential();
    ParameterColumns columns(table, of.state.output.confidenceLevel, model);
    const auto gradient = table.AddNumbers({"gradient", StrRegColGradient}, estimateFormat);
    if (!table.AddRows(of.host, results.Parameters())) return OutputResult::Failed(StrRegNoMemory);
    for (std::size_t k = 0; k < results.Parameters(); ++k) {
        if (ResultTable::StopsAt(of.host, k)) return OutputResult::NotMade();
        table.NameRow(results.parameterNames[k]);
        columns.Fill(table, k, results.estimates[k], results.estimate.covariance(k, k), RoleOf(results, k));
        table[gradient][k] = results.estimate.gradient[k];
    }
    columns.AddNotes(table);
    if (model.noteOnMeasures != 0) table.AddFootnote(Whole(model.noteOnMeasures));
    const bool mayBeSmaller = results.criterion > static_cast<double>(static_cast<float>(leastCriterion));
    table.AddFootnote(Filled(model.noteOnCriterion, {FormatNumber(results.criterion, 7)}) +
                      (mayBeSmaller ? Whole(StrRegNoteCloser) : ""));
    if (const auto far = FarFromMaximum(results); !far.empty())
        table.AddFootnote(Filled(StrRegNoteFar, {Listed(far, StrAnd)}) +
                          (model.countsInUnits ? Whole(StrRegNoteUnits) : ""));
    return table.Write(of.host);
}

OutputResult WriteParameterCovariances(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    const SquareMatrix& covariance = of.Results().estimate.covariance;
    const OutputResult written =
        WriteMatrix(of, StrRegCovariancesTitle, estimateFormat, ResultsOf(of.Results().kind).noteOnCovariance,
                    [&](std::size_t k, std::size_t l) { return covariance(k, l); });
    if (!written.made) return written;
    return WriteMatrix(of, StrRegCorrelationsTitle, CellFormat::fixed(6), 0,
                       [&](std::size_t k, std::size_t l) {
                           return k == l && covariance(k, k) > 0.0
                                      ? 1.0
                                      : covariance(k, l) / std::sqrt(covariance(k, k) * covariance(l, l));
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
