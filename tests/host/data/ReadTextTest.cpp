#include "tests/host/data/DataTestSupport.h"
#include "tests/host/data/RandomTable.h"

#include "host/data/DataError.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
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

TEST(ReadText, AcceptsWhatPeopleSave) {
    const ReadOptions noHeader{HeaderLine::No, {}, {}};
    const ReadOptions withHeader{HeaderLine::Yes, {}, {}};
    const std::vector<Accepted> table{
        {"plain", "time,dead\n1.5,0\n2,1\n", "time N: 1.5 2 | dead N: 0 1"},
        {"no line feed at the end", "a,b\n1,2", "a N: 1 | b N: 2"},
        {"CRLF, blank lines at the end", "a,b\r\n1,2\r\n3,4\r\n\r\n \r\n", "a N: 1 3 | b N: 2 4"},
        {"blank lines before, between and behind the names", "\n \na,b\n\n1,2\n\n \n3,4\n",
         "a N: 1 3 | b N: 2 4"},
        {"one column: a blank line is a missing cell", "x\n1\n\n2\n\n", "x N: 1 - 2"},
        {"byte order mark",
         "\xEF\xBB\xBF"
         "a,b\n1,2\n",
         "a N: 1 | b N: 2"},
        {"tab", "a\tb c\n1\t2\n\t3\n4\t\n", "a N: 1 - 4 | b c N: 2 3 -"},
        {"semicolon with decimal comma", "a;b\n1,5;2\n-0,25;1e3\n", "a N: 1.5 -0.25 | b N: 2 1000"},
        {"semicolon with decimal point", "a;b\n1.5;x,y\n", "a N: 1.5 | b T: x,y"},
        {"semicolon: marks may differ between columns", "a;b\n1,5;1.5\n", "a N: 1.5 | b N: 1.5"},
        {"thousands separators are texts", "a;b\n1.234,5;1\n", "a T: 1.234,5 | b N: 1"},
        {"tab with decimal comma", "a\tb\n1,5\t2\n", "a N: 1.5 | b N: 2"},
        {"a separator inside quotes does not count", "a,b\n\"1;2;3\",4\n\"5;6;7\",8\n",
         "a T: 1;2;3 5;6;7 | b N: 4 8"},
        {"chosen separator", "a|b\n1|2\n", "a N: 1 | b N: 2", {HeaderLine::Automatic, '|', {}}},
        {"found pipe", "a|b\n1,5|2\n", "a N: 1.5 | b N: 2"},
        {"the separator named in the first line", "sep=;\r\na;b,c\n1;2\n", "a N: 1 | b,c N: 2"},
        {"named in quotes, behind a byte order mark", "\xEF\xBB\xBF\"SEP=^\"\na^b\n1^2\n", "a N: 1 | b N: 2"},
        {"a tab named", "sep=\t\na\tb;c\n1\t2\n", "a N: 1 | b;c N: 2"},
        {"named otherwise by an option",
         "sep=;\na,b\n1,2\n",
         "a N: 1 | b N: 2",
         {HeaderLine::Automatic, ',', {}}},
        {"chosen decimal mark",
         "a;b\n1,234;1.5\n",
         "a N: 1.234 | b T: 1.5",
         {HeaderLine::Automatic, {}, ','}},
        {"missing cells", "a,b,c\n,NA, . \n NaN,\"\",\"NA\"\n1,2,nan\n",
         "a N: - - 1 | b N: - - 2 | c N: - - -"},
        {"numbers in all shapes", "x\n+1\n-.5\n5.\n\"12\"\n 7 \n1E3\n1e-400\n00012345678901234567890\n",
         "x N: 1 -0.5 5 12 7 1000 0 12345678901234567168"},
        {"not numbers", "x\n0x1F\n1e\n1 2\n--1\ninf\n", "x T: 0x1F 1e 1 2 --1 inf"},
        {"no header", "1,2\n3,4\n", "Var1 N: 1 3 | Var2 N: 2 4"},
        {"a date in the first row: no header", "1995-01-15,a\n1995-01-16,b\n",
         "Var1 D: 2449733 2449734 | Var2 T: a b"},
        {"header refused", "a,b\nc,d\n", "Var1 T: a c | Var2 T: b d", noHeader},
        {"header asked for", "2019,2020\n1,2\n", "2019 N: 1 | 2020 N: 2", withHeader},
        {"quotes", "\"a\",b\n\"x \"\"y\"\", z\",1\n \"p\nq\" ,2\n5\"\" disk,3\n",
         "a T: x \"y\", z p\nq 5\"\" disk | b N: 1 2 3"},
        {"texts in order, whatever the order of rows", "g,h\nb,10\na,9\nB,x\nb,2\n",
         "g T: b a B b | h T: 10 9 x 2"},
        {"dates", "d\n1970-01-01\n\n2000-02-29\n", "d D: 2440588 - 2451604"},
        {"a date of no day among texts", "d,e\n1995-02-30,1\nsoon,2\n", "d T: 1995-02-30 soon | e N: 1 2"},
        {"names of cases", "\"\",\"t\"\n\"Ann\",1\n\"Bob \"\"B\"\"\",2\n", "t N: 1 2 | names: Ann Bob \"B\""},
        {"names that only count the cases", "\"\",\"t\"\n\"1\",5\n\"2\",6\n", "t N: 5 6"},
        {"repeated and empty names", "a,a,,A,a_2\n1,2,3,4,5\n",
         "a N: 1 | a_3 N: 2 | Var3 N: 3 | A N: 4 | a_2 N: 5"},
        {"Windows-1252",
         "gr\xF6\xDF"
         "e,g\n1,\x80\n2,\xE9\n",
         "gr\xC3\xB6\xC3\x9F"
         "e N: 1 2 | g T: \xE2\x82\xAC \xC3\xA9"},
        {"all cells missing", "a,b\n,\nNA,.\n", "a N: - - | b N: - -"},
    };
    for (const Accepted& each : table) {
        SCOPED_TRACE(each.what);
        EXPECT_EQ(dump(readText(each.text, each.options)), each.expected);
    }
}

