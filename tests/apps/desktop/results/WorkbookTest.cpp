#include <QPrinter>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

#include "apps/desktop/results/ChartView.h"
#include "apps/desktop/results/ExportDialog.h"
#include "apps/desktop/results/OutputExport.h"
#include "apps/desktop/results/Printing.h"
#include "apps/desktop/results/ReportView.h"
#include "apps/desktop/results/Workbook.h"
#include "tests/apps/desktop/Modals.h"
#include "tests/host/results/Books.h"

namespace korvana::desktop {
namespace {

std::string contents(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

class WorkbookTest : public testing::Test {
protected:
    WorkbookTest() {
        workbook_.resize(900, 600);
        workbook_.show();
    }

    /// What is shown at the right.
    template <class View>
    View* shown() {
        for (View* view : workbook_.findChildren<View*>())
            if (view->isVisible()) return view;
        return nullptr;
    }
    /// Adds a run and makes the window ready for keys.
    int add(std::shared_ptr<const ResultsBook> book = std::make_shared<ResultsBook>(test::smallBook())) {
        const int run = workbook_.addRun(std::move(book), "Run");
        workbook_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&workbook_));
        return run;
    }
    /// Writes the run; `problems` gets what could not be written. Returns the number of files.
    std::size_t write(int run, const char* name, FormatSet formats) {
        problems_.clear();
        return workbook_.writeRun(run, folder() / name, formats, problems_);
    }
    /// Edits the chart that is shown.
    void retitle() {
        ChartEdits edits;
        edits.title = "Edited title";
        shown<ChartView>()->setEdits(edits);
    }
    std::filesystem::path folder() const { return folder_.path().toStdString(); }

    /// Exports the whole run into a folder of the test.
    template <class... Answers>
    void exportRunTo(const QString& name, Answers... answers) {
        answering([this] { workbook_.exportRunAction()->trigger(); },
                  [path = folder_.filePath(name)](ExportDialog& dialog) {
                      dialog.findChild<QLineEdit*>()->setText(path);
                      QTest::keyClick(&dialog, Qt::Key_Enter);
                  },
                  answers...);
    }

    Workbook workbook_;
    QTemporaryDir folder_;
    QStringList problems_;
};

TEST_F(WorkbookTest, ABookIsShownWhileItGrows) {
    const auto book = std::make_shared<ResultsBook>();
    EXPECT_TRUE(workbook_.isEmpty());
    const int run = workbook_.addRun(book, "First run");
    EXPECT_EQ(workbook_.currentOutput(), -1);
    book->append(Report{"Summary", {"60 cases"}});
    workbook_.outputAdded(run);
    ASSERT_NE(shown<ReportView>(), nullptr);
    EXPECT_EQ(shown<ReportView>()->text(), "60 cases");

    Spreadsheet repeats = test::smallSheet();
    repeats.repeatsReport = true;
    book->append(std::move(repeats));
    workbook_.outputAdded(run);
    EXPECT_EQ(workbook_.currentOutput(), 0); // the report says the same
    book->append(Chart{test::stepChart()});
    workbook_.outputAdded(run);
    EXPECT_EQ(workbook_.currentOutput(), 2);
    EXPECT_NE(shown<ChartView>(), nullptr);

    std::get<Report>(book->outputs[0]).lines.push_back("2 left out");
    workbook_.outputChanged(run);
    workbook_.showRun(run);
    EXPECT_EQ(shown<ReportView>()->text(), "60 cases\n2 left out");
}

TEST_F(WorkbookTest, WhatIsShownIsCopiedAndTheRunListsItsMessages) {
    const auto book = std::make_shared<ResultsBook>(test::smallBook());
    const int run = add(book);
    auto* tree = workbook_.findChild<QTreeWidget*>();
    tree->setFocus();
    QTest::keyClick(tree, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), shown<ReportView>()->text()); // what is shown
    QTest::keyClick(tree, Qt::Key_Up); // from the first output to the run
    EXPECT_EQ(workbook_.currentOutput(), -1);
    const QString text = shown<ReportView>()->text();
    EXPECT_TRUE(text.contains("Warning 14152: The last time is censored.\n  group 1"));
    EXPECT_FALSE(workbook_.exportOutputAction()->isEnabled());
    book->messages.push_back({7, "One more.", "", {}});
    workbook_.outputAdded(run);
    EXPECT_TRUE(shown<ReportView>()->text().contains("Note 7: One more."));
}

