// The partial likelihood with covariates that depend on the time: what must hold for any data.

#include "module/regression/cox/PartialLikelihood.h"
#include "module/regression/timedependent/FixedLikelihood.h"
#include "module/regression/timedependent/TimeDiagnosis.h"
#include "tests/module/regression/TimeCases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ozm::survival {
namespace {

/// Every second covariate fixed, the others growing or falling with the time.
std::vector<TimeFunction> Mixed(std::size_t p, std::size_t n) {
    std::vector<TimeFunction> functions;
    for (std::size_t k = 0; k < p; ++k)
        if (k % 2 == 1)
            functions.push_back({"fixed", false, [k](const Values& v, double) { return v[k]; }});
        else
            functions.push_back({"changing", true, [k, n](const Values& v, double t) {
                                     const double part = t / static_cast<double>(n);
                                     return v[k] * (k % 4 == 0 ? std::log1p(part) : 1 - part);
                                 }});
    return functions;
}

/// Values that do not change, of covariates of which some are said to.
std::vector<TimeFunction> AsTheyAre(std::size_t p, std::size_t everyChanging) {
    std::vector<TimeFunction> functions;
    for (std::size_t k = 0; k < p; ++k)
        functions.push_back({"value", everyChanging > 0 && k % everyChanging == 0,
                             [k](const Values& v, double) { return v[k]; }});
    return functions;
}

Values Somewhere(std::size_t p) {
    Values b;
    for (std::size_t k = 0; k < p; ++k)
        b.push_back((static_cast<double>(k * 7 % 5) - 2) / 10);
    return b;
}

struct At {
    At(LikelihoodModel& model, const Values& b) : gradient(b.size()) {
        status = model.LogLikelihood(b, value);
        EXPECT_EQ(model.Check(b), status);
        if (status == EstimationStatus::Success) model.Derivatives(gradient, information);
    }
    EstimationStatus status{};
    double value = 0.0;
    Values gradient;
    SquareMatrix information;
};

/// Sizes about the groups and chunks of cases, and the whole range of covariates.
template <class Test>
void ForManySizes(Test test) {
    for (const std::size_t p : {1U, 2U, 3U, 7U, 40U})
        for (std::size_t n = 1; n < 280; n += n < 20 && p < 4 ? 1 : 37)
            test(CoxCases::Random(n, p, 1 + static_cast<int>(n % 3), static_cast<unsigned>(100 * n + p)));
}

TEST(TimeDependentLikelihood, ThatOfTheFixedModelWhereNothingChanges) {
    ForManySizes([](const CoxCases& cases) {
        const CoxSample made(cases);
        const OrderedSample sample = made.sample.Ordered();
        const std::size_t p = cases.x.size();
        PartialLikelihood model(sample);
        const At fixed(model, Somewhere(p));
        const auto same = [&](const At& other) {
            const auto n = static_cast<double>(sample.cases);
            ASSERT_NEAR(other.value, fixed.value, 1e-11 * n) << n << " " << p;
            for (std::size_t k = 0; k < p; ++k) {
                ASSERT_NEAR(other.gradient[k], fixed.gradient[k], 1e-11 * n) << n << " " << p;
                for (std::size_t l = 0; l < p; ++l)
                    ASSERT_NEAR(other.information(k, l), fixed.information(k, l), 1e-11 * n) << n << " " << p;
            }
        };
        for (const std::size_t everyChanging : {0U, 1U, 2U, 3U}) {
            FunctionsOf covariates(made.sample, AsTheyAre(p, everyChanging));
            Values room(CovariateTable::WholeRoom(sample, covariates));
            TimeDependentLikelihood changing(sample, covariates, room, {});
            same(At(changing, Somewhere(p)));
            if (everyChanging > 0) continue;
            FixedLikelihood alone(sample, covariates);
            same(At(alone, Somewhere(p)));
        }
    });
}

TEST(TimeDependentLikelihood, DerivativesAreThoseOfTheLikelihood) {
    ForManySizes([](const CoxCases& cases) {
        const CoxSample made(cases);
        const OrderedSample sample = made.sample.Ordered();
        const std::size_t p = cases.x.size();
        if (p > 7) return;
        FunctionsOf covariates(made.sample, Mixed(p, sample.cases));
        Values room(CovariateTable::WholeRoom(sample, covariates));
        TimeDependentLikelihood model(sample, covariates, room, {});
        const At here(model, Somewhere(p));
        for (std::size_t k = 0; k < p; ++k) {
            constexpr double h = 1e-4;
            Values b = Somewhere(p);
            b[k] += h;
            const At up(model, b);
            b[k] -= 2 * h;
            const At down(model, b);
            const auto n = static_cast<double>(sample.cases);
            ASSERT_NEAR((up.value - down.value) / (2 * h), here.gradient[k], 1e-7 * n) << n << " " << p;
            for (std::size_t l = 0; l < p; ++l)
                ASSERT_NEAR((down.gradient[l] - up.gradient[l]) / (2 * h), here.information(k, l), 1e-7 * n)
                    << n << " " << p;
        }
    });
}

/// Whether all predictors are within 75, at every time for all who are at risk then.
bool AllWithin(const OrderedSample& sample, FunctionsOf& covariates, const Values& b) {
    for (const RiskTime& at : RiskTimesOf(sample)) {
        Values eta(at.AtRisk());
        Values z(at.AtRisk());
        for (std::size_t k = 0; k < b.size(); ++k) {
            covariates.Evaluate(k, at.first, at.time, z);
            for (std::size_t i = 0; i < z.size(); ++i)
                eta[i] += b[k] * z[i];
        }
        for (const double each : eta)
            if (std::abs(each) > 75) return false;
    }
    return true;
}

TEST(TimeDependentLikelihood, BoundHoldsAtEveryTime) {
    std::size_t within = 0;
    std::size_t beyond = 0;
    ForManySizes([&](const CoxCases& cases) {
        const CoxSample made(cases);
        const OrderedSample sample = made.sample.Ordered();
        const std::size_t p = cases.x.size();
        FunctionsOf covariates(made.sample, Mixed(p, sample.cases));
        TimeDependentLikelihood model(sample, covariates, {}, {});
        FunctionsOf same(made.sample, AsTheyAre(p, 0));
        FixedLikelihood fixed(sample, same);
        for (double scale = 64; scale < 4000; scale *= 1.5) {
            Values b = Somewhere(p);
            for (double& each : b)
                each *= scale;
            const bool all = AllWithin(sample, covariates, b);
            const auto expected = all ? EstimationStatus::Success : EstimationStatus::NoLikelihood;
            ++(all ? within : beyond);
            ASSERT_EQ(At(model, b).status, expected) << sample.cases << " " << p << " " << scale;
            const auto ofFixed =
                AllWithin(sample, same, b) ? EstimationStatus::Success : EstimationStatus::NoLikelihood;
            ASSERT_EQ(At(fixed, b).status, ofFixed) << sample.cases << " " << p << " " << scale;
        }
    });
    EXPECT_GT(within, 100U);
    EXPECT_GT(beyond, 100U);
}

TEST(TimeDependentLikelihood, EveryWidthOfVectorsGivesTheSameBits) {
    ForManySizes([](const CoxCases& cases) {
        const std::size_t n = cases.time.size();
        const std::size_t p = cases.x.size();
        const std::size_t stride = n + caseGroup;
        Values columns(p * stride);
        for (std::size_t k = 0; k < p; ++k)
            std::ranges::copy(cases.x[k], columns.begin() + static_cast<std::ptrdiff_t>(k * stride));
        const std::size_t fixed = p / 2;
        const Values predictor(columns.begin(), columns.begin() + static_cast<std::ptrdiff_t>(stride));
        const RiskSetAt set{n,
                            predictor.data(),
                            {columns.data(), stride, fixed},
                            {columns.data() + fixed * stride, stride, p - fixed}};
        const Values b = Somewhere(p);
        std::vector<Values> results;
        for (const RiskSetPass& pass : UsableRiskSetPasses()) {
            Values weights(stride);
            WeightedSums sums{};
            ASSERT_TRUE(pass.weigh(set, b.data(), 75, weights.data(), sums));
            ASSERT_TRUE(pass.within(set, b.data(), 75));
            Values result = weights;
            result.insert(result.end(), sums.begin(), sums.end());
            result.push_back(pass.survey(columns.data(), InGroups(n)));
            Values share(stride);
            Values changing(p * stride);
            Values pairs(p * (p + 1) / 2 * caseGroup);
            pass.spread(set, weights.data(), 2 / sums[0], b.data(),
                        {share.data(), changing.data(), stride, pairs});
            for (const Values& each : {share, changing, pairs})
                result.insert(result.end(), each.begin(), each.end());
            results.push_back(result);
            ASSERT_EQ(result, results.front()) << n << " " << p;
        }
    });
}

TEST(TimeDependentLikelihood, ExponentialsToTheLastDigit) {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const RiskSetPass& pass : UsableRiskSetPasses()) {
        Values eta;
        for (double x = -75; x <= 75; x += 0.00371)
            eta.push_back(x);
        for (double x = 1; x > 1e-300; x /= 3)
            eta.insert(eta.end(), {x, -x});
        eta.insert(eta.end(), {0, -0.0, 75, -75, std::log(2) / 2, -std::log(2) / 2});
        const std::size_t n = eta.size();
        eta.resize(n + caseGroup);
        Values weights(eta.size());
        WeightedSums sums{};
        ASSERT_TRUE(pass.weigh({n, eta.data(), {}, {}}, nullptr, 75, weights.data(), sums));
        for (std::size_t i = 0; i < n; ++i)
            ASSERT_NEAR(weights[i] / std::exp(eta[i]), 1, 2.3e-16) << eta[i];
        for (const double odd : {75.000001, -75.000001, notANumber, infinite, -infinite}) {
            eta[n / 2] = odd;
            EXPECT_FALSE(pass.weigh({n, eta.data(), {}, {}}, nullptr, 75, weights.data(), sums)) << odd;
            EXPECT_FALSE(pass.within({n, eta.data(), {}, {}}, nullptr, 75)) << odd;
            EXPECT_TRUE(pass.within({n / 2, eta.data(), {}, {}}, nullptr, 75)) << odd; // not among them
        }
        for (const double odd : {notANumber, infinite, -infinite}) {
            eta[n / 2] = odd;
            EXPECT_TRUE(std::isnan(pass.survey(eta.data(), InGroups(n)))) << odd;
        }
    }
}

