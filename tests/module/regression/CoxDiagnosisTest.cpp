// What is said of a likelihood without a maximum, against the geometry of small data of whole numbers.

#include "module/regression/cox/CoxDiagnosis.h"
#include "module/regression/cox/FitCox.h"
#include "tests/module/FakeHost.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace ozm::survival {
namespace {

using Vector = std::array<int, 3>; // of two covariates the third is 0

struct Case {
    int time;
    bool died;
    Vector x;
};

Vector Cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// Whether a direction of the coefficients loses nothing at any death and wins at some: the likelihood rises
/// in it for ever. The rays that bound such directions are normal to two differences of cases (in the plane
/// to one).
bool HasNoMaximum(const std::vector<Case>& cases, std::size_t covariates) {
    std::set<Vector> differences;
    for (const Case& one : cases)
        for (const Case& other : cases)
            if (one.died && other.time >= one.time)
                differences.insert({one.x[0] - other.x[0], one.x[1] - other.x[1], one.x[2] - other.x[2]});
    std::set<Vector> others = differences;
    if (covariates == 2) others = {{0, 0, 1}};
    const auto risesAlong = [&](const Vector& direction) {
        bool wins = false;
        for (const Vector& d : differences) {
            const int along = d[0] * direction[0] + d[1] * direction[1] + d[2] * direction[2];
            if (along < 0) return false;
            wins = wins || along > 0;
        }
        return wins;
    };
    for (const Vector& one : differences) {
        if (risesAlong(one)) return true;
        for (const Vector& other : others) {
            const Vector normal = Cross(one, other);
            if (risesAlong(normal) || risesAlong({-normal[0], -normal[1], -normal[2]})) return true;
        }
    }
    return false;
}

TEST(CoxDiagnosis, NamesALikelihoodWithoutAMaximumAndNoOther) {
    test::FakeHost host;
    CSurvival analysis{&host};
    std::mt19937 random(7);
    const auto draw = [&](int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(random);
    };
    int without = 0;
    int failed = 0;
    int missed = 0;
    for (int data = 0; data < 3000; ++data) {
        SCOPED_TRACE(data);
        const std::size_t covariates = data % 5 == 0 ? 3 : 2;
        std::vector<Case> cases;
        const int spread = draw(1, 6);
        for (int n = draw(5, covariates == 3 ? 9 : 14); n > 0; --n)
            cases.push_back({draw(1, 9),
                             draw(0, 2) > 0,
                             {draw(0, spread), draw(0, 6), covariates == 3 ? draw(0, 3) : 0}});
        RegressionSample sample;
        ASSERT_TRUE(sample.Obtain(analysis, cases.size(), covariates));
        for (const Case& each : cases) {
            const std::vector<double> x(each.x.begin(),
                                        each.x.begin() + static_cast<std::ptrdiff_t>(covariates));
            sample.Add(each.time, each.died, 1, 0, x);
        }
        sample.Summarise();
        const auto isConstant = [&](std::size_t k) { return sample.Summary(k).deviation == 0; };
        if (sample.Events() == 0 || isConstant(0) || isConstant(1) || isConstant(covariates - 1)) continue;
        ASSERT_TRUE(sample.Order(analysis, 1));
        std::vector<double> parameters(covariates, 0.0);
        if (data % 2 != 0)
            for (double& each : parameters)
                each = draw(-60, 60) / 10.0;
        const double criterion = data % 3 == 0 ? 0.1 : 0.0001;
        NewtonEstimate estimate;
        const EstimationStatus status = FitCox(
            sample, {criterion, 50, 0.0}, [](int, double, auto) { return false; }, parameters, estimate);
        const Diagnosis found = DiagnoseCox(sample, parameters, estimate, status);
        const bool named = !found.unbounded.empty() || !found.unboundedTogether.empty();
        const bool has = !HasNoMaximum(cases, covariates);
        // Where covariates depend on each other, a direction is as good as another.
        if (FindDependence(sample)) continue;
        EXPECT_FALSE(named && has) << static_cast<int>(status);
        missed += !named && !has ? 1 : 0;
        without += has ? 0 : 1;
        failed += has && status != EstimationStatus::Success ? 1 : 0;
    }
    EXPECT_GT(without, 200);
    EXPECT_GT(failed, 30);
    EXPECT_LT(missed, without / 40) << without; // those of three covariates in a narrow cone
}

} // namespace
} // namespace ozm::survival
