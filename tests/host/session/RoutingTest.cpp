// Where the outputs of scripts' actions go besides the book.

#include "tests/host/session/TinyAnalysis.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace tiny {
namespace {

namespace fs = std::filesystem;
using List = AutomationValue::List;

/// The results dialog, open, over a sum of 7; files go into a folder of their own.
struct RoutingTest : TinySession {
    RoutingTest() : folder(fs::temp_directory_path() / ("korvana-routing-" + std::to_string(getpid()))) {
        fs::create_directories(folder);
        session.start();
        specify(1);
    }
    ~RoutingTest() override { fs::remove_all(folder); }

    AutomationObject script() { return *session.currentDialog(); }
    AutomationResult write() { return script().Call("Write"); }
    std::string file(const char* name) const { return (folder / name).string(); }
    std::string read(const char* name) const {
        std::ifstream in(folder / name);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    std::size_t files() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
    }
    static std::size_t count(const std::string& text, const std::string& part) {
        std::size_t found = 0;
        for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
            ++found;
        return found;
    }

    fs::path folder;
};

TEST_F(RoutingTest, AFileHoldsTheOutputsOfTheDialogSinceItWasNamed) {
    ASSERT_TRUE(write().ok);
    EXPECT_EQ(files(), 0U) << "no file is named";
    put("ResultsSaveFileName", file("out.txt"));
    for (const std::size_t times : {1U, 2U}) {
        EXPECT_EQ(write().value, AutomationValue{true});
        EXPECT_EQ(count(read("out.txt"), "7.000000"), times) << "written anew, with all of them";
    }
    put("ResultsSaveFileName", file("tables.csv"));
    write();
    write();
    EXPECT_EQ(read("tables.csv"), "Total\r\n7\r\n");
    EXPECT_EQ(read("tables-2.csv"), "Total\r\n7\r\n") << "a file of one table each";
    EXPECT_EQ(files(), 3U);
    EXPECT_EQ(session.book().outputs.size(), 15U) << "the book has everything";

    put("ResultsOption", "book");
    write();
    EXPECT_FALSE(fs::exists(folder / "tables-3.csv"));
    put("ResultsOption", "book and file");
    put("ResultsSaveFileName", "");
    EXPECT_TRUE(write().ok);
    EXPECT_EQ(files(), 3U);
}

TEST_F(RoutingTest, ActionsAreIncludedOrExcluded) {
    put("ResultsSaveFileName", file("out.json"));
    put("ResultsSelection", List{"Throw"});
    write();
    EXPECT_EQ(files(), 0U) << "not among those that are saved";
    put("ResultsSelectionOption", "exclude");
    write();
    EXPECT_EQ(files(), 1U);
    const AutomationResult wrong = script().Put("ResultsSelection", List{"Write", "Wirte"});
    EXPECT_EQ(wrong.error, "Exception in analysis method: CResultsDlg::put_ResultsSelection");
    EXPECT_EQ(wrong.detail, "'Wirte' is no action of this dialog; it has Write, Throw");
    EXPECT_EQ(script().Get("ResultsSelection").value, AutomationValue{List{"Throw"}}) << "nothing changed";
}

TEST_F(RoutingTest, WhatCannotBeSavedIsSaidAndStaysInTheBook) {
    for (const auto& [value, why] :
         {std::pair{file("out"), "has no suffix that names its format; known are json, txt"},
          {file("out.doc"), "unknown format 'doc'"},
          {file("a") + '\0' + ".txt", "a\\0.txt': the name has a NUL character"},
          {file("nowhere/out.txt"), "nowhere' is no directory"}}) {
        const AutomationResult refused = script().Put("ResultsSaveFileName", value);
        EXPECT_NE(refused.detail.find(why), std::string::npos) << refused.detail;
    }
    fs::create_directories(folder / "dir.txt");
    EXPECT_FALSE(script().Put("ResultsSaveFileName", file("dir.txt")).ok);

    put("ResultsSaveFileName", file("table.csv"));
    put("ResultsOutputFields", List{"sum"});
    put("ResultsSelection", List{"Write"});
    EXPECT_EQ(write().detail, "the output is in the book, but not in '" + file("table.csv") +
                                  "': it has none of the columns of ResultsOutputFields; it has Total");
    EXPECT_FALSE(fs::exists(folder / "table.csv"));

    put("ResultsOutputFields", List{});

    fs::create_directories(folder / "gone");
    put("ResultsSaveFileName", file("gone/out.txt"));
    fs::remove(folder / "gone");
    const std::size_t before = session.book().outputs.size();
    const AutomationResult unwritten = write();
    EXPECT_EQ(unwritten.error, "Exception in analysis method: CResultsDlg::Write");
    EXPECT_NE(unwritten.detail.find("the output is in the book, but cannot write"), std::string::npos)
        << unwritten.detail;
    EXPECT_EQ(session.book().outputs.size(), before + 3);
}

TEST_F(RoutingTest, EachDialogHasItsOwn) {
    put("ResultsSaveFileName", file("out.txt"));
    put("ResultsValues", "shown");
    call("Cancel");
    EXPECT_EQ(script().Get("ResultsSaveFileName").value, AutomationValue{""});
    EXPECT_EQ(script().Get("ResultsValues").value, AutomationValue{"full"});
    EXPECT_EQ(script().Put("ResultsSelection", List{"Write"}).detail,
              "'Write' is no action of this dialog; it has Leave");
}

TEST(SheetPart, HasTheRowsAndColumnsThatAreWanted) {
    using korvana::Spreadsheet;
    Spreadsheet sheet;
    sheet.rowHeadings = {"a", " b ", "c"};
    sheet.columns.push_back(
        {"Group", "code", CellFormat::general(5), std::vector<std::int32_t>{1, 2, 3}, "group"});
    sheet.columns.push_back(
        {"Mean", "", CellFormat::fixed(2), std::vector<double>{1.234, NAN, 5.678}, "mean"});
    sheet.columns.push_back(
        {"Mark", "", CellFormat::general(5), Spreadsheet::Dictionary{{0, 1, 9}, {"x", "y"}}, "mark"});

    const auto rows = [&](const std::vector<std::string>& variables, const List& codes) {
        const auto part = korvana::partOf(sheet, {.variables = variables, .codes = codes});
        std::string headings;
        for (const std::string& heading : part->rowHeadings)
            headings += heading;
        EXPECT_EQ(part->rowCount(), part->rowHeadings.size());
        return headings;
    };
    EXPECT_EQ(rows({"group"}, {1, 3.0, "x"}), "ac");
    EXPECT_EQ(rows({"Group code", "mark"}, {3, "y"}), " b c") << "any of the columns, by heading or name";
    EXPECT_EQ(rows({"Row"}, {"b", 1}), " b ");
    EXPECT_EQ(rows({"group"}, {}), "a b c") << "no values: all rows";
    EXPECT_EQ(rows({"stratum"}, {1}), "a b c") << "without such a column all rows are taken";
    EXPECT_EQ(rows({"mean"}, {77}), "");

    const auto part = korvana::partOf(
        sheet, {.fields = {"mark", "mean"}, .variables = {"group"}, .codes = {3, 1}, .rounded = true});
    ASSERT_EQ(part->columns.size(), 2U) << "in the order asked for, and by a column that is not among them";
    EXPECT_EQ(part->cell(0, 0).text, "x");
    EXPECT_EQ(part->cell(1, 0).kind, Spreadsheet::Cell::Kind::Empty);
    EXPECT_EQ(part->cell(0, 1).number, 1.23);
    EXPECT_EQ(part->cell(1, 1).number, 5.68);
    EXPECT_EQ(korvana::partOf(sheet, {})->cell(0, 1).number, 1.234);
    EXPECT_FALSE(korvana::partOf(sheet, {.fields = {"median"}}));
}

} // namespace
} // namespace tiny
