#include "module/kaplan/ProductLimit.h"
#include "module/kaplan/ConfidenceLimits.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace ozm::survival {
namespace {

struct Estimate {
    std::vector<double> times;
    std::vector<std::int32_t> ranks;
    std::vector<double> survival;
    std::vector<double> error;
};

Estimate Fit(std::vector<double> uncensored, const std::vector<double>& censored) {
    Estimate e{std::move(uncensored), {}, {}, {}};
    e.ranks.resize(e.times.size());
    e.survival.resize(e.times.size());
    e.error.resize(e.times.size());
    ComputeProductLimit(e.times, censored, e.ranks, e.survival, e.error);
    return e;
}

TEST(ProductLimit, TiesAndCensoringByHand) {
    // Five at risk: 2 2 3 uncensored, 2 and 4 censored. The censored 2 is at risk at time 2 but not at 3.
    const Estimate e = Fit({2, 2, 3}, {2, 4});
    EXPECT_EQ(e.ranks, (std::vector<std::int32_t>{1, 2, 4}));
    EXPECT_DOUBLE_EQ(e.survival[0], 4.0 / 5);
    EXPECT_DOUBLE_EQ(e.survival[1], 3.0 / 5);
    EXPECT_DOUBLE_EQ(e.survival[2], 3.0 / 10);
    EXPECT_DOUBLE_EQ(e.error[1], 0.6 * std::sqrt(2.0 / (5 * 3)));
    EXPECT_DOUBLE_EQ(e.error[2], 0.3 * std::sqrt(2.0 / (5 * 3) + 1.0 / 2));
}

TEST(ProductLimit, TheLastObservationFails) {
    const Estimate e = Fit({1, 2, 3}, {});
    EXPECT_EQ(e.survival[2], 0.0);
    EXPECT_EQ(e.error[2], 0.0);
    EXPECT_GT(e.error[1], 0.0);
}

/// Expands golden rows (one per distinct time) to observations and compares where events happened.
void AgreesWithGolden(const std::string& file, const std::string& group) {
    const auto golden = korvana::golden::Table::read(file).where("of", group);
    const auto time = golden.numbers("time");
    const auto events = golden.numbers("n.event");
    const auto leaving = golden.numbers("n.censor");
    std::vector<double> uncensored;
    std::vector<double> censored;
    for (std::size_t i = 0; i < golden.size(); ++i) {
        uncensored.insert(uncensored.end(), static_cast<std::size_t>(events[i]), time[i]);
        censored.insert(censored.end(), static_cast<std::size_t>(leaving[i]), time[i]);
    }
    const Estimate e = Fit(uncensored, censored);
    const double z = ConfidenceZ(0.95);
    std::size_t row = 0;
    for (std::size_t i = 0; i < golden.size(); ++i) {
        if (events[i] == 0) continue;
        row += static_cast<std::size_t>(events[i]);
        const double s = golden.numbers("survival")[i];
        ASSERT_NEAR(e.survival[row - 1], s, 1e-13) << file << " " << group << " at " << time[i];
        if (s == 0.0) continue; // R leaves the error undefined there
        EXPECT_NEAR(e.error[row - 1], golden.numbers("std.err")[i], 1e-13) << time[i];
        const auto limits = LogMinusLogLimits(e.survival[row - 1], e.error[row - 1], z);
        EXPECT_NEAR(limits.lower, golden.numbers("lower")[i], 1e-12) << time[i];
        EXPECT_NEAR(limits.upper, golden.numbers("upper")[i], 1e-12) << time[i];
    }
    EXPECT_EQ(row, e.times.size());
}

TEST(ProductLimit, AgreesWithAnIndependentProgram) {
    AgreesWithGolden("kaplan-meier-leukaemia-6mp.csv", "all");
    AgreesWithGolden("kaplan-meier-leukaemia-6mp.csv", "6-MP");
    AgreesWithGolden("kaplan-meier-veteran.csv", "all");
    AgreesWithGolden("kaplan-meier-aml.csv", "all");
}

TEST(Percentiles, InterpolateTimeAgainstSurvival) {
    // S = .8 .6 .4 .2: .75 lies a quarter of the way from 10 to 20, and so on.
    const std::vector<double> t{10, 20, 30, 40};
    const Percentiles p = ComputeSurvivalPercentiles(t, std::vector<double>{.8, .6, .4, .2});
    EXPECT_DOUBLE_EQ(p.times[0], 12.5);
    EXPECT_DOUBLE_EQ(p.times[1], 25);
    EXPECT_DOUBLE_EQ(p.times[2], 37.5);
}

TEST(Percentiles, WhatIsNotLocated) {
    const std::vector<double> t{1, 2, 3, 4};
    // Below 0.75 at once: only that target is passed over, and the next is sought from the same place.
    const Percentiles low = ComputeSurvivalPercentiles(t, std::vector<double>{.7, .6, .4, .3});
    EXPECT_FALSE(low.located[0]);
    EXPECT_EQ(low.times[0], 0);
    EXPECT_DOUBLE_EQ(low.times[1], 2.5);
    EXPECT_FALSE(low.located[2]); // never falls to 0.25
    // Fewer than four observations locate nothing.
    EXPECT_FALSE(
        ComputeSurvivalPercentiles(std::vector<double>{1, 2, 3}, std::vector<double>{.8, .5, .1}).located[0]);
    // Exactly on a target.
    const Percentiles exact = ComputeSurvivalPercentiles(t, std::vector<double>{.75, .5, .25, 0});
    EXPECT_TRUE(exact.located[0] && exact.located[1] && exact.located[2]);
    EXPECT_DOUBLE_EQ(exact.times[0], 1);
    EXPECT_DOUBLE_EQ(exact.times[1], 2);
    EXPECT_DOUBLE_EQ(exact.times[2], 3);
}

TEST(Percentiles, PassingByFarValuesChangesNothing) {
    // Enough observations for the shortcuts to apply; each value computed, as the rule states it, must give
    // the same.
    for (const std::size_t n : {50U, 5000U, 200000U}) {
        std::vector<double> times(n);
        std::vector<double> censored;
        for (std::size_t i = 0; i < n; ++i) {
            times[i] = std::floor(static_cast<double>(i) * 0.7);
            if (i % 3 == 0) censored.push_back(times[i]);
        }
        const Estimate e = Fit(times, censored);
        const double z = ConfidenceZ(0.95);
        const auto limits = ComputePercentileLimits(e.times, e.survival, e.error, z);
        const auto everyOne = [](std::size_t, double) { return false; };
        for (const double sign : {1.0, -1.0}) {
            const auto plain = LocatePercentiles(
                e.times, [&](std::size_t i) { return LogMinusLogLimit(e.survival[i], e.error[i], sign * z); },
                everyOne);
            EXPECT_EQ((sign > 0 ? limits.lower : limits.upper).times, plain.times) << n;
            const double median = ComputeSurvivalPercentiles(e.times, e.survival).times[1];
            ASSERT_TRUE(plain.located[1]);
            EXPECT_TRUE(sign > 0 ? plain.times[1] < median : plain.times[1] > median) << n;
        }
    }
}

TEST(ConfidenceLimits, EndsAndLabels) {
    const auto all = LogMinusLogLimits(0.5, 0.1, ConfidenceZ(1.0));
    EXPECT_EQ(all.lower, 0.0);
    EXPECT_EQ(all.upper, 1.0);
    EXPECT_TRUE(std::isnan(LogMinusLogLimits(0.0, 0.0, 1.96).lower));
    EXPECT_EQ(LevelInPercent(0.95), "95");
    EXPECT_EQ(LevelInPercent(0.9), "90");
    EXPECT_EQ(LevelInPercent(0.975), "97.5");
    EXPECT_EQ(LevelInPercent(1), "100");
    EXPECT_EQ(LevelInPercent(0), "0");
}

} // namespace
} // namespace ozm::survival
