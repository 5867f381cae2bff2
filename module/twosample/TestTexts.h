#pragma once

#include "module/twosample/ComputeTests.h"

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {

/// One number of a test's line of statistics: its symbol, and the names of its column for programs and
/// people.
struct Statistic {
    std::string_view symbol;
    const char* id;
    int heading1;
    int heading2;
    double value;

    [[nodiscard]] std::string InReport() const; ///< "Var = 5644.39"
};

std::string TitleOf(TwoTest test);

/// The line of statistics of a test; empty when it was not computed.
std::vector<Statistic> StatisticsOf(const TestResult& result);

/// The notes below it: which variance it uses first.
std::vector<std::string> NotesOf(const TestResult& result, const PooledSample& sample);

/// A test's row in the table of all tests; NaN or empty where the test has no such value.
struct SummaryRow {
    static constexpr double empty = std::numeric_limits<double>::quiet_NaN();
    double statistic = empty; ///< z, F or C
    double df1 = empty;
    double df2 = empty;
    double p = empty;
    double scoreSum = empty; ///< for Cox-Mantel: U
    double variance = empty;
    std::string varianceForm{};
};
SummaryRow SummaryOf(const TestResult& result);

} // namespace ozm::survival