TEST_F(WorkbookTest, WhatIsRemovedStaysAwayWhileItsRunGoesOnAndComesBackOnUndo) {
    const auto book = std::make_shared<ResultsBook>(test::smallBook());
    const int run = add(book);
    auto* tree = workbook_.findChild<QTreeWidget*>();
    const auto listed = [tree] {
        QStringList names;
        for (int at = 0; at < tree->topLevelItemCount(); ++at)
            for (int row = 0; row < tree->topLevelItem(at)->childCount(); ++row)
                names += tree->topLevelItem(at)->child(row)->text(0);
        return names;
    };
    const QStringList all = listed();
    const auto without = [&all](const QList<qsizetype>& places) {
        QStringList rest;
        for (qsizetype place = 0; place < all.size(); ++place)
            if (!places.contains(place)) rest += all[place];
        return rest;
    };
    tree->setFocus();
    workbook_.showOutput(run, 1);
    QTest::keyClick(tree, Qt::Key_Delete);
    EXPECT_EQ(listed(), without({1}));
    EXPECT_EQ(workbook_.currentOutput(), 2); // Delete continues from here
    EXPECT_FALSE(workbook_.showOutput(run, 1));
    QTest::keyClick(tree, Qt::Key_Delete);
    EXPECT_EQ(listed(), without({1, 2}));
    book->append(Report{"Later", {"more"}});
    workbook_.outputAdded(run);
    workbook_.outputChanged(run);
    EXPECT_EQ(listed(), without({1, 2}) << "Later");
    tree->setCurrentItem(tree->topLevelItem(0));
    EXPECT_FALSE(shown<ReportView>()->text().contains(all[1]));
    EXPECT_EQ(write(run, "left", FormatSet{}.add(OutputFormat::Svg)), 1U);
    workbook_.activateWindow(); // the event loop has run meanwhile
    EXPECT_TRUE(QTest::qWaitForWindowActive(&workbook_));
    tree->setFocus();
    QTest::keyClick(tree, Qt::Key_Delete); // the run
    EXPECT_TRUE(workbook_.isEmpty());
    book->append(Report{"Last", {"more"}});
    workbook_.outputAdded(run);
    EXPECT_EQ(listed(), QStringList{"Last"});
    for (int back = 0; back < 4; ++back) // once more than needed
        QTest::keyClick(tree, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(listed(), QStringList(all) << "Later"
                                         << "Last");
}

TEST_F(WorkbookTest, RunsRemovedLongAgoLeaveTheMemory) {
    std::vector<std::weak_ptr<const ResultsBook>> books;
    std::vector<int> runs;
    for (int i = 0; i < 3; ++i) {
        auto book = std::make_shared<const ResultsBook>(test::smallBook());
        books.push_back(book);
        runs.push_back(workbook_.addRun(std::move(book), "Run"));
    }
    for (const int run : runs)
        workbook_.removeRun(run);
    EXPECT_TRUE(books[0].expired());
    workbook_.undo();
    EXPECT_EQ(workbook_.runCount(), 1);
    EXPECT_EQ(workbook_.book(runs[2]), books[2].lock());
}

TEST_F(WorkbookTest, OutputsNotExportedYetAreCounted) {
    const auto book = std::make_shared<ResultsBook>(test::smallBook());
    std::get<Spreadsheet>(book->outputs[1]).repeatsReport = true;
    const int run = add(book);
    EXPECT_EQ(workbook_.unsaved(), 5); // as many as the tree lists
    write(run, "charts", FormatSet{}.add(OutputFormat::Svg));
    EXPECT_EQ(workbook_.unsaved(), 3); // reports and table
    std::ofstream(folder() / "in-the-way") << "a file";
    write(run, "in-the-way", FormatSet::all());
    EXPECT_EQ(workbook_.unsaved(), 3);
    write(run, "all", FormatSet{}.add(OutputFormat::Html));
    EXPECT_EQ(workbook_.unsaved(), 0);
    workbook_.showOutput(run, 2);
    retitle();
    EXPECT_EQ(workbook_.unsaved(), 1);
    book->append(Report{"Later", {}});
    workbook_.outputAdded(run);
    EXPECT_EQ(workbook_.unsaved(), 2);
}

TEST_F(WorkbookTest, TheFilesAnnouncedAsReplacedAreThoseThatAreWritten) {
    ResultsBook book = test::smallBook();
    book.append(Chart{test::stepChart()});
    book.append(Spreadsheet{test::smallSheet()});
    ChartEdits edits;
    edits.title = "Another title";
    int number = 0;
    for (const std::vector<std::size_t>& removed : {std::vector<std::size_t>{}, {1, 2}, {2, 5}}) {
        // Picture files are named the same way in every format, so drawing one is enough.
        for (const std::string_view list :
             {"json", "txt", "csv", "html", "xlsx", "svg", "py", "csv,xlsx,svg,txt,py"}) {
            const FormatSet formats = parseFormats(list);
            const auto target = folder() / std::to_string(++number);
            const std::map<std::size_t, ChartEdits> charts{{5, edits}};
            std::set<std::string> written;
            for (const auto& file : writeBook(withEdits(book, charts, removed), target, formats))
                written.insert(file.filename().string());
            const std::vector<std::string> told = filesToWrite(book, charts, removed, formats);
            EXPECT_EQ(std::set<std::string>(told.begin(), told.end()), written) << number;
        }
    }
}

TEST_F(WorkbookTest, EditsOfAChartSurviveLookingAtOthersAndReachTheFiles) {
    const int run = add();
    workbook_.showOutput(run, 2);
    retitle();
    workbook_.showOutput(run, 0);
    workbook_.showOutput(run, 2);
    EXPECT_EQ(shown<ChartView>()->edits().title, "Edited title");
    EXPECT_EQ(write(run, "out", FormatSet{}.add(OutputFormat::Svg)), 2U);
    EXPECT_TRUE(problems_.isEmpty());
    EXPECT_NE(contents(folder() / "out" / "edited-title.svg").find("Edited title"), std::string::npos);
    // The book stays as the analysis left it.
    EXPECT_EQ(std::get<Chart>(workbook_.book(run)->outputs[2]).info.title, test::stepChart().title);
}

TEST_F(WorkbookTest, EveryOutputIsWrittenInEachOfItsFormats) {
    ResultsBook book = test::smallBook();
    std::get<Spreadsheet>(book.outputs[1]).repeatsReport = true; // it is written if asked for
    for (std::size_t place = 0; place < 3; ++place) {
        for (const OutputFormat format : formatsOf(book.outputs[place])) {
            const auto target = folder() / (std::to_string(place) + "." + endingOf(format));
            writeOutput(book, place, nullptr, format, target);
            EXPECT_GT(contents(target).size(), 50U) << target;
        }
    }
}

TEST_F(WorkbookTest, OneOutputIsExportedInTheFormatOfItsEnding) {
    const int run = add();
    workbook_.showOutput(run, 1);
    QString said;
    const auto read = [&said](QMessageBox& box) {
        said = textOf(box);
        QTest::keyClick(&box, Qt::Key_Enter);
    };
    answering([this] { workbook_.exportOutputAction()->trigger(); }, naming(folder_.filePath("mine.dat")),
              read, naming(folder_.filePath("mine.xlsx")));
    EXPECT_TRUE(said.contains("'mine.dat'") && said.contains(".csv, .xlsx")) << said.toStdString();
    EXPECT_FALSE(std::filesystem::exists(folder() / "mine.dat"));
    EXPECT_EQ(contents(folder() / "mine.xlsx").substr(0, 2), "PK");
}

TEST_F(WorkbookTest, NothingIsReplacedUnasked) {
    const int run = add();
    workbook_.showOutput(run, 1);
    const auto mine = folder() / "mine.csv";
    std::ofstream(mine) << "keep";
    const auto escape = [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); };
    answering([this] { workbook_.exportOutputAction()->trigger(); }, naming(folder_.filePath("mine")), escape,
              escape);
    EXPECT_EQ(contents(mine), "keep");

    std::ofstream(folder() / "report.html") << "keep";
    QString said;
    exportRunTo(
        "",
        [&](QMessageBox& box) {
            said = textOf(box);
            escape(box);
        },
        escape);
    EXPECT_TRUE(said.contains("One file") && said.contains("report.html")) << said.toStdString();
    EXPECT_EQ(contents(folder() / "report.html"), "keep");
    exportRunTo("", [&](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_R, Qt::AltModifier); });
    EXPECT_NE(contents(folder() / "report.html"), "keep");
}

