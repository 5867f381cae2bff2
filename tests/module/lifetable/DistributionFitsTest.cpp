// Fits at the edges of what can be estimated, and what must hold for any table.

#include "module/lifetable/DistributionFits.h"
#include "module/lifetable/FitEstimates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace ozm::survival {
namespace {

using enum Distribution;
using Values = std::vector<double>;
constexpr Distribution families[] = {Exponential, LinearHazard, Gompertz, Weibull};

LifeTable TableOf(const Values& lower, double entering, const Values& dying, const Values& withdrawn = {}) {
    IntervalCounts counts{.intervals = static_cast<int>(lower.size()),
                          .entering = entering,
                          .lower = {},
                          .withdrawn = {},
                          .dying = {}};
    std::copy(lower.begin(), lower.end(), counts.lower.begin());
    std::copy(withdrawn.begin(), withdrawn.end(), counts.withdrawn.begin());
    std::copy(dying.begin(), dying.end(), counts.dying.begin());
    LifeTable table;
    EXPECT_EQ(ComputeLifeTable(counts, Correction::On, table), LifeTableStatus::Success);
    return table;
}

int EstimatedOf(const DistributionFits& fits) {
    int count = 0;
    for (const auto& ofFamily : fits.fits)
        for (const DistributionFit& fit : ofFamily)
            count += fit.estimated ? 1 : 0;
    return count;
}

TEST(DistributionFits, AGompertzGammaOfZeroStopsAfterAllParameters) {
    // Half die in each interval of width 2/3: both hazards are 1, their logarithms 0.
    const LifeTable table = TableOf({0, 2.0 / 3, 4.0 / 3}, 8, {4, 2});
    ASSERT_EQ(table.hazard[0], 1);
    ASSERT_EQ(table.hazard[1], 1);
    const DistributionFits fits = FitDistributions(table);
    EXPECT_EQ(fits.stop, FitStop::GammaZero);
    EXPECT_EQ(fits.stoppedAt, Gompertz);
    EXPECT_EQ(EstimatedOf(fits), 12);
    for (std::size_t w = 0; w < weightings; ++w) {
        EXPECT_DOUBLE_EQ(fits.Of(Weibull, w).parameters.gamma, 1);
        EXPECT_DOUBLE_EQ(fits.Of(Exponential, w).survival[2], std::exp(-4.0 / 3)); // computed before
        EXPECT_TRUE(std::isnan(fits.Of(Gompertz, w).survival[1]));
        EXPECT_TRUE(std::isnan(fits.Of(Weibull, w).survival[1]));
    }
}

TEST(DistributionFits, AWeibullInterceptOutOfRangeStopsBeforeAnyCurve) {
    // Intervals far from 0: ln M hardly changes, so that the intercept is millions.
    const DistributionFits fits =
        FitDistributions(TableOf({1e6, 1e6 + 1, 1e6 + 2, 1e6 + 3}, 100, {10, 20, 30}));
    EXPECT_EQ(fits.stop, FitStop::LargeIntercept);
    EXPECT_EQ(fits.stoppedAt, Weibull);
    EXPECT_EQ(fits.stoppedWeighting, 0U);
    EXPECT_EQ(EstimatedOf(fits), 9);
    EXPECT_FALSE(fits.Of(Weibull, 0).estimated);
    EXPECT_TRUE(std::isnan(fits.Of(Exponential, 0).survival[1]));
}

TEST(DistributionFits, AWeibullLambdaOutOfRangeStops) {
    // A hazard that grows with the third power of a time in millionths.
    const DistributionFits fits =
        FitDistributions(TableOf({0, 1e-6, 2e-6, 3e-6, 4e-6}, 1000, {1, 10, 60, 300}));
    EXPECT_EQ(fits.stop, FitStop::LargeLambda);
    EXPECT_EQ(fits.stoppedAt, Weibull);
    EXPECT_EQ(EstimatedOf(fits), 9);
}

TEST(DistributionFits, ASurvivalOutOfRangeStopsAndKeepsWhatWasBefore) {
    // After a long interval with few deaths, many deaths in short ones: the line through these hazards is far
    // below 0 in most of the first interval, though not at its middle, where hazards are compared.
    const DistributionFits fits =
        FitDistributions(TableOf({0, 100, 100.125, 100.25, 100.375}, 1100, {100, 400, 240, 144}));
    EXPECT_EQ(fits.stop, FitStop::LargeExponent);
    EXPECT_EQ(fits.stoppedAt, LinearHazard);
    EXPECT_EQ(fits.stoppedWeighting, 0U);
    EXPECT_EQ(EstimatedOf(fits), 12);
    EXPECT_GT(fits.Of(Exponential, 0).survival[1], 0);
    EXPECT_TRUE(std::isnan(fits.Of(Exponential, 0).logLikelihood));
}

TEST(DistributionFits, AnExponentialThatLeavesNobodyIsInadequate) {
    // Most die at once, the rest live long: exp(-lambda t) is 0 in double precision at the last limit.
    const DistributionFits fits = FitDistributions(TableOf({0, 0.01, 0.02, 1000}, 100, {60, 20, 2}));
    EXPECT_EQ(fits.Of(Exponential, 0).inadequacy, Inadequacy::NobodyLeft);
    EXPECT_EQ(fits.Of(Exponential, 0).logLikelihood, 0);
}

TEST(DistributionFits, ALinearHazardThatFallsBelowZeroIsInadequate) {
    const DistributionFits fits = FitDistributions(TableOf({0, 1, 2, 3, 4, 5}, 1000, {600, 40, 20, 10, 5}));
    const DistributionFit& fit = fits.Of(LinearHazard, 0);
    EXPECT_EQ(fit.inadequacy, Inadequacy::NegativeHazard);
    const auto place = static_cast<std::size_t>(fit.where); // midpoints are 0.5, 1.5 ...
    EXPECT_EQ(fit.where, static_cast<double>(place) + 0.5);
    EXPECT_EQ(fit.hazard.at(place), 0);
    EXPECT_GT(fit.hazard.at(place - 1), 0);
}

TEST(DistributionFits, ALinearHazardThatIsNegativeAtTheStartOnlyRaisesSurvivalAboveOne) {
    // Hazards near 0.1 (t - 0.3): above 0 at all midpoints, but the first half interval gains.
    const LifeTable table = TableOf({0, 1, 2, 3, 4}, 1000, {20, 111, 172, 192});
    const DistributionFits fits = FitDistributions(table);
    for (std::size_t w = 0; w < weightings; ++w) {
        const DistributionFit& fit = fits.Of(LinearHazard, w);
        EXPECT_LT(fit.parameters.lambda, 0);
        EXPECT_GT(HazardAt(LinearHazard, fit.parameters, 0.5), 0);
        EXPECT_LT(CumulativeHazardAt(LinearHazard, fit.parameters, 0.5), 0);
        EXPECT_GT(CumulativeHazardAt(LinearHazard, fit.parameters, 1), 0);
        EXPECT_EQ(fit.inadequacy, Inadequacy::SurvivalAboveOne);
        EXPECT_EQ(fit.where, 0.5);
        EXPECT_EQ(fits.Of(Weibull, w).inadequacy, Inadequacy::None);
    }
}

TEST(DistributionFits, AWeibullFitWithoutHazardMarksTheGompertzFitOfItsWeighting) {
    const LifeTable table = TableOf({0, 1, 2, 3}, 100, {20, 18, 14});
    for (const double lambda : {0.0, -1.0, DistributionFit::none}) {
        DistributionFits fits;
        for (auto& ofFamily : fits.fits)
            for (DistributionFit& fit : ofFamily) {
                fit.estimated = true;
                fit.parameters = {1, 1};
            }
        fits.Of(Weibull, 1).parameters.lambda = lambda;
        for (const Distribution family : families)
            for (std::size_t w = 0; w < weightings; ++w)
                FitHazards(table, family, w, fits);
        for (const Distribution family : families)
            for (std::size_t w = 0; w < weightings; ++w)
                EXPECT_EQ(fits.Of(family, w).inadequacy,
                          family == Gompertz && w == 1 ? Inadequacy::WeibullHazard : Inadequacy::None);
        EXPECT_TRUE(std::isnan(fits.Of(Weibull, 1).hazard[0]));
        EXPECT_DOUBLE_EQ(fits.Of(Weibull, 0).hazard[0], 1);
        EXPECT_DOUBLE_EQ(fits.Of(Weibull, 2).hazard[0], 1);
    }
}

TEST(DistributionFits, AMidpointBelowZeroMarksGompertzThroughTheWeibullHazard) {
    const DistributionFits fits = FitDistributions(TableOf({-3, -1, 1, 3, 5}, 100, {10, 11, 16, 16}));
    for (std::size_t w = 0; w < weightings; ++w) {
        EXPECT_EQ(fits.Of(Gompertz, w).inadequacy, Inadequacy::WeibullHazard);
        EXPECT_FALSE(fits.Of(Weibull, w).hazard[0] > 0);
        EXPECT_FALSE(fits.Of(Weibull, w).IsShown()) << "its parameters are no numbers";
    }
}

TEST(DistributionFits, ConditionalSurvivalIsCutSoThatADeathStaysPossible) {
    // The hazard rises steeply from next to nothing, and one dies early.
    const LifeTable table = TableOf({0, 1, 2, 3, 4}, 100, {1, 1, 8, 40});
    const DistributionFits fits = FitDistributions(table);
    const DistributionFit& weibull = fits.Of(Weibull, 1);
    ASSERT_TRUE(weibull.IsShown());
    EXPECT_GT(weibull.survival[1], 1 - 1 / 200.0);
    EXPECT_DOUBLE_EQ(weibull.conditional[0], 1 - 1 / 200.0);
    EXPECT_TRUE(std::isfinite(weibull.logLikelihood));
}

TEST(DistributionFits, LimitsOfAGompertzFitHardlyChangeWhereGammaIsNearlyZero) {
    DistributionFit fit;
    fit.estimated = true;
    fit.lambdaVariance = 0.04;
    fit.gammaVariance = 1e-6;
    fit.covariance = -4e-5;
    fit.parameters = {-3, 0};
    const EstimateWithLimits time = TimeWithLimits(Gompertz, fit, 0.5, 1.96);
    const EstimateWithLimits survival = SurvivalWithLimits(Gompertz, fit, 20, 1.96);
    for (const double gamma : {1e-6, -1e-6, 1e-8, -1e-8, 1e-10, -1e-10}) {
        fit.parameters.gamma = gamma;
        const EstimateWithLimits nearly = TimeWithLimits(Gompertz, fit, 0.5, 1.96);
        EXPECT_NEAR(nearly.lower, time.lower, 1e-4 * time.lower) << gamma;
        EXPECT_NEAR(nearly.upper, time.upper, 1e-4 * time.upper) << gamma;
        EXPECT_NEAR(SurvivalWithLimits(Gompertz, fit, 20, 1.96).error, survival.error, 1e-4 * survival.error)
            << gamma;
    }
}

/// A table of random counts.
class AnyTable {
public:
    explicit AnyTable(unsigned seed) {
        std::mt19937 generator(seed);
        const auto upTo = [&](unsigned n) { return static_cast<double>(generator() % (n + 1)); };
        lower_.push_back(seed % 5 == 0 ? upTo(8) / 8 : 0);
        for (unsigned i = 0; i < 2 + seed % 28; ++i) {
            lower_.push_back(lower_.back() + (1 + upTo(15)) / 8);
            withdrawn_.push_back(upTo(9));
            dying_.push_back(upTo(30));
            entering_ += withdrawn_.back() + dying_.back();
        }
    }
    [[nodiscard]] LifeTable Make(double scale) const {
        Values lower = lower_;
        for (double& limit : lower)
            limit *= scale;
        return TableOf(lower, entering_, dying_, withdrawn_);
    }

private:
    Values lower_;
    Values withdrawn_;
    Values dying_;
    double entering_ = 3;
};

void DoesNotDependOnTheUnitOfTime(const AnyTable& any) {
    const LifeTable years = any.Make(1);
    const LifeTable other = any.Make(4); // exact in double precision
    const DistributionFits a = FitDistributions(years);
    const DistributionFits b = FitDistributions(other);
    ASSERT_EQ(a.stop, b.stop);
    EXPECT_NEAR(LogLikelihood(years), LogLikelihood(other), 1e-9);
    for (const Distribution family : families)
        for (std::size_t w = 0; w < weightings; ++w) {
            const DistributionFit& one = a.Of(family, w);
            const DistributionFit& two = b.Of(family, w);
            ASSERT_EQ(one.inadequacy, two.inadequacy);
            if (!one.IsShown() || a.stop != FitStop::None) continue;
            EXPECT_NEAR(one.logLikelihood, two.logLikelihood, 1e-8 * std::abs(one.logLikelihood));
            const EstimateWithLimits oneTime = TimeWithLimits(family, one, 0.5, 1.96);
            const EstimateWithLimits twoTime = TimeWithLimits(family, two, 0.5, 1.96);
            ASSERT_EQ(std::isnan(oneTime.value), std::isnan(twoTime.value));
            if (std::isnan(oneTime.value)) continue;
            EXPECT_NEAR(4 * oneTime.value, twoTime.value, 1e-8 * twoTime.value);
            EXPECT_NEAR(4 * oneTime.lower, twoTime.lower, 1e-6 * twoTime.lower);
            EXPECT_NEAR(4 * oneTime.upper, twoTime.upper, 1e-6 * twoTime.upper);
            EXPECT_NEAR(SurvivalWithLimits(family, one, oneTime.value, 1.96).value, 0.5, 1e-9);
        }
}

/// No fit is better than the table itself (where no proportion is cut, so without intervals in which nobody
/// dies), and no curve that is shown leaves 0 to 1, or rises.
void IsWithinBounds(const AnyTable& any) {
    const LifeTable table = any.Make(1);
    const DistributionFits fits = FitDistributions(table);
    if (fits.stop != FitStop::None) return;
    const bool uncut = std::none_of(table.dying.begin(), table.dying.begin() + table.rows - 1,
                                    [](double d) { return d < 1; });
    for (const Distribution family : families)
        for (std::size_t w = 0; w < weightings; ++w) {
            const DistributionFit& fit = fits.Of(family, w);
            if (!fit.IsShown()) continue;
            const GoodnessOfFit test = TestFit(fit, family, table, LogLikelihood(table));
            if (uncut) {
                EXPECT_GE(test.chiSquare, -1e-3);
            }
            EXPECT_GE(test.p, 0);
            EXPECT_LE(test.p, 1);
            double before = 1;
            for (const double of : {0.0, 1e-6, 0.01, 0.1, 0.5, 1.0, 2.0, 4.0, 10.0, 100.0, 1e4, 1e300}) {
                const EstimateWithLimits at =
                    SurvivalWithLimits(family, fit, of * table.lower[table.Closed()], 1.96);
                if (std::isnan(at.value)) continue; // the hazard is negative there
                EXPECT_LE(at.value, before);
                EXPECT_GE(at.value, 0);
                if (at.value > 0 && !std::isnan(at.lower)) {
                    EXPECT_LE(at.lower, at.value);
                    EXPECT_GE(at.upper, at.value);
                }
                before = at.value;
            }
            for (std::size_t i = 0; i < table.Closed(); ++i) {
                EXPECT_LE(fit.survival[i + 1], fit.survival[i]);
                EXPECT_GE(fit.survival[i + 1], 0);
                EXPECT_GE(fit.hazard[i], 0);
                EXPECT_LE(fit.conditional[i], 1 - 0.5 / table.exposed[i]);
            }
        }
}

TEST(DistributionFits, WhatHoldsForAnyTable) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        const AnyTable any(seed);
        DoesNotDependOnTheUnitOfTime(any);
        IsWithinBounds(any);
    }
}

} // namespace
} // namespace ozm::survival
