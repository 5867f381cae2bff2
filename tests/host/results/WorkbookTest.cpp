#include <cstdlib>

#include "host/results/XlsxWriter.h"
#include "tests/host/results/Books.h"
#include "tests/host/results/FilesFixture.h"

namespace korvana {
namespace {

TEST_F(Files, WorkbookHoldsNumbersUnderHeadingsAndLegalSheetNames) {
    ResultsBook book = test::smallBook();
    for (const char* title :
         {"SURVIVAL FUNCTION", "A/B: 'of' [all] the *tables* with a very long title",
          "One & Two's Test of Everything, Scores", "One & Two's Test of Everything, Statistics"})
        book.append(test::smallSheet()).title = title;
    Spreadsheet& last = book.append(test::smallSheet());
    last.title = " Survival function    ";
    last.columns[1].heading1 = " Number ";
    last.columns[3].title = "Cumulative survival";
    book.append(Spreadsheet{}); // of nothing
    const fs::path target = directory_ / "results.xlsx";
    writeXlsx(book, target);
    const fs::path unpacked = directory_ / "unpacked"; // by Python's standard library, which checks it
    const std::string command = "python3 -m zipfile -e '" + target.string() + "' '" + unpacked.string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const auto expectIn = [&](const char* part, std::initializer_list<const char*> texts) {
        const std::string all = read(unpacked / part);
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
              ">Status<", ">Survival function<", ">Cumulative survival<", ">Greenwood's standard error.<",
              "<pane xSplit=\"1\" ySplit=\"4\"", "<row r=\"4\" ht=\"30\" customHeight=\"1\">"});
}

} // namespace
} // namespace korvana
