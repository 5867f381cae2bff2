#pragma once

#include "module/regression/estimation/ModelTests.h"
#include "module/regression/results/FiniteCells.h"
#include "module/regression/results/RegOutput.h"
#include "module/survdata/ResultTable.h"

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

/// Columns of a parameter: its estimate, standard error and t-value, its exponent with limits, Wald's test.
class ParameterColumns {
public:
    ParameterColumns(ResultTable& table, double level);
    /// Cells that cannot be represented stay empty.
    void Fill(ResultTable& table, std::size_t row, double beta, double variance);
    /// Notes for the reader: what exp(beta) is, what p, and why cells are empty, if any are.
    void AddNotes(ResultTable& table, int noteOnExponent) const;

private:
    double z_;
    ResultTable::Numbers beta_;
    ResultTable::Numbers error_;
    ResultTable::Numbers t_;
    ResultTable::Numbers exp_;
    ResultTable::Numbers lower_;
    ResultTable::Numbers upper_;
    ResultTable::Numbers wald_;
    ResultTable::Numbers p_;
    FiniteCells cells_;
};

/// Spreadsheet of the parameter estimates.
OutputResult WriteParameters(const RegReportOf& of);

/// A column of a limit, named by the level: "95% lower", below it another heading, and in full.
ResultTable::Numbers AddLimit(ResultTable& table, std::string_view id, bool upper, double level, int heading2,
                              int ofWhat, CellFormat format);

} // namespace ozm::survival