TEST(TimeDependentLikelihood, StopsAndGoesOn) {
    const CoxSample made(CoxCases::Random(600, 2, 1, 7));
    const OrderedSample sample = made.sample.Ordered();
    FunctionsOf covariates(made.sample, Mixed(2, sample.cases));
    Values room(CovariateTable::WholeRoom(sample, covariates));
    TimeDependentLikelihood undisturbed(sample, covariates, room, {});
    const Values b{0.3, -0.2};
    const At there(undisturbed, b);

    Values shares;
    std::size_t stopAt = 1;
    Values other(room.size());
    TimeDependentLikelihood model(sample, covariates, other, [&](double share) {
        EXPECT_GT(share, shares.empty() ? 0 : shares.back());
        EXPECT_LE(share, 1);
        shares.push_back(share);
        return shares.size() == stopAt;
    });
    double value = 0.0;
    EstimationStatus status{};
    do {
        shares.clear();
        status = model.LogLikelihood(b, value);
        if (status == EstimationStatus::Stopped) {
            EXPECT_EQ(shares.size(), stopAt++);
        }
    } while (status == EstimationStatus::Stopped);
    EXPECT_GT(stopAt, 2U);
    EXPECT_EQ(value, there.value);
    Values gradient(2);
    model.Gradient(gradient);
    EXPECT_EQ(gradient, there.gradient);
    // Values are computed once where there is room for them.
    const std::size_t computed = covariates.computed;
    shares.clear();
    EXPECT_EQ(model.LogLikelihood(b, value), EstimationStatus::Success);
    EXPECT_EQ(covariates.computed, computed);
}

