// Cox regressions with covariates that depend on the time, against an independent program: evaluations, the
// iteration line by line, and every way in which there is no likelihood. All with room for all values, for
// some, and for none, which must be the same to the last bit.

#include "module/regression/timedependent/FitTimeDependentCox.h"
#include "tests/module/regression/GoldenRows.h"
#include "tests/module/regression/TimeCases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace ozm::survival {
namespace {

const korvana::golden::Table& GoldenCoxTime() {
    static const auto table = korvana::golden::Table::read("cox-time.csv");
    return table;
}

class Regression {
public:
    explicit Regression(const std::string& dataset)
        : golden(GoldenRowsOf(GoldenCoxTime(), dataset)), names(NamesIn(golden)),
          made(CasesIn(dataset, GoldenCoxTime())), sample(made.sample.Ordered()),
          covariates(made.sample, FunctionsNamed(names)) {}

    [[nodiscard]] std::size_t At(const GoldenRow& row) const { return PlaceOf(names, row.of); }
    [[nodiscard]] Values ParametersIn(const std::string& run, const std::string& quantity) const {
        Values found(names.size());
        for (const GoldenRow& row : golden)
            if (row.run == run && row.quantity == quantity) found[At(row)] = row.value;
        return found;
    }
    [[nodiscard]] double In(const std::string& run, const std::string& quantity) const {
        for (const GoldenRow& row : golden)
            if (row.run == run && row.quantity == quantity) return row.value;
        throw std::runtime_error("no " + quantity + " of " + run);
    }
    [[nodiscard]] bool Has(const std::string& run, const std::string& quantity) const {
        return std::ranges::any_of(
            golden, [&](const GoldenRow& row) { return row.run == run && row.quantity == quantity; });
    }

