#include "module/lifetable/FitTexts.h"
#include "module/lifetable/LifeOutput.h"
#include "module/resources/LifeTables.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

constexpr CellFormat whole = CellFormat::integer();
constexpr CellFormat estimate = CellFormat::general(8);

using ParameterIds = std::array<std::string_view, 3>;

/// The columns of a parameter: its value, its variance and its standard error.
struct ParameterColumns {
    ResultTable::Numbers value;
    ResultTable::Numbers variance;
    ResultTable::Numbers error;

    ParameterColumns(ResultTable& table, const ParameterIds& ids, int name)
        : value(table.AddNumbers({ids[0], name}, estimate)),
          variance(table.AddNumbers(
              {ids[1], StrLifeColVariance, 0, Filled(StrLifeInFullVariance, {Trimmed(name)})}, estimate)),
          error(table.AddNumbers({ids[2], StrLifeColError, 0, Filled(StrLifeInFullError, {Trimmed(name)})},
                                 estimate)) {}

    void Fill(ResultTable& table, std::size_t row, double parameter, double itsVariance) const {
        table[value][row] = parameter;
        table[variance][row] = itsVariance;
        table[error][row] = std::sqrt(itsVariance);
    }
};

/// The columns of the goodness of fit.
struct TestColumns {
    ResultTable::Numbers logLikelihood;
    ResultTable::Numbers chiSquare;
    ResultTable::Numbers df;
    ResultTable::Numbers p;

    explicit TestColumns(ResultTable& table)
        : logLikelihood(table.AddNumbers({"logLikelihood", StrLifeColLog, StrLifeColLikelihood,
                                          std::string{Text(StrLifeInFullLikelihood)}},
                                         CellFormat::general(10))),
          chiSquare(table.AddNumbers(
              {"chiSquare", StrLifeColChiSquare, 0, std::string{Text(StrLifeInFullChiSquare)}}, estimate)),
          df(table.AddNumbers({"df", StrLifeColDf}, whole)),
          p(table.AddNumbers({"p", StrLifeColP}, CellFormat::probability())) {}

    void Fill(ResultTable& table, std::size_t row, const DistributionFit& fit,
              const GoodnessOfFit& test) const {
        if (!std::isfinite(fit.logLikelihood)) return; // the fitting stopped before it
        table[logLikelihood][row] = fit.logLikelihood;
        table[chiSquare][row] = test.chiSquare;
        table[df][row] = test.df;
        table[p][row] = test.p;
    }
};

std::vector<std::size_t> ShownWeightings(const DistributionFits& fits, Distribution family) {
    std::vector<std::size_t> shown;
    for (std::size_t w = 0; w < weightings; ++w)
        if (fits.Of(family, w).IsShown()) shown.push_back(w);
    return shown;
}

OutputResult WriteModel(const LifeReportOf& of, Distribution family, const std::vector<std::string>& notes) {
    const LifeResults& results = of.results;
    ResultTable table{Trimmed(StrLifeParameters) + " " + DistributionName(family)};
    table.AddFootnote(std::string{Text(StrLifeWeightsNote)});
    for (const std::string& note : notes)
        table.AddFootnote(note);
    const auto method = table.AddNumbers(
        {"method", StrLifeColEstimation, StrLifeColMethod, std::string{Text(StrLifeInFullMethod)}}, whole);
    const ParameterColumns lambda(table, {"lambda", "lambdaVariance", "lambdaError"}, StrLifeColLambda);
    std::optional<ParameterColumns> gamma;
    std::optional<ResultTable::Numbers> covariance;
    if (ParameterCount(family) == 2) {
        gamma.emplace(table, ParameterIds{"gamma", "gammaVariance", "gammaError"}, StrLifeColGamma);
        covariance = table.AddNumbers({"covariance", StrLifeColCovariance, StrLifeColGammaLambda,
                                       std::string{Text(StrLifeInFullCovariance)}},
                                      estimate);
    }
    const TestColumns tests(table);
    const std::vector<std::size_t> shown = ShownWeightings(results.fits, family);
    if (!table.AddRows(of.host, shown.size())) return OutputResult::Failed(StrLifeNoMemory);
    for (std::size_t row = 0; row < shown.size(); ++row) {
        if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
        const DistributionFit& fit = results.fits.Of(family, shown[row]);
        table[method][row] = static_cast<double>(shown[row] + 1);
        lambda.Fill(table, row, fit.parameters.lambda, fit.lambdaVariance);
        if (gamma) gamma->Fill(table, row, fit.parameters.gamma, fit.gammaVariance);
        if (covariance) table[*covariance][row] = fit.covariance;
        tests.Fill(table, row, fit, TestFit(fit, family, results.table, results.logLikelihood));
    }
    return table.Write(of.host);
}

} // namespace

OutputResult WriteParameterEstimates(const LifeReportOf& of) {
    const DistributionFits& fits = of.results.fits;
    if (!fits.AnyShown()) return OutputResult::Failed(StrLifeNoFits);
    const StatusLine line(of.host, StrPrinting);
    std::vector<std::string> first;
    if (fits.AnyInadequate() || fits.stop != FitStop::None) first.emplace_back(Text(StrLifeInadequate));
    std::vector<std::string> ofAll = first;
    // A distribution without a table has its reasons in the first one.
    for (const Distribution family : allDistributions)
        if (ShownWeightings(fits, family).empty()) AddReasons(first, fits, family, of.results.table);
    bool isFirst = true;
    for (const Distribution family : allDistributions) {
        if (ShownWeightings(fits, family).empty()) continue;
        std::vector<std::string> notes = std::exchange(isFirst, false) ? first : ofAll;
        AddReasons(notes, fits, family, of.results.table);
        if (const OutputResult written = WriteModel(of, family, notes); !written.made) return written;
    }
    return {};
}

} // namespace ozm::survival
