#include <array>
#include <cfloat>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <random>

#include "host/results/FormatNumber.h"
#include "host/results/Utf8.h"
#include "tests/host/results/Books.h"

namespace korvana {
namespace {

using ozm::CellFormat;

TEST(FormatNumber, DataFilesReadBackTheSameDouble) {
    for (const double value :
         {0.1, -1.0 / 3.0, 1e15, 1e-300, DBL_MAX, DBL_MIN, 5e-324, 123456789.123456789, -0.0}) {
        const std::string text = formatNumber(value);
        double back = 1.0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), back);
        EXPECT_EQ(result.ptr, text.data() + text.size()) << text;
        EXPECT_EQ(back, value) << text;
    }
    EXPECT_EQ(formatNumber(0.1), "0.1"); // shortest, not 0.1000000000000000055
    EXPECT_EQ(formatNumber(test::notANumber), "nan");
    EXPECT_EQ(formatNumber(-test::infinite), "-inf");
}

/// Round ones too, which are shorter with an exponent.
TEST(FormatNumber, WholeNumbersArePlainDigits) {
    std::mt19937_64 random(9);
    for (double power = 1; power <= 1e14; power *= 10) {
        for (int i = 0; i < 200; ++i) {
            const auto factor = std::uniform_int_distribution<int>(1, i < 100 ? 9 : 999999)(random);
            const double value = std::min(factor * power, 999999999999999.0) * (i % 2 == 0 ? 1 : -1);
            const std::string plain = std::to_string(static_cast<long long>(value));
            EXPECT_EQ(formatNumber(value), plain);
            EXPECT_EQ(formatNumber(value, CellFormat::general()), plain);
            EXPECT_EQ(formatNumber(value, CellFormat::integer()), plain);
        }
        // Others read back as they were, too.
        for (int i = 0; i < 200; ++i) {
            const double value = std::uniform_real_distribution<double>(-power, power)(random);
            EXPECT_EQ(std::stod(formatNumber(value)), value);
            EXPECT_EQ(std::stod(formatNumber(value * 1e15)), value * 1e15);
        }
    }
    EXPECT_EQ(formatNumber(1e15), "1e+15");
    EXPECT_EQ(formatNumber(1e300), "1e+300");
}

TEST(FormatNumber, PeopleReadTheColumnsFormat) {
    EXPECT_EQ(formatNumber(2.0 / 3.0, CellFormat::general()), "0.666667");
    EXPECT_EQ(formatNumber(12.50, CellFormat::general()), "12.5");
    EXPECT_EQ(formatNumber(12.5, CellFormat::fixed(3)), "12.500");
    EXPECT_EQ(formatNumber(41.7, CellFormat::integer()), "42");
    EXPECT_EQ(formatNumber(999999999999.0, CellFormat::integer()), "999999999999");
    EXPECT_EQ(formatNumber(0.000317647, CellFormat::probability()), "0.00031765");
    EXPECT_EQ(formatNumber(2e-30, CellFormat::probability()), "2e-30");
    EXPECT_EQ(formatNumber(0.0, CellFormat::probability()), "< 1e-30");
    // No sign on a value shown as zero.
    EXPECT_EQ(formatNumber(-0.0004, CellFormat::fixed(3)), "0.000");
    EXPECT_EQ(formatNumber(-0.0, CellFormat::general()), "0");
    EXPECT_EQ(formatNumber(-0.0006, CellFormat::fixed(3)), "-0.001");
    // Never hundreds of digits.
    EXPECT_EQ(formatNumber(1e300, CellFormat::fixed(255)), "1e+300");
    EXPECT_EQ(formatNumber(-1e15, CellFormat::integer()), "-1e+15");
    EXPECT_EQ(formatNumber(5.0, CellFormat::general(0)), "5");
    EXPECT_LT(formatNumber(-DBL_MAX, CellFormat::general(255)).size(), 30U);
    EXPECT_LT(formatNumber(-999999999999999.0, CellFormat::fixed(255)).size(), 40U);
}

/// Those that are read back as a table shows them: near powers of ten and halfway between two texts too.
TEST(FormatNumber, DigitsAreRoundedFromTheExactValue) {
    std::mt19937_64 random(16);
    const auto expectExact = [](double value) {
        for (const int digits : {1, 2, 6, 8, 15, 17}) {
            std::array<char, 400> text{};
            std::snprintf(text.data(), text.size(), "%.*f", digits, value);
            std::string expected = text.data();
            if (expected.find_first_of("123456789") == std::string::npos && expected.front() == '-')
                expected.erase(0, 1);
            const auto places = static_cast<std::uint8_t>(digits);
            ASSERT_EQ(formatNumber(value, CellFormat::fixed(places)), expected);
            if (value == std::trunc(value)) continue; // shown in full
            std::snprintf(text.data(), text.size(), "%.*g", digits, value);
            ASSERT_EQ(formatNumber(value, CellFormat::general(places)), text.data());
        }
    };
    for (int i = 0; i < 3000; ++i) {
        const auto below = [&random](std::uint64_t end) { return static_cast<double>(random() % end); };
        const double power = std::pow(10.0, below(34) - 20);
        for (const double value : {power, (below(100000) + 0.5) / std::pow(2.0, below(20)),
                                   below(1000000) * power / 1e6, power * (1 - std::pow(10.0, -below(18)))}) {
            for (const double near : {value, std::nextafter(value, 0), std::nextafter(value, 1e300), -value})
                expectExact(near);
        }
    }
}

TEST(Utf8, InvalidBytesAreReplacedOneByOne) {
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(oneLine("a\xFF"
                      "b"),
              "a" + replacement + "b");
    EXPECT_EQ(oneLine("\xC0\xAF"), replacement + replacement);                   // overlong
    EXPECT_EQ(oneLine("\xED\xA0\x80"), replacement + replacement + replacement); // surrogate
    EXPECT_EQ(oneLine("\xF4\x90\x80\x80").size(), 4 * replacement.size());       // above U+10FFFF
    EXPECT_EQ(oneLine("x\xE2\x82"), "x" + replacement + replacement);            // cut short
    const std::string fine = "\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E";
    EXPECT_EQ(oneLine(fine), fine);
    EXPECT_EQ(oneLine("a\r\n\tb\x1b[2J"), "a b [2J");
}

TEST(Utf8, WidthIsWhatATerminalShows) {
    EXPECT_EQ(textWidth("abc"), 3U);
    EXPECT_EQ(textWidth("\xC3\xA4\xE2\x82\xAC"), 2U);     // two characters of two and three bytes
    EXPECT_EQ(textWidth("a\xCC\x88"), 1U);                // combining diaeresis
    EXPECT_EQ(textWidth("\xE7\x94\x9F\xE5\xAD\x98"), 4U); // two wide characters
}

} // namespace
} // namespace korvana
