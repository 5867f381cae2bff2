#include <array>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "host/results/CsvWriter.h"
#include "host/results/JsonWriter.h"
#include "host/results/TextWriter.h"
#include "host/results/Utf8.h"
#include "tests/host/results/Books.h"
#include "tests/support/CsvGrid.h"

namespace korvana {
namespace {

using test::smallBook;
using test::smallSheet;

TEST(Spreadsheet, CopiesWhatAModuleHandsOver) {
    std::array<double, 2> numbers{1.5, test::notANumber};
    std::array<std::uint8_t, 2> index{1, 0};
    const std::array<std::string_view, 2> texts{"no", "yes"};
    ozm::SheetSpec spec{"T", {"note"}, {}, {}};
    spec.columns.push_back({"A", "", ozm::CellFormat::fixed(2), std::span<const double>(numbers)});
    spec.columns.push_back({"B", "b", {}, ozm::DictionaryCells{index, texts}});
    // Cells that are copied are not needed any more, those of the other columns are.
    spec.columns[0].copied = [&] { numbers.fill(0); };
    spec.columns[1].copied = [&] { index.fill(0); };
    const Spreadsheet sheet = Spreadsheet::fromSpec(spec);
    EXPECT_EQ(numbers[0] + index[0], 0);
    EXPECT_EQ(sheet.rowCount(), 2U);
    EXPECT_EQ(sheet.cellText(0, 0), "1.50");
    EXPECT_EQ(sheet.cellText(1, 0), "--");
    EXPECT_EQ(sheet.cellText(0, 1), "yes");
    EXPECT_EQ(sheet.columns[1].heading(), "B b");
    EXPECT_EQ(sheet.cell(2, 0).kind, Spreadsheet::Cell::Kind::Empty);
    EXPECT_EQ(sheet.cell(0, 9).kind, Spreadsheet::Cell::Kind::Empty);
}

TEST(ResultsBook, OutputsHaveNamesForPrograms) {
    ResultsBook book;
    const auto made = [](const char* id) {
        auto origin = std::make_shared<OutputOrigin>();
        origin->id = id;
        return origin;
    };
    book.append(Report{"", {}, made("Summary")});
    book.append(Chart{{}, made("Summary")});
    for (const char* id : {"Summary", "Tables", "Tables"})
        book.append(Spreadsheet{}).origin = made(id);
    book.append(Report{});
    const std::vector<std::string> expected{"Summary", "Summary", "Summary", "Tables", "Tables-2", ""};
    EXPECT_EQ(outputIds(book), expected);
}

TEST(TextWriter, AlignsATable) {
    Spreadsheet sheet = smallSheet();
    sheet.columns.pop_back();
    sheet.rowHeadings[1] = "C\xC3\xA4se 2"; // two bytes, one place
    std::ostringstream out;
    writeText(sheet, out);
    EXPECT_EQ(out.str(), "Survival function\n"
                         "-----------------\n"
                         "Greenwood's standard error.\n"
                         "\n"
                         "         Survival   Number  Status    Cumulatv\n"
                         "             Time  at Risk            Survival\n"
                         "-------  --------  -------  --------  --------\n"
                         "Case 1      1.000       60  complete  0.333333\n"
                         "C\xC3\xA4se 2     10.500      -59  censored       inf\n"
                         "Case 17        --        8  --           1e-09\n");
}

TEST(TextWriter, ColumnsHoldTheirWidestNumber) {
    // Widths of fixed columns come from the extremes: negative numbers, rounding up, exponents and empties
    // included.
    for (const auto format :
         {ozm::CellFormat::fixed(2), ozm::CellFormat::integer(), ozm::CellFormat::general()}) {
        Spreadsheet sheet;
        sheet.columns.push_back(
            {"x", "", format,
             std::vector<double>{-9.999, 99.996, -1234.5, 1e20, -test::infinite, test::notANumber}});
        sheet.columns.push_back(
            {"y", "", format, std::vector<double>{0.001, -0.001, 5, 6, 7}}); // one cell short
        std::ostringstream out;
        writeText(sheet, out);
        std::istringstream in(out.str());
        std::set<std::size_t> widths;
        int lines = 0;
        for (std::string line; std::getline(in, line); ++lines)
            widths.insert(line.size());
        EXPECT_EQ(lines, 8);
        EXPECT_EQ(widths.size(), 1U) << out.str();
    }
}

TEST(TextWriter, NotesStandAboveATableAndFootnotesBelow) {
    Spreadsheet sheet;
    sheet.notes = {"above"};
    sheet.footnotes = {"below", "further below"};
    sheet.columns.push_back({"heading", "", {}, std::vector<double>{12.5}, "", ""});
    std::ostringstream out;
    writeText(sheet, out);
    EXPECT_EQ(out.str(), "above\n\nheading\n-------\n   12.5\n\nbelow\nfurther below\n");
}

TEST(TextWriter, AwkwardTextsStayOnTheirLines) {
    std::ostringstream out;
    writeText(smallBook(), out);
    for (const char c : out.str())
        EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20);
    EXPECT_NE(out.str().find("Warning 14152: The last time is censored.\n  group 1\n"), std::string::npos);
    EXPECT_NE(out.str().find("[x: Survival time; y: Proportion surviving] - Estimate, Bounds, Censored"),
              std::string::npos);

