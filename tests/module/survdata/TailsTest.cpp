#include "module/survdata/FTail.h"
#include "module/survdata/NormalTail.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ozm::survival {
namespace {

using korvana::golden::Table;

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

TEST(NormalTail, AgreesWithAnIndependentProgram) {
    // Tight enough for a lost digit of one of the constants: at 1.28 it shows in the seventh.
    const auto golden = Table::read("tails.csv").where("of", "normal");
    const auto z = golden.numbers("x");
    const auto p = golden.numbers("p");
    for (std::size_t i = 0; i < golden.size(); ++i)
        EXPECT_NEAR(NormalTailProbability(z[i]) / p[i], 1.0, 1e-10) << z[i];
}

TEST(NormalTail, Ends) {
    EXPECT_GT(NormalTailProbability(18.66), 0.0);
    EXPECT_EQ(NormalTailProbability(18.67), 0.0);
    EXPECT_EQ(NormalTailProbability(-7.01), 1.0);
    EXPECT_EQ(NormalTailProbability(-std::numeric_limits<double>::infinity()), 1.0);
    EXPECT_EQ(TwoSidedProbability(0.0), 1.0);
    EXPECT_EQ(TwoSidedProbability(-2.0), 2.0 * NormalTailProbability(2.0));
    EXPECT_TRUE(std::isnan(NormalTailProbability(std::numeric_limits<double>::quiet_NaN())));
}

TEST(FTail, AgreesWithAnIndependentProgram) {
    const auto golden = Table::read("tails.csv").where("of", "F");
    const auto f = golden.numbers("x");
    const auto df1 = golden.numbers("df1");
    const auto df2 = golden.numbers("df2");
    const auto p = golden.numbers("p");
    for (std::size_t i = 0; i < golden.size(); ++i) {
        const float tail = FTailProbability(static_cast<float>(f[i]), static_cast<float>(df1[i]),
                                            static_cast<float>(df2[i]));
        // The nearest single-precision number, or its neighbour.
        EXPECT_FLOAT_EQ(tail, static_cast<float>(p[i])) << f[i] << " " << df1[i] << " " << df2[i];
    }
}

TEST(FTail, DegreesOfFreedom) {
    EXPECT_EQ(FTailProbability(2, 3, 40000), FTailProbability(2, 3, 32000));
    EXPECT_NE(FTailProbability(2, 3, 31000), FTailProbability(2, 3, 32000));
    EXPECT_EQ(FTailProbability(2, 2.5F, 10.4F), FTailProbability(2, 3, 10));
    EXPECT_EQ(FTailProbability(2, 0.99F, 5), noProbability);
    EXPECT_EQ(FTailProbability(2, 5, 0.99F), noProbability);
}

TEST(FTail, ValuesWithoutAProbabilityAndEnds) {
    EXPECT_EQ(FTailProbability(-1, 3, 5), noProbability);
    EXPECT_EQ(FTailProbability(notANumber, 3, 5), noProbability);
    EXPECT_EQ(FTailProbability(1, notANumber, 5), noProbability);
    EXPECT_EQ(FTailProbability(1, 3, notANumber), noProbability);
    EXPECT_EQ(FTailProbability(0, 3, 5), 1.0F);
    EXPECT_EQ(FTailProbability(infinite, 3, 5), 0.0F);
    EXPECT_EQ(FTailProbability(2, 3, infinite), FTailProbability(2, 3, 32000));
    // Without end in the numerator, f is df2 / chi-square: P(X > 2) = P(chi-square(2) < 1) = 1 - exp(-1/2).
    EXPECT_FLOAT_EQ(FTailProbability(2, infinite, 2), 1.0F - std::exp(-0.5F));
}

TEST(ChiSquareTail, AgreesWithAnIndependentProgram) {
    const auto golden = Table::read("tails.csv").where("of", "chi-square");
    const auto x = golden.numbers("x");
    const auto df = golden.numbers("df1");
    const auto p = golden.numbers("p");
    for (std::size_t i = 0; i < golden.size(); ++i) // 32000 is not infinitely many
        EXPECT_NEAR(ChiSquareTailProbability(static_cast<float>(x[i]), static_cast<std::int16_t>(df[i])),
                    p[i], 5e-4)
            << x[i] << " " << df[i];
    EXPECT_EQ(ChiSquareTailProbability(10, 2), FTailProbability(5, 2, 32000));
    EXPECT_EQ(ChiSquareTailProbability(0, 2), 1.0F);
    EXPECT_EQ(ChiSquareTailProbability(5, 0), 1.0F);
    EXPECT_EQ(ChiSquareTailProbability(-5, 2), 1.0F);
    EXPECT_EQ(ChiSquareTailProbability(notANumber, 2), 1.0F);
}

} // namespace
} // namespace ozm::survival
