#include "tests/host/data/DataTestSupport.h"

#include "host/data/CaseSelection.h"
#include "host/data/DataError.h"
#include "host/data/Expression.h"
#include "host/data/ExpressionFunctions.h"
#include "tests/support/Refusal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace korvana::test {
namespace {

DataSet patients() {
    return readText("age,Sex,white cells,entry,group,Group,t.1\n"
                    "50,male,3.5,1995-01-15,1,9,0.5\n"
                    "61,female,,1995-06-01,2,8,1\n"
                    ",male,7,1996-01-01,3,7,2\n"
                    "40,,0,,4,6,4\n");
}

TEST(Expression, ValuesOfFormulas) {
    const DataSet data = patients();
    const auto expect = [&](int truth, std::initializer_list<const char*> texts) {
        for (const char* text : texts)
            EXPECT_EQ(Expression(text, data).evaluate({}), truth) << text;
    };
    expect(1, {"1 + 2 * 3 ^ 2 = 19", "-2 ^ 2 = -4", "2 ^ 3 ^ 2 = 512", "2 ** -1 = 0.5", "10 - 3 - 2 = 5",
               "5 - -+- 2 = 3", ".5e1 + 1E-1 = 5.1", "(1 + 2) * 3 = 9", "2 * -3 = -6"});
    expect(1, {"1 == 1", "1 <> 2", "1 != 2", "3 >= 3 AND 1 <= 2", "1 > 2 or 2 > 1", "1 || 0 && 0",
               "not 1 = 2", "! 1 = 2", "Not -3 > 5"});
    expect(0, {"1 = 2", "1 == 2", "1 <> 1", "1 != 1", "3 >= 3 and 2 <= 1", "3 < 3 or 2 > 2", "not 0 and 0",
               "Not -3 > -5", "0 and 1 / 0 = 1"});
    expect(1, {"log(exp(2)) = ln(exp(2))", "LOG10(1000) = 3", "log2(8) = 3", "sqrt(abs(-16)) = 4"});
    expect(1, {"if(2 > 1, 7, log(0)) = 7", "min(3, 1, 2) = 1", "max(3) = 3", "mod(-1, 3) = 2"});
    expect(1, {"round(2.5) + floor(-0.5) = 2", "sign(-4) = -1", "cos(pi) = -1"});
    expect(1, {"int(2.7) = 2", "INT(-2.7) = -2", "trunc(-2.7) = -2", "int(-0.5) = 0"});
    expect(1, {"1995-01-16 - 1995-01-15 = 1", "1995 - 01 - 15 = 1979", "'1970-01-01' + 0 = 2440588"});
    EXPECT_EQ(Expression("1 + 2 * 3 ^ 2", data).evaluate({}), 19);
    for (const char* text : {"1 / 0", "log(0)", "sqrt(-1)", "1 / (1 / 0)", "(0/0) ^ 0", "log(-1) > 2",
                             "10 ^ 400", "min(1, 1 / 0)", "not log(-1)", "1 and 0 / 0"})
        EXPECT_FALSE(Expression(text, data).evaluate({})) << text;
}

/// A random formula with all parentheses, and with those alone that its operators need.
struct Formula {
    std::string full;
    std::string least;
    int binding; ///< of its outermost operator: or 0, and, not, comparison, sum, product, sign, power 7, none
                 ///< 8
};
Formula randomFormula(std::mt19937& random, int depth) {
    const auto pick = [&random](const std::vector<std::string>& all) { return all[random() % all.size()]; };
    if (depth == 0) {
        const std::string number = pick({"0", "1", "2", "3", "0.5", "7"});
        return {number, number, 8};
    }
    const std::vector<std::string> operators[] = {
        {" or "},       {" and "},      {"not "}, {" = ", " < ", " >= ", " <> "},
        {" + ", " - "}, {" * ", " / "}, {"-"},    {" ^ "}};
    const auto inside = [](const Formula& part, int least) {
        return part.binding < least ? "(" + part.least + ")" : part.least;
    };
    const int binding = static_cast<int>(random() % std::size(operators));
    const std::string sign = pick(operators[binding]);
    const Formula right = randomFormula(random, static_cast<int>(random() % static_cast<unsigned>(depth)));
    if (binding == 2 || binding == 6) // before their operand
        return {"(" + sign + right.full + ")", sign + inside(right, binding), binding};
    const Formula left = randomFormula(random, static_cast<int>(random() % static_cast<unsigned>(depth)));
    const bool power = binding == 7;                                 // from the right; 2 ^ -1
    const int leastLeft = binding + (power || binding == 3 ? 1 : 0); // comparisons stand alone
    const int leastRight = power ? 6 : binding + 1;
    return {"(" + left.full + sign + right.full + ")",
            inside(left, leastLeft) + sign + inside(right, leastRight), binding};
}

TEST(Expression, OperatorsBindAsTheyShould) {
    const DataSet data = patients();
    std::mt19937 random(3);
    int defined = 0;
    for (int drawn = 0; drawn < 5000; ++drawn) {
        const Formula formula = randomFormula(random, 6);
        const auto value = Expression(formula.full, data).evaluate({});
        EXPECT_EQ(Expression(formula.least, data).evaluate({}), value) << formula.full << "\n"
                                                                       << formula.least;
        defined += value ? 1 : 0;
    }
    EXPECT_GT(defined, 2500);
}

TEST(Expression, NamesAndReferences) {
    const DataSet data = patients();
    const std::vector<NamedInput> inputs{{"T_", 8}, {"age", 9}};
    const Expression formula("T_ + `white cells` * t.1 - AGE + T_ + group + Group", data, inputs);
    EXPECT_EQ(formula.referencedVariables(), (std::vector<int>{8, 3, 7, 9, 5, 6}));
    EXPECT_EQ(formula.evaluate(std::vector<double>{1, 10, 3, 5, 100, 1000}), 1 + 30 - 5 + 1 + 1100);
    EXPECT_EQ(Expression("AGE", data).referencedVariables(), std::vector<int>{1});
    const std::vector<double> all =
        evaluateAll(Expression("t.1 * T_", data, inputs), data, std::vector<double>{3});
    EXPECT_EQ(all, (std::vector<double>{1.5, 3, 6, 12}));
    EXPECT_THROW(evaluateAll(formula, data), std::invalid_argument);
}

TEST(Expression, NumbersOfVariables) {
    const DataSet data = patients();
    const auto references = [](const char* text, const DataSet& of, std::span<const NamedInput> inputs = {}) {
        return Expression(text, of, inputs).referencedVariables();
    };
    EXPECT_EQ(references("v3 + V1 - v7 * v5 + missing(v4)", data), (std::vector<int>{3, 1, 7, 5, 4}));
    EXPECT_EQ(references("v2 = 'male' and 1995-06-01 < v4", data), (std::vector<int>{2, 4}));
    const std::vector<NamedInput> inputs{{"T_", 8}, {"v2", 9}};
    EXPECT_EQ(references("v2 * t_ * v1", data, inputs), (std::vector<int>{9, 8, 1}));
    for (const char* none : {"v0", "v8", "v01", "v", "v1.5", "v4294967297", "`v1`", "v8 = v1"})
        EXPECT_THROW(Expression(none, data), ExpressionError) << none;

    // A name wins; and with one that is the number of another variable, numbers are not understood at all.
    const DataSet named = readText("V1,x,v3\n1,2,3\n");
    EXPECT_EQ(references("v1 + v2 + V3", named), (std::vector<int>{1, 2, 3}));
    const DataSet shifted = readText("id,v1,v2\n1,2,3\n");
    EXPECT_EQ(references("v1 + V2", shifted), (std::vector<int>{2, 3}));
    const std::string refused = refusalOf<ExpressionError>([&] { const Expression of("v1 > v3", shifted); });
    EXPECT_NE(refused.find("variable 2 has the name 'v1'; write its name"), std::string::npos) << refused;
}

// A text is a label where it could be one, and may be a name elsewhere.
TEST(Expression, NamesInQuotes) {
    DataSet data = readText("x,white cells,group,T_\n1,2,x,7\n2,6,group,8\n,7,white cells,9\n");
    const std::vector<NamedInput> inputs{{"T_", 5}};
    const auto references = [&](const char* text) {
        return Expression(text, data, inputs).referencedVariables();
    };
    EXPECT_EQ(references("\"white cells\" * log(T_)"), (std::vector<int>{2, 5}));
    EXPECT_EQ(references("'White Cells' > 5 and 3 < max(\"x\", 1) - missing('group')"),
              (std::vector<int>{2, 1, 3}));
    EXPECT_EQ(references("T_ + `T_`"), (std::vector<int>{5, 4})) << "in backquotes it is a variable";
    EXPECT_EQ(references("group = 'x'"), std::vector<int>{3});
    EXPECT_EQ(selectCases(data, "group = 'group' or 'white cells' = group").selectedCount, 2);
    for (const char* refused : {"x = 'white cells'", "1 + x = 'white cells'", "'white cells' = 'x'",
                                "'nobody' + 1", "'log'(2)", "'pi' * 2", "'1995-01-15x' + 1"})
        EXPECT_THROW(Expression(refused, data, inputs), ExpressionError) << refused;
}

TEST(Expression, Selections) {
    DataSet data = patients();
    data.variable(6).missingCode = 4;
    // A missing value deselects a case, whatever the rest of the condition gives.
    const std::vector<std::pair<std::string, std::string>> table{
        {"age > 45", "1100"},
        {"sex = 'male' or age > 45", "1100"},
        {"sex = 'male'", "1010"},
        {"'FEMALE' <> Sex", "1010"},
        {"not Sex = \"male\"", "0100"},
        {"missing(age) or age > 55", "0110"},
        {"not missing(sex) and age < 55", "1000"},
        {"entry >= 1995-06-01", "0110"},
        {"entry < '1995-06-01'", "1000"},
        {"`white cells`", "1010"},
        {"t.1 > 0", "1110"},
        {"missing(t.1)", "0001"},
        {"group = '2'", "0100"},
        {"0", "0000"},
    };
    for (const auto& [text, expected] : table) {
        const CaseSelection selection = selectCases(data, text);
        std::string mask;
        for (const auto selected : selection.mask)
            mask += selected != 0 ? '1' : '0';
        EXPECT_EQ(mask, expected) << text;
        EXPECT_EQ(selection.selectedCount, std::count(mask.begin(), mask.end(), '1')) << text;

        SelectionPass pass(data, text);
        EXPECT_TRUE(pass.advance(3)) << text;
        EXPECT_EQ(pass.casesDone(), 3U);
        EXPECT_FALSE(pass.advance(3)) << text;
        EXPECT_EQ(pass.selection().missingCount, selection.missingCount) << text;
        EXPECT_EQ(pass.take().mask, selection.mask) << text;
    }
    EXPECT_EQ(selectCases(data, "age > 45").missingCount, 1);
    const std::string divided = refusalOf<DataError>([&] { selectCases(data, "1 / (group - 2) > 0"); });
    EXPECT_NE(divided.find("no finite value for case 2"), std::string::npos) << divided;
}

// Of an operation a missing argument leaves no result, wherever it stands, and an infinite one only where the
// operation decides without it.
TEST(Expression, WhatIsUndefinedStaysSo) {
    const DataSet data = patients();
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    std::vector<std::string> texts;
    for (const char* operation : {"+", "-", "*", "/", "^", "=", "<>", "<", "<=", ">", ">=", "and", "or"})
        for (const char* other : {"0", "1"}) {
            texts.push_back(std::string("age ") + operation + " " + other);
            texts.push_back(std::string(other) + " " + operation + " age");
        }
    for (const ExpressionFunction& function : expressionFunctions())
        for (int place = 0; place < std::min(function.most, 3); ++place) {
            std::string text = std::string(function.name) + "(";
            for (int k = 0; k < std::max(function.fewest, place + 1); ++k)
                text += std::string(k > 0 ? ", " : "") + (k == place ? "age" : "1");
            texts.push_back(text + ")");
        }
    for (const std::string& text : texts) {
        if (text.starts_with("missing")) continue;
        const bool decides = text.find(" and ") != std::string::npos ||
                             text.find(" or ") != std::string::npos || text.starts_with("if");
        std::vector<double> ages(600, 2.0);
        for (const auto& [place, value] :
             {std::pair{3, none}, {298, infinity}, {299, -infinity}, {599, none}})
            ages[static_cast<std::size_t>(place)] = value;
        const Expression expression(text, data);
        std::vector<double> results(ages.size());
        const Expression::Input input{ages.data(), 1, none};
        expression.evaluate({&input, 1}, results);
        for (const std::size_t i : {3U, 298U, 299U, 599U})
            EXPECT_TRUE(std::isnan(results[i]) || (decides && std::isinf(ages[i])))
                << text << " of " << ages[i];
    }
}

// Something that looks like a date is read as one or refused, never computed.
TEST(Expression, DatesAreNeverArithmetic) {
    const DataSet data = patients();
    for (const char* date : {"1995-06-01", "1995-6-1", "1995-6-01", "'1995-6-1'", "'1995/06/01'"}) {
        EXPECT_EQ(selectCases(data, std::string("entry >= ") + date).selectedCount, 2) << date;
        EXPECT_EQ(selectCases(data, std::string(date) + " <> entry").selectedCount, 2) << date;
    }
    EXPECT_EQ(selectCases(data, "entry-1995-1-15>100").selectedCount, 2);
    EXPECT_EQ(selectCases(data, "(entry - 1995-01-15) / 7 > 20 and entry > 2449800").selectedCount, 1);

    std::vector<std::string> others{"1995 - 6 - 1", "1995", "6", "(1995)", "15.06.95"};
    for (const std::string sign : {".", "/", "-"}) {
        others.push_back("1" + sign + "6" + sign + "1995");
        others.push_back("01" + sign + "06" + sign + "1995");
        if (sign != "-") others.push_back("1995" + sign + "6" + sign + "1");
    }
    for (const std::string& other : others) {
        for (const std::string& text :
             {"entry >= " + other, other + " < entry", "not (age > 3 and entry - 30 = " + other + ")",
              "if(1995-1-2 < " + other + ", 1, 0)"})
            EXPECT_NE(refusalOf<ExpressionError>([&] { const Expression of(text, data); }).find("1995-01-15"),
                      std::string::npos)
                << text;
    }
    for (const char* text : {"entry - 1995 / 6 / 1", "entry - 1995 - 6 - 1", "1 + entry - 15/1/95",
                             "entry - 1995-01-15 / 7", "entry = '1.6.1995'", "5 * 1995-6-1"})
        EXPECT_NE(refusalOf<ExpressionError>([&] { const Expression of(text, data); }).find("date"),
                  std::string::npos)
            << text;

    for (const auto& [text, value] : {std::pair{"1995 - 6 - 1", 1988.0},
                                      {"10-3-2", 5.0},
                                      {"600/2/3", 100.0},
                                      {"2*10/12/1000*600", 1.0},
                                      {"8000/10/20/4", 10.0},
                                      {"1.5-1-0.5", 0.0}})
        EXPECT_EQ(Expression(text, data).evaluate({}), value) << text;
}

TEST(Expression, FaultsAreExplainedWhereTheyStand) {
    const DataSet data = patients();
    struct Faulty {
        const char* text;
        std::size_t position;
        const char* said;
    };
    const std::vector<Faulty> table{
        {"", 0, "empty"},
        {"agee > 5", 0, "no variable 'agee' (did you mean 'age'"},
        {"age > 5 and sexx = 1", 12, "did you mean 'Sex'"},
        {"GROUP = 1", 0, "capital letters"},
        {"age >", 5, "breaks off"},
        {"age > > 5", 6, "is expected here, not '>'"},
        {"age + * 5", 6, "is expected here, not '*'"},
        {"age 5.0 > 1", 4, "expected before '5.0'"},
        {"age `t.1`", 4, "expected before `t.1`"},
        {"age := 5", 4, "':' has no meaning"},
        {"`white cells` + v8", 16, "'v8'"},
        {"v8 > 1", 0, "no variable 'v8': the data have 7 variables, v1 to v7"},
        {"(age > 5", 0, "never closed"},
        {"age > 5)", 7, "no ("},
        {"1 < age < 5", 8, "two comparisons"},
        {"age = 1,5", 7, "decimal point"},
        {"lgo(age)", 0, "no function 'lgo' (did you mean 'log'"},
        {"log(age, 2)", 0, "takes 1 argument"},
        {"if(age, 2)", 0, "takes 3 arguments"},
        {"min()", 4, "is expected here"},
        {"missing(age + 1)", 0, "one variable"},
        {"missing(pi)", 8, "no variable 'pi'"},
        {"sex = 'mal'", 6, "no value 'mal' (did you mean 'male'"},
        {"sex = 'it''s'", 6, "no value 'it's'"},
        {"sex = male", 6, "belongs in quotes"},
        {"age + 'x' > 1", 6, "only be compared with a variable"},
        {"sex = 'male", 6, "closing ' is missing"},
        {"`white", 0, "closing ` is missing"},
        {"entry > 1995-02-30", 8, "no such day"},
        {"2age > 1", 0, "run together in '2age'"},
        {"1.2.3", 0, "'1.2.3' is not a number"},
        {"1e999", 0, "'1e999' is too big"},
        {"3 + not age", 4, "in parentheses"},
        {"`3` > 1", 0, "no variable '3'"},
    };
    EXPECT_EQ(refusalOf<ExpressionError>([&] { const Expression of("agee + 1", data); }).find("quotes"),
              std::string::npos)
        << "no text is meant";
    std::string nested = "1";
    for (int depth = 0; depth < 1002; ++depth)
        nested = "(age + 1) * (" + nested + ")";
    const std::string tooDeep = nested + " + age";
    std::string wide = "age";
    for (int terms = 0; terms < 5000; ++terms)
        wide += " + 1";
    EXPECT_EQ(Expression(wide, data).evaluate(std::vector<double>{1}), 5001) << "a long one is no deep one";
    EXPECT_THROW(Expression(tooDeep, data), ExpressionError);
    std::string many = "max(1";
    for (int arguments = 1; arguments < 1000; ++arguments)
        many += ",1";
    EXPECT_EQ(Expression(many + ")", data).evaluate({}), 1);
    EXPECT_NE(refusalOf<ExpressionError>([&] {
                  const Expression of(many + ",1)", data);
              }).find("max( ) takes at most 1000 arguments"),
              std::string::npos);
    for (const Faulty& each : table) {
        try {
            const Expression expression(each.text, data);
            ADD_FAILURE() << "understood: " << each.text;
        } catch (const ExpressionError& error) {
            EXPECT_EQ(error.position(), each.position) << error.what();
            EXPECT_NE(std::string(error.what()).find(each.said), std::string::npos) << error.what();
        }
    }
    EXPECT_THROW(Expression("age", data).evaluate({}), std::invalid_argument);
}

} // namespace
} // namespace korvana::test
