// Predictions and residuals of the parametric models against an independent program, and what holds of them
// everywhere.

#include "module/regression/parametric/Predictions.h"
#include "module/regression/parametric/EstimateSteps.h"
#include "module/regression/parametric/ParametricResiduals.h"
#include "module/survdata/NormalQuantile.h"
#include "tests/module/regression/GoldenRows.h"
#include "tests/module/regression/ParametricCases.h"

#include <limits>

namespace ozm::survival {
namespace {

TimeDistribution Named(const std::string& model) {
    if (model == "exponential") return TimeDistribution::Exponential;
    return model == "lognormal" ? TimeDistribution::Lognormal : TimeDistribution::Normal;
}

/// A fit as a run of the golden file has it.
struct GoldenFit {
    Values parameters;
    SquareMatrix covariance;
};
GoldenFit FitIn(const std::vector<GoldenRow>& rows, const std::string& run,
                const std::vector<std::string>& names) {
    GoldenFit fit{Values(names.size()), {}};
    for (const GoldenRow& row : rows) {
        if (row.run != run) continue;
        if (row.quantity == "beta") fit.parameters[PlaceOf(names, row.of)] = row.value;
        if (row.quantity == "covariance") fit.covariance(row.row - 1, PlaceOf(names, row.of)) = row.value;
    }
    return fit;
}

TEST(Predictions, AgreeWithAnIndependentProgram) {
    int points = 0;
    for (const char* dataset :
         {"leukaemia", "leukaemia-wbc", "aml", "veteran", "feigl-zelen", "galaxies", "motorettes",
          "motorettes-hours", "heavy", "ties", "near", "near+350", "near+1000000", "zeros"}) {
        const std::vector<GoldenRow> rows = GoldenRowsOf(GoldenParametric(), dataset);
        const CoxCases cases = ParametricCasesNamed(dataset);
        std::set<std::string> runs; // MODEL means, MODEL em 1e-5 at1 ...
        for (const GoldenRow& row : rows)
            if (row.quantity == "location") runs.insert(row.run);
        // Where a covariate's mean is a million times its deviation, the covariance has ten digits less.
        const double precision = std::string{dataset} == "near+1000000" ? 1e-3 : 1e-7;
        for (const std::string& run : runs) {
            SCOPED_TRACE(dataset + (" " + run));
            const std::string model = run.substr(0, run.find(' '));
            const ParametricCases of(cases, model);
            const GoldenFit fit = FitIn(rows, run.substr(0, run.rfind(' ')), of.names);
            const FittedTimes fitted{Named(model), fit.parameters};
            Values x(cases.x.size());
            std::map<std::size_t, double> times;
            for (const GoldenRow& row : rows) {
                if (row.run == run && row.quantity == "x") x[PlaceOf(of.names, row.of)] = row.value;
                if (row.run == run && row.quantity == "time") times[row.row] = row.value;
            }
            const Predictor predictor(fitted, fit.covariance, x, NormalQuantile(0.975));
            const auto survival = [&](double Prediction::*part) {
                return Ours{[&predictor, &times, part](const GoldenRow& row) {
                                return predictor.SurvivalAt(times.at(row.row)).*part;
                            },
                            1e-6};
            };
            const auto time = [&](double Prediction::*part) {
                return Ours{[&predictor, part](const GoldenRow& row) {
                    return predictor.TimeOf(static_cast<double>(row.row) / 100.0).*part;
                }};
            };
            const std::string own = model == "normal" ? "_own" : "";
            Agree(rows, run,
                  {{"location", {[&](const GoldenRow&) { return predictor.Location(); }}},
                   {"se_location", {[&](const GoldenRow&) { return predictor.LocationError(); }}},
                   {"survival", survival(&Prediction::value)},
                   {"se_survival", survival(&Prediction::error)},
                   {"survival_lower", survival(&Prediction::lower)},
                   {"survival_upper", survival(&Prediction::upper)},
                   {"quantile", time(&Prediction::value)},
                   {"se_quantile", time(&Prediction::error)},
                   {"quantile_lower" + own, time(&Prediction::lower)},
                   {"quantile_upper" + own, time(&Prediction::upper)}},
                  precision);
            ++points;
        }
    }
    EXPECT_GT(points, 100);
}

TEST(Predictions, ResidualsAndTheirEstimatesAgreeWithAnIndependentProgram) {
    for (const char* dataset : {"leukaemia", "leukaemia-wbc", "veteran", "galaxies", "heavy", "ties", "near",
                                "near+1000000", "zeros"})
        for (const char* model : {"exponential", "lognormal", "normal"}) {
            const std::set<std::string> without{"zeros lognormal", "galaxies exponential"};
            if (without.contains(dataset + (" " + std::string{model}))) continue;
            SCOPED_TRACE(dataset + (" " + std::string{model}));
            const std::vector<GoldenRow> rows = GoldenRowsOf(GoldenParametric(), dataset);
            const CoxCases cases = ParametricCasesNamed(dataset);
            const ParametricCases of(cases);
            const GoldenFit fit = FitIn(rows, model, ParametricCases(cases, model).names);
            const FittedTimes fitted{Named(model), fit.parameters};
            const ParametricResiduals residuals =
                ComputeParametricResiduals(fitted, of.y, of.flags, of.x, of.y.size());
            const Values& residual = fitted.HasSigma() ? residuals.score : residuals.coxSnell;
            const auto steps = EstimateSteps(residual, of.flags);
            const auto at = [&](const Values& values) {
                return Ours{[&values](const GoldenRow& row) { return values[row.row - 1]; }, 1.0};
            };
            const auto estimate = [&](double EstimateStep::*part, double first) {
                return Ours{[&, part, first](const GoldenRow& row) {
                                // Residuals of cases alike may differ by rounding.
                                const double r = residual[row.row - 1];
                                const EstimateStep* step =
                                    StepAt(steps, r + 1e-9 * std::max(1.0, std::abs(r)));
                                return step == nullptr ? first : step->*part;
                            },
                            1.0};
            };
            Agree(rows, model,
                  {{"linear_predictor", at(residuals.location)},
                   {"residual", at(residual)},
                   {"residual_km", estimate(&EstimateStep::survival, 1.0)},
                   {"residual_hazard", estimate(&EstimateStep::hazard, 0.0)}},
                  1e-7);
            // Events less expected events, and what is made of them.
            for (std::size_t i = 0; i < of.y.size(); ++i) {
                const double m = residuals.martingale[i];
                EXPECT_DOUBLE_EQ(m, of.flags[i] - residuals.coxSnell[i]);
                const double d = of.flags[i];
                if (residuals.coxSnell[i] == 0.0) continue;
                const double squared = -2.0 * (m + (d > 0.0 ? std::log(d - m) : 0.0));
                EXPECT_NEAR(residuals.deviance[i], (m < 0.0 ? -1.0 : 1.0) * std::sqrt(squared), 1e-9);
            }
        }
}

TEST(Predictions, HoldInEveryTail) {
    const Values parameters{0.5, 1.0, 0.75};
    SquareMatrix covariance;
    for (std::size_t k = 0; k < 3; ++k)
        covariance(k, k) = 0.04;
    covariance(0, 1) = covariance(1, 0) = -0.02;
    const Values x{2.0};
    for (const auto distribution :
         {TimeDistribution::Exponential, TimeDistribution::Lognormal, TimeDistribution::Normal}) {
        const std::size_t count = distribution == TimeDistribution::Exponential ? 2 : 3;
        const FittedTimes fitted{distribution, std::span{parameters}.first(count)};
        // The slope of ln H, from where S is 1 to a double to where it is 0.
        for (double score = -60.0; score < 60.0; score += 0.37) {
            if (!fitted.HasSigma() && score > 6.0) break;
            const double h = 1e-4 * std::max(1.0, 1.0 / std::max(1.0, std::abs(score)));
            const double slope = (fitted.LogHazard(score + h) - fitted.LogHazard(score - h)) / (2.0 * h);
            EXPECT_NEAR(fitted.LogHazardSlope(score), slope, 1e-6 * std::max(1.0, std::abs(slope))) << score;
        }
        const Predictor predictor(fitted, covariance, x, 1.96);
        double before = 1.0;
        for (const double time : {0.0, 1e-300, 1e-9, 0.1, 1.0, 2.0, 7.0, 30.0, 1e4, 1e12, 1e100}) {
            const Prediction s = predictor.SurvivalAt(time);
            EXPECT_TRUE(0.0 <= s.lower && s.lower <= s.value && s.value <= s.upper && s.upper <= 1.0) << time;
            EXPECT_TRUE(s.error >= 0.0 && std::isfinite(s.error)) << time;
            EXPECT_LE(s.value, before);
            before = s.value;
        }
        for (const double share : {0.999, 0.75, 0.5, 0.25, 0.001}) {
            const Prediction time = predictor.TimeOf(share);
            EXPECT_TRUE(time.lower < time.value && time.value < time.upper);
            EXPECT_TRUE(time.value < 0.0 || std::abs(predictor.SurvivalAt(time.value).value - share) < 1e-12);
        }
    }
    // By hand: mean time e^2, so half of that time is survived by exp(-1/2); the location's variance is
    // 4 0.04 - 4 0.02 + 0.04.
    const Predictor exponential({TimeDistribution::Exponential, std::span{parameters}.first(2)}, covariance,
                                x, 1.96);
    EXPECT_NEAR(exponential.SurvivalAt(0.5 * std::exp(2.0)).value, std::exp(-0.5), 1e-15);
    EXPECT_NEAR(exponential.LocationError(), std::sqrt(0.12), 1e-15);
    EXPECT_NEAR(exponential.TimeOf(0.5).value, std::log(2.0) * std::exp(2.0), 1e-14);
    // Covariates that nothing can be predicted for.
    EXPECT_FALSE(std::isfinite(Predictor({TimeDistribution::Exponential, std::span{parameters}.first(2)},
                                         covariance, Values{1e300}, 1.96)
                                   .LocationError()));
}

TEST(Predictions, EstimatesByHand) {
    // At risk: 7 at 1, 5 at 2 (with a tie of two, and a censored case that is still there), 2 at 4, the last
    // one.
    const Values values{4, 2, 1, 2, 9, 1, 2, std::numeric_limits<double>::quiet_NaN()};
    const std::vector<std::uint8_t> complete{1, 1, 1, 0, 1, 0, 1, 1};
    const auto steps = EstimateSteps(values, complete);
    ASSERT_EQ(steps.size(), 4U);
    const double survivals[] = {6.0 / 7, 6.0 / 7 * 3 / 5, 6.0 / 7 * 3 / 5 / 2, 0.0};
    const double hazards[] = {1.0 / 7, 1.0 / 7 + 2.0 / 5, 1.0 / 7 + 2.0 / 5 + 1.0 / 2,
                              1.0 / 7 + 2.0 / 5 + 1.5};
    const std::size_t atRisk[] = {7, 5, 2, 1};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_DOUBLE_EQ(steps[i].survival, survivals[i]);
        EXPECT_DOUBLE_EQ(steps[i].before, i == 0 ? 1.0 : survivals[i - 1]);
        EXPECT_DOUBLE_EQ(steps[i].hazard, hazards[i]);
        EXPECT_EQ(steps[i].atRisk, atRisk[i]);
    }
    EXPECT_EQ(StepAt(steps, 0.5), nullptr);
    EXPECT_EQ(StepAt(steps, 2.0), &steps[1]);
    EXPECT_EQ(StepAt(steps, 8.0), &steps[2]);
    EXPECT_TRUE(EstimateSteps(Values{3, 4}, std::vector<std::uint8_t>{0, 0}).empty());
}

} // namespace
} // namespace ozm::survival
