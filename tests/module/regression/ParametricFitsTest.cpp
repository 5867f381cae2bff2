// Sums over cases with vectors of every width, tails, and how the parametric fits end.

#include "module/regression/parametric/ExponentialRegression.h"
#include "module/regression/parametric/FitCensoredNormal.h"
#include "module/regression/parametric/NormalHazard.h"
#include "module/survdata/NormalTail.h"
#include "tests/module/regression/ParametricCases.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <random>

namespace ozm::survival {
namespace {

bool Silent(int, double, std::span<const double>) {
    return false;
}

CoxCases RandomCases(std::size_t n, std::size_t q, unsigned seed) {
    CoxCases cases = CoxCases::Random(n, q, 1, seed);
    for (std::size_t k = 0; k < q; ++k)
        cases.names.push_back("x" + std::to_string(k));
    return cases;
}

TEST(CaseSums, AreTheSameWithVectorsOfEveryWidth) {
    const std::size_t sizes[][2] = {{1, 0}, {7, 1}, {8, 3}, {9, 8}, {64, 7}, {65, 17}, {131, 40}};
    for (const auto& size : sizes) {
        const std::size_t n = size[0];
        const std::size_t q = size[1];
        SCOPED_TRACE(testing::Message() << n << " cases, " << q << " covariates");
        const ParametricCases made(RandomCases(n, q, 5));
        const CensoredCases cases = made.Cases();
        const auto places = AllPlaces(n);
        const CovariateScales scales = CovariateScales::Standard(cases);
        const CaseBlocks blocks(cases, places, scales);
        const std::vector<Eight> y = InBlocks(made.y, places);
        Values coefficients;
        for (std::size_t k = 0; k <= q; ++k)
            coefficients.push_back(0.1 * static_cast<double>(k % 5) - 0.2);
        // In the simplest way.
        Values predictors(n);
        Values sums(q + 1, 0.0);
        SquareMatrix products;
        const auto x = [&](std::size_t i, std::size_t k) {
            return k == q ? 1.0 : (cases.Column(k)[i] - scales.centre[k]) / scales.scale[k];
        };
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t k = 0; k <= q; ++k) {
                predictors[i] += coefficients[k] * x(i, k);
                sums[k] += made.y[i] * x(i, k);
                for (std::size_t l = 0; l <= q; ++l)
                    products(k, l) += made.y[i] * made.y[i] * x(i, k) * x(i, l);
            }
        std::vector<Values> found;
        for (const CaseKernels& kernels : UsableCaseKernels()) {
            Values& all = found.emplace_back();
            std::vector<Eight> predicted(blocks.Blocks());
            kernels.predict(blocks, coefficients, predicted);
            Values summed(q + 1);
            kernels.sum(blocks, y, summed);
            SquareMatrix multiplied;
            kernels.multiply(blocks, y, multiplied);
            const auto scale = static_cast<double>(n * n);
            for (std::size_t i = 0; i < n; ++i) {
                all.push_back(predicted[i / 8].values[i % 8]);
                EXPECT_NEAR(all.back(), predictors[i], 1e-13);
            }
            for (std::size_t k = 0; k <= q; ++k) {
                all.push_back(summed[k]);
                EXPECT_NEAR(all.back(), sums[k], 1e-13 * scale);
                for (std::size_t l = 0; l <= q; ++l) {
                    all.push_back(multiplied(k, l));
                    EXPECT_NEAR(all.back(), products(k, l), 1e-13 * scale);
                }
            }
            const CensoredSums expected = kernels.expect(blocks, y, coefficients, 25.0);
            all.insert(all.end(), expected.excess.begin(), expected.excess.end());
            all.push_back(expected.squares);
            all.push_back(expected.weight);
        }
        for (const Values& other : found)
            EXPECT_EQ(other, found.front());
    }
}

TEST(CaseSums, TailRatios) {
    Values z{-1e200, -1e9, -700, -60, -1e-300, 0, 1e-300, 1.28, 18.66, 60, 1e9};
    for (double each = -40; each < 40; each += 0.0037)
        z.push_back(each);
    const std::vector<Eight> blocks = InBlocks(z, AllPlaces(z.size()));
    std::vector<Eight> ratios(blocks.size());
    for (const CaseKernels& kernels : UsableCaseKernels()) {
        kernels.tailRatios(blocks, ratios);
        for (std::size_t i = 0; i < z.size(); ++i) {
            const double tail = NormalTailProbability(z[i]);
            const double ratio =
                tail > 0 ? 0.39894228 * std::exp(-0.5 * z[i] * z[i]) / tail : z[i] + 1.0 / z[i];
            // The power of a large number has the rounding of that number.
            const double precision = 1e-15 * (4 + z[i] * z[i]);
            EXPECT_NEAR(ratios[i / 8].values[i % 8], ratio, std::min(precision, 1e-12) * ratio + 1e-300)
                << z[i];
        }
    }
}

TEST(NormalHazard, InBothTails) {
    const auto golden = GoldenParametric().where("dataset", "hazard");
    const Values z = golden.where("quantity", "z").numbers("value");
    const Values hazard = golden.where("quantity", "hazard").numbers("value");
    for (std::size_t i = 0; i < z.size(); ++i)
        EXPECT_NEAR(NormalHazard(z[i]), hazard[i], 1e-14 * (1 + z[i] * z[i]) * hazard[i]) << z[i];
}

TEST(NormalInterval, NarrowAndWideOnesAgreeWithTheirLimits) {
    for (const double a : {-9.0, -2.5, -0.3, 0.0, 0.7, 3.0, 12.0, 30.0}) {
        // A narrow one has the slope of the density in it.
        const double width = 1e-5;
        const NormalInterval narrow(a, a + width);
        const double middle = a + width / 2;
        EXPECT_NEAR(narrow.Mean(), middle * (1 - width * width / 12), 1e-14 * (1 + std::abs(a))) << a;
        EXPECT_NEAR(narrow.Weight(), 1, 1e-9 * (1 + a * a)) << a;
        EXPECT_NEAR(narrow.LogProbability(), std::log(width) - middle * middle / 2 - std::log(2 * M_PI) / 2,
                    1e-9 * (1 + a * a))
            << a;
        // One without an end is a tail, and so is its mirror image.
        const double h = NormalHazard(a);
        const NormalInterval tail(a, 60);
        const NormalInterval mirrored(-60, -a);
        EXPECT_NEAR(tail.Mean(), h, 1e-12 * h) << a;
        EXPECT_NEAR(tail.Weight(), h * (h - a), 1e-11) << a;
        EXPECT_DOUBLE_EQ(mirrored.Mean(), -tail.Mean()) << a;
        EXPECT_DOUBLE_EQ(mirrored.Weight(), tail.Weight()) << a;
        // Where the ways to compute it change, nothing jumps.
        const NormalInterval below(a, a + 1 / (1 + std::abs(a)) - 1e-9);
        const NormalInterval above(a, a + 1 / (1 + std::abs(a)) + 1e-9);
        EXPECT_NEAR(below.Mean(), above.Mean(), 2e-9) << a;
        EXPECT_NEAR(below.LogProbability(), above.LogProbability(), 1e-7) << a;
    }
}

/// A fit of the exponential model to random cases, of which something was changed.
template <class Change>
std::pair<ExponentialStatus, ExponentialFit> Exponential(Change change, const IterationWatch& watch = Silent,
                                                         const Values& start = {}) {
    CoxCases cases = RandomCases(40, 3, 9);
    change(cases);
    ExponentialFit fit;
    const ParametricCases made(cases, "exponential");
    const auto status = FitExponential(made.Cases(), {1e-6, 50}, watch, start, fit);
    EXPECT_EQ(fit.covariance.empty(), status != ExponentialStatus::Success);
    return {status, fit};
}

TEST(FitExponential, HowItEnds) {
    const auto asItIs = [](CoxCases&) {};
    const auto [status, fit] = Exponential(asItIs);
    EXPECT_EQ(status, ExponentialStatus::Success);
    EXPECT_EQ(fit.lost, 4U);
    // From its own estimates it has less to do; from any start the null model is the same.
    const auto [again, shorter] = Exponential(asItIs, Silent, fit.parameters);
    EXPECT_EQ(again, ExponentialStatus::Success);
    EXPECT_LT(shorter.iterations, fit.iterations);
    EXPECT_NEAR(shorter.logLikelihood, fit.logLikelihood, 1e-10 * std::abs(fit.logLikelihood));
    EXPECT_EQ(shorter.nullLogLikelihood, fit.nullLogLikelihood);
    // Stopped, it says where.
    const auto [stopped, there] =
        Exponential(asItIs, [](int k, double, std::span<const double>) { return k == 3; });
    EXPECT_EQ(stopped, ExponentialStatus::Stopped);
    EXPECT_EQ(there.iterations, 3);
    // What cannot be computed ends at once.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double wrong : {nan, std::numeric_limits<double>::infinity(), 1e300}) {
        EXPECT_EQ(Exponential([=](CoxCases& c) { c.time[7] = std::isinf(wrong) ? nan : wrong * 1e9; }).first,
                  ExponentialStatus::NotFinite);
        const auto [ended, rest] = Exponential([=](CoxCases& c) { c.x[1][7] = wrong; });
        EXPECT_TRUE(ended == ExponentialStatus::NotFinite || ended == ExponentialStatus::Singular);
        EXPECT_LE(rest.iterations, 3);
    }
    EXPECT_EQ(Exponential(asItIs, Silent, {0, 0, 0, -1000}).second.iterations, 1); // far from all data
    // What depends on others is told; a constant is told by the constant.
    const auto [copied, lostCopy] = Exponential([](CoxCases& c) { c.x[2] = c.x[0]; });
    EXPECT_EQ(copied, ExponentialStatus::Singular);
    EXPECT_EQ(lostCopy.lost, 2U);
    const auto [constant, lostConstant] = Exponential([](CoxCases& c) { c.x[1].assign(40, 3.0); });
    EXPECT_EQ(constant, ExponentialStatus::Singular);
    EXPECT_EQ(lostConstant.lost, 3U);
}

