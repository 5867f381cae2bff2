#include "tests/host/data/DataTestSupport.h"

#include "host/data/DayNumber.h"
#include "host/data/NumberText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace korvana::test {
namespace {

TEST(NumberText, NumbersAtTheEndsOfTheRange) {
    const std::string zeros(400, '0');
    for (const std::string& text :
         {std::string{"1.7976931348623157e308"}, std::string{"0e99999"},
          std::string{"1e-99999999999999999999"}, "0." + zeros + "1", "1" + zeros + "e-400"}) {
        EXPECT_EQ(readNumber(text).form, NumberForm::Finite) << text;
        EXPECT_EQ(readNumber(text).value, std::strtod(text.c_str(), nullptr)) << text;
    }
    for (const std::string& text : {std::string{"1.8e308"}, std::string{"-1e99999999999999999999"},
                                    std::string{"infinity"}, "1" + zeros})
        EXPECT_EQ(readNumber(text).form, NumberForm::TooBig) << text;
    for (const char* text : {"nan(1)", "+", ".", "+-1"})
        EXPECT_EQ(readNumber(text).form, NumberForm::None) << text;
}

/// A number halfway between two doubles, or next to that in its last digit.
std::string nearlyTied(std::mt19937_64& random) {
    const std::uint64_t decimals = random() % 5;
    std::uint64_t number = (random() >> 10U) | (std::uint64_t{1} << 53U) | 1U; // of 54 bits
    for (std::uint64_t k = 0; k < decimals; ++k)
        number *= 5; // as a decimal number of so many decimals, half as much
    std::string text = std::to_string(number + random() % 3 - 1);
    return text.insert(text.size() - decimals, decimals > 0 ? "." : "");
}

std::string anyNumber(std::mt19937_64& random) {
    std::string text;
    for (std::uint64_t n = random() % 21; n > 0; --n)
        text += static_cast<char>('0' + random() % 10);
    if (random() % 2 == 0) text += '.';
    for (std::uint64_t n = random() % 21; n > 0 && text.find('.') != std::string::npos; --n)
        text += static_cast<char>('0' + random() % 10);
    if (text.find_first_of("0123456789") == std::string::npos) text += "7";
    if (random() % 5 == 0) text += "e" + std::to_string(static_cast<int>(random() % 60) - 30);
    return text;
}

/// The C library rounds correctly: every cell must read as the same double, whatever path it takes.
TEST(NumberText, CellsRoundCorrectly) {
    constexpr int rows = 100'000;
    std::mt19937_64 random(7);
    std::string points = "x,y\n";
    std::string commas = "x;y\n";
    std::vector<double> expected;
    for (int i = 0; i < rows; ++i) {
        std::string text = i % 10 == 0  ? numberText(std::bit_cast<double>((random() >> 2U) | 1U))
                           : i % 3 == 0 ? nearlyTied(random)
                                        : anyNumber(random);
        if (random() % 4 == 0) text.insert(0, "-");
        expected.push_back(std::strtod(text.c_str(), nullptr));
        points.append(text).append(",\"").append(text).append(i % 2 == 0 ? "\"\r\n" : "\"\n");
        if (const auto point = text.find('.'); point != std::string::npos) text[point] = ',';
        commas.append(text).append(";\"").append(text).append("\"\n");
    }
    for (const std::string& text : {points, commas}) {
        const DataSet data = readText(text);
        ASSERT_EQ(data.caseCount(), rows);
        for (std::size_t i = 0; i < expected.size(); ++i)
            for (const int column : {0, 1})
                ASSERT_EQ(data.column(column)[i], expected[i]) << "line " << i + 2;
    }
}

/// Codes and values in messages: plain digits where they are whole, and what reads back in any case.
TEST(NumberText, NumbersAreWrittenAsPeopleWriteThem) {
    std::mt19937_64 random(9);
    for (double power = 1; power <= 1e14; power *= 10) {
        for (const double whole : {power, -power, 9 * power, 3 * power + 1}) {
            EXPECT_EQ(numberText(whole), std::to_string(static_cast<long long>(whole)));
            EXPECT_EQ(readNumber(numberText(whole)).value, whole);
        }
        for (int i = 0; i < 100; ++i) {
            const double any = std::uniform_real_distribution<double>(-power, power)(random);
            EXPECT_EQ(readNumber(numberText(any)).value, any);
            EXPECT_EQ(readNumber(numberText(any * 1e20)).value, any * 1e20);
        }
    }
    EXPECT_EQ(numberText(-0.0), "0");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(1e300), "1e+300");
}

TEST(DayNumber, GregorianDays) {
    // Noon-based Julian days of known dates: Meeus, Astronomical Algorithms, chapter 7.
    const std::vector<std::pair<std::string, int>> table{
        {"1970-01-01", 2440588}, {"2000-01-01", 2451545}, {"1987-06-19", 2446966}, {"1600-12-31", 2305813}};
    for (const auto& [text, day] : table) {
        EXPECT_EQ(readIsoDate(text).dayNumber, day) << text;
        EXPECT_EQ(isoDateText(day), text);
    }
    for (const char* none : {"1995-02-30", "1900-02-29", "1995-13-01", "1995-00-10", "1995-01-00"}) {
        EXPECT_TRUE(readIsoDate(none).hasForm) << none;
        EXPECT_FALSE(readIsoDate(none).dayNumber) << none;
    }
    for (const char* other : {"1995-1-15", "95-01-15", "1995/01/15", "1995-01-15 ", ""})
        EXPECT_FALSE(readIsoDate(other).hasForm) << other;
    EXPECT_EQ(isoDateText(2440588.5), "");
    EXPECT_EQ(isoDateText(1e300), "");
}

} // namespace
} // namespace korvana::test
