#include "tests/host/data/DataTestSupport.h"

#include "host/data/CaseWeights.h"
#include "host/data/Codes.h"
#include "host/data/DataError.h"
#include "host/data/Describe.h"
#include "host/data/NameMatch.h"
#include "host/data/TextEncoding.h"
#include "tests/support/Refusal.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace korvana::test {
namespace {

TEST(DataSet, FindsVariables) {
    const DataSet data = readText("Time,time,AGE,2,x\n1,2,3,4,5\n", {HeaderLine::Yes, {}, {}});
    const std::vector<std::pair<std::string, int>> table{{"time", 1}, {"Time", 0}, {"age", 2},
                                                         {"2", 3},    {"3", 2},    {"5", 4}};
    for (const auto& [name, index] : table)
        EXPECT_EQ(data.find(name), index) << name;
    for (const char* none : {"TIME", "6", "0", "-1", "", "3x", "99999999999"})
        EXPECT_FALSE(data.find(none)) << none;
    EXPECT_EQ(data.nearestNames("tmie"), (std::vector<std::string>{"Time", "time"}));
    EXPECT_EQ(data.nearestNames("aeg", 1), std::vector<std::string>{"AGE"});
    EXPECT_TRUE(data.nearestNames("zzzzzz").empty());
    const auto refusal = [&](const char* name) { return refusalOf<DataError>([&] { data.require(name); }); };
    EXPECT_NE(refusal("tmie").find("no variable 'tmie' (did you mean 'Time', 'time'?)"), std::string::npos);
    EXPECT_NE(refusal("TIME").find("capital letters"), std::string::npos);
    EXPECT_EQ(refusal("x"), "");
    EXPECT_THROW(static_cast<void>(data.column(5)), std::out_of_range);
}

TEST(Codes, LabelsBeforeNumbers) {
    DataSet data = readText("status,when\n1,1995-01-15\n2,1995-01-16\n");
    data.variable(0).valueLabels = {{1, "2"},    {7, "Dead"},  {8, "dead"},
                                    {9, "Lost"}, {0, "alive"}, {5, "a\nb\x1b"}};
    const std::vector<std::pair<std::string, double>> table{
        {"2", 1},        {"dead", 8},       {"Dead", 7},        {"LOST", 9}, {" alive ", 0},
        {"a\nb\x1b", 5}, {"a\\nb\\x1B", 5}, {"alive\u00A0", 0}, {"1", 1},    {"-1.5e1", -15}};
    for (const auto& [text, code] : table)
        EXPECT_EQ(resolveCode(data, 0, text), code) << text;
    for (const char* none : {"DEAD", "a\\nb", "", "x", "1e999"})
        EXPECT_EQ(resolveCode(data, 0, none), std::nullopt) << none;
    EXPECT_EQ(resolveCode(data, 1, "1995-01-15"), 2449733);
    EXPECT_EQ(resolveCode(data, 1, "1995-02-30"), std::nullopt);
    EXPECT_EQ(data.variable(0).labelOf(1), "2") << "labels need not stand in the order of their values";
    EXPECT_EQ(data.variable(0).labelOf(3), std::nullopt);
}

/// A message quotes any name or cell in one line of bounded length, in whole characters.
TEST(Messages, QuoteBriefly) {
    EXPECT_EQ(brief("a\nb\t\x1b\x7f\xC2\x85\xC3\xA9"), "a\\nb\\t\\x1B\\x7F\\x85\xC3\xA9");
    EXPECT_EQ(brief("\xE9"), "\xC3\xA9") << "Windows-1252";
    EXPECT_EQ(brief("\xC3\xA9\xE9\x81\xC2"), "\xC3\xA9\\xE9\\x81\\xC2") << "neither";
    for (const std::string character : {"x", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\n"}) {
        std::string text;
        for (std::size_t length = 0; length < 300; ++length, text += character) {
            const std::string shown = brief(text, 40);
            EXPECT_TRUE(isUtf8(shown)) << shown;
            EXPECT_LE(shown.size(), 43U);
            EXPECT_EQ(shown.find("...") != std::string::npos, withEscapes(text).size() > 40) << shown;
        }
    }
    EXPECT_TRUE(brief("begin" + std::string(70'000, 'x') + "end").ends_with("xxend"));
}

TEST(Messages, SuggestWhatIsBegunOrNear) {
    const std::vector<std::string_view> names{"output", "outputs", "select", "separator"};
    using Names = std::vector<std::string>;
    EXPECT_EQ(completionsOf("outp", names), (Names{"output", "outputs"}));
    EXPECT_EQ(completionsOf("OUTPUTS", names), Names{"outputs"});
    EXPECT_EQ(completionsOf("sekect", names), Names{"select"});
    EXPECT_EQ(completionsOf("s", names), Names{});
    EXPECT_EQ(completionsOf("weights", names), Names{});
}

TEST(Describe, SummariesAndCodes) {
    DataSet data = readText("x,g,d\n3,b,1995-01-15\n-1,a,\n3,,1995-01-15\n9,b,1996-01-01\n,a,1995-01-15\n");
    data.variable(0).missingCode = 9;
    const VariableSummary x = describeVariable(data, 0);
    EXPECT_EQ(x.validCount, 3);
    EXPECT_EQ(x.missingCount, 2);
    EXPECT_EQ(x.min, -1);
    EXPECT_EQ(x.max, 3);
    EXPECT_EQ(codesText(x.distinct), "-1 (1 case), 3 (2 cases)");
    EXPECT_EQ(codesText(distinctCodes(data, 1)), "1 'a' (2 cases), 2 'b' (2 cases)");
    EXPECT_EQ(codesText(distinctCodes(data, 2)),
              "2449733 '1995-01-15' (3 cases), 2450084 '1996-01-01' (1 case)");
    const std::vector<std::uint8_t> mask{1, 1, 0, 0, 0};
    EXPECT_EQ(codesText(distinctCodes(data, 0, mask)), "-1 (1 case), 3 (1 case)");
    EXPECT_EQ(codesText(distinctCodes(data, 0, {}, 1), 1), "more than 1 values");
    EXPECT_EQ(fewCodesText(readText("x\n1\n2\n3\n4\n5\n6\n7\n8\n"), 0),
              "1 (1 case), 2 (1 case), 3 (1 case), 4 (1 case), 5 (1 case), 6 (1 case) and 2 other values");
    EXPECT_EQ(codesText(distinctCodes(readText("x\n-0\n0.0\n-0.0\n"), 0)), "0 (3 cases)");
    EXPECT_FALSE(distinctCodes(data, 0, {}, 2).moreThanLimit);
    const VariableSummary none = describeVariable(data, 2, std::vector<std::uint8_t>{0, 1, 0, 0, 0});
    EXPECT_EQ(none.validCount, 0);
    EXPECT_TRUE(std::isnan(none.min));
    EXPECT_THROW(describeVariable(data, 0, std::vector<std::uint8_t>{1}), std::invalid_argument);

    VariableDescriber pieces(data, 0, std::vector<std::uint8_t>{});
    EXPECT_TRUE(pieces.advance(2));
    EXPECT_TRUE(pieces.advance(2));
    EXPECT_FALSE(pieces.advance(2));
    const VariableSummary joined = pieces.take();
    EXPECT_EQ(joined.missingCount, 2);
    EXPECT_EQ(codesText(joined.distinct), codesText(x.distinct));
}

TEST(CaseWeights, CountsWhatIsNoWeight) {
    DataSet data = readText("w,g\n2,a\n,a\n0,b\n-1,b\n99,b\n");
    data.variable(0).missingCode = 99;
    const CaseWeights weights = resolveWeights(data, "W");
    EXPECT_EQ(weights.variable, 0);
    EXPECT_EQ(weights.weights[0], 2);
    EXPECT_EQ(weights.missingCount, 2);
    EXPECT_EQ(weights.notPositiveCount, 2);
    EXPECT_EQ(resolveWeights(data, "1", std::vector<std::uint8_t>{1, 1, 0, 0, 0}).missingCount, 1);
    EXPECT_THROW(resolveWeights(data, "g"), DataError);
    EXPECT_THROW(resolveWeights(data, "weight"), DataError);
}

} // namespace
} // namespace korvana::test