/// How the EM iteration ends for cases that are too few, too many, or do not fit each other.
struct EmCase {
    explicit EmCase(std::size_t n = 30, std::size_t q = 2) : made(RandomCases(n, q, 3)), upper(made.y) {
        for (double& each : upper)
            each += 1.0;
    }
    EmStatus Fit(const IterationWatch& watch = Silent) {
        CensoredCases cases = made.Cases();
        cases.upper = upper;
        if (parameters.empty()) parameters.assign(cases.covariates + 2, 0.0);
        if (tolerances.empty()) tolerances.assign(parameters.size(), 1e-4);
        std::optional<CensoredNormal> model;
        return FitCensoredNormal(cases, {tolerances, 200}, watch, parameters, iterations, model);
    }
    ParametricCases made;
    Values upper;
    Values parameters;
    Values tolerances;
    int iterations = 0;
};

TEST(FitCensoredNormal, HowItEnds) {
    const auto ends = [](auto change, EmStatus status, std::size_t n = 30, std::size_t q = 2) {
        EmCase one(n, q);
        change(one);
        EXPECT_EQ(one.Fit(), status) << static_cast<int>(status);
        EXPECT_EQ(one.iterations > 0, status == EmStatus::Success);
    };
    using enum EmStatus;
    ends([](EmCase&) {}, Success);
    ends([](EmCase& c) { c.made.flags.pop_back(); }, WrongCases);
    ends([](EmCase& c) { c.made.flags[4] = 3; }, WrongCases);
    ends([](EmCase& c) { c.made.flags[4] = 2, c.upper.pop_back(); }, WrongCases);
    ends([](EmCase& c) { c.made.y.clear(), c.made.flags.clear(), c.upper.clear(); }, WrongCases);
    ends([](EmCase& c) { c.parameters.assign(3, 0.0); }, WrongParameters);
    ends([](EmCase&) {}, WrongParameters, 100, 47);
    ends([](EmCase& c) { c.made.x.pop_back(); }, WrongCovariates);
    ends([](EmCase& c) { c.tolerances.assign(1, 1e-4); }, WrongTolerances);
    ends([](EmCase& c) { c.made.flags[4] = 2, c.upper[4] = c.made.y[4] - 1; }, BoundsReversed);
    ends([](EmCase& c) { c.made.flags[4] = 2, c.upper[4] = c.made.y[4] * (1 - 1e-6); }, Success); // complete
    ends([](EmCase& c) { std::fill(c.made.flags.begin() + 3, c.made.flags.end(), std::uint8_t{0}); },
         TooFewUncensored);
    ends([](EmCase& c) { std::copy_n(c.made.x.begin(), 30, c.made.x.begin() + 30); }, Singular);
    ends([](EmCase& c) { std::fill_n(c.made.x.begin(), 30, 2.0); }, Singular);
    // Only the censored cases tell the covariates apart: there is no start but one that is given.
    const auto alike = [](EmCase& c) {
        for (std::size_t i = 0; i < 30; ++i)
            if (c.made.flags[i] == 1) c.made.x[i] = c.made.x[30 + i];
    };
    ends(alike, SingularStart);
    ends([&](EmCase& c) { alike(c), c.parameters = {0, 0, 8, 5}; }, Success);
    ends([](EmCase& c) { c.made.y[3] = std::numeric_limits<double>::quiet_NaN(); }, NotFinite);
    ends([](EmCase& c) { c.made.y[3] = std::numeric_limits<double>::infinity(); }, NotFinite);
    EmCase stopped;
    EXPECT_EQ(stopped.Fit([](int k, double, std::span<const double>) { return k == 2; }), Stopped);
    EXPECT_EQ(stopped.iterations, 2);
    // Each parameter has a tolerance of its own.
    EmCase loose;
    loose.tolerances = {1e3, 1e3, 1e3, 1e3};
    EXPECT_EQ(loose.Fit(), Success);
    EXPECT_EQ(loose.iterations, 1);
    EmCase tight;
    tight.tolerances = {1e3, 1e3, 1e3, 1e-9};
    EXPECT_EQ(tight.Fit(), Success);
    EXPECT_GT(tight.iterations, 10);
}

TEST(FitCensoredNormal, DoesNotDependOnTheOrderOfTheCases) {
    CoxCases cases = RandomCases(333, 5, 21);
    EmCase one;
    one.made = ParametricCases(cases);
    std::mt19937 draw(1);
    std::vector<std::size_t> order(333);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::shuffle(order.begin(), order.end(), draw);
    const auto shuffled = [&](const Values& values) {
        Values result;
        for (const std::size_t i : order)
            result.push_back(values[i]);
        return result;
    };
    cases.time = shuffled(cases.time);
    cases.status = shuffled(cases.status);
    for (Values& column : cases.x)
        column = shuffled(column);
    EmCase other;
    other.made = ParametricCases(cases);
    EXPECT_EQ(one.Fit(), EmStatus::Success);
    EXPECT_EQ(other.Fit(), EmStatus::Success);
    EXPECT_EQ(one.iterations, other.iterations);
    for (std::size_t k = 0; k < one.parameters.size(); ++k)
        EXPECT_NEAR(one.parameters[k], other.parameters[k], 1e-10 * std::abs(one.parameters[k]));
}

} // namespace
} // namespace ozm::survival