TEST_F(WorkbookTest, AFileThatCannotBeWrittenIsReportedWithItsNameAndAdvice) {
    add();
    std::ofstream(folder() / "in-the-way") << "a file";
    QString written;
    QObject::connect(&workbook_, &Workbook::statusText, [&written](const QString& text) { written += text; });
    QString said;
    answering([this] { EXPECT_FALSE(workbook_.exportRuns()) << "a window would close on it"; },
              [this](ExportDialog& dialog) {
                  dialog.findChild<QLineEdit*>()->setText(folder_.filePath("in-the-way"));
                  dialog.accept();
              },
              [&said](QMessageBox& box) {
                  said = textOf(box);
                  box.accept();
              });
    EXPECT_EQ(written, "");
    EXPECT_TRUE(said.contains("in-the-way") && said.contains("Choose another folder")) << said.toStdString();
    EXPECT_EQ(contents(folder() / "in-the-way"), "a file");
}

TEST(ExportDialogTest, AFormatAndAFolderAreNeeded) {
    ExportDialog dialog("Run", 2);
    const auto accepts = [&](bool format, const char* folder) {
        for (QCheckBox* box : dialog.findChildren<QCheckBox*>())
            box->setChecked(format && box == dialog.findChild<QCheckBox*>());
        dialog.findChild<QLineEdit*>()->setText(folder);
        dialog.accept();
        return dialog.result() == QDialog::Accepted;
    };
    EXPECT_FALSE(accepts(false, "somewhere"));
    EXPECT_FALSE(accepts(true, " "));
    EXPECT_TRUE(accepts(true, "somewhere"));
}

