#include "tests/host/data/DataTestSupport.h"

#include "host/data/ComputedVariable.h"
#include "host/data/DataError.h"
#include "tests/support/Refusal.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stop_token>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace korvana::test {
namespace {

struct Refused {
    const char* what;
    std::string text;
    std::string place; ///< line, or line and column
    std::vector<const char*> said;
    ReadOptions options = {};
};

TEST(ReadErrors, NameThePlaceAndTheRemedy) {
    using namespace std::string_literals;
    const ReadOptions byQuote{HeaderLine::Automatic, '"', {}};
    const ReadOptions commaTwice{HeaderLine::Automatic, ',', ','};
    const ReadOptions monthFirst{HeaderLine::Automatic, {}, {}, DateOrder::MonthDayYear};
    const std::vector<Refused> table{
        {"empty", "", "", {"the file is empty"}},
        {"blank", " \n\r\n", "", {"no text but blanks"}},
        {"only a byte order mark", "\xEF\xBB\xBF", "", {"no text but blanks"}},
        {"a header alone", "a,b\n", "1", {"no cases below"}},
        {"too few cells",
         "a,b,c\n1,2,3\n4,5\n",
         "3:2",
         {"2 cells where the header has 3", "add the missing"}},
        {"too many", "a,b\n1,2\n\n\"x\ny\",2,3,4\n", "4:3", {"4 cells where the header has 2", "in quotes"}},
        {"too many with semicolons", "a;b\n1;2;3\n", "2:3", {"put a cell that contains the separator in"}},
        {"ragged without header", "1;2\n3\n", "2:1", {"1 cell where the first row has 2"}},
        {"open quote", "a,b\n1,2\n3,\"x\n4,5\n", "3:2", {"variable 'b'", "never closed"}},
        {"open quote in the header", "a,\"b\n1,2\n", "1:2", {"never closed"}},
        {"text behind a quote", "a,b\n\"x\"y,2\n", "2:1", {"variable 'a'", "behind the closing"}},
        {"behind one in the header", "\"a\"x,b\n1,2\n", "1:1", {"behind the closing"}},
        {"NUL", "a,b\n1,\0\n"s, "2", {"NUL", "UTF-8"}},
        {"NUL far down", "a\n" + std::string(200'000, '1') + "\n2\0\n"s, "3", {"NUL", "UTF-8"}},
        {"old Macintosh", "a,b\r1,2\r3,4\r", "1:2", {"carriage returns"}},
        {"converted twice", "a,b\r\r\n1,2\r\r\n", "1:2", {"ends with several carriage returns"}},
        {"a return inside", "a\r,b\n1,2\n", "1:1", {"inside this cell"}},
        {"infinite", "a,b\n1,2\n1,Inf\n", "3:2", {"variable 'b'", "'Inf'", "infinite"}},
        {"too big", "a,b\n1e999,2\n5,6\n", "2:1", {"'1e999'", "greatest number"}},
        {"no such day", "d\n1995-01-15\n1995-02-30\n", "3:1", {"'1995-02-30'", "no day of the calendar"}},
        {"no such time",
         "d\n1995-01-15\n1995-01-15T24:00\n",
         "3:1",
         {"'1995-01-15T24:00' has no possible time"}},
        {"nor this", "d\n15/01/1995\n15/01/1995 13:10 PM\n", "3:1", {"has no possible time", "AM or PM"}},
        {"neither", "d\n1995-01-15\n1995-02-30 25:00\n", "3:1", {"no day of the calendar"}},
        {"no character", "g,b\n\"x\ny\",1\n\n\xE9\x8D,2\n", "5:1", {"neither", "(byte 8D)", "UTF-8"}},
        {"one in a name", "a,b\x81\n1,2\n", "1:2", {"neither", "(byte 81)"}},
        {"one in a name of a case", "\"\",b\nAnn,1\nM\x9D,2\n", "3:1", {"neither", "(byte 9D)"}},
        {"both marks", "a;b\n1,5;1\n1.2,3;2\n", "3:1", {"'1.2,3' is no number", "leave the cell empty"}},
        {"a mark too many", "a,b\n1,1.5\n2,1..5\n", "3:2", {"'1..5' is no number", "mark too many"}},
        {"two signs", "a,b\n1,7\n2,--5\n", "3:2", {"'--5' is no number", "several signs"}},
        {"two decimal marks",
         "time;status;karno\n850;1;61,5\n1.200;1;60,2\n",
         "3:1",
         {"'1.200' has a decimal point", "'61,5' in line 2, variable 'karno'", "separates thousands",
          "leave it out", "--decimal comma"}},
        {"the mark that cannot separate thousands is the file's",
         "a;b\n1,200;0\n1,300;0\n1,400;60.25\n",
         "2:1",
         {"'1,200' has a decimal comma", "'60.25' in line 4", "--decimal point"}},
        {"else that of more cells", "a;b\n1.5;1,5\n2,5;2,25\n", "2:1", {"'1.5'", "'1,5' in line 2"}},
        {"thousands", "a;b\n1;2\n1.234,5;1\n", "3:1", {"'1.234,5' has separated thousands; write 1234,5"}},
        {"thousands with blanks", "a,b\n1,2\n12 345,1\n", "3:1", {"'12 345'", "write 12345"}},
        {"thousands in quotes", "a,b\n850,2\n\"1,234\",1\n", "3:1", {"'1,234'", "write 1234"}},
        {"with no-break spaces", "a\n1\n12\u00A0345\n", "3:1", {"(with a no-break space", "write 12345"}},
        {"dates that can be read in two ways",
         "d;x\n05.05.1995;1\n05.06.1995;2\n",
         "3:1",
         {"variable 'd': '05.06.1995' may be 1995-06-05 (day, month, year) or 1995-05-06 (month, day, year)",
          "--dates dmy or --dates mdy"}},
        {"short dates that can be read in three",
         "d\n01/02/03\n",
         "2:1",
         {"1903-02-01", "1903-01-02", "1901-02-03", "--dates dmy, --dates mdy or --dates ymd"}},
        {"others disagree", "a,b,c\n30/01/1995,01/30/1995,1/2/1995\n", "2:3", {"'1/2/1995' may be"}},
        {"dates in two orders",
         "d\n30/01/1995\n02/02/1995\n01/30/1995\n",
         "4:1",
         {"'01/30/1995' can only be read as month, day, year", "'30/01/1995' in line 2 only as day, month"}},
        {"no day in any order", "d\n30.01.1995\n30.02.1995\n", "3:1", {"'30.02.1995' is no day of the"}},
        {"no day in the order given",
         "d\n1.2.1995\n30.1.1995\n",
         "3:1",
         {"when read as month, day"},
         monthFirst},
        {"no such time", "d\n1995-01-15 12:30\n1995-01-15 25:00\n", "3:1", {"'1995-01-15 25:00'"}},
        {"no separator named", "sep=\na,b\n1,2\n", "1", {"'sep='", "such as sep=;", "--separator"}},
        {"more than a sign named", "\"SEP=tab\"\r\na\tb\n1\t2\n", "1", {"'SEP=tab'"}},
        {"a letter named", "sep=x\naxb\n1x2\n", "1", {"'sep=x'"}},
        {"impossible separator", "a\n1\n", "", {"cannot separate"}, byQuote},
        {"two meanings of the comma", "a,b\n1,2\n", "", {"in quoted cells only", "semicolons"}, commaTwice},
    };
    for (const Refused& each : table) {
        SCOPED_TRACE(each.what);
        const TemporaryFile file(each.text);
        const std::string error = refusalOf<DataError>([&] { readData(file.path(), each.options); });
        const std::string place = file.path().string() + (each.place.empty() ? "" : ":" + each.place) + ": ";
        EXPECT_TRUE(error.starts_with(place)) << error;
        for (const char* said : each.said)
            EXPECT_NE(error.find(said), std::string::npos) << error;
        if (!each.text.empty()) expectTheSameFromSeveral(each.text, each.options);
    }
}

std::string refusal(const std::filesystem::path& path) {
    return refusalOf<DataError>([&] { readData(path); });
}

TEST(ReadErrors, FilesThatCannotBeOpened) {
    EXPECT_NE(refusal("/no/such/file.csv").find("/no/such/file.csv: there is no such file"),
              std::string::npos);
    EXPECT_NE(refusal(std::filesystem::temp_directory_path()).find("this is a folder"), std::string::npos);
    EXPECT_NE(refusal("/dev/null").find("device"), std::string::npos);
    const TemporaryFile whole("a,b\n1,2\n");
    EXPECT_EQ(refusal(whole.path().string() + '\0' + ".csv"),
              whole.path().string() + "\\0.csv: the name has a NUL character (\\0); leave it out");
    const TemporaryFile locked("a,b\n1,2\n");
    chmod(locked.path().c_str(), 0);
    if (geteuid() != 0) { // the superuser may read everything
        EXPECT_NE(refusal(locked.path()).find("permissions"), std::string::npos);
    }
}

/// They are recognised by their first bytes, whatever their names, and by their ending.
TEST(ReadErrors, OtherFormatsAreNamedForWhatTheyAre) {
    using namespace std::string_literals;
    struct Format {
        std::string bytes;
        const char* ending;
        const char* said;
    };
    const std::string zip = "PK\x03\x04\x14\0\x06\0"s;
    const std::vector<Format> table{
        {zip + "[Content_Types].xml...xl/workbook.xml", ".csv", "a workbook (.xlsx)"},
        {zip + "[Content_Types].xml", ".XLSX", "a workbook (.xlsx)"},
        {zip + "mimetypeapplication/vnd.oasis.opendocument.spreadsheet", "", "a workbook (.ods)"},
        {zip + "data.csv", ".csv", "an archive (.zip)"},
        {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1\0"s, ".csv", "an old workbook (.xls)"},
        {"text", ".SAV", "an SPSS file (.sav)"},
        {std::string(12, '\0') + "\xC2\xEA\x81\x60", "", "a SAS file (.sas7bdat)"},
        {"X\n\0\0\0\x03"s, ".csv", "an object of R (.rds)"},
        {"PAR1\x15\x04", "", "a Parquet file"},
        {"BZh91AY&SY\x01", ".csv", "bzip2 (.bz2), which cannot be read; unpack it first"},
        {"\n<!DOCTYPE HTML>", ".xls", "a web page (HTML)"},
        {"\xEF\xBB\xBF<?xml version=\"1.0\"?>", ".csv", "an XML file"},
        {"[\n  {\"time\": 1}]", ".csv", "a JSON file"},
        {"\xFF\xFE\n\0,\0b\0"s, "", "coded in UTF-16; save the file as UTF-8"},
        {"\xFE\xFF\0\n\0,\0b"s, "", "coded in UTF-16"},
        {"t\0,\0s\0\n\0+\0,\0-\0"s, "", "coded in UTF-16"},
        {"\0t\0,\0s\0\n\0+\0,\0-"s, "", "coded in UTF-16"},
        {"\xFF\xFE\0\0t\0\0\0"s, "", "coded in UTF-32"},
    };
    for (const Format& each : table) {
        const TemporaryFile file(each.bytes, each.ending);
        EXPECT_NE(refusal(file.path()).find(each.said), std::string::npos) << refusal(file.path());
    }
    for (const char* name : {"PAR1", "BZh", "[a]", "<b>"})
        EXPECT_EQ(dump(readText(std::string(name) + ",b\n1,2\n")), std::string(name) + " N: 1 | b N: 2");
}

TEST(ReadErrors, LimitsOfSize) {
    EXPECT_EQ(refusalOf<DataError>([] {
                  readTuned("a\n1\n2\n3\n", {1, 100, 2});
              }),
              "data.csv: the file has more than 2 cases, which is the limit; split the file");
    EXPECT_EQ(readTuned("a\n1\n2\n3\n", {1, 100, 3}).caseCount(), 3);
    const std::string wide(32766, ',');
    EXPECT_THROW(readText("x" + wide + "\n1" + wide + "\n"), DataError);
}

TEST(ReadErrors, AReaderAskedToStopStops) {
    std::stop_source source;
    ReadOptions options;
    options.stop = source.get_token();
    EXPECT_EQ(readText("a\n1\n", options).caseCount(), 1);
    source.request_stop();
    EXPECT_THROW(readText("a\n1\n", options), ReadingStopped);
    EXPECT_THROW(computeVariable(readText("a\n1\n"), {"x", "a"}, options.stop), ReadingStopped);
    EXPECT_THROW(readText("a\n1\n2,3\n", options), ReadingStopped) << "what is wrong with it does not matter";
}

} // namespace
} // namespace korvana::test
