#pragma once

#include "module/regression/estimation/ModelTests.h"
#include "module/regression/results/FiniteCells.h"
#include "module/regression/results/ModelResults.h"
#include "module/regression/results/RegOutput.h"
#include "module/survdata/ResultTable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {

/// Columns of a chi-square test.
class TestColumns {
public:
    explicit TestColumns(ResultTable& table);
    /// Empty cells where it could not be computed.
    void Fill(ResultTable& table, std::size_t row, const ChiSquareStatistic& test) const;

private:
    ResultTable::Numbers value_;
    ResultTable::Numbers df_;
    ResultTable::Numbers p_;
};

/// What a parameter is.
enum class ParameterRole : std::uint8_t {
    Coefficient,
    Constant, ///< its exponent is not the ratio of anything
    Scale,    ///< above 0: no test whether it is 0, and limits by those of its logarithm
};
/// Of the parameter at a place.
ParameterRole RoleOf(const RegressionResults& results, std::size_t parameter);

/// Columns of a parameter: its estimate, standard error and t-value, its exponent with limits, Wald's test;
/// of a model with parameters besides the coefficients also the limits of the estimate.
class ParameterColumns {
public:
    ParameterColumns(ResultTable& table, double level, const ModelResults& model);
    /// Cells that cannot be represented, or mean nothing, stay empty.
    void Fill(ResultTable& table, std::size_t row, double beta, double variance, ParameterRole role);
    /// Notes for the reader: what exp(beta) is, what p, and why cells are empty, if any are.
    void AddNotes(ResultTable& table) const;

private:
    struct Limits {
        ResultTable::Numbers lower;
        ResultTable::Numbers upper;
    };
    struct Exponent {
        ResultTable::Numbers value;
        Limits limits;
    };
    static Limits AddLimits(ResultTable& table, const char* lowerId, const char* upperId, double level,
                            int of);
    void Put(ResultTable& table, const Limits& limits, std::size_t row, double lower, double upper);

    const ModelResults& model_;
    double z_;
    ResultTable::Numbers beta_;
    ResultTable::Numbers error_;
    ResultTable::Numbers t_;
    std::optional<Limits> limits_;
    std::optional<Exponent> exponent_;
    ResultTable::Numbers wald_;
    ResultTable::Numbers p_;
    FiniteCells cells_;
};

/// The names of parameters that are not yet at the maximum to three digits, of a model whose iteration may
/// end there.
std::vector<std::string> FarFromMaximum(const RegressionResults& results);

/// Spreadsheet of the parameter estimates.
OutputResult WriteParameters(const RegReportOf& of);

/// A column of a limit, named by the level: "95% lower", below it another heading, and in full.
ResultTable::Numbers AddLimit(ResultTable& table, std::string_view id, bool upper, double level, int heading2,
                              int ofWhat, CellFormat format);

} // namespace ozm::survival
