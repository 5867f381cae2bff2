// The iteration on likelihoods whose every step is known.

#include "module/regression/estimation/DampedNewton.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

namespace ozm::survival {
namespace {

/// L = top - (x - 3)^2 / 2 within a range, with a gradient that is too long by a factor: so is Newton's step.
/// All numbers are multiples of powers of 2, so that the steps are exact.
class Parabola final : public LikelihoodModel {
public:
    double top = -1.0;
    double range = 1e9;
    double information = 1.0;
    std::function<double(int)> factor = [](int) { return 1.0; }; ///< by the number of the derivation
    int derived = 0;

    [[nodiscard]] std::size_t Parameters() const override { return 1; }
    EstimationStatus Check(std::span<const double> x) override {
        return std::abs(x[0]) <= range ? EstimationStatus::Success : EstimationStatus::NoLikelihood;
    }
    EstimationStatus LogLikelihood(std::span<const double> x, double& value) override {
        x_ = x[0];
        value = top - (x_ - 3) * (x_ - 3) / 2;
        return Check(x);
    }
    void Gradient(std::span<double> gradient) override { gradient[0] = factor(++derived) * (3 - x_); }
    void Derivatives(std::span<double> gradient, SquareMatrix& matrix) override {
        Gradient(gradient);
        matrix(0, 0) = information;
    }

private:
    double x_ = 0.0;
};

struct Iterated {
    explicit Iterated(Parabola model, IterationLimits limits = {}, double start = 0.0, int stopAt = 0)
        : x(start), status(MaximiseByDampedNewton(
                        model, limits,
                        [&](int k, double, std::span<const double> parameters) {
                            EXPECT_EQ(k, lines.size() + 1);
                            lines.push_back(parameters[0]);
                            return k == stopAt;
                        },
                        std::span{&x, 1}, estimate)) {}
    std::vector<double> lines;
    NewtonEstimate estimate;
    double x;
    EstimationStatus status;
};

TEST(DampedNewton, KeepsHalfOfEveryStep) {
    // The full step leads to 3; after iteration k, x = 3 (1 - 2^-k), and step / x = 1 / (2^k - 1) is below
    // 1e-4 from k = 14 on.
    const Iterated run{Parabola{}};
    EXPECT_EQ(run.status, EstimationStatus::Success);
    EXPECT_EQ(run.estimate.iterations, 14);
    ASSERT_EQ(run.lines.size(), 15U);
    for (int k = 0; k <= 14; ++k)
        EXPECT_EQ(run.lines[static_cast<std::size_t>(k)], 3 * (1 - std::ldexp(1.0, -k)));
    EXPECT_EQ(run.x, run.lines.back());
    EXPECT_EQ(run.estimate.gradient[0], 3 - run.x);
    EXPECT_EQ(run.estimate.covariance(0, 0), 1.0);
    EXPECT_EQ(run.estimate.nullLogLikelihood, -1 - 4.5);
}

TEST(DampedNewton, ChangeOfLikelihoodCountsWhereItIsPositive) {
    // L rises by 13.5 * 4^-k. Above 0 that must be below 1e-4 of L, about 1e-6: from k = 19 on. Below 0 the
    // change is divided by a negative number and holds nothing up.
    Parabola model;
    model.top = 1e-6;
    EXPECT_EQ(Iterated{model}.estimate.iterations, 19);
    model.top = -1e-6;
    EXPECT_EQ(Iterated{model}.estimate.iterations, 14);
    // Neither 0 / 0 nor a likelihood of 0 is divided by: no step is made.
    model.top = 0.0;
    const Iterated still{model, {}, 3.0};
    EXPECT_EQ(still.status, EstimationStatus::Success);
    EXPECT_EQ(still.estimate.iterations, 1);
}

TEST(DampedNewton, HalvesUpToSevenTimes) {
    const auto start = [](double factor) {
        Parabola model;
        model.factor = [factor](int) { return factor; };
        return Iterated{model, {1e-4, 3}};
    };
    // A step of 16 times the distance leads, after 3 halvings, to where L is as before: it is kept, there and
    // back, and one iteration more than allowed is made.
    const Iterated swinging = start(16);
    EXPECT_EQ(swinging.status, EstimationStatus::NotConverged);
    EXPECT_EQ(swinging.estimate.iterations, 4);
    EXPECT_EQ(swinging.lines, (std::vector<double>{0, 6, 0, 6}));
    EXPECT_EQ(swinging.x, 0);
    EXPECT_EQ(start(256).lines, (std::vector<double>{0, 6, 0, 6})); // all seven
    const Iterated lost = start(300);
    EXPECT_EQ(lost.status, EstimationStatus::NoLikelihood);
    EXPECT_EQ(lost.lines.size(), 1U);
    EXPECT_EQ(lost.x, 0); // as it was
    // Later than in the first iteration it ends with the last parameters.
    Parabola model;
    model.factor = [](int derivation) { return derivation == 1 ? 1.0 : 300.0; };
    const Iterated ended{model};
    EXPECT_EQ(ended.status, EstimationStatus::Success);
    EXPECT_EQ(ended.lines, (std::vector<double>{0, 1.5, 1.5}));
    EXPECT_EQ(ended.estimate.logLikelihood, -1 - 1.5 * 1.5 / 2);
}

TEST(DampedNewton, EndsWithoutLikelihoodWhereThereIsNone) {
    Parabola model;
    model.range = 2.5; // the full step leads to 3, the kept one to 1.5
    EXPECT_EQ(Iterated{model}.status, EstimationStatus::NoLikelihood);
    EXPECT_EQ(Iterated{model}.lines.size(), 1U);
    const Iterated outside{model, {}, 2.75};
    EXPECT_EQ(outside.status, EstimationStatus::NoLikelihood);
    EXPECT_TRUE(outside.lines.empty());
    for (const double information : {0.0, -1.0, 1e-15}) {
        Parabola singular;
        singular.information = information;
        const Iterated run{singular};
        EXPECT_EQ(run.status, EstimationStatus::Singular);
        EXPECT_EQ(run.x, 0);
        EXPECT_EQ(run.estimate.logLikelihood, -1 - 4.5);
    }
}

TEST(DampedNewton, StopsWhenAsked) {
    for (const int line : {1, 5, 15}) { // the fifteenth is the one after it has converged
        const Iterated run{Parabola{}, {}, 0.0, line};
        EXPECT_EQ(run.status, EstimationStatus::Stopped);
        EXPECT_EQ(run.lines.size(), line);
        EXPECT_EQ(run.x, run.lines.back());
    }
}

} // namespace
} // namespace ozm::survival
