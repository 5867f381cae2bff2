// What is said of a likelihood without a maximum, against the geometry of small data of whole numbers.

#include "module/regression/RegressionModels.h"
#include "tests/module/FakeHost.h"

#include <array>
#include <gtest/gtest.h>
#include <random>

namespace ozm::survival {
namespace {

struct Case {
    int time;
    bool died;
    std::array<int, 2> x;
};

/// Whether a direction in the plane of the coefficients loses nothing at any death and wins at some: the
/// likelihood rises in it for ever. The rays that bound such directions are normal to a difference of cases.
bool HasNoMaximum(const std::vector<Case>& cases) {
    std::vector<std::array<int, 2>> differences;
    for (const Case& one : cases)
        for (const Case& other : cases)
            if (one.died && other.time >= one.time)
                differences.push_back({one.x[0] - other.x[0], one.x[1] - other.x[1]});
    std::vector<std::array<int, 2>> directions;
    for (const auto& d : differences) {
        directions.push_back({-d[1], d[0]});
        directions.push_back({d[1], -d[0]});
        directions.push_back(d);
    }
    return std::ranges::any_of(directions, [&](const auto& direction) {
        bool wins = false;
        for (const auto& d : differences) {
            const int along = d[0] * direction[0] + d[1] * direction[1];
            if (along < 0) return false;
            wins = wins || along > 0;
        }
        return wins;
    });
}

TEST(CoxDiagnosis, NamesALikelihoodWithoutAMaximumAndNoOther) {
    test::FakeHost host;
    CSurvival analysis{&host};
    std::mt19937 random(7);
    const auto draw = [&](int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(random);
    };
    const RegressionModel& model = *FindRegressionModel(RegressionKind::ProportionalHazards);
    int without = 0;
    int failed = 0;
    for (int data = 0; data < 2000; ++data) {
        SCOPED_TRACE(data);
        std::vector<Case> cases;
        const int spread = draw(1, 6);
        for (int n = draw(5, 14); n > 0; --n)
            cases.push_back({draw(1, 9), draw(0, 2) > 0, {draw(0, spread), draw(0, 6)}});
        RegressionSample sample;
        ASSERT_TRUE(sample.Obtain(analysis, cases.size(), 2));
        for (const Case& each : cases)
            sample.Add(each.time, each.died, 1, 0, std::array<double, 2>{1.0 * each.x[0], 1.0 * each.x[1]});
        sample.Summarise();
        if (sample.Events() == 0 || sample.Summary(0).deviation == 0 || sample.Summary(1).deviation == 0)
            continue;
        ASSERT_TRUE(sample.Order(analysis, 1));
        std::array<double, 2> parameters{};
        if (data % 2 != 0) parameters = {draw(-60, 60) / 10.0, draw(-60, 60) / 10.0};
        const double criterion = data % 3 == 0 ? 0.1 : 0.0001;
        NewtonEstimate estimate;
        const EstimationStatus status = model.fit(
            sample, {criterion, 50, 0.0}, [](int, double, auto) { return false; }, parameters, estimate);
        const Diagnosis found = model.diagnose(sample, parameters, estimate, status);
        const bool named = !found.unbounded.empty() || !found.unboundedTogether.empty();
        const bool has = !HasNoMaximum(cases);
        // Where covariates depend on each other, a direction is as good as another.
        if (!found.dependence) {
            EXPECT_EQ(named, !has) << static_cast<int>(status);
        }
        without += has ? 0 : 1;
        failed += has && status != EstimationStatus::Success ? 1 : 0;
    }
    EXPECT_GT(without, 150);
    EXPECT_GT(failed, 20);
}

} // namespace
} // namespace ozm::survival