    std::ostringstream quiet;
    writeText(smallBook(), quiet, {false, false});
    EXPECT_EQ(quiet.str().find("14152"), std::string::npos);
    EXPECT_EQ(quiet.str().find("Iterations"), std::string::npos);
}

TEST(JsonWriter, HoldsTheWholeBook) {
    std::ostringstream out;
    writeJson(smallBook(), out);
    const nlohmann::json json =
        nlohmann::json::parse(out.str()); // throws on anything malformed, invalid UTF-8 too
    EXPECT_EQ(json["analysis"], "Kaplan-Meier");
    EXPECT_EQ(json["status"], 0);
    EXPECT_EQ(json["messages"][0], (nlohmann::json{{"id", 14152},
                                                   {"text", "The last time is censored."},
                                                   {"detail", "group 1"},
                                                   {"severity", "warning"}}));
    EXPECT_EQ(json["iterations"], nlohmann::json({"1  -120.5"}));
    EXPECT_EQ(json["notes"].size(), 1U);
    ASSERT_EQ(json["reports"].size(), 2U);
    EXPECT_EQ(json["reports"][0]["lines"][0], "Cases 60");
    const std::string kept = "<&\"'>,\r\n\x1b[1m \xC3\xA4 \xF0\x9D\x84\x9E \xEF\xBF\xBD\xEF\xBF\xBD";
    EXPECT_EQ(json["reports"][0]["lines"][2], kept);

    const nlohmann::json& sheet = json["spreadsheets"].at(0);
    EXPECT_EQ(sheet["columns"][0], nlohmann::json({"Survival", "Time"}));
    EXPECT_EQ(sheet["rows"].size(), 3U);
    EXPECT_EQ(sheet["rows"][0]["heading"], "Case 1");
    EXPECT_EQ(sheet["rows"][0]["cells"],
              nlohmann::json({1, 60, "complete", 1.0 / 3.0, "a,b"})); // to the last bit
    EXPECT_EQ(sheet["rows"][1]["cells"][3], nullptr);                 // infinite
    EXPECT_EQ(sheet["rows"][2]["cells"], nlohmann::json({nullptr, 8, nullptr, 1e-9, kept}));

    const nlohmann::json& chart = json["charts"].at(0);
    EXPECT_EQ(chart["kind"], "step");
    EXPECT_EQ(chart["yAxis"], "Proportion surviving");
    EXPECT_EQ(chart["series"][2]["role"], "upper");
    EXPECT_EQ(chart["series"][3]["style"], "markers");
    EXPECT_EQ(chart["series"][3]["x"], nlohmann::json({3, 6}));
}

TEST(JsonWriter, EmptyCellsOfAnyKindAreNull) {
    ResultsBook book;
    Spreadsheet& sheet = book.append(Spreadsheet{});
    sheet.columns.push_back({"texts", "", {}, std::vector<std::string>{"", "-"}});
    sheet.columns.push_back({"words", "", {}, Spreadsheet::Dictionary{{1, 0}, {"+", ""}}});
    sheet.columns.push_back({"numbers", "", {}, std::vector<double>{NAN, 2}});
    sheet.columns.push_back({"short", "", {}, std::vector<std::int32_t>{}});
    std::ostringstream out;
    writeJson(book, out);
    const nlohmann::json rows = nlohmann::json::parse(out.str())["spreadsheets"][0]["rows"];
    EXPECT_EQ(rows[0]["cells"], nlohmann::json({nullptr, nullptr, nullptr, nullptr}));
    EXPECT_EQ(rows[1]["cells"], nlohmann::json({"-", "+", 2.0, nullptr}));
}

TEST(CsvWriter, QuotesAndNamesColumns) {
    Spreadsheet sheet = smallSheet();
    sheet.columns.push_back({"Survival", "Time", {}, std::vector<double>{1, 2, 3}});
    sheet.columns.push_back({" ", "", {}, std::vector<std::string>{" blank", "", "-"}});
    sheet.columns.push_back({"Row", "", {}, std::vector<double>{}});
    std::ostringstream out;
    writeCsv(sheet, out);
    const auto records = test::readCsvGrid(out.str());
    ASSERT_EQ(records.size(), 4U);
    EXPECT_TRUE(out.str().ends_with("\r\n"));
    EXPECT_EQ(records[0], (std::vector<std::string>{"Row", "Survival Time", "Number at Risk", "Status",
                                                    "Cumulatv Survival", "Label", "Survival Time 2",
                                                    "Column 7", "Row 2"}));
    EXPECT_EQ(records[1], (std::vector<std::string>{"Case 1", "1", "60", "complete", "0.3333333333333333",
                                                    "a,b", "1", " blank", ""}));
    EXPECT_EQ(records[2][5], "say \"no\"");
    EXPECT_EQ(records[3][1], "");
    EXPECT_EQ(records[3][5], "<&\"'>,\r\n\x1b[1m \xC3\xA4 \xF0\x9D\x84\x9E \xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_NE(out.str().find("\" blank\""), std::string::npos);
}

TEST(Text, LeavesOutATableThatRepeatsTheReport) {
    ResultsBook book;
    book.append(Report{"Summary", {"valid: 21"}});
    Spreadsheet& counts = book.append(Spreadsheet{});
    counts.title = "Counts";
    counts.repeatsReport = true;
    std::ostringstream out;
    writeText(book, out);
    EXPECT_EQ(out.str().find("Counts"), std::string::npos);
    std::ostringstream json;
    writeJson(book, json);
    EXPECT_NE(json.str().find("Counts"), std::string::npos);
}

} // namespace
} // namespace korvana
