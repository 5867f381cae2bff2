// Life tables and the distributions fitted to them, against an independent program.

#include "module/lifetable/DistributionFits.h"
#include "module/lifetable/FitEstimates.h"
#include "module/lifetable/MedianLife.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace ozm::survival {
namespace {

using korvana::golden::Table;
using Values = std::vector<double>;

const std::vector<std::string> models{"exponential", "linear-hazard", "gompertz", "weibull"};

/// The values of one data set, by quantity, model and weighting (from 0) and then by row.
class Golden {
public:
    explicit Golden(const std::string& dataset) {
        const Table table = Table::read("life-table.csv").where("dataset", dataset);
        const auto quantities = table.texts("quantity");
        const auto ofModels = table.texts("model");
        const auto ofWeightings = table.numbers("weighting");
        const auto values = table.numbers("value");
        const auto rows = table.numbers("row");
        for (std::size_t i = 0; i < values.size(); ++i)
            values_[{quantities[i], ofModels[i], static_cast<int>(ofWeightings[i])}][rows[i]] = values[i];
    }

    [[nodiscard]] bool Has(const std::string& quantity, const std::string& model = "",
                           std::size_t weighting = 0) const {
        return values_.contains(Key(quantity, model, weighting));
    }
    /// By row, in order.
    [[nodiscard]] Values Of(const std::string& quantity, const std::string& model = "",
                            std::size_t weighting = 0) const {
        Values values;
        for (const auto& [row, value] : values_.at(Key(quantity, model, weighting)))
            values.push_back(value);
        return values;
    }
    [[nodiscard]] double One(const std::string& quantity, const std::string& model = "",
                             std::size_t weighting = 0) const {
        return Of(quantity, model, weighting).at(0);
    }

private:
    using KeyOf = std::tuple<std::string, std::string, int>;
    static KeyOf Key(const std::string& quantity, const std::string& model, std::size_t weighting) {
        return {quantity, model, model.empty() ? 0 : static_cast<int>(weighting) + 1};
    }
    std::map<KeyOf, std::map<double, double>> values_;
};

/// Two numbers agree to a part of their size. What the other program has not, is not compared.
void Agree(double ours, double theirs, double part, const std::string& what) {
    if (std::isnan(theirs)) return;
    EXPECT_NEAR(ours, theirs, part * std::abs(theirs)) << what;
}
void Agree(const IntervalColumn& ours, const Values& theirs, double part, const std::string& what) {
    for (std::size_t i = 0; i < theirs.size(); ++i)
        Agree(ours[i], theirs[i], part, what + " in row " + std::to_string(i + 1));
}

IntervalColumn ColumnOf(const Values& values) {
    IntervalColumn column{};
    std::copy(values.begin(), values.end(), column.begin());
    return column;
}

/// The counts as they were given, or found by the other program.
IntervalCounts CountsIn(const Golden& golden, bool oneMore = false) {
    Values lower = golden.Of("lower");
    if (oneMore) lower.push_back(lower.back() + 1);
    return {.intervals = static_cast<int>(lower.size()),
            .entering = golden.Of("entering").at(0),
            .lower = ColumnOf(lower),
            .withdrawn = ColumnOf(golden.Of("withdrawn")),
            .dying = ColumnOf(golden.Of("dying"))};
}

struct Cases {
    Values times;
    Values complete;
};
Cases CasesOf(const std::string& file, const char* time, const char* complete) {
    const Table table = Table::read("../../examples/data/" + file);
    return {table.numbers(time), table.numbers(complete)};
}
/// As the other program makes them.
Cases WeibullCases() {
    Cases cases;
    for (int i = 1; i <= 300; ++i) {
        const bool withdrawn = i % 4 == 0;
        const double time =
            std::pow(-std::log(1 - (i - 0.5) / 300) / 0.02, 1 / 1.5) * (withdrawn ? 0.6 : 1.0);
        cases.times.push_back(std::floor(1000 * time + 0.5) / 1000);
        cases.complete.push_back(withdrawn ? 0 : 1);
    }
    return cases;
}
double LargestOf(const Cases& cases) {
    return *std::max_element(cases.times.begin(), cases.times.end());
}
IntervalCounts Tabulate(const Cases& cases, const Intervals& intervals) {
    Tabulation tabulation(intervals);
    for (std::size_t i = 0; i < cases.times.size(); ++i)
        tabulation.Add(cases.times[i], cases.complete[i] == 1);
    IntervalCounts counts = tabulation.Counts();
    counts.DropEmptyEnd();
    return counts;
}

void TableAgrees(const Golden& golden, const LifeTable& t) {
    ASSERT_EQ(t.Rows(), golden.Of("lower").size());
    const std::map<std::string, const IntervalColumn*> columns{{"lower", &t.lower},
                                                               {"midpoint", &t.midpoint},
                                                               {"width", &t.width},
                                                               {"entering", &t.entering},
                                                               {"withdrawn", &t.withdrawn},
                                                               {"exposed", &t.exposed},
                                                               {"dying", &t.dying},
                                                               {"dead", &t.proportionDead},
                                                               {"density", &t.density},
                                                               {"surviving", &t.proportionSurviving},
                                                               {"hazard", &t.hazard},
                                                               {"cumulative", &t.cumulativeSurviving},
                                                               {"se_hazard", &t.hazardError},
                                                               {"se_cumulative", &t.survivingError},
                                                               {"se_density", &t.densityError}};
    for (const auto& [name, column] : columns)
        Agree(*column, golden.Of(name), 1e-11, name);
    const MedianLives medians = ComputeMedianLives(t);
    Agree(medians.median, golden.Of("median"), 1e-11, "median");
    Agree(medians.error, golden.Of("se_median"), 1e-11, "error of the median");
    for (std::size_t i = 0; i < t.Closed(); ++i)
        EXPECT_EQ(medians.beyond[i], golden.Of("median_beyond")[i] == 1) << i + 1;
    Agree(LogLikelihood(t), golden.One("loglik_data"), 1e-12, "log-likelihood");
}

void EstimatesAgree(const Golden& golden, const DistributionFit& fit, std::size_t family, std::size_t w) {
    const auto distribution = static_cast<Distribution>(family);
    const auto compare = [&](const EstimateWithLimits& ours, const std::string& quantity, std::size_t row) {
        const double value = golden.Of(quantity, models[family], w).at(row);
        EXPECT_EQ(std::isnan(ours.value), std::isnan(value)) << quantity << " " << row;
        Agree(ours.value, value, 1e-10, quantity);
        Agree(ours.lower, golden.Of(quantity + "_lower", models[family], w).at(row), 1e-9, quantity);
        Agree(ours.upper, golden.Of(quantity + "_upper", models[family], w).at(row), 1e-9, quantity);
    };
    constexpr double z = 1.9599639845400545; // of 95 %
    for (std::size_t row = 0; row < 3; ++row) {
        const double surviving = 0.25 * (1 + static_cast<double>(row));
        compare(TimeWithLimits(distribution, fit, surviving, z), "quantile", row);
        compare(SurvivalWithLimits(distribution, fit, golden.Of("time").at(row), z), "survival_at", row);
    }
}

void FitAgrees(const Golden& golden, const LifeTable& t, const DistributionFits& fits, std::size_t family,
               std::size_t w) {
    const std::string& model = models[family];
    SCOPED_TRACE(model + " with weighting " + std::to_string(w + 1));
    const auto distribution = static_cast<Distribution>(family);
    const DistributionFit& fit = fits.Of(distribution, w);
    ASSERT_TRUE(fit.estimated);
    const auto compare = [&](double ours, const char* quantity, double part) {
        Agree(ours, golden.One(quantity, model, w), part, quantity);
    };
    compare(fit.parameters.lambda, "lambda", 1e-10);
    compare(fit.lambdaVariance, "var_lambda", 1e-10);
    if (ParameterCount(distribution) == 2) {
        compare(fit.parameters.gamma, "gamma", 1e-10);
        compare(fit.gammaVariance, "var_gamma", 1e-10);
        compare(fit.covariance, "covariance", 1e-10);
    }
    ASSERT_EQ(fit.inadequacy != Inadequacy::None, golden.One("inadequate", model, w) == 1);
    if (fit.inadequacy != Inadequacy::None) {
        EXPECT_EQ(fit.logLikelihood, 0);
        return;
    }
    if (golden.Has("fitted_hazard", model, w)) {
        Agree(fit.hazard, golden.Of("fitted_hazard", model, w), 1e-10, "hazard");
        Agree(fit.survival, golden.Of("fitted_survival", model, w), 1e-10, "survival");
        Agree(fit.density, golden.Of("fitted_density", model, w), 1e-10, "density");
        Agree(fit.conditional, golden.Of("conditional_survival", model, w), 1e-10, "conditional survival");
        EXPECT_EQ(fit.density[t.Closed()], 0);
    }
    compare(fit.logLikelihood, "loglik", 1e-11);
    const GoodnessOfFit test = TestFit(fit, distribution, t, LogLikelihood(t));
    EXPECT_NEAR(test.chiSquare, golden.One("chisq", model, w), 1e-7);
    EXPECT_EQ(test.df, golden.One("df", model, w));
    compare(test.p, "p", 1e-5); // of chi-square in single precision
    EXPECT_NEAR(2 * ParameterCount(distribution) - 2 * fit.logLikelihood, golden.One("aic", model, w), 1e-8);
    EstimatesAgree(golden, fit, family, w);
}

void AllAgrees(const std::string& dataset, const IntervalCounts& counts, Correction correction) {
    SCOPED_TRACE(dataset);
    const Golden golden(dataset);
    LifeTable t;
    ASSERT_EQ(ComputeLifeTable(counts, correction, t), LifeTableStatus::Success);
    TableAgrees(golden, t);
    const DistributionFits fits = FitDistributions(t);
    if (!golden.Has("lambda", "exponential")) { // the other program could not weight
        EXPECT_EQ(fits.stop, FitStop::NoVariance);
        for (const auto& ofFamily : fits.fits)
            for (const DistributionFit& fit : ofFamily)
                EXPECT_FALSE(fit.estimated);
        return;
    }
    EXPECT_EQ(fits.stop, FitStop::None);
    for (std::size_t family = 0; family < distributions; ++family)
        for (std::size_t w = 0; w < weightings; ++w)
            FitAgrees(golden, t, fits, family, w);
}

TEST(GoldenLifeTable, OfPublishedCounts) {
    for (const char* dataset : {"angina", "uneven", "short"})
        AllAgrees(dataset, CountsIn(Golden(dataset)), Correction::On);
    for (const char* dataset : {"angina-uncorrected", "plateau", "died-out"})
        AllAgrees(dataset, CountsIn(Golden(dataset)), Correction::Off);
    AllAgrees("angina-longer", CountsIn(Golden("angina-longer"), true), Correction::On);
}

TEST(GoldenLifeTable, OfCases) {
    const Cases veteran = CasesOf("veteran.csv", "time", "status");
    const IntervalCounts counts = Tabulate(veteran, IntervalsByNumber(LargestOf(veteran)));
    AllAgrees("veteran", counts, Correction::On);
    AllAgrees("veteran-uncorrected", counts, Correction::Off);
    AllAgrees("veteran-step", Tabulate(veteran, IntervalsByStep(LargestOf(veteran), 50).value()),
              Correction::On);
    const Cases leukaemia = CasesOf("leukaemia-6mp.csv", "weeks", "relapse");
    AllAgrees("leukaemia", Tabulate(leukaemia, IntervalsByNumber(LargestOf(leukaemia))), Correction::On);
    AllAgrees("leukaemia-step", Tabulate(leukaemia, IntervalsByStep(LargestOf(leukaemia), 5).value()),
              Correction::On);
    const Cases weibull = WeibullCases();
    AllAgrees("weibull", Tabulate(weibull, IntervalsByNumber(LargestOf(weibull), 20)), Correction::On);
}

TEST(GoldenLifeTable, OfCasesAndOfTheirCountsIsTheSame) {
    const IntervalCounts counts = CountsIn(Golden("angina"));
    Cases cases; // in the middle of their years
    for (std::size_t i = 0; i < static_cast<std::size_t>(counts.intervals); ++i)
        for (const bool complete : {false, true}) {
            const double many = complete ? counts.dying[i] : counts.withdrawn[i];
            cases.times.insert(cases.times.end(), static_cast<std::size_t>(many), counts.lower[i] + 0.5);
            cases.complete.insert(cases.complete.end(), static_cast<std::size_t>(many), complete ? 1 : 0);
        }
    const IntervalCounts tabulated = Tabulate(cases, IntervalsByStep(15.5, 1).value());
    EXPECT_EQ(tabulated.intervals, counts.intervals);
    EXPECT_EQ(tabulated.entering, counts.entering);
    // The limits that follow the last row are of no account.
    EXPECT_TRUE(
        std::equal(counts.lower.begin(), counts.lower.begin() + counts.intervals, tabulated.lower.begin()));
    EXPECT_EQ(tabulated.withdrawn, counts.withdrawn);
    EXPECT_EQ(tabulated.dying, counts.dying);
}

} // namespace
} // namespace ozm::survival
