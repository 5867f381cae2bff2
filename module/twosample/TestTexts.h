#pragma once

#include "module/twosample/ComputeTests.h"

#include <limits>
#include <string>
#include <vector>

namespace ozm::survival {

/// One number of a test's line of statistics: how a formula names it, how a column does.
struct Statistic {
    const char* symbol;
    int heading1;
    int heading2;
    double value;

    [[nodiscard]] std::string InReport() const; ///< "Var = 5644.39"
};

/// The number of a test's title in the string table.
int TitleOf(TwoTest test);

/// The line of statistics of a test that was computed.
std::vector<Statistic> StatisticsOf(const TestResult& result);

/// The notes below it: which variance it uses first.
std::vector<std::string> NotesOf(const TestResult& result, const GroupCounts& counts);

/// Which variance a test uses; empty where it uses none.
std::string VarianceForm(const TestResult& result);

/// What a test has of the columns that set all of them side by side; NaN for what it has not.
struct SummaryRow {
    static constexpr double empty = std::numeric_limits<double>::quiet_NaN();
    double statistic = empty;
    double df1 = empty;
    double df2 = empty;
    double scoreSum = empty; ///< for Cox-Mantel: U
    double variance = empty;
};
SummaryRow SummaryOf(const TestResult& result);

} // namespace ozm::survival
