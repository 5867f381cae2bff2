#include "tests/host/data/DataTestSupport.h"

#include "host/data/ComputedVariable.h"
#include "host/data/DataError.h"
#include "host/data/Describe.h"
#include "host/data/Expression.h"
#include "host/data/IndicatorVariables.h"
#include "tests/support/MakeData.h"
#include "tests/support/Refusal.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace korvana::test {
namespace {

DataSet patients() {
    return readText(",days,status,arm,white cells\n"
                    "Ann,61,2,treated,3.5\n"
                    "Bob,30,1,placebo,0\n"
                    "Cid,,3,treated,4\n"
                    "Dan,15,,placebo,\n");
}

/// The new column of a definition, as text.
std::string defined(DataSet& data, const std::string& text) {
    defineVariable(data, readDefinition(text));
    std::string all = dump(data);
    const auto begin = all.rfind(data.variable(data.variableCount() - 1).name);
    return all.substr(begin, all.find(" |", begin) - begin);
}

TEST(ComputedVariable, ValuesAndMissingValues) {
    DataSet data = patients();
    const std::vector<std::pair<std::string, std::string>> table{
        {"twice = days * 2", "twice N: 122 60 - 30"},
        {"again = twice / 2", "again N: 61 30 - 15"},
        {"dead = status = 2 or status = 3", "dead N: 1 0 1 -"},
        {"treated = arm = 'treated'", "treated N: 1 0 1 0"},
        {"known=if(missing(status), -1, status)", "known N: 2 1 3 -1"},
        {" `my cells` = `white cells` + 1", "my cells N: 4.5 1 5 -"},
        {"größe = `my cells` - 1", "größe N: 3.5 0 4 -"},
        {"one = 1", "one N: 1 1 1 1"},
    };
    for (const auto& [text, column] : table)
        EXPECT_TRUE(defined(data, text).starts_with(column)) << text << "\n" << dump(data);
    const Variable& dead = data.variable(6);
    EXPECT_EQ(dead.label, "status = 2 or status = 3");
    EXPECT_EQ(dead.expression, dead.label);
    data.variable(0).missingCode = 30;
    EXPECT_EQ(defined(data, "coded = days"), "coded N: 61 - - 15");
}

TEST(ComputedVariable, WhatHasNoFiniteValueIsMissingAndTold) {
    DataSet data = patients();
    EXPECT_TRUE(defined(data, "r = 1 / `white cells`").find(" - 0.25 -") != std::string::npos) << dump(data);
    ASSERT_EQ(data.notes().size(), 1U);
    EXPECT_EQ(data.notes()[0],
              "Computed: r = 1 / `white cells`. 1 case has no finite result, which counts as "
              "missing: case 2 (Bob).");
    defined(data, "`a b` = log(`white cells` - 4)");
    EXPECT_EQ(data.notes()[1], "Computed: `a b` = log(`white cells` - 4). 3 cases have no finite result, "
                               "which counts as missing: first case 1 (Ann).");
}

TEST(ComputedVariable, WhatIsWrongIsNamedAndChangesNothing) {
    DataSet data = patients();
    const std::vector<std::pair<std::string, std::string>> table{
        {"days / 30", "'days / 30' has no NAME = before it"},
        {"", "has no NAME ="},
        {"x == days", "has no NAME ="},
        {"`x y = days", "the closing ` of the name is missing"},
        {"x =", "nothing follows 'x ='"},
        {"x y = days", "belongs in backquotes"},
        {"Not = days", "'Not': it is an operator of expressions"},
        {"PI = 1", "'PI': it is a constant of expressions"},
        {"log2 = 1", "'log2': it is a function of expressions"},
        {"`3` = days", "'3': it would be taken for the number of a variable"},
        {"V12 = days", "'V12': expressions take it for the number of a variable"},
        {"`a\nb` = days", "control characters"},
        {"`a\xff` = days", "not valid UTF-8"},
        {"`WHITE cells` = 1", "there is already a variable 'white cells'"},
        {"x = dyas / 2", "character 1: there is no variable 'dyas' (did you mean 'days'?)"},
        {"x = days / ", "character 7: the expression breaks off"},
        {"x = arm = 'treatd'", "variable 'arm' has no value 'treatd' (did you mean 'treated'?); it has 1"},
    };
    for (const auto& each : table) {
        const std::string refusal =
            refusalOf<std::exception>([&] { defineVariable(data, readDefinition(each.first)); });
        EXPECT_NE(refusal.find(each.second), std::string::npos) << each.first << ": " << refusal;
    }
    EXPECT_EQ(data.variableCount(), 4);
    EXPECT_TRUE(data.notes().empty());
}

TEST(ComputedVariable, ADefinitionReadsBackAsWritten) {
    for (const std::string name : {"months", "a b", "a`b", "t.1", "größe", "=", "`",
                                   "\xEF\xBB\xBF"
                                   "and",
                                   "\xC2\xA0x"}) {
        const Definition back = readDefinition(definitionText({name, "days = 2"}));
        EXPECT_EQ(back.name, name);
        EXPECT_EQ(back.expression, "days = 2");
    }
}

/// The advice for a name that cannot stand there as it is can be followed; what no backquotes help is refused
/// for the same reason with and without them.
TEST(ComputedVariable, BackquotesAreAdvisedWhereTheyHelp) {
    const DataSet data = patients();
    for (const std::string name : {"1",     "1e5",
                                   "-2",    "1.5",
                                   "inf",   "1x",
                                   "1-2",   "1995-01-15",
                                   "x y",   "x-1",
                                   "a`b",   "`a",
                                   "x'",    "%",
                                   "x\ny",  "x\ty",
                                   "a\xff", "größe 2",
                                   "not",   "pi",
                                   "(x)",   "\xF0\x9F\x98\x80"}) {
        const auto refusal = [&](const std::string& text) {
            return refusalOf<DataError>([&] { requireNewName(data, readDefinition(text).name); });
        };
        std::string quoted = "`";
        for (const char c : name)
            quoted.append(c == '`' ? 2 : 1, c);
        quoted += '`';
        const std::string plain = refusal(name + " = 1");
        const std::string inQuotes = refusal(quoted + " = 1");
        if (plain.find("belongs in backquotes") != std::string::npos) {
            EXPECT_EQ(inQuotes, "") << name;
            EXPECT_NE(plain.find(quoted), std::string::npos) << plain;
        } else if (!name.starts_with('`')) {
            EXPECT_EQ(plain, inQuotes) << name;
        }
    }
}

/// Many cases are computed by several threads, with the same results.
TEST(ComputedVariable, AnIndicatorIsOneForItsCodeAlone) {
    DataSet data = readText("arm,`white` cells,if,day,log\n"
                            "it's,-1.5,\"a\"\"b\",1995-01-15,1e-300\n"
                            "\"two\nlines\",0.1,2 = x,1995-01-16,7\n"
                            ",,,,\n"
                            "10,0.30000000000000004,a,1995-01-15,9\n"
                            "it's,-1.5,a,1995-01-15,7\n");
    data.variable(4).missingCode = 9;
    const int variables = data.variableCount();
    int made = 0;
    for (int v = 0; v < variables; ++v) {
        const DistinctValues codes = distinctCodes(data, v);
        ASSERT_FALSE(codes.values.empty());
        for (const DistinctValue& code : codes.values) {
            defineVariable(data, indicatorOf(data, v, code.value));
            const int last = data.variableCount() - 1;
            ++made;
            EXPECT_TRUE(data.variable(last).name.starts_with(data.variable(v).name + "="));
            for (int i = 0; i < data.caseCount(); ++i) {
                const auto at = static_cast<std::size_t>(i);
                EXPECT_EQ(data.isMissing(last, i), data.isMissing(v, i)) << data.variable(last).name << i;
                if (data.isMissing(v, i)) continue;
                EXPECT_EQ(data.column(last)[at], data.column(v)[at] == code.value ? 1.0 : 0.0);
            }
        }
    }
    EXPECT_EQ(made, 3 + 3 + 3 + 2 + 2);
    EXPECT_EQ(data.variable(variables).name, "arm=10");
    EXPECT_TRUE(data.find("arm=two\\nlines"));
}

TEST(ComputedVariable, ManyCasesAreComputedAsOneByOne) {
    const std::string formula = "log(x) * 2 + if(x > 70, x, 1)";
    for (const int cases : {0, 1, 199'999, 200'000, 823'457}) {
        DataSet data("many", cases);
        Variable x;
        x.name = "x";
        addVariable(data, x, [](int i) { return i % 1000 == 999 ? std::nan("") : i % 77 - 3.0; });
        const ComputedVariable computed = computeVariable(data, {"y", formula});
        const auto cells = computed.cells.cells(static_cast<std::size_t>(cases));
        const std::vector<double> expected = evaluateAll(Expression(formula, data), data);
        for (std::size_t i = 0; i < expected.size(); ++i)
            ASSERT_TRUE(cells[i] == expected[i] || (std::isnan(cells[i]) && std::isnan(expected[i]))) << i;
        const auto notFinite = std::count_if(data.column(0).begin(), data.column(0).end(),
                                             [](double cell) { return cell <= 0; });
        const std::string told = " " + std::to_string(notFinite) + " case";
        EXPECT_EQ(computed.note.find(told) != std::string::npos, cases > 0) << computed.note;
        EXPECT_EQ(computed.note.ends_with("case 1."), cases > 0) << computed.note;
    }
}

} // namespace
} // namespace korvana::test
