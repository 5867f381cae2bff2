// Cox regressions against an independent program: the iteration line by line, estimates, residuals, curves.

#include "module/regression/cox/Concordance.h"
#include "module/regression/cox/CoxSurvival.h"
#include "module/regression/cox/PartialLikelihood.h"
#include "module/regression/cox/ProportionalityTest.h"
#include "module/regression/estimation/LuFactors.h"
#include "tests/module/regression/CoxCases.h"
#include "tests/module/regression/GoldenRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace ozm::survival {
namespace {

using Row = GoldenRow;

/// A fit of a data set of the golden file.
class Fit {
public:
    explicit Fit(const std::string& dataset)
        : golden(GoldenRowsOf(GoldenCox(), dataset)), cases(CasesNamed(dataset)), made(cases),
          sample(made.sample), parameters(cases.x.size()) {}

    void Run(const IterationLimits& limits, const IterationWatch& watch) {
        status = FitCox(sample, limits, watch, parameters, estimate);
    }
    /// The estimates to the last digit, lest what follows from them has the errors of an iteration.
    void ToTheMaximum() {
        for (const Row& row : golden)
            if (row.run.empty() && row.quantity == "beta") parameters[At(row)] = row.value;
        SquareMatrix information;
        for (const Row& row : golden)
            if (row.run.empty() && row.quantity == "information")
                information(row.row - 1, At(row)) = row.value;
        const auto factors = LuFactors::Of(information, parameters.size());
        ASSERT_TRUE(factors);
        estimate.covariance = factors->Inverse();
    }
    [[nodiscard]] std::size_t At(const Row& row) const { return PlaceOf(cases.names, row.of); }
    [[nodiscard]] std::map<std::string, Ours> Estimates() const {
        return {{"loglik", {[&](const Row&) { return estimate.logLikelihood; }}},
                {"loglik_null", {[&](const Row&) { return estimate.nullLogLikelihood; }}},
                {"beta", {[&](const Row& row) { return parameters[At(row)]; }, 1e-6}},
                {"se", {[&](const Row& row) { return std::sqrt(estimate.covariance(At(row), At(row))); }}},
                {"covariance",
                 {[&](const Row& row) { return estimate.covariance(row.row - 1, At(row)); }, 1e-6}}};
    }

