#include "module/survdata/CodeDecimals.h"
#include "module/survdata/CodeIndex.h"
#include "module/survdata/DayNumber.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/SharedSettings.h"
#include "support/CodeComparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace ozm::survival {
namespace {

double StepsUp(double x, std::uint64_t steps) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(x) + steps);
}

TEST(CodeComparison, EqualWithinFifteenUnitsOnBothSidesOfZero) {
    EXPECT_TRUE(CodesEqual(1.0, StepsUp(1.0, 15)));
    EXPECT_FALSE(CodesEqual(1.0, StepsUp(1.0, 16)));
    EXPECT_TRUE(CodesEqual(-2.0, StepsUp(-2.0, 15)));
    EXPECT_TRUE(CodesEqual(0.0, -0.0));
    EXPECT_TRUE(CodesEqual(StepsUp(0.0, 7), -StepsUp(0.0, 8)));
    EXPECT_FALSE(CodesEqual(StepsUp(0.0, 8), -StepsUp(0.0, 8)));
    EXPECT_FALSE(CodesEqual(std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()));
}

TEST(CodeComparison, ARangeHasTheNumbersThatEqualItsCode) {
    constexpr double largest = std::numeric_limits<double>::max();
    constexpr double infinite = std::numeric_limits<double>::infinity();
    const double codes[] = {
        0.0,  -0.0,    StepsUp(0.0, 7), -StepsUp(0.0, 15), StepsUp(0.0, 16), 1.0,       -2.0,
        1e15, largest, -largest,        StepsUp(1e300, 3), infinite,         -infinite, std::nan("")};
    for (const double code : codes) {
        const CodeRange range(code);
        for (const double other : codes)
            EXPECT_EQ(range.Contains(other), CodesEqual(other, code)) << code << ' ' << other;
        if (!std::isfinite(code)) continue;
        double up = code;
        double down = code;
        for (int step = 0; step < 40; ++step) {
            EXPECT_EQ(range.Contains(up), CodesEqual(up, code)) << code << " + " << step;
            EXPECT_EQ(range.Contains(down), CodesEqual(down, code)) << code << " - " << step;
            up = std::nextafter(up, infinite);
            down = std::nextafter(down, -infinite);
        }
    }
    EXPECT_FALSE(CodeRange().Contains(0.0));
}

TEST(CodeComparison, UnsetAndInfiniteCodesMatchNothing) {
    const double unset = std::bit_cast<double>(~std::uint64_t{0});
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(CodesEqual(unset, unset));
    EXPECT_FALSE(CodesEqual(infinite, infinite));
    EXPECT_FALSE(CodesEqual(infinite, std::numeric_limits<double>::max()));
    EXPECT_TRUE(GreaterThan(StepsUp(1.0, 16), 1.0));
    EXPECT_FALSE(GreaterThan(StepsUp(1.0, 15), 1.0));
}

TEST(CodeDecimals, AboutEightSignificantDigits) {
    // Of a negative code a place less, at least 10 once the sign is counted.
    for (const auto& [code, decimals] : {std::pair{0.0, 7},
                                         {1.0, 7},
                                         {0.5, 7},
                                         {0.001, 10},
                                         {123.5, 5},
                                         {12345678.0, 0},
                                         {1e300, 0},
                                         {-5.0, 6},
                                         {-0.5, 6},
                                         {std::nan(""), 0}})
        EXPECT_EQ(CodeDecimals(code), decimals) << code;
}

