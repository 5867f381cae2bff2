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

TEST_F(Files, WorkbookHoldsNumbersUnderHeadingsAndLegalSheetNames) {
    if (std::system("python3 -c 'import zipfile'") != 0)
        GTEST_SKIP() << "needs python3 to unpack the workbook";
    ResultsBook book = test::smallBook();
    for (const char* title :
         {"SURVIVAL FUNCTION", "A/B: 'of' [all] the *tables* with a very long title",
          "One & Two's Test of Everything, Scores", "One & Two's Test of Everything, Statistics"})
        book.append(test::smallSheet()).title = title;
    Spreadsheet& last = book.append(test::smallSheet());
    last.title.clear();
    last.columns[1].heading1 = " Number ";
    last.columns[3].title = "Cumulative survival";
    const fs::path target = directory_ / "results.xlsx";
    writeXlsx(book, target);
    const auto expectIn = [&](const char* part, std::initializer_list<const char*> texts) {
        const std::string all = partOf(target, part);
        for (const char* text : texts)
            EXPECT_NE(all.find(text), std::string::npos) << text << " in " << all;
    };
    expectIn("xl/workbook.xml",
             {"\"Report\"", "\"Survival function\"", "\"SURVIVAL FUNCTION 2\"",
              "\"A B 'of' all the tables with a\u2026\"", "\"One &amp; Two's Test of\u2026, Scores\"",
              "\"One &amp; Two's Test\u2026, Statistics\"", "\"Table\""});
    expectIn("xl/worksheets/sheet1.xml", {"Cases 60"});
    expectIn("xl/styles.xml", {"formatCode=\"0.000\""});
    // Headings as people write them; title, note, an empty line and the headings, in two lines, stay in
    // sight.
    expectIn("xl/worksheets/sheet7.xml",
             {"<v>0.3333333333333333", "<v>10.5</v>", ">censored<", ">Survival Time<", ">Number at Risk<",
              ">Status<", ">Cumulative survival<", ">Greenwood's standard error.<",
              "<pane xSplit=\"1\" ySplit=\"4\"", "<row r=\"4\" ht=\"30\" customHeight=\"1\">"});
}

} // namespace
} // namespace korvana
