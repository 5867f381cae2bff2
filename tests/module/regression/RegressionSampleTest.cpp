#include "module/regression/data/RegressionSample.h"

#include "tests/module/FakeHost.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace ozm::survival {
namespace {

using test::none;

struct Case {
    double time;
    bool complete;
    std::int16_t stratum;
    std::array<double, 2> x;
};

struct Filled {
    explicit Filled(const std::vector<Case>& cases) {
        EXPECT_TRUE(sample.Obtain(analysis, cases.size() + 3, 2)); // with room to spare
        std::int32_t number = 0;
        for (const Case& one : cases)
            sample.Add(one.time, one.complete, ++number, one.stratum, one.x);
    }
    template <class T>
    static std::vector<double> List(std::span<const T> values) {
        return {values.begin(), values.end()};
    }
    [[nodiscard]] std::vector<double> Column(std::size_t k) const { return List(sample.Column(k)); }

    test::FakeHost host;
    CAnalysisSupport analysis{&host};
    RegressionSample sample;
};

TEST(RegressionSample, OrderOfThePartialLikelihood) {
    Filled of({{5, true, 0, {1, 10}},
               {5, false, 0, {2, 20}},
               {7, true, 2, {3, 30}},
               {5, true, 0, {4, 40}},
               {9, false, 0, {5, 50}},
               {7, false, 2, {6, 60}},
               {8, true, 2, {7, 70}},
               {5, false, 0, {8, 80}}});
    ASSERT_TRUE(of.sample.Order(of.analysis, 3));
    const std::vector<double> numbers{7, 6, 3, 5, 2, 8, 1, 4};
    EXPECT_EQ(of.List(of.sample.CaseNumbers()), numbers);
    EXPECT_EQ(of.List(of.sample.Times()), (std::vector<double>{8, 7, 7, 9, 5, 5, 5, 5}));
    EXPECT_EQ(of.List(of.sample.Complete()), (std::vector<double>{1, 0, 1, 0, 0, 0, 1, 1}));
    EXPECT_EQ(of.Column(0), numbers); // as they were given
    for (std::size_t i = 0; i < numbers.size(); ++i)
        EXPECT_EQ(of.Column(1)[i], 10 * numbers[i]);
    const OrderedSample ordered = of.sample.Ordered();
    EXPECT_EQ(of.List(ordered.blocks), (std::vector<double>{3, 0, 5})); // nobody is in stratum 1
    EXPECT_EQ(ordered.cases, 8U);
    EXPECT_EQ(ordered.covariates, 2U);
    EXPECT_EQ(ordered.Column(1)[7], 40);
    EXPECT_EQ(of.sample.Events(), 4);
}

TEST(RegressionSample, MeansAndDeviations) {
    // Small values on a large one keep their digits: of 1..n the deviation is sqrt(n (n + 1) / 12).
    constexpr int n = 1000;
    for (const double large : {0.0, 1e9, -1e9, 1e12}) {
        std::vector<Case> cases;
        for (int i = 1; i <= n; ++i)
            cases.push_back({1, true, 0, {large + i * 389 % n + 1, i % 5 == 0 ? none : large + i % 5 / 8.0}});
        Filled of(cases);
        of.sample.Summarise();
        const CovariateSummary& all = of.sample.Summary(0);
        EXPECT_EQ(all.mean, large + (n + 1) / 2.0);
        EXPECT_NEAR(all.deviation, std::sqrt(n * (n + 1) / 12.0), 1e-11);
        EXPECT_EQ(all.values, n);
        EXPECT_EQ(all.missing, 0);
        const CovariateSummary& some = of.sample.Summary(1); // 1/8 to 4/8, as often each
        EXPECT_EQ(some.values, 800);
        EXPECT_EQ(some.missing, 200);
        EXPECT_EQ(some.mean, large + 0.3125);
        EXPECT_NEAR(some.deviation, std::sqrt(800 * (0.03515625 + 0.00390625) / 2 / 799), 1e-14);
        of.sample.SubstituteMeans();
        for (std::size_t i = 0; i < cases.size(); ++i) {
            const double x = cases[i].x[1];
            EXPECT_EQ(of.Column(1)[i], std::isnan(x) ? some.mean : x);
        }
    }
    // Constant columns have none, to the last digit; nor has a single value, or none at all.
    Filled few({{1, true, 0, {0.1, none}}, {2, true, 0, {0.1, 4}}, {3, true, 0, {0.1, none}}});
    few.sample.Summarise();
    EXPECT_EQ(few.sample.Summary(0).deviation, 0);
    EXPECT_EQ(few.sample.Summary(0).mean, 0.1);
    EXPECT_EQ(few.sample.Summary(1).mean, 4);
    EXPECT_EQ(few.sample.Summary(1).deviation, 0);
    Filled nothing({{1, true, 0, {1, none}}});
    nothing.sample.Summarise();
    EXPECT_EQ(nothing.sample.Summary(1).values, 0);
}

TEST(RegressionSample, RefusedMemory) {
    for (int request = 1;; ++request) {
        test::FakeHost host;
        CAnalysisSupport analysis{&host};
        host.refuseRequest = request;
        bool obtained = false;
        bool ordered = false;
        {
            RegressionSample sample;
            obtained = sample.Obtain(analysis, 10, 3);
            if (obtained) {
                sample.Add(1, true, 1, 0, std::array{1.0, 2.0, 3.0});
                sample.Add(2, true, 2, 0, std::array{4.0, 5.0, 6.0});
                ordered = sample.Order(analysis, 1);
            } else {
                EXPECT_EQ(host.outstanding, 0) << request;
                EXPECT_EQ(sample.Cases(), 0U);
                EXPECT_EQ(sample.Covariates(), 0U);
                EXPECT_EQ(sample.Ordered().cases, 0U);
            }
        }
        EXPECT_EQ(host.outstanding, 0) << request;
        if (host.requests < request) { // none was refused
            EXPECT_TRUE(ordered);
            EXPECT_GT(request, 10);
            return;
        }
        EXPECT_FALSE(ordered) << request;
    }
}

} // namespace
} // namespace ozm::survival