TEST(DayNumber, KnownDays) {
    // Meeus, Astronomical Algorithms, chapter 7: 2000 January 1.5 is 2451545.0; 1582 October 15 follows
    // October 4.
    EXPECT_EQ(DayNumber(1, 1, 2000), 2451545);
    EXPECT_EQ(DayNumber(10, 15, 1582), 2299161);
    EXPECT_EQ(DayNumber(10, 4, 1582), 2299160);
    EXPECT_EQ(DayNumber(1, 20, 1995) - DayNumber(1, 15, 1995), 5);
    EXPECT_EQ(DayNumber(3, 1, 2000) - DayNumber(2, 28, 2000), 2);
    EXPECT_EQ(DayNumber(3, 1, 1900) - DayNumber(2, 28, 1900), 1);
    EXPECT_EQ(DayNumber(1, 32, 1995), DayNumber(2, 1, 1995)); // days are carried, not tested
    EXPECT_EQ(DayNumber(12, 31, -1) + 1, DayNumber(1, 1, 1)); // there was no year 0
    EXPECT_EQ(DayNumber(1, 1, 0), invalidDay);
    EXPECT_EQ(DayNumber(13, 1, 1995), invalidDay);
    EXPECT_EQ(DayNumber(0, 1, 1995), invalidDay);
}

TEST(NormalQuantile, InvertsTheNormalTailOverItsThreeBranches) {
    for (const double p : {1e-300, 1e-20, 1e-9, 0.001, 0.07, 0.075, 0.3, 0.5, 0.7, 0.925, 0.975, 0.9999}) {
        const double z = NormalQuantile(p);
        const double back = 0.5 * std::erfc(-z / std::sqrt(2.0));
        EXPECT_NEAR(back / p, 1.0, 2e-13) << p;
    }
    EXPECT_DOUBLE_EQ(ConfidenceZ(0.95), 1.959963984540054); // R 4.2: qnorm(0.975)
    EXPECT_EQ(ConfidenceZ(0.0), 0.0);
    EXPECT_TRUE(std::isinf(ConfidenceZ(1.0)));
    EXPECT_TRUE(std::isnan(NormalQuantile(-0.1)));
}

/// Against the comparison itself, with codes closer together than the tolerance and given in any order.
TEST(Codes, AnIndexFindsTheFirstThatEquals) {
    std::mt19937 random{7};
    for (int round = 0; round < 200; ++round) {
        std::vector<double> codes{unsetCode};
        const int count = std::uniform_int_distribution{0, 40}(random);
        for (int i = 0; i < count; ++i)
            codes.push_back(StepsUp(std::uniform_int_distribution{-2, 2}(random),
                                    std::uniform_int_distribution<std::uint64_t>{0, 40}(random)));
        std::shuffle(codes.begin(), codes.end(), random);
        const CodeIndex index(codes);
        for (int i = 0; i < 50; ++i) {
            const double value = StepsUp(std::uniform_int_distribution{-3, 3}(random),
                                         std::uniform_int_distribution<std::uint64_t>{0, 60}(random));
            const auto first = std::find_if(codes.begin(), codes.end(),
                                            [value](double code) { return CodesEqual(code, value); });
            EXPECT_EQ(index.Find(value), first == codes.end() ? 0 : first - codes.begin() + 1);
        }
        EXPECT_EQ(index.Find(unsetCode), 0);
    }
    EXPECT_EQ(std::bit_cast<std::uint64_t>(KeptCode(std::nan(""))), ~std::uint64_t{0});
}

TEST(ReportLines, WholeNumbersHaveAllTheirDigits) {
    for (const auto& [number, text] : {std::pair{100000.0, "100000"},
                                       {-2e14, "-200000000000000"},
                                       {0.0001, "0.0001"},
                                       {0.1 + 0.2, "0.30000000000000004"},
                                       {1e300, "1e+300"},
                                       {-0.0, "0"}})
        EXPECT_EQ(FormatExact(number), text);
}

TEST(ReportLines, CodesStandInTheirField) {
    EXPECT_EQ(FormatCode(0.5), "      0.5");
    EXPECT_EQ(FormatCode(-3), "        -3");
    EXPECT_EQ(FormatCode(std::nan("")), "        --");
    // As many digits as fit: codes that differ in their ninth digit, and never beyond the field.
    EXPECT_EQ(FormatCode(123456789), " 123456789");
    EXPECT_EQ(FormatCode(-0.123456789), "-0.123457");
    EXPECT_EQ(FormatCode(-1234567.891), "-1234567.9");
    EXPECT_EQ(FormatCode(1e-300 / 3), "3.333e-301");
}

} // namespace
} // namespace ozm::survival