    std::vector<GoldenRow> golden;
    std::vector<std::string> names; ///< the covariates' expressions
    CoxSample made;
    OrderedSample sample;
    FunctionsOf covariates;

private:
    static std::vector<std::string> NamesIn(const std::vector<GoldenRow>& golden) {
        std::vector<std::string> found;
        for (const GoldenRow& row : golden)
            if (row.run != "data" && !row.of.empty() && row.quantity != "without_value" &&
                std::ranges::find(found, row.of) == found.end())
                found.push_back(row.of);
        return found;
    }
    static std::vector<TimeFunction> FunctionsNamed(const std::vector<std::string>& names) {
        std::vector<TimeFunction> functions;
        for (const std::string& name : names)
            functions.push_back(TimeFunctionNamed(name));
        return functions;
    }
};

/// The data sets and runs of which the file has a quantity.
std::set<std::pair<std::string, std::string>> RunsWith(const std::string& quantity) {
    std::set<std::pair<std::string, std::string>> runs;
    const auto quantities = GoldenCoxTime().texts("quantity");
    const auto datasets = GoldenCoxTime().texts("dataset");
    const auto names = GoldenCoxTime().texts("run");
    for (std::size_t i = 0; i < quantities.size(); ++i)
        if (quantities[i] == quantity) runs.emplace(datasets[i], names[i]);
    return runs;
}

/// Rooms for all values of a regression, for about half of them, and for none.
std::vector<Values> RoomsFor(const Regression& of) {
    const std::size_t all = RoomFor(of.sample, of.covariates);
    return {Values(all), Values(all / 2), Values()};
}

TEST(GoldenCoxTime, LikelihoodAndDerivatives) {
    for (const auto& [dataset, run] : RunsWith("elsewhere_loglik")) {
        SCOPED_TRACE(dataset);
        Regression of(dataset);
        const Values b = of.ParametersIn("", "elsewhere");
        std::vector<Values> results;
        for (Values& room : RoomsFor(of)) {
            TimeDependentLikelihood model(of.sample, of.covariates, room, {});
            double value = 0.0;
            Values gradient(b.size());
            SquareMatrix information;
            for (int again = 0; again < 2; ++again) { // as they are computed, and as they are kept
                ASSERT_EQ(model.LogLikelihood(b, value), EstimationStatus::Success);
                model.Derivatives(gradient, information);
                Values& result = results.emplace_back(gradient);
                result.push_back(value);
                for (std::size_t k = 0; k < b.size(); ++k)
                    for (std::size_t l = 0; l < b.size(); ++l)
                        result.push_back(information(k, l));
                EXPECT_EQ(result, results.front());
            }
            const double size = information(0, 0);
            Agree(of.golden, "",
                  {{"elsewhere_loglik", {[&](const GoldenRow&) { return value; }}},
                   {"elsewhere_gradient", {[&](const GoldenRow& row) { return gradient[of.At(row)]; }, 1}},
                   {"elsewhere_information",
                    {[&](const GoldenRow& row) { return information(row.row - 1, of.At(row)); }, size}}},
                  1e-10);
        }
    }
}

TEST(GoldenCoxTime, BoundOfThePredictorAtEveryTime) {
    const auto runs = RunsWith("at_status");
    EXPECT_EQ(runs.size(), 6U);
    for (const auto& [dataset, run] : runs) {
        SCOPED_TRACE(dataset + " " + run);
        Regression of(dataset);
        const Values b = of.ParametersIn(run, "at");
        const auto status = static_cast<EstimationStatus>(of.In(run, "at_status"));
        for (Values& room : RoomsFor(of)) {
            TimeDependentLikelihood model(of.sample, of.covariates, room, {});
            EXPECT_EQ(model.Check(b), status); // before any value is known
            double value = 0.0;
            EXPECT_EQ(model.LogLikelihood(b, value), status);
            EXPECT_EQ(model.Check(b), status);
            EXPECT_FALSE(model.Missing());
            EXPECT_EQ(model.Check(Values(b.size())), EstimationStatus::Success);
            if (status != EstimationStatus::Success) continue;
            EXPECT_NEAR(value, of.In(run, "at_loglik"), 1e-10);
        }
    }
}

void RunAgrees(const std::string& dataset, const std::string& run) {
    SCOPED_TRACE(dataset + " " + run);
    Regression of(dataset);
    const auto status = static_cast<EstimationStatus>(of.In(run, "status"));
    const IterationLimits limits{.criterion = static_cast<float>(of.In(run, "criterion")),
                                 .most = static_cast<int>(of.In(run, "max_iterations"))};
    std::vector<Values> results;
    for (Values& room : RoomsFor(of)) {
        TimeDependentCox cox{of.sample, of.covariates, room, {}, {}};
        Values b = of.ParametersIn(run, "start");
        NewtonEstimate estimate;
        std::vector<Values> lines;
        const auto watch = [&](int k, double logLikelihood, std::span<const double> parameters) {
            EXPECT_EQ(k, lines.size() + 1);
            lines.emplace_back(parameters.begin(), parameters.end()).push_back(logLikelihood);
            return false;
        };
        ASSERT_EQ(FitTimeDependentCox(cox, limits, watch, b, estimate), status);
        ASSERT_EQ(cox.missing.has_value(), status == EstimationStatus::InvalidOperation);
        if (cox.missing) {
            Agree(of.golden, run,
                  {{"without_value",
                    {[&](const GoldenRow& row) { return of.At(row) == cox.missing->covariate ? 1 : 0; }}},
                   {"without_value_case",
                    {[&](const GoldenRow&) { return of.made.sample.CaseNumbers()[cox.missing->place]; }}},
                   {"without_value_time", {[&](const GoldenRow&) { return cox.missing->time; }}}},
                  0);
            continue;
        }
        std::map<std::string, Ours> ours{
            {"iterations", {[&](const GoldenRow&) { return estimate.iterations; }}},
            {"beta", {[&](const GoldenRow& row) { return b[of.At(row)]; }, 1e-6}}};
        if (of.Has(run, "trace_loglik")) {
            ours["trace_loglik"] = {
                [&](const GoldenRow& row) { return lines.at(row.row - 1).at(of.names.size()); }};
            ours["trace_beta"] = {[&](const GoldenRow& row) { return lines.at(row.row - 1)[of.At(row)]; },
                                  1e-6};
        }
        if (status == EstimationStatus::Success) {
            ours["loglik"] = {[&](const GoldenRow&) { return estimate.logLikelihood; }};
            ours["loglik_null"] = {[&](const GoldenRow&) { return estimate.nullLogLikelihood; }};
            ours["gradient"] = {[&](const GoldenRow& row) { return estimate.gradient[of.At(row)]; }, 1};
            ours["covariance"] = {
                [&](const GoldenRow& row) { return estimate.covariance(row.row - 1, of.At(row)); }};
        }
        Agree(of.golden, run, ours, 1e-9);
        Values& result = results.emplace_back(b);
        for (const Values& line : lines)
            result.insert(result.end(), line.begin(), line.end());
        EXPECT_EQ(result, results.front());
    }
}

TEST(GoldenCoxTime, IterationsLineByLine) {
    const auto runs = RunsWith("criterion");
    EXPECT_EQ(runs.size(), 24U);
    for (const auto& [dataset, run] : runs)
        RunAgrees(dataset, run);
}

TEST(GoldenCoxTime, PublishedEstimates) {
    const auto fit = [](const char* dataset, const Values& published, double logLikelihood) {
        SCOPED_TRACE(dataset);
        Regression of(dataset);
        Values room(RoomFor(of.sample, of.covariates));
        TimeDependentCox cox{of.sample, of.covariates, room, {}, {}};
        Values b(published.size());
        NewtonEstimate estimate;
        const auto watch = [](int, double, std::span<const double>) { return false; };
        ASSERT_EQ(FitTimeDependentCox(cox, {1e-11, 200}, watch, b, estimate), EstimationStatus::Success);
        for (std::size_t k = 0; k < b.size(); ++k)
            EXPECT_NEAR(b[k], published[k], 0.51e-6);
        EXPECT_NEAR(estimate.logLikelihood, logLikelihood, 0.51e-4);
    };
    // Freireich et al. (1963); the Veterans' lung cancer trial.
    fit("leukaemia", {1.514858, -0.008135}, -86.3708);
    fit("leukaemia-fixed", {1.509191}, -86.3796);
    fit("veteran", {0.015216, -0.009435, -0.123653, 0.021118}, -479.2780);
}

} // namespace
} // namespace ozm::survival
