#include "tests/host/data/DataTestSupport.h"

#include "host/data/DataError.h"
#include "tests/support/Refusal.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace korvana::test {
namespace {

struct Accepted {
    const char* what;
    std::string text;
    std::string expected;
    ReadOptions options = {};
};

const ReadOptions noHeader{HeaderLine::No, {}, {}};
const ReadOptions withHeader{HeaderLine::Yes, {}, {}};
const ReadOptions byComma{HeaderLine::Automatic, ',', {}};
const ReadOptions decimalComma{HeaderLine::Automatic, {}, ','};
const ReadOptions decimalPoint{HeaderLine::Automatic, {}, '.'};
const ReadOptions dayFirst{HeaderLine::Automatic, {}, {}, DateOrder::DayMonthYear};
const ReadOptions yearFirst{HeaderLine::Automatic, {}, {}, DateOrder::YearMonthDay};

TEST(ReadText, AcceptsWhatPeopleSave) {
    const std::vector<Accepted> table{
        {"no line feed at the end", "a,b\n1,2", "a N: 1 | b N: 2"},
        {"blank lines anywhere", "\n \r\na,b\r\n\r\n1,2\n\n \n3,4\r\n\r\n \r\n", "a N: 1 3 | b N: 2 4"},
        {"one column: a blank line is a missing cell", "x\n1\n\n2\n\n", "x N: 1 - 2"},
        {"byte order mark", "\xEF\xBB\xBFx,y\n1,2\n", "x N: 1 | y N: 2"},
        {"tab", "a\tb c\n1\t2\n\t3\n4\t\n", "a N: 1 - 4 | b c N: 2 3 -"},
        {"semicolon with decimal comma", "a;b\n1,5;2\n-0,25;1e3\n", "a N: 1.5 -0.25 | b N: 2 1000"},
        {"semicolon with decimal point", "a;b\n1.5;x,y\n", "a N: 1.5 | b T: x,y"},
        {"numbers of texts decide no mark", "a;b\n1,5;1.5\n2;x\n", "a N: 1.5 2 | b T: 1.5 x"},
        {"a point before three digits is a point", "a;b\n1.200;0.5\n", "a N: 1.2 | b N: 0.5"},
        {"versions, addresses, codes", "a;b;c\n1.2.3;10.1.2.3;12 345\n1.10.12x;1.2.3.4;99 111\n",
         "a T: 1.2.3 1.10.12x | b T: 10.1.2.3 1.2.3.4 | c T: 12 345 99 111"},
        {"told decimal commas, in quotes", "a,b\n\"1,5\",1\n2,\"-0,25\"\n", "a N: 1.5 2 | b N: 1 -0.25",
         decimalComma},
        {"answers in quotes", "a,b\n\"1,2\",1\n3,2\n", "a T: 1,2 3 | b N: 1 2"},
        {"separators inside quotes", "a,b\n\"1;2;3\",4\n\"5;6;7\",8\n", "a T: 1;2;3 5;6;7 | b N: 4 8"},
        {"found pipe", "a|b\n1,5|2\n", "a N: 1.5 | b N: 2"},
        {"the separator named in the first line", "sep=;\r\na;b,c\n1;2\n", "a N: 1 | b,c N: 2"},
        {"named in quotes, behind a byte order mark", "\xEF\xBB\xBF\"SEP=^\"\na^b\n1^2\n", "a N: 1 | b N: 2"},
        {"a tab named", "sep=\t\na\tb;c\n1\t2\n", "a N: 1 | b;c N: 2"},
        {"named otherwise by an option", "sep=;\na,b\n1,2\n", "a N: 1 | b N: 2", byComma},
        {"named badly, but told", "sep=\na,b\n1,2\n", "a N: 1 | b N: 2", byComma},
        {"a name that begins so", "sep=x,b\n1,2\n", "sep=x N: 1 | b N: 2"},
        {"no-break and thin spaces around cells",
         "a,b\u00A0\n\u00A01,\u202Fx\u2009\n2\u202F\u00A0,\u00A0\n3,\u00E0\n",
         "a N: 1 2 3 | b T: x - \u00E0"},
        {"Windows-1252, with its no-break spaces", "gr\xF6\xDFt,g\n\xA0+1,x\xA0\n2,\xE9\n3,\x80\n",
         "gr\u00F6\u00DFt N: 1 2 3 | g T: x \u00E9 \u20AC"},
        {"cells that have another mark than told", "a;b\n850;2,5\n1.200;1,234\n1.200,5;3\n",
         "a T: 850 1.200 1.200,5 | b N: 2.5 1.234 3", decimalComma},
        {"missing cells", "a,b,c\n,NA, . \n NaN,\"\",\"NA\"\n1,2,nan\n",
         "a N: - - 1 | b N: - - 2 | c N: - - -"},
        {"numbers in all shapes", "x\n+1\n-.5\n5.\n\"12\"\n 7 \n1E3\n1e-400\n00012345678901234567890\n",
         "x N: 1 -0.5 5 12 7 1000 0 12345678901234567168"},
        {"not numbers", "x\n0x1F\n1e\n1 2\n--1\ninf\n", "x T: 0x1F 1e 1 2 --1 inf"},
        {"slips beside other texts, codes, ranges, another mark than told",
         "a;b;c;d;e\n1;1;1.2.3.4;1.5;1\n2..3;3+;1.2.3.5;2.5;.5.1\nn/a;1-2;7;1,,5;.5.2\n",
         "a T: 1 2..3 n/a | b T: 1 3+ 1-2 | c T: 1.2.3.4 1.2.3.5 7 | d T: 1.5 2.5 1,,5 | e T: 1 .5.1 .5.2",
         decimalPoint},
        {"no header", "1,2\n3,4\n", "Var1 N: 1 3 | Var2 N: 2 4"},
        {"a date in the first row", "1995-01-15,a\n1995-01-16,b\n", "Var1 D: 2449733 2449734 | Var2 T: a b"},
        {"header refused", "a,b\nc,d\n", "Var1 T: a c | Var2 T: b d", noHeader},
        {"header asked for", "2019,2020\n1,2\n", "2019 N: 1 | 2020 N: 2", withHeader},
        {"quotes", "\"a\",b\n\"x \"\"y\"\", z\",1\n \"p\nq\" ,2\n5\"\" disk,3\n",
         "a T: x \"y\", z p\nq 5\"\" disk | b N: 1 2 3"},
        {"line breaks in quotes, whoever saved the file",
         "a,b\r\n\"x\ny\",1\r\n\"x\r\ny\",2\n\"x\ry\",3\n\"\"\"\r\n\"\"\",4\n\"\"\"\n\"\"\",5\n",
         "a T: x\ny x\ny x\ny \"\n\" \"\n\" | b N: 1 2 3 4 5"},
        {"dates", "d\n1970-01-01\n\n2000-02-29\n", "d D: 2440588 - 2451604"},
        {"a day above 12 decides", "d\n01.02.1995\n\n30.01.1995\n", "d D: 2449750 - 2449748"},
        {"a month in front", "d\n1/2/1995\n12/31/1994\n", "d D: 2449720 2449718"},
        {"one column decides for another", "d,e\n1-2-1995,30-1-1995\n", "d D: 2449750 | e D: 2449748"},
        {"a year in front decides nothing for others", "d,e\n1995/2/1,30.1.1995\n1995-02-01,30.1.1995\n",
         "d D: 2449750 2449750 | e D: 2449748 2449748"},
        {"the same whichever way", "d\n05.05.1995\n", "d D: 2449843"},
        {"short years", "d,e,f\n30.1.95,1/30/95,95-01-30\n", "d D: 2449748 | e D: 2449748 | f D: 2449748"},
        {"an order given", "d,e\n01/02/95,1995-02-01\n", "d D: 2449750 | e D: 2449750", dayFirst},
        {"times of day",
         "d,e\n1995-01-30 12:34,30.01.1995 1:00:00 PM\n1995-01-30T23:59:59.5+01:00,31.01.1995\n",
         "d D: 2449748 2449748 | e D: 2449748 2449749"},
        {"no dates: codes, times, versions", "a,b,c,d\n40-20-30,12:34,1.2.3,1/2\n01-02-03,13:00,1.2.10,3/4\n",
         "a T: 40-20-30 01-02-03 | b T: 12:34 13:00 | c T: 1.2.3 1.2.10 | d T: 1/2 3/4"},
        {"dates among texts and numbers",
         "a,b,c\nsoon,7,1995-02-30\n01/02/1995,30/01/1995,soon\n30/40/1995,8,\n",
         "a T: soon 01/02/1995 30/40/1995 | b T: 7 30/01/1995 8 | c T: 1995-02-30 soon -"},
        {"names of cases", "\"\",\"t\"\n\"Ann\",1\n\"Bob \"\"B\"\"\",2\n", "t N: 1 2 | names: Ann Bob \"B\""},
        {"names that only count the cases", "\"\",\"t\"\n\"1\",5\n\"2\",6\n", "t N: 5 6"},
        {"repeated and empty names", "a,a,,A,a_2\n1,2,3,4,5\n",
         "a N: 1 | a_3 N: 2 | Var3 N: 3 | A N: 4 | a_2 N: 5"},
        {"all cells missing", "a,b\n,\nNA,.\n", "a N: - - | b N: - -"},
    };
    for (const Accepted& each : table) {
        SCOPED_TRACE(each.what);
        EXPECT_EQ(dump(readText(each.text, each.options)), each.expected);
        expectTheSameFromSeveral(each.text, each.options);
    }
}

TEST(ReadText, TellsTheLayoutThatItFound) {
    EXPECT_EQ(
        readText("t;d\n1,5;30.01.1995\n2;1.2.1995\n").layout(),
        "2 columns separated by ';', a line of names, decimal commas, dates as day, month, year; read by 1 "
        "thread");
    EXPECT_EQ(readText("1\t2.5\n3\t4\n").layout(),
              "2 columns separated by tabs, no line of names, decimal points; read by 1 thread");
}

TEST(ReadText, CodesFollowTheOrderOfTexts) {
    const DataSet data = readText("g,h\nb,10\na,9\nB,x\nb,2\n");
    EXPECT_EQ(dump(data), "g T: b a B b | h T: 10 9 x 2");
    const auto codes = [&](int v) {
        const auto cells = data.column(v);
        return std::vector<double>(cells.begin(), cells.end());
    };
    EXPECT_EQ(codes(0), (std::vector<double>{3, 2, 1, 3})) << "B < a < b by bytes";
    EXPECT_EQ(codes(1), (std::vector<double>{3, 2, 4, 1})) << "numbers by value, then texts";
}

/// So many that several threads sort them, also such as differ only behind their first bytes.
TEST(ReadText, ManyTextsGetTheirCodesWhoeverReadsThem) {
    constexpr std::size_t rows = 90'000;
    std::mt19937 random(11);
    std::string file = "g,h\n";
    std::vector<std::string> texts;
    std::set<std::string> words;
    std::map<double, std::set<std::string>> numbers;
    for (std::size_t i = 0; i < rows; ++i) {
        std::string text = "P-" + std::string(random() % 9, '0');
        switch (random() % 4) {
        case 0:
            text = std::array{"0", "-0", "0.0", "-2", "1e3", "1000", "-1e-5"}[random() % 7];
            break;
        case 1:
            text = std::to_string(static_cast<int>(random() % 20000) - 10000);
            break;
        default:
            text += std::to_string(random() % 100'000);
            if (random() % 5 == 0) text += "\u00E9";
        }
        const double value = text[0] == 'P' ? 0 : std::strtod(text.c_str(), nullptr);
        (text[0] == 'P' ? words : numbers[value]).insert(text);
        texts.push_back(text);
        if (text.ends_with("\u00E9") && random() % 2 == 0) text.replace(text.size() - 2, 2, "\xE9");
        file.append(text).append(",").append(std::to_string(random() % 3)).append("x\n");
    }
    std::vector<std::string> expected;
    for (const auto& [value, spelled] : numbers)
        expected.insert(expected.end(), spelled.begin(), spelled.end());
    expected.insert(expected.end(), words.begin(), words.end());
    ASSERT_GT(expected.size(), 1U << 15U);
    for (const unsigned threads : {1U, 2U, 7U}) {
        const DataSet data = readTuned(file, {threads, 10'000});
        const std::vector<ValueLabel>& labels = data.variable(0).valueLabels;
        ASSERT_EQ(labels.size(), expected.size());
        for (std::size_t i = 0; i < labels.size(); ++i) {
            ASSERT_EQ(labels[i].text, expected[i]);
            ASSERT_EQ(labels[i].value, static_cast<double>(i + 1));
        }
        for (std::size_t i = 0; i < rows; ++i)
            ASSERT_EQ(expected.at(static_cast<std::size_t>(data.column(0)[i]) - 1), texts[i]);
        EXPECT_EQ(data.variable(1).valueLabels.size(), 3U);
    }
}

/// The code of each cell, - where it is missing, then the labels.
std::string codesAndLabels(const DataSet& data) {
    std::string text = data.variable(0).kind == VariableKind::Number ? "N" : "T";
    for (const double cell : data.column(0))
        text += std::isnan(cell) ? " -" : " " + numberText(cell);
    for (const ValueLabel& label : data.variable(0).valueLabels)
        text += ", " + numberText(label.value) + " " + label.text;
    return text;
}

TEST(ReadText, TruthValuesAreZeroAndOne) {
    for (const auto& [cells, expected] : std::initializer_list<std::pair<const char*, const char*>>{
             {"True\nFalse\nNA\nTrue\n", "N 1 0 - 1, 0 False, 1 True"},
             {"TRUE\nfalse\ntrue\nFALSE\nTrue\n", "N 1 0 1 0 1, 0 false, 1 TRUE"}, // as they come first
             {"\"true\"\n true \n.\n", "N 1 1 -, 1 true"},
             {"False\n", "N 0, 0 False"},
             {"True\nFalse\nx\n", "T 2 1 3, 1 False, 2 True, 3 x"}, // nothing else may be among them
             {"True\n1\n", "T 2 1, 1 1, 2 True"},
             {"T\nF\n", "T 2 1, 1 F, 2 T"},
             {"truer\ntrue\n", "T 2 1, 1 true, 2 truer"}}) {
        const std::string file = std::string("flag\n") + cells;
        EXPECT_EQ(codesAndLabels(readText(file)), expected);
        for (const std::size_t chunk : {1U, 9U}) // whichever thread is faster
            EXPECT_EQ(codesAndLabels(readTuned(file, {2, chunk})), expected) << chunk;
    }
}

struct Noted {
    std::string text;
    std::string note;
    ReadOptions options = {};
};

TEST(ReadText, NotesWhatItChanged) {
    const std::string encoding = " of the file is not valid UTF-8; such texts are read as Windows-1252 "
                                 "(Western European): save the file as UTF-8 if they look wrong";
    const std::vector<Noted> table{
        {"a,b\n\"x\ny\",2\n,3\n7,unknown\n7,?\n",
         "variable 'a': 1 of 3 cells is not a number (first: 'x\\ny', line 2); read as text codes\n"
         "variable 'b': 2 of 4 cells are not numbers (first: 'unknown', line 5); read as text codes"},
        {"a,b\n1\u00A0x,2\n3,3\n", "variable 'a': 1 of 2 cells is not a number (first: '1\u00A0x' (with a "
                                   "no-break space, U+00A0), line 2); "
                                   "read as text codes"},
        {"a,b\n1\u2009200,2\n",
         "variable 'a': 1 cell is read as text, such as '1\u2009200' (with a thin space, "
         "U+2009) in line 2; numbers have no separated thousands"},
        {"a,b\nx,2\n\u00E9,3\n\xE9,3\n", "line 4" + encoding},
        {"a,\xE9\n1,2\n", "line 1" + encoding},
        {"\"\",b\nAnn,2\nRen\xE9,3", "line 3" + encoding},
        {"a,b\nx,2\n\u00E9,3\n", ""},
        {"time,7\n1,2\n",
         "the first line is taken for a case, as '7' in it is a value; if it holds the names, as 'time' may "
         "be one, "
         "say so (--header)\n"
         "variable 'Var1': 1 of 2 cells is not a number (first: 'time', line 1); read as text codes"},
        {"drug,good\nplacebo,bad\ndrug,bad\n", "the first line is taken for the names, though 'drug' is also "
                                               "a value of that column; if the line is a case, "
                                               "say so (--no-header)"},
        {"d\n1995-01-15\nsoon\n",
         "variable 'd': 1 of 2 cells is not a date (first: 'soon', line 3); read as text codes"},
        {"a;b\n850;1\n1.200;2\n",
         "variable 'a': '1.200' in line 3 is read with a decimal point; if the point "
         "separates thousands, write 1200"},
        {"a;b\n850;1\n1.200;2\n3.4;1\n", ""},
        {"a,b\n\"1,5\",1\n",
         "variable 'a': 1 cell is read as text, such as '1,5' in line 2; if the comma is the "
         "decimal mark, say so (--decimal comma)"},
        {"a,b\n1,2\n\"2,5\",3\n", "variable 'a': 1 of 2 cells is not a number (first: '2,5', line 3); read "
                                  "as text codes; if the comma is the "
                                  "decimal mark, say so (--decimal comma)"},
        {"d,b\n1995-13-05,1\n,2\n1995-14-05,1\n", "variable 'd': 2 cells are read as text, such as "
                                                  "'1995-13-05' in line 2, which is no day of the calendar"},
        {"d,b\n1995-12-05 12:60,1\n", "variable 'd': 1 cell is read as text, such as '1995-12-05 12:60' in "
                                      "line 2, which has no possible time of day (00:00 to 23:59, or 1:00 to "
                                      "12:59 with AM or PM)"},
        {"a,b\nInf,1\n",
         "variable 'a': 1 cell is read as text, such as 'Inf' in line 2, which is no finite number"},
        {"d\n1995-01-30 00:00:00\n1995-01-31\n", ""},
        {"d\n1995-01-30\n1995-01-31 08:00\n", "variable 'd': dates count whole days; the time of day is left "
                                              "out of 1 cell (first: '1995-01-31 08:00' in "
                                              "line 3)"},
        {"a,a\n1,2\n", "the name 'a' occurs twice in the header; variable 2 is called 'a_2'"},
        {"a,\n1,2\n", "variable 2 has no name in the header; it is called 'Var2'"},
        {"name/title\nDr\n", ""}, // its cells have none
        {"a,b\n13/02/1995,03/14/1995\n",
         "dates are read in different orders: those of 'a' as day, month, year, those "
         "of 'b' as month, day, year"},
        {"a,b\n13/02/1995,14/03/1995\n", ""},
        {"a,b\n13/02/95,x\n",
         "variable 'a': read as text, as '13/02/95' in line 2 is no date in the order year, month, day "
         "(--dates ymd)",
         yearFirst},
    };
    const auto notes = [](std::string_view text, const ReadOptions& options = {}) {
        std::string all;
        const DataSet data = readText(text, options);
        for (const std::string& each : data.notes())
            all.append(all.empty() ? "" : "\n").append(each);
        return all;
    };
    for (const Noted& each : table) {
        EXPECT_EQ(notes(each.text, each.options), each.note);
        expectTheSameFromSeveral(each.text, each.options);
    }
    EXPECT_NE(notes("time dead\n1 0\n2 1\n").find("if blanks separate its cells"), std::string::npos);
    EXPECT_NE(notes("time:dead\n1:0\n2:1\n").find("if ':' separates its cells, say so (--separator ':')"),
              std::string::npos);
}

TEST(ReadText, TheEarliestFaultIsReportedWhoeverFindsIt) {
    std::string text = "a,b\n";
    for (int i = 0; i < 2000; ++i)
        text += "1,2\n";
    text.insert(text.size() / 2, "1\n").append("3,4,5\n");
    const std::string error = refusalOf<DataError>([&] { readText(text); });
    EXPECT_NE(error.find(".csv:1002:1: 1 cell"), std::string::npos) << error;
    expectTheSameFromSeveral(text, {});
}

} // namespace
} // namespace korvana::test
