// Compiled formulas: one call per case, and one call for many.
#include "host/session/SessionServices.h"
#include "tests/support/MakeData.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace korvana::bench {
namespace {

constexpr const char* formulas[] = {"age * log(T_)",       "age * log(T_ + 1) + score",
                                    "if(T_ > 30, age, 0)", "(age > 50) * (T_ - 10)",
                                    "log(age + 1) * T_",   "age ^ 2"};

constexpr int variables = 2;

struct Compiled {
    explicit Compiled(const char* text) {
        DataSet data("bench.csv", 1);
        for (const char* name : {"age", "score"}) {
            Variable variable;
            variable.name = name;
            test::addVariable(data, variable, [](int) { return 1.0; });
        }
        parts.data.open(std::move(data));
        const std::string time[] = {"T_"};
        std::string error;
        host.Expressions().COMP(text, time, formula, error);
    }
    SessionParts parts;
    SessionServices host{parts, {}};
    std::unique_ptr<ozm::CompiledExpression> formula;
};

std::vector<std::vector<double>> columnsOf(const ozm::CompiledExpression& formula, std::size_t cases) {
    std::vector<std::vector<double>> columns(formula.References().size());
    for (auto& column : columns)
        for (std::size_t i = 0; i < cases; ++i)
            column.push_back(static_cast<double>(i % 90));
    const auto references = formula.References();
    if (references.back() > variables) columns.back().assign(1, 45.0); // the time, one for all cases
    return columns;
}

void oneByOne(benchmark::State& state) {
    Compiled compiled(formulas[state.range(0)]);
    const auto cases = static_cast<std::size_t>(state.range(1));
    const auto columns = columnsOf(*compiled.formula, cases);
    std::vector<double> values(columns.size());
    std::vector<double> results(cases);
    for (auto _ : state) {
        for (std::size_t i = 0; i < cases; ++i) {
            for (std::size_t k = 0; k < columns.size(); ++k)
                values[k] = columns[k][columns[k].size() == 1 ? 0 : i];
            compiled.host.Expressions().RunSpreadsheetFormula(values, *compiled.formula, results[i]);
        }
        benchmark::DoNotOptimize(results.data());
    }
    state.SetLabel(formulas[state.range(0)]);
    state.SetItemsProcessed(state.iterations() * state.range(1));
}

void inOneCall(benchmark::State& state) {
    Compiled compiled(formulas[state.range(0)]);
    const auto columns = columnsOf(*compiled.formula, static_cast<std::size_t>(state.range(1)));
    const std::vector<std::span<const double>> spans(columns.begin(), columns.end());
    std::vector<double> results(static_cast<std::size_t>(state.range(1)));
    for (auto _ : state) {
        compiled.host.Expressions().RunSpreadsheetFormulas(spans, *compiled.formula, results);
        benchmark::DoNotOptimize(results.data());
    }
    state.SetLabel(formulas[state.range(0)]);
    state.SetItemsProcessed(state.iterations() * state.range(1));
}

BENCHMARK(oneByOne)->ArgsProduct({{0, 1, 2, 3, 4, 5}, {5000}});
BENCHMARK(inOneCall)->ArgsProduct({{0, 1, 2, 3, 4, 5}, {5000}});

} // namespace
} // namespace korvana::bench