TEST(Printing, ABookGoesOntoPagesAsLongAsItNeeds) {
    const QTemporaryDir folder;
    const auto pagesOf = [&folder](const std::vector<PrintItem>& items) {
        const QString target = folder.filePath("print.pdf");
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(target);
        EXPECT_TRUE(print(printer, items, "Title"));
        const QByteArray bytes = QByteArray::fromStdString(contents(target.toStdString()));
        return bytes.count("/Type /Page\n");
    };
    const std::vector<std::string> lines(200, std::string(300, 'x')); // too wide for any paper
    EXPECT_EQ(pagesOf({std::vector<std::string>{"one line", test::awkwardText}}), 1);
    EXPECT_GE(pagesOf({lines}), 4);
    for (const std::size_t width : {95U, 103U, 110U, 118U}) // set smaller, but not broken
        EXPECT_EQ(pagesOf({std::vector<std::string>(50, std::string(width, 'x'))}), 1) << width;
    EXPECT_EQ(pagesOf({Chart{test::stepChart()}, Chart{test::stepChart()}, Chart{test::stepChart()}}), 2);
    Spreadsheet sheet;
    sheet.columns.push_back({"x", "", {}, std::vector<double>(5000, 1.0)});
    const auto printed = std::get<std::vector<std::string>>(printItem(sheet));
    EXPECT_LT(printed.size(), mostPrintedRows + 10);
    EXPECT_NE(printed.back().find("The first 2000 of 5000 rows"), std::string::npos);
}

} // namespace
} // namespace korvana::desktop
