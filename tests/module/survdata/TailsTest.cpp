#include "module/survdata/ChiSquareTail.h"
#include "module/survdata/FTail.h"
#include "module/survdata/NormalTail.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ozm::survival {
namespace {

using korvana::golden::Table;

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

TEST(Tails, AgreeWithAnIndependentProgram) {
    const auto golden = Table::read("tails.csv");
    const auto of = golden.texts("of");
    const auto x = golden.numbers("x");
    const auto df1 = golden.numbers("df1");
    const auto df2 = golden.numbers("df2");
    const auto p = golden.numbers("p");
    for (std::size_t i = 0; i < golden.size(); ++i) {
        SCOPED_TRACE(of[i] + " " + std::to_string(x[i]));
        const auto f = static_cast<float>(x[i]);
        if (of[i] == "normal") { // tight enough for a lost digit of one of the constants
            EXPECT_NEAR(NormalTailProbability(x[i]) / p[i], 1.0, 1e-10);
            EXPECT_NEAR(NormalUpperTail(x[i]) / p[i], 1.0, 2e-14);
        } else if (of[i] == "F") // the nearest single-precision number, or its neighbour
            EXPECT_FLOAT_EQ(FTailProbability(f, static_cast<float>(df1[i]), static_cast<float>(df2[i])),
                            static_cast<float>(p[i]));
        else if (of[i] == "chi-square") { // 32000 is not infinitely many
            EXPECT_NEAR(ChiSquareTailProbability(f, static_cast<std::int16_t>(df1[i])), p[i],
                        5e-6 * std::max(100.0, df1[i]));
            // e^(-x/2) cannot be known better than x/2 times the rounding of x.
            EXPECT_NEAR(ChiSquareUpperTail(x[i], static_cast<int>(df1[i])) / p[i], 1.0, 3e-14 + 4e-16 * x[i]);
        } else
            ADD_FAILURE();
    }
}

TEST(ChiSquareTail, Ends) {
    EXPECT_EQ(ChiSquareUpperTail(0.0, 4), 1.0);
    EXPECT_EQ(ChiSquareUpperTail(3.0, 0), 1.0);
    EXPECT_EQ(ChiSquareUpperTail(1e6, 3), 0.0);
    EXPECT_TRUE(std::isnan(ChiSquareUpperTail(std::nan(""), 3)));
    EXPECT_GT(ChiSquareUpperTail(30000.0, 32000), 0.999); // where terms and e^(-x/2) are beyond all doubles
}

TEST(NormalTail, Ends) {
    EXPECT_GT(NormalTailProbability(18.66), 0.0);
    EXPECT_EQ(NormalTailProbability(18.67), 0.0);
    EXPECT_EQ(NormalTailProbability(-7.01), 1.0);
    EXPECT_EQ(NormalTailProbability(-std::numeric_limits<double>::infinity()), 1.0);
    EXPECT_EQ(TwoSidedProbability(-2.0), 2.0 * NormalTailProbability(2.0));
    EXPECT_TRUE(std::isnan(NormalTailProbability(std::numeric_limits<double>::quiet_NaN())));
}

TEST(FTail, DegreesOfFreedomAndEnds) {
    EXPECT_EQ(FTailProbability(2, 3, 40000), FTailProbability(2, 3, 32000));
    EXPECT_NE(FTailProbability(2, 3, 31000), FTailProbability(2, 3, 32000));
    EXPECT_EQ(FTailProbability(2, 2.5F, 10.4F), FTailProbability(2, 3, 10));
    EXPECT_EQ(FTailProbability(2, 0.99F, 5), noProbability);
    EXPECT_EQ(FTailProbability(2, 5, 0.99F), noProbability);
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

TEST(ChiSquareTail, IsAnFOfManyDegreesOfFreedom) {
    EXPECT_EQ(ChiSquareTailProbability(10, 2), FTailProbability(5, 2, 32000));
    EXPECT_EQ(ChiSquareTailProbability(0, 2), 1.0F);
    EXPECT_EQ(ChiSquareTailProbability(5, 0), 1.0F);
    EXPECT_EQ(ChiSquareTailProbability(-5, 2), 1.0F);
    EXPECT_EQ(ChiSquareTailProbability(notANumber, 2), 1.0F);
}

} // namespace
} // namespace ozm::survival
