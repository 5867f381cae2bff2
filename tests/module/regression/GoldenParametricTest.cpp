// Exponential, lognormal and normal regressions against independent programs: maxima and covariances, the
// iterations line by line, derivatives away from the maximum, how they end.

#include "module/regression/parametric/CensoredNormal.h"
#include "module/regression/parametric/ExponentialRegression.h"
#include "module/regression/parametric/FitCensoredNormal.h"
#include "module/regression/parametric/PackedCholesky.h"
#include "tests/module/regression/GoldenRows.h"
#include "tests/module/regression/ParametricCases.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <set>
#include <span>
#include <utility>

namespace ozm::survival {
namespace {

using Row = GoldenRow;

/// A run of the golden file, MODEL or "MODEL ...": its cases, what is given, and a fit by it.
class ModelRun {
public:
    ModelRun(const std::string& dataset, std::string itsName)
        : name(std::move(itsName)), golden(GoldenRowsOf(GoldenParametric(), dataset)),
          cases(CasesFor(dataset, name), Model()), parameters(cases.names.size(), 0.0) {
        for (const Row& row : golden)
            if (row.quantity == "upper") cases.upper.push_back(row.value);
    }

    [[nodiscard]] std::string Model() const { return name.substr(0, name.find(' ')); }
    [[nodiscard]] std::size_t At(const Row& row) const { return PlaceOf(cases.names, row.of); }
    [[nodiscard]] bool Has(const std::string& quantity) const {
        return std::ranges::any_of(
            golden, [&](const Row& row) { return row.run == name && row.quantity == quantity; });
    }
    [[nodiscard]] double Value(const std::string& quantity) const {
        for (const Row& row : golden)
            if (row.run == name && row.quantity == quantity) return row.value;
        throw std::runtime_error("no " + quantity + " of " + name);
    }
    /// The parameters that stand in the golden file, in a row.
    [[nodiscard]] Values Given(const std::string& quantity, std::size_t at) const {
        Values values(cases.names.size());
        for (const Row& row : golden)
            if (row.run == name && row.quantity == quantity && row.row == at) values[At(row)] = row.value;
        return values;
    }
    [[nodiscard]] std::function<double(const Row&)> Each(const Values& values) const {
        return [this, &values](const Row& row) { return values.at(At(row)); };
    }
    [[nodiscard]] std::function<double(const Row&)> Element(const SquareMatrix& matrix) const {
        return [this, &matrix](const Row& row) { return matrix(row.row - 1, At(row)); };
    }

    /// From start values, where some are given. Returns the number of the status.
    int Fit(double criterion, int most, const Values& start = {}) {
        const auto watch = [this](int k, double value, std::span<const double> at) {
            EXPECT_EQ(k, static_cast<int>(lines.size()) + 1);
            lines.emplace_back(value, Values{at.begin(), at.end()});
            return false;
        };
        if (Model() == "exponential") {
            ExponentialFit fit;
            const auto status = FitExponential(cases.Cases(), {criterion, most}, watch, start, fit);
            if (!fit.parameters.empty()) parameters = fit.parameters;
            gradient = fit.gradient;
            if (status == ExponentialStatus::Success) covariance = Unpack(fit.covariance, parameters.size());
            logLikelihood = fit.logLikelihood;
            nullLogLikelihood = fit.nullLogLikelihood;
            iterations = fit.iterations;
            lost = fit.lost;
            return static_cast<int>(status);
        }
        const Values tolerances(parameters.size(), criterion);
        std::optional<CensoredNormal> model;
        if (!start.empty()) parameters = start;
        const auto status =
            FitCensoredNormal(cases.Cases(), {tolerances, most}, watch, parameters, iterations, model);
        if (status == EmStatus::Success || status == EmStatus::TooManyIterations) {
            Follow();
            EXPECT_NEAR(model->LogLikelihood(), logLikelihood,
                        1e-9 * std::abs(logLikelihood)); // stands there
        }
        return static_cast<int>(status);
    }
    /// What follows from the parameters of a censored normal model.
    void Follow() {
        CensoredNormal there(cases.Cases());
        there.MoveTo(parameters);
        logLikelihood = there.LogLikelihood();
        if (!cases.upper.empty()) return;
        NormalCovariance found = there.Covariance();
        covariance = found.covariance;
        gradient = std::move(found.gradient);
    }
    /// A model of covariates on their own scales, at the parameters.
    [[nodiscard]] CensoredNormal AsTheyAre() const {
        CensoredNormal model(cases.Cases(), CovariateScales::None(cases.covariates));
        model.MoveTo(parameters);
        return model;
    }