TEST(ReadText, CodesFollowTheOrderOfTexts) {
    const DataSet data = readText("g,h\nb,10\na,9\nB,x\nb,2\n");
    const auto codes = [&](int v) {
        const auto cells = data.column(v);
        return std::vector<double>(cells.begin(), cells.end());
    };
    EXPECT_EQ(codes(0), (std::vector<double>{3, 2, 1, 3})) << "B < a < b by bytes";
    EXPECT_EQ(codes(1), (std::vector<double>{3, 2, 4, 1})) << "numbers by value, then texts";
    ASSERT_EQ(data.notes().size(), 1U);
    EXPECT_EQ(data.notes()[0],
              "variable 'h': 1 of 4 cells is not a number (first: 'x', line 4); read as text codes");
}

TEST(ReadText, NotesWhatItChanged) {
    const auto note = [](std::string_view text) {
        const DataSet data = readText(text);
        return data.notes().empty() ? std::string() : data.notes().front();
    };
    EXPECT_EQ(note("a,b\n1,2\n"), "");
    EXPECT_EQ(note("a,b\n\"x\ny\",2\n,3\n7,unknown\n7,?\n"),
              "variable 'a': 1 of 3 cells is not a number (first: 'x y', line 2); read as text codes");
    EXPECT_EQ(note("d\n1995-01-15\nsoon\n"),
              "variable 'd': 1 of 2 cells is not a date (first: 'soon', line 3); read as text codes");
    EXPECT_EQ(note("a,a\n1,2\n"), "the name 'a' stands twice in the header; variable 2 is called 'a_2'");
    EXPECT_EQ(note("a,\n1,2\n"), "variable 2 has no name in the header; it is called 'Var2'");
    EXPECT_NE(note("time dead\n1 0\n2 1\n").find("if blanks separate its cells"), std::string::npos);
    EXPECT_NE(note("time:dead\n1:0\n2:1\n").find("if ':' separates its cells, say so (--separator ':')"),
              std::string::npos);
    EXPECT_EQ(note("name/title\nDr\n"), "") << "its cells have none";
}

TEST(ReadText, TheDivisionOfTheWorkDoesNotShow) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        const RandomTable table(seed, 200);
        for (const std::size_t chunk :
             {std::size_t{1}, std::size_t{37}, std::size_t{500}, std::size_t{1} << 20})
            for (const unsigned threads : {1U, 2U, 3U}) {
                const DataSet data = readTuned(table.text, {threads, chunk});
                ASSERT_EQ(dump(data), table.expected) << "seed " << seed << ", chunk " << chunk;
                EXPECT_TRUE(data.notes().empty());
            }
    }
}

TEST(ReadText, BigFilesAreReadByThreads) {
    const RandomTable table(99, 300'000); // above the size from which threads are started
    EXPECT_EQ(dump(readText(table.text)), table.expected);
}

TEST(ReadText, TheEarliestFaultIsReportedWhoeverFindsIt) {
    std::string text = "a,b\n";
    for (int i = 0; i < 2000; ++i)
        text += "1,2\n";
    text.insert(text.size() / 2, "1\n").append("3,4,5\n");
    std::string first;
    for (const unsigned threads : {1U, 2U, 4U})
        for (const std::size_t chunk : {std::size_t{1} << 20, std::size_t{64}}) {
            try {
                readTuned(text, {threads, chunk});
                FAIL() << "read a ragged file";
            } catch (const DataError& error) {
                if (first.empty()) first = error.what();
                EXPECT_EQ(error.what(), first);
                EXPECT_EQ(error.line(), 1002);
            }
        }
}

} // namespace
} // namespace korvana::test