    std::vector<Row> golden;
    CoxCases cases;
    CoxSample made;
    RegressionSample& sample;
    Values parameters;
    NewtonEstimate estimate;
    EstimationStatus status = EstimationStatus::Stopped;
};

/// A damped iteration, as its limits and start values stand in the golden file.
void IterationAgrees(const std::string& dataset, const std::string& run) {
    SCOPED_TRACE(dataset + " " + run);
    Fit fit(dataset);
    IterationLimits limits;
    EstimationStatus status{};
    for (const Row& row : fit.golden) {
        if (row.run != run) continue;
        if (row.quantity == "criterion") limits.criterion = static_cast<float>(row.value);
        if (row.quantity == "max_iterations") limits.most = static_cast<int>(row.value);
        if (row.quantity == "start") fit.parameters[fit.At(row)] = row.value;
        if (row.quantity == "status") status = static_cast<EstimationStatus>(row.value);
    }
    std::vector<std::pair<double, Values>> lines;
    fit.Run(limits, [&](int k, double logLikelihood, std::span<const double> parameters) {
        EXPECT_EQ(k, lines.size() + 1);
        lines.emplace_back(logLikelihood, Values{parameters.begin(), parameters.end()});
        return false;
    });
    EXPECT_EQ(fit.status, status);
    const auto has = [&](const char* quantity) {
        return std::any_of(fit.golden.begin(), fit.golden.end(),
                           [&](const Row& row) { return row.run == run && row.quantity == quantity; });
    };
    if (!has("iterations")) return; // only its end is known
    auto ours = status == EstimationStatus::Success ? fit.Estimates() : std::map<std::string, Ours>{};
    ours["iterations"] = {[&](const Row&) { return fit.estimate.iterations; }};
    ours["beta"] = {[&](const Row& row) { return fit.parameters[fit.At(row)]; }, 1e-6};
    if (has("gradient"))
        ours["gradient"] = {[&](const Row& row) { return fit.estimate.gradient[fit.At(row)]; }, 1};
    std::size_t expected = 0;
    if (has("trace_loglik")) {
        ours["trace_loglik"] = {[&](const Row& row) {
            ++expected;
            return lines.at(row.row - 1).first;
        }};
        ours["trace_beta"] = {[&](const Row& row) { return lines.at(row.row - 1).second[fit.At(row)]; },
                              1e-6};
    }
    Agree(fit.golden, run, ours, 1e-9);
    EXPECT_EQ(lines.size(), expected);
}

TEST(GoldenCox, IterationsLineByLine) {
    std::set<std::pair<std::string, std::string>> runs;
    const auto quantities = GoldenCox().texts("quantity");
    const auto datasets = GoldenCox().texts("dataset");
    const auto names = GoldenCox().texts("run");
    for (std::size_t i = 0; i < quantities.size(); ++i)
        if (quantities[i] == "criterion") runs.emplace(datasets[i], names[i]);
    EXPECT_EQ(runs.size(), 27U);
    for (const auto& [dataset, run] : runs)
        IterationAgrees(dataset, run);
}

void ResidualsAgree(const Fit& fit, const RiskSets& sets, const OrderedSample& ordered) {
    std::vector<std::size_t> places(ordered.cases + 1);
    for (std::size_t i = 0; i < ordered.cases; ++i)
        places[static_cast<std::size_t>(fit.sample.CaseNumbers()[i])] = i;
    const CoxResiduals residuals = ComputeCoxResiduals(ordered, sets);
    Agree(fit.golden, "",
          {{"linear_predictor", {[&](const Row& row) { return sets.Predictors()[places[row.row]]; }, 1}},
           {"martingale", {[&](const Row& row) { return residuals.martingale[places[row.row]]; }, 1}},
           {"deviance", {[&](const Row& row) { return residuals.deviance[places[row.row]]; }, 1}}},
          1e-10);

    const SchoenfeldResiduals schoenfeld = ComputeSchoenfeldResiduals(ordered, sets);
    const SchoenfeldResiduals scaled = Scaled(schoenfeld, fit.estimate.covariance, fit.parameters);
    std::map<std::size_t, std::size_t> deathOf; // by the number of the case
    for (std::size_t d = 0; d < schoenfeld.Deaths(); ++d)
        deathOf[static_cast<std::size_t>(fit.sample.CaseNumbers()[schoenfeld.places[d]])] = d;
    std::map<std::size_t, std::size_t> death; // by the row of the golden file
    for (const Row& row : fit.golden)
        if (row.quantity == "schoenfeld_case")
            death[row.row] = deathOf.at(static_cast<std::size_t>(row.value));
    const auto at = [&](const SchoenfeldResiduals& of) {
        return [&](const Row& row) { return of.Row(death.at(row.row))[fit.At(row)]; };
    };
    Agree(fit.golden, "", {{"schoenfeld", {at(schoenfeld), 1}}, {"scaled_schoenfeld", {at(scaled), 1}}},
          1e-10);

    const ProportionalityTest test = TestProportionality(ordered, schoenfeld, fit.estimate.covariance);
    Agree(fit.golden, "",
          {{"ph_rho", {[&](const Row& row) { return test.correlation[fit.At(row)]; }, 0.1}},
           {"ph_chisq", {[&](const Row& row) { return test.covariates[fit.At(row)].value; }, 0.1}},
           {"ph_p", {[&](const Row& row) { return test.covariates[fit.At(row)].p; }}},
           {"ph_overall_chisq", {[&](const Row&) { return test.overall.value; }}},
           {"ph_overall_df", {[&](const Row&) { return test.overall.df; }}},
           {"ph_overall_p", {[&](const Row&) { return test.overall.p; }}}},
          1e-9);

    const Concordance concordance = ComputeConcordance(ordered, sets.Predictors());
    Agree(fit.golden, "",
          {{"concordance", {[&](const Row&) { return concordance.value; }}},
           {"se_concordance", {[&](const Row&) { return concordance.error; }}},
           {"concordant", {[&](const Row&) { return concordance.concordant; }}},
           {"discordant", {[&](const Row&) { return concordance.discordant; }}},
           {"tied_risk", {[&](const Row&) { return concordance.tied; }}}},
          1e-12);
}

/// Survival at the means and at given values, by stratum.
void CurvesAgree(const Fit& fit, const RiskSets& sets, double constant) {
    const auto strata = fit.cases.Strata();
    for (const char* run : {"means", "at1", "at2"}) {
        Values x;
        for (std::size_t k = 0; k < fit.cases.x.size(); ++k)
            x.push_back(fit.sample.Summary(k).mean);
        bool known = false;
        for (const Row& row : fit.golden) {
            known |= row.run == run;
            if (row.run == run && row.quantity == "value") x[fit.At(row)] = row.value;
        }
        if (!known) continue;
        double predictor = -constant;
        for (std::size_t k = 0; k < x.size(); ++k)
            predictor += x[k] * fit.parameters[k];
        std::map<std::string, std::vector<CoxSurvivalPoint>> curves; // by code
        for (const auto& [code, stratum] : strata)
            curves[strata.size() > 1 ? std::to_string(static_cast<int>(code)) : ""] =
                CoxSurvival(sets, strata.size() - 1 - static_cast<std::size_t>(stratum), x, predictor,
                            fit.estimate.covariance, 1.9599639845400545);
        using Point = CoxSurvivalPoint;
        const auto at = [&](auto of) {
            return [&curves, of](const Row& row) { return of(curves.at(row.of).at(row.row - 1)); };
        };
        std::map<std::string, Ours> ours{
            {"survival", {at([](const Point& p) { return p.survival; })}},
            {"se_cumulative_hazard", {at([](const Point& p) { return p.cumulativeError; })}},
            {"lower", {at([](const Point& p) { return p.lower; }), 1e-6}},
            {"upper", {at([](const Point& p) { return p.upper; }), 1e-6}}};
        if (run == std::string("means"))
            ours.insert({{"time", {at([](const Point& p) { return p.time; })}},
                         {"deaths", {at([](const Point& p) { return double(p.events); })}},
                         {"hazard", {at([](const Point& p) { return p.hazard; })}},
                         {"cumulative_hazard", {at([](const Point& p) { return p.cumulativeHazard; })}}});
        Agree(fit.golden, run, ours, 1e-9);
    }
}

/// Gradient and information away from the maximum, and at it.
void DerivativesAgree(const Fit& fit) {
    CoxCases centred = fit.cases; // lest large values go beyond the guard
    for (std::size_t k = 0; k < centred.x.size(); ++k)
        for (double& x : centred.x[k])
            x -= fit.sample.Summary(k).mean;
    const CoxSample made(centred);
    const OrderedSample ordered = made.sample.Ordered();
    PartialLikelihood likelihood(ordered);
    double value = 0.0;
    Values gradient(centred.x.size());
    SquareMatrix information;
    const auto derive = [&](const Values& at) {
        EXPECT_EQ(likelihood.LogLikelihood(at, value), EstimationStatus::Success);
        likelihood.Derivatives(gradient, information);
    };
    const auto element = [&](const Row& row) { return information(row.row - 1, fit.At(row)); };
    derive(fit.parameters);
    Agree(fit.golden, "", {{"information", {element, 1e-3}}}, 1e-11);
    Values there(fit.parameters.size());
    for (const Row& row : fit.golden)
        if (row.quantity == "elsewhere") there[fit.At(row)] = row.value;
    derive(there);
    Agree(fit.golden, "",
          {{"elsewhere_loglik", {[&](const Row&) { return value; }}},
           {"elsewhere_gradient", {[&](const Row& row) { return gradient[fit.At(row)]; }, 1}},
           {"elsewhere_information", {element, 1}}},
          1e-11);
}

TEST(GoldenCox, EstimatesResidualsAndCurves) {
    for (const char* dataset : {"hand", "leukaemia", "leukaemia-wbc", "leukaemia-sex", "aml", "veteran",
                                "veteran-strata", "tied", "larger", "larger-strata"}) {
        SCOPED_TRACE(dataset);
        Fit fit(dataset);
        fit.Run({1e-11, 200}, [](int, double, std::span<const double>) { return false; });
        ASSERT_EQ(fit.status, EstimationStatus::Success);
        auto ours = fit.Estimates();
        ours["score_chisq"] = {[&](const Row&) { return fit.estimate.nullScore; }};
        ours["mean"] = {[&](const Row& row) { return fit.sample.Summary(fit.At(row)).mean; }};
        ours["sd"] = {[&](const Row& row) { return fit.sample.Summary(fit.At(row)).deviation; }};
        ours["cases"] = {[&](const Row&) { return fit.sample.Cases(); }};
        ours["events"] = {[&](const Row&) { return fit.sample.Events(); }};
        Agree(fit.golden, "", ours, 1e-6);
        fit.ToTheMaximum();
        double constant = 0.0; // the predictor at the means
        for (std::size_t k = 0; k < fit.parameters.size(); ++k)
            constant += fit.parameters[k] * fit.sample.Summary(k).mean;
        const OrderedSample ordered = fit.sample.Ordered();
        const RiskSets sets(ordered, fit.parameters, constant);
        ResidualsAgree(fit, sets, ordered);
        CurvesAgree(fit, sets, constant);
        DerivativesAgree(fit);
    }
}

} // namespace
} // namespace ozm::survival
