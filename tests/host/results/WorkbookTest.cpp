#include <array>
#include <cstdio>

#include "host/results/XlsxWriter.h"
#include "tests/host/results/Books.h"
#include "tests/host/results/FilesFixture.h"

namespace korvana {
namespace {

/// A part of a workbook, unpacked by Python's standard library.
std::string partOf(const fs::path& workbook, const std::string& part) {
    const std::string command =
        "python3 -c \"import sys,zipfile;z=zipfile.ZipFile(sys.argv[1]);assert z.testzip() is None;"
        "sys.stdout.write(z.read(sys.argv[2]).decode())\" '" +
        workbook.string() + "' '" + part + "'";
    std::string text;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) return {};
    std::array<char, 4096> buffer{};
    for (std::size_t size = 0; (size = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        text.append(buffer.data(), size);
    return ::pclose(pipe) == 0 ? text : std::string();
}

TEST_F(Files, WorkbookHoldsNumbersAndLegalSheetNames) {
    if (std::system("python3 -c 'import zipfile'") != 0)
        GTEST_SKIP() << "needs python3 to unpack the workbook";
    ResultsBook book = test::smallBook();
    book.append(test::smallSheet()).title = "SURVIVAL FUNCTION";
    book.append(test::smallSheet()).title = "A/B: 'of' [all] the *tables* with a very long title";
    book.append(test::smallSheet()).title = "One & Two's Test of Everything, Scores";
    book.append(test::smallSheet()).title = "One & Two's Test of Everything, Statistics";
    book.append(Spreadsheet{});
    const fs::path target = directory_ / "results.xlsx";
    writeXlsx(book, target);
    const std::string sheets = partOf(target, "xl/workbook.xml");
    for (const char* name :
         {"\"Report\"", "\"Survival function\"", "\"SURVIVAL FUNCTION 2\"",
          "\"A B 'of' all the tables with a\u2026\"", "\"One &amp; Two's Test of\u2026, Scores\"",
          "\"One &amp; Two's Test\u2026, Statistics\"", "\"Table\""})
        EXPECT_NE(sheets.find(name), std::string::npos) << name << " in " << sheets;
    const std::string cells = partOf(target, "xl/worksheets/sheet2.xml");
    EXPECT_NE(cells.find("<v>0.3333333333333333"), std::string::npos) << cells;
    EXPECT_NE(cells.find("<v>10.5</v>"), std::string::npos);
    EXPECT_NE(cells.find(">censored<"), std::string::npos);
    EXPECT_NE(partOf(target, "xl/styles.xml").find("formatCode=\"0.000\""), std::string::npos);
    EXPECT_NE(partOf(target, "xl/worksheets/sheet1.xml").find("Cases 60"), std::string::npos);
}

TEST_F(Files, WorkbookHeadsItsTablesAsPeopleWrite) {
    if (std::system("python3 -c 'import zipfile'") != 0)
        GTEST_SKIP() << "needs python3 to unpack the workbook";
    ResultsBook book;
    Spreadsheet& sheet = book.append(test::smallSheet());
    sheet.columns[1].heading1 = " Number ";
    sheet.columns[3].title = "Cumulative survival";
    writeXlsx(book, directory_ / "results.xlsx");
    const std::string cells = partOf(directory_ / "results.xlsx", "xl/worksheets/sheet2.xml");
    for (const char* heading : {">Survival Time<", ">Number at Risk<", ">Status<", ">Cumulative survival<"})
        EXPECT_NE(cells.find(heading), std::string::npos) << heading << " in " << cells;
    EXPECT_NE(cells.find(">Greenwood's standard error.<"), std::string::npos);
    // Title, note, an empty line and the headings, in two lines, stay in sight.
    EXPECT_NE(cells.find("<pane xSplit=\"1\" ySplit=\"4\""), std::string::npos) << cells;
    EXPECT_NE(cells.find("<row r=\"4\" ht=\"30\" customHeight=\"1\">"), std::string::npos) << cells;
}

} // namespace
} // namespace korvana