TEST(FitTimeDependentCox, ACoefficientOfZeroSettlesOnEveryScale) {
    // For each case another one with the opposite values: no effect at all.
    CoxCases cases = CoxCases::Random(40, 2, 2, 3);
    for (std::size_t i = 0; i < 40; ++i) {
        for (Values* each : {&cases.time, &cases.status, &cases.code})
            each->push_back((*each)[i]);
        for (Values& column : cases.x)
            column.push_back(-column[i]);
    }
    const CoxSample made(cases);
    const OrderedSample sample = made.sample.Ordered();
    for (const bool changes : {false, true})
        for (const double scale : {1e-3, 1.0, 1e6})
            for (const double start : {0.0, 0.5}) {
                FunctionsOf covariates(made.sample,
                                       {{"plain", false, [](const Values& v, double) { return v[0]; }},
                                        {"scaled", changes, [&](const Values& v, double t) {
                                             return scale * v[1] * (changes ? std::log1p(t) : 1);
                                         }}});
                Values room(RoomFor(sample, covariates));
                TimeDependentCox cox{sample, covariates, room, {}, {}};
                Values b{start, start / scale};
                NewtonEstimate estimate;
                const auto watch = [](int, double, std::span<const double>) { return false; };
                EXPECT_EQ(FitTimeDependentCox(cox, {}, watch, b, estimate), EstimationStatus::Success)
                    << changes << " " << scale << " " << start;
                EXPECT_NEAR(b[0], 0, 1e-11);
                EXPECT_NEAR(b[1] * scale, 0, 1e-11);
            }
}