    std::string name;
    std::vector<Row> golden;
    ParametricCases cases;
    Values parameters;
    Values gradient;
    SquareMatrix covariance;
    SquareMatrix information;
    double logLikelihood = 0.0;
    double nullLogLikelihood = 0.0;
    int iterations = 0;
    std::size_t lost = 0;
    std::vector<std::pair<double, Values>> lines;

private:
    static CoxCases CasesFor(const std::string& dataset, const std::string& name) {
        CoxCases cases = ParametricCasesNamed(dataset);
        if (name.find(" null ") == std::string::npos) return cases;
        cases.names.clear();
        cases.x.clear();
        return cases;
    }
};

/// Data sets and runs whose name satisfies a condition, as often as there are.
template <class Condition>
std::set<std::pair<std::string, std::string>> RunsWith(const std::string& quantity, Condition condition) {
    const auto datasets = GoldenParametric().texts("dataset");
    const auto runs = GoldenParametric().texts("run");
    const auto quantities = GoldenParametric().texts("quantity");
    std::set<std::pair<std::string, std::string>> found;
    for (std::size_t i = 0; i < runs.size(); ++i)
        if (quantities[i] == quantity && condition(runs[i])) found.emplace(datasets[i], runs[i]);
    return found;
}

TEST(GoldenParametric, MaximaAndTheirCovariances) {
    const auto runs =
        RunsWith("loglik_null", [](const std::string& run) { return run.find(' ') == std::string::npos; });
    EXPECT_EQ(runs.size(), 37U);
    for (const auto& [dataset, name] : runs) {
        SCOPED_TRACE(dataset + " " + name);
        ModelRun run(dataset, name);
        const Values maximum = run.Given("beta", 0);
        const Values errors = run.Given("se", 0);
        if (run.Model() == "exponential") {
            // Where the factor takes a covariate for a constant, there are no estimates.
            const int status = run.Fit(1e-9, 200);
            EXPECT_EQ(status, dataset == "near+1000000" ? 2 : 0);
            if (status != 0) continue;
        } else {
            EXPECT_EQ(run.Fit(1e-11, 20000), 0);
            // Its tail has ten digits.
            for (std::size_t k = 0; k < maximum.size(); ++k)
                EXPECT_NEAR(run.parameters[k], maximum[k], 1e-6 * errors[k]) << run.cases.names[k];
            // What follows from estimates is exact.
            run.parameters = maximum;
            run.Follow();
            const SquareMatrix information = run.AsTheyAre().Derivatives().information;
            for (std::size_t k = 0; k < maximum.size(); ++k)
                EXPECT_NEAR(run.gradient[k] / std::sqrt(information(k, k)), 0.0, 1e-7) << run.cases.names[k];
            ModelRun null(dataset, name + " null ");
            null.name = name;
            EXPECT_EQ(null.Fit(1e-11, 20000), 0);
            Agree(run.golden, name, {{"null_beta", {null.Each(null.parameters)}}}, 1e-7);
            run.nullLogLikelihood = null.logLikelihood;
        }
        const auto correlation = [&](const Row& row) {
            const std::size_t k = run.At(row);
            return run.covariance(row.row - 1, k) / std::sqrt(run.covariance(k, k)) /
                   std::sqrt(run.covariance(row.row - 1, row.row - 1));
        };
        const auto error = [&](const Row& row) {
            return std::sqrt(run.covariance(run.At(row), run.At(row)));
        };
        Agree(run.golden, name,
              {{"beta", {run.Each(run.parameters)}},
               {"loglik", {[&](const Row&) { return run.logLikelihood; }}},
               {"loglik_null", {[&](const Row&) { return run.nullLogLikelihood; }}},
               {"se", {error}},
               {"correlation", {correlation, 1}}},
              1e-8);
    }
}

TEST(GoldenParametric, CasesBetweenTwoBounds) {
    ModelRun run("confined", "normal maximum");
    EXPECT_EQ(run.Fit(1e-11, 20000), 0);
    Agree(run.golden, run.name, {{"beta", {run.Each(run.parameters)}}}, 1e-7);
    run.parameters = run.Given("beta", 0);
    run.Follow();
    Agree(run.golden, run.name, {{"loglik", {[&](const Row&) { return run.logLikelihood; }}}}, 1e-9);
}

TEST(GoldenParametric, IterationsLineByLine) {
    const auto runs =
        RunsWith("status", [](const std::string& run) { return run.find(' ') != std::string::npos; });
    EXPECT_EQ(runs.size(), 144U);
    for (const auto& [dataset, name] : runs) {
        SCOPED_TRACE(dataset + " " + name);
        ModelRun run(dataset, name);
        const auto status = static_cast<int>(run.Value("status"));
        const bool exponential = run.Model() == "exponential";
        double criterion = run.Has("criterion") ? run.Value("criterion") : 1e-4;
        if (criterion >= 1e-5) criterion = static_cast<float>(criterion);
        const int most = run.Has("max_iterations") ? static_cast<int>(run.Value("max_iterations")) : 50;
        // With other start values than ours.
        const bool other = name.find(" df ") != std::string::npos;
        EXPECT_EQ(run.Fit(criterion, most, other ? run.Given("trace_beta", 0) : Values{}), status);
        if (!run.Has("beta")) {
            EXPECT_TRUE(run.lines.empty());
            continue;
        }
        std::map<std::string, Ours> ours{{"beta", {run.Each(run.parameters), 1e-6}},
                                         {"trace_beta",
                                          {[&](const Row& row) {
                                               if (row.row == 0) return row.value; // the start
                                               return run.lines.at(row.row - 1).second[run.At(row)];
                                           },
                                           1e-6}}};
        if (exponential) {
            ours["trace_loglik"] = {[&](const Row& row) { return run.lines.at(row.row - 1).first; }};
            ours["loglik_null"] = {[&](const Row&) { return run.nullLogLikelihood; }};
        }
        if (run.Has("loglik")) ours["loglik"] = {[&](const Row&) { return run.logLikelihood; }};
        if (run.Has("iterations")) {
            ours["iterations"] = {[&](const Row&) { return run.iterations; }};
            const double sign = exponential ? -1.0 : 1.0;
            if (run.Has("gradient"))
                // Where covariates are large, it changes with the last digit of the parameters.
                ours["gradient"] = {[&, sign](const Row& row) { return sign * run.gradient[run.At(row)]; },
                                    dataset == "near+1000000" ? 1e7 : 1};
            EXPECT_EQ(static_cast<int>(run.lines.size()), run.iterations);
        }
        if (run.Has("covariance")) ours["covariance"] = {run.Element(run.covariance), 1e-3};
        Agree(run.golden, name, ours, 1e-9);
    }
}

TEST(GoldenParametric, AwayFromTheMaximum) {
    for (const char* name :
         {"exponential elsewhere", "normal elsewhere", "lognormal elsewhere", "lognormal tail"}) {
        SCOPED_TRACE(name);
        ModelRun run("leukaemia-wbc", name);
        const Values there = run.Given("beta", 0);
        if (run.Model() == "exponential") {
            EXPECT_EQ(run.Fit(1e-4, 1, there), 1);
            for (double& each : run.gradient) // that of the log hazard
                each = -each;
        } else {
            run.parameters = there;
            run.logLikelihood = run.AsTheyAre().LogLikelihood();
            run.gradient = run.AsTheyAre().Derivatives().gradient;
            run.information = run.AsTheyAre().Derivatives().information;
        }
        std::map<std::string, Ours> ours{{"loglik", {[&](const Row&) { return run.logLikelihood; }}}};
        if (run.Has("gradient")) ours["gradient"] = {run.Each(run.gradient), 1};
        if (run.Has("information") && run.Model() != "exponential")
            ours["information"] = {run.Element(run.information), 1};
        Agree(run.golden, name, ours, 1e-10);
    }
}

TEST(GoldenParametric, TolerantFactorsAndInverses) {
    const auto golden = GoldenRowsOf(GoldenParametric(), "factor");
    std::map<std::string, std::vector<Row>> matrices;
    for (const Row& row : golden)
        if (row.quantity == "matrix") matrices[row.run].push_back(row);
    EXPECT_EQ(matrices.size(), 11U);
    for (const auto& [name, cells] : matrices) {
        SquareMatrix matrix;
        std::size_t order = 0;
        const auto column = [](const Row& row) { return static_cast<std::size_t>(std::stoi(row.of)) - 1; };
        for (const Row& row : cells) {
            matrix(row.row - 1, column(row)) = row.value;
            order = std::max(order, row.row);
        }
        const auto factor = PackedCholesky::Of(Pack(matrix, order), order);
        std::map<std::string, Ours> ours{{"status", {[&](const Row&) { return factor ? 0 : 2; }}}};
        if (factor) {
            const SquareMatrix l = Unpack(factor->Factor(), order);
            const SquareMatrix inverse = Unpack(factor->Inverse(), order);
            ours["deficiency"] = {[&](const Row&) { return static_cast<double>(factor->Deficiency()); }};
            ours["factor"] = {
                [=](const Row& row) { return row.row - 1 < column(row) ? 0.0 : l(row.row - 1, column(row)); },
                1};
            ours["inverse"] = {[=](const Row& row) { return inverse(row.row - 1, column(row)); }, 1};
            Values right(order, 1.0);
            EXPECT_EQ(factor->Solve(right), factor->Deficiency() == 0) << name;
        }
        Agree(golden, name, ours, 1e-12);
    }
}

} // namespace
} // namespace ozm::survival
