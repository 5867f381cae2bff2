// The partial likelihood, its derivatives, and fits whose numbers are known.

#include "module/regression/cox/PartialLikelihood.h"
#include "module/regression/cox/FitCox.h"
#include "module/regression/cox/RiskSetSums.h"
#include "module/regression/estimation/LuFactors.h"
#include "tests/module/regression/CoxCases.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

namespace ozm::survival {
namespace {

bool Silent(int, double, std::span<const double>) {
    return false;
}

/// Cases that are in order already, of one covariate.
struct InOrder {
    Values times;
    std::vector<std::uint8_t> complete;
    Values x;
    std::vector<std::int32_t> blocks;

    [[nodiscard]] OrderedSample Sample() const {
        return {times.size(), 1, times.size(), times, complete, x, blocks};
    }
};

struct At {
    At(const OrderedSample& sample, const Values& parameters) : gradient(parameters.size()) {
        PartialLikelihood model(sample);
        status = model.LogLikelihood(parameters, value);
        EXPECT_EQ(model.Check(parameters), status);
        if (status != EstimationStatus::Success) return;
        // Check leaves nothing behind that derivatives need.
        EXPECT_EQ(model.LogLikelihood(parameters, value), EstimationStatus::Success);
        Values alone(parameters.size());
        model.Gradient(alone);
        model.Derivatives(gradient, information);
        for (std::size_t k = 0; k < parameters.size(); ++k)
            EXPECT_NEAR(alone[k], gradient[k], 1e-12 * static_cast<double>(sample.cases));
    }
    EstimationStatus status{};
    double value = 0.0;
    Values gradient;
    SquareMatrix information;
};

TEST(PartialLikelihood, TiedGroupsByHand) {
    const double b = 0.5;
    const double e = std::exp(b); // of x = 1
    const double f = std::exp(2 * b);
    // Two events tie: x of both less twice the mean over the three at risk.
    const At tied(InOrder{{3, 2, 2}, {0, 1, 1}, {0, 1, 2}, {3}}.Sample(), {b});
    const double s0 = 1 + e + f;
    EXPECT_DOUBLE_EQ(tied.value, 3 * b - 2 * std::log(s0));
    EXPECT_DOUBLE_EQ(tied.gradient[0], 3 - 2 * (e + 2 * f) / s0);
    EXPECT_DOUBLE_EQ(tied.information(0, 0), 2 * ((e + 4 * f) / s0 - (e + 2 * f) / s0 * (e + 2 * f) / s0));
    // A censored case behind an event of its time keeps the group open until the next event, which shares its
    // risk set: all of them.
    const At open(InOrder{{5, 5, 3}, {1, 0, 1}, {1, 0, 2}, {3}}.Sample(), {b});
    EXPECT_DOUBLE_EQ(open.value, tied.value);
    EXPECT_DOUBLE_EQ(open.gradient[0], tied.gradient[0]);
    EXPECT_DOUBLE_EQ(open.information(0, 0), tied.information(0, 0));
    // At the end of a block such a group stays open: out of the derivatives, not of the likelihood. The next
    // block starts anew, and the last event of a block ends its group though the next block's time is the
    // same.
    const At strata(InOrder{{5, 3, 3, 3, 3}, {1, 1, 0, 0, 1}, {1, 2, 7, 1, 2}, {3, 2}}.Sample(), {b});
    EXPECT_DOUBLE_EQ(strata.value, 2 * b + 2 * b - std::log(e + f));
    EXPECT_DOUBLE_EQ(strata.gradient[0], 2 - (e + 2 * f) / (e + f));
    EXPECT_DOUBLE_EQ(strata.information(0, 0), e * f / ((e + f) * (e + f)));
    const At split(InOrder{{3, 3}, {1, 1}, {1, 2}, {1, 0, 1}}.Sample(), {b});
    EXPECT_NEAR(split.value, 0, 1e-15);
    EXPECT_NEAR(split.gradient[0], 0, 1e-15);
}

TEST(PartialLikelihood, GuardOfThePredictor) {
    const auto status = [](double x, double b) {
        return At(InOrder{{2, 1}, {1, 1}, {0, x}, {2}}.Sample(), {b}).status;
    };
    const double over = std::nextafter(250.0, 300.0);
    for (const double sign : {-1.0, 1.0}) {
        EXPECT_EQ(status(1, sign * 250), EstimationStatus::Success);
        EXPECT_EQ(status(250, sign), EstimationStatus::Success);
        EXPECT_EQ(status(1, sign * over), EstimationStatus::NoLikelihood);
        EXPECT_EQ(status(sign * over, 1), EstimationStatus::NoLikelihood);
    }
    EXPECT_EQ(status(1, std::numeric_limits<double>::quiet_NaN()), EstimationStatus::NoLikelihood);
    EXPECT_EQ(status(1, std::numeric_limits<double>::infinity()), EstimationStatus::NoLikelihood);
    // Covariates that are large, but whose parts cancel.
    const Values times{2, 1};
    const std::vector<std::uint8_t> complete{1, 1};
    const Values x{900, -900, 901, -900};
    const std::vector<std::int32_t> blocks{2};
    const OrderedSample sample{2, 2, 2, times, complete, x, blocks};
    EXPECT_EQ(At(sample, {1, -1}).status, EstimationStatus::Success);
    EXPECT_EQ(At(sample, {1, 1}).status, EstimationStatus::NoLikelihood);
}

/// Sizes about the blocks and tiles in which sums are gathered.
template <class Test>
void ForManySizes(Test test) {
    for (const std::size_t p : {1U, 2U, 3U, 4U, 5U, 7U, 8U, 9U, 17U, 40U})
        for (std::size_t n = 1; n < 200; n += n < 70 && p < 5 ? 1 : 21)
            test(CoxCases::Random(n, p, 1 + static_cast<int>(n % 3), static_cast<unsigned>(100 * n + p)));
}
Values Somewhere(std::size_t p) {
    Values b;
    for (std::size_t k = 0; k < p; ++k)
        b.push_back((static_cast<double>(k * 7 % 5) - 2) / 10);
    return b;
}

TEST(PartialLikelihood, DerivativesAreThoseOfTheLikelihood) {
    ForManySizes([](const CoxCases& cases) {
        const CoxSample made(cases);
        const OrderedSample sample = made.sample.Ordered();
        const std::size_t p = cases.x.size();
        const At here(sample, Somewhere(p));
        for (std::size_t k = 0; k < p; ++k) {
            constexpr double h = 1e-4;
            Values b = Somewhere(p);
            b[k] += h;
            const At up(sample, b);
            b[k] -= 2 * h;
            const At down(sample, b);
            const auto n = static_cast<double>(sample.cases);
            ASSERT_NEAR((up.value - down.value) / (2 * h), here.gradient[k], 1e-7 * n) << n << " " << p;
            for (std::size_t l = 0; l < p; ++l)
                ASSERT_NEAR((down.gradient[l] - up.gradient[l]) / (2 * h), here.information(k, l), 1e-7 * n)
                    << n << " " << p;
        }
    });
}

TEST(PartialLikelihood, EveryWidthOfVectorsGivesTheSameBits) {
    const auto kernels = UsableRiskSetKernels();
    ForManySizes([&](const CoxCases& cases) {
        const CoxSample made(cases);
        const OrderedSample sample = made.sample.Ordered();
        const std::size_t n = sample.cases;
        const std::size_t p = sample.covariates;
        Values eta(n);
        Values meanRoot(n);
        Values expected(n);
        for (std::size_t i = 0; i < n; ++i) {
            meanRoot[i] = sample.complete[i] / (1.0 + static_cast<double>(i));
            expected[i] = 0.1 * static_cast<double>(i % 11);
        }
        std::vector<Values> results;
        for (const RiskSetKernels& kernel : kernels) {
            ASSERT_TRUE(kernel.predict(sample, Somewhere(p), 250, eta));
            Values& result = results.emplace_back(eta);
            for (double& each : eta)
                each = std::exp(each);
            Values gradient(p);
            SquareMatrix information;
            kernel.sum(sample, {eta, meanRoot, expected, sample.complete}, gradient, information);
            result.insert(result.end(), gradient.begin(), gradient.end());
            for (std::size_t k = 0; k < p; ++k)
                for (std::size_t l = 0; l < p; ++l)
                    result.push_back(information(k, l));
            ASSERT_EQ(result, results.front()) << n << " " << p;
        }
    });
}

TEST(FitCox, ACopyOfACovariateIsSingular) {
    for (std::size_t p = 2; p <= mostParameters; ++p)
        for (std::size_t n = p + 20; n < p + 150; n += 43) {
            CoxCases cases = CoxCases::Random(n, p, 1 + static_cast<int>(n % 2), static_cast<unsigned>(n));
            const std::size_t original = n % p;
            const std::size_t copy = (original + 1 + n % (p - 1)) % p;
            cases.x[copy] = cases.x[original];
            CoxSample made(cases);
            Values b = Somewhere(p);
            NewtonEstimate estimate;
            ASSERT_EQ(FitCox(made.sample, {}, Silent, b, estimate), EstimationStatus::Singular)
                << n << " " << p;
            ASSERT_EQ(estimate.iterations, 1);
            // Not by its determinant: that of a matrix so large is not small.
            At at(made.sample.Ordered(), Somewhere(p));
            for (std::size_t k = 0; k < p; ++k)
                for (std::size_t l = 0; l < p; ++l)
                    at.information(k, l) *= 0x1p40;
            ASSERT_FALSE(LuFactors::Of(at.information, p)) << n << " " << p;
        }
}

TEST(FitCox, AnIterationByHand) {
    // t = 1 1 6 6 8 9, events at 1, 6, 6, 9, x = 1 1 1 0 0 0. With r = exp(b) the risk sets weigh 3 r + 3 at
    // 1, r + 3 at 6 (both events share it) and 1 at 9, so that
    //   L = 2 b - 2 ln(r + 3) - ln(3 r + 3),  U = 2 - 2 r/(r + 3) - r/(r + 1),
    //   I = 6 r/(r + 3)^2 + r/(r + 1)^2.
    // b = 0: L = -2 ln 4 - ln 6 = -4.564348, U = 1, I = 0.625; half of 1.6 is kept, where L is higher.
    // b = 0.8, r = 2.225541: L = 1.6 - 2 ln 5.225541 - ln 9.676623 = -3.976830, U = 0.458232, I = 0.702927;
    // half of their ratio is 0.325946. b = 1.125946, r = 3.083131: L = -3.864624.
    // The lines show b times the standard deviation sqrt(0.3).
    const double lines[][2] = {
        {-4.564348, 0}, {-3.976830, 0.8 * std::sqrt(0.3)}, {-3.864624, 1.125946 * std::sqrt(0.3)}};
    const CoxCases cases = CasesIn("hand");
    CoxSample made(cases);
    Values b{0};
    NewtonEstimate estimate;
    const auto watch = [&](int k, double logLikelihood, std::span<const double> parameters) {
        if (k > 3) return false;
        EXPECT_NEAR(logLikelihood, lines[k - 1][0], 1e-6) << k;
        EXPECT_NEAR(parameters[0], lines[k - 1][1], 1e-6) << k;
        return false;
    };
    EXPECT_EQ(FitCox(made.sample, {1e-11, 200}, watch, b, estimate), EstimationStatus::Success);
    // At the maximum U = 0: r^2 - 3 r - 6 = 0.
    EXPECT_NEAR(b[0], std::log((3 + std::sqrt(33.0)) / 2), 1e-8);
    EXPECT_NEAR(b[0], 1.475285, 1e-6);
    EXPECT_NEAR(estimate.nullLogLikelihood, -4.564348, 1e-6);
    EXPECT_NEAR(estimate.logLikelihood, -3.824750, 1e-6);
    EXPECT_NEAR(1 / estimate.covariance(0, 0), 0.634168, 1e-6);
    // The covariates are as they were.
    EXPECT_NEAR(made.sample.Column(0)[0], 0, 1e-15);
    EXPECT_NEAR(made.sample.Column(0)[5], 1, 1e-15);
}

TEST(FitCox, PublishedEstimates) {
    constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
    const auto near = [](double ours, double published, double within) {
        EXPECT_TRUE(std::isnan(published) || std::abs(ours - published) <= within)
            << ours << " " << published;
    };
    const auto fit = [&](const char* dataset, std::size_t k, double b, double error, double decimals,
                         double nullValue, double value) {
        SCOPED_TRACE(dataset);
        CoxSample made(CasesNamed(dataset));
        Values estimates(made.sample.Covariates());
        NewtonEstimate estimate;
        ASSERT_EQ(FitCox(made.sample, {1e-11, 200}, Silent, estimates, estimate), EstimationStatus::Success);
        near(estimates[k], b, decimals);
        near(std::sqrt(estimate.covariance(k, k)), error, decimals);
        near(estimate.nullLogLikelihood, nullValue, 0.51e-3);
        near(estimate.logLikelihood, value, 0.51e-3);
    };
    // 6-MP against placebo in leukaemia (Freireich et al. 1963), alone and with the logarithm of white cells
    // in strata of sex; maintenance in acute myelogenous leukaemia; the Veterans' lung cancer trial, its
    // Karnofsky score beside all others.
    fit("leukaemia", 0, -1.509191, 0.409564, 0.51e-6, -93.98505, -86.37962);
    fit("leukaemia-wbc", 0, 0.930965, 0.471766, 0.51e-6, unknown, -115.120 / 2);
    fit("leukaemia-wbc", 1, 1.390239, 0.337623, 0.51e-6, unknown, -115.120 / 2);
    fit("aml", 0, 0.9042, 0.5122, 0.51e-4, unknown, unknown);
    fit("veteran", 4, -0.0326217, 0.0055052, 0.51e-7, -505.884, -475.179);
}

} // namespace
} // namespace ozm::survival