TEST(TimeDiagnosis, NamesDependentAndUnboundedCovariates) {
    CoxCases cases = CoxCases::Random(120, 2, 3, 5);
    cases.x.push_back(cases.time); // each case's own time as its variable
    const CoxSample made(cases);
    const OrderedSample sample = made.sample.Ordered();
    const TimeFunction first{"first", false, [](const Values& v, double) { return v[0]; }};
    const TimeFunction grows{"grows", true, [](const Values& v, double t) { return 1e-4 * v[1] * t; }};
    const auto diagnose = [&](std::vector<TimeFunction> functions, const auto& test) {
        FunctionsOf covariates(made.sample, std::move(functions));
        TimeDependentCox cox{sample, covariates, {}, {}, {}};
        test(FindUnbounded(cox), FindDependence(cox));
    };
    const auto nothing = [](const auto& unbounded, const auto& dependence) {
        EXPECT_TRUE(unbounded.empty());
        EXPECT_FALSE(dependence);
    };
    diagnose({first, grows}, nothing);
    const auto dependsOn = [&](const TimeFunction& added, const std::vector<std::size_t>& on) {
        diagnose({first, grows, added}, [&](const auto& unbounded, const auto& dependence) {
            EXPECT_TRUE(unbounded.empty());
            ASSERT_TRUE(dependence);
            EXPECT_EQ(dependence->covariate, 2U);
            EXPECT_EQ(dependence->on, on);
        });
    };
    // The time is the same for all at risk: it tells nobody from another, alone or beside other parts.
    dependsOn({"time", true, [](const Values&, double t) { return 1000 * t; }}, {});
    dependsOn({"one", false, [](const Values&, double) { return 3.0; }}, {});
    dependsOn({"both", true, [](const Values& v, double t) { return 1e3 * v[0] + v[1] * t + t * t; }},
              {0, 1});
    dependsOn({"copy", true, [](const Values& v, double t) { return t + v[0]; }}, {0});
    // Those whose own time has come have the largest value, in every stratum.
    for (const double sign : {1.0, -1.0})
        diagnose(
            {first, {"now", true, [&](const Values& v, double t) { return sign * (v[2] <= t ? 1 : 0) + t; }}},
            [&](const auto& unbounded, const auto& dependence) {
                EXPECT_FALSE(dependence);
                ASSERT_EQ(unbounded.size(), 1U);
                EXPECT_EQ(unbounded[0].covariate, 1U);
                EXPECT_EQ(unbounded[0].upwards, sign > 0);
            });
}

} // namespace
} // namespace ozm::survival
