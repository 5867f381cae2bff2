// Covariates by formulas of the host: which values the host is given.

#include "module/regression/data/ExpressionCovariates.h"
#include "tests/module/regression/CoxCases.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ozm::survival {
namespace {

struct Formula final : CompiledExpression {
    explicit Formula(std::vector<int> numbers) : references(std::move(numbers)) {}
    [[nodiscard]] std::span<const int> References() const override { return references; }
    std::vector<int> references;
};

/// Of every formula: 1 and its first value, 100 times its second, and so on. Refuses columns of other
/// lengths.
class Sums final : public CAnalysisDoc, public NullHost, public NullExpressions {
public:
    HostServices& Services() override { return *this; }
    ExpressionService& Expressions() override { return *this; }
    int RunSpreadsheetFormulas(std::span<const std::span<const double>> columns, const CompiledExpression&,
                               std::span<double> results) override {
        for (std::size_t i = 0; i < results.size(); ++i) {
            results[i] = 1;
            double factor = 1;
            for (const auto& column : columns) {
                if (column.size() != 1 && column.size() != results.size()) return -1;
                results[i] += factor * column[column.size() == 1 ? 0 : i];
                factor *= 100;
            }
        }
        return refuses ? -1 : 0;
    }
    bool refuses = false;
};

TEST(ExpressionCovariates, ValuesOfTheCasesAndTheTime) {
    // Variables 4 and 2, in this order; the time is number 6.
    CoxCases cases;
    for (int i = 0; i < 9; ++i) {
        cases.time.push_back(9 - i);
        cases.status.push_back(1);
    }
    cases.x = {{1, 2, 3, 4, 5, 6, 7, 8, 9}, {20, 21, 22, 23, 24, 25, 26, 27, 28}};
    const CoxSample made(cases);
    constexpr int variables[] = {4, 2};
    std::vector<std::unique_ptr<CompiledExpression>> formulas;
    for (const std::vector<int>& references :
         {std::vector<int>{2}, {4, 6}, {2, 4, 6}, {6}, std::vector<int>{}})
        formulas.push_back(std::make_unique<Formula>(references));
    Sums host;
    CAnalysisSupport analysis{&host};
    ExpressionCovariates covariates(analysis, formulas, made.sample, variables, 6);
    ASSERT_EQ(covariates.Count(), 5U);
    const bool dependent[] = {false, true, true, true, false};
    for (std::size_t k = 0; k < 5; ++k)
        EXPECT_EQ(covariates.DependsOnTime(k), dependent[k]) << k;
    for (std::size_t first = 0; first < 9; ++first)
        for (std::size_t count = 1; first + count <= 9; ++count) {
            Values values(count);
            for (std::size_t k = 0; k < 5; ++k) {
                covariates.Evaluate(k, first, 7, values);
                for (std::size_t i = 0; i < count; ++i) {
                    const auto case1 = static_cast<double>(first + i + 1);
                    const double four = case1;
                    const double two = 19 + case1;
                    const double expected[] = {1 + two, 1 + four + 700, 1 + two + 100 * four + 70000, 8, 1};
                    EXPECT_EQ(values[i], expected[k]) << k << " " << first << " " << i;
                }
            }
        }
    host.refuses = true;
    Values values(3);
    covariates.Evaluate(2, 0, 7, values);
    for (const double each : values)
        EXPECT_TRUE(std::isnan(each));
}

} // namespace
} // namespace ozm::survival
