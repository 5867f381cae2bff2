#include <QtTest>
#include <QtWidgets>
#include <gtest/gtest.h>

#include "apps/desktop/results/ReportView.h"
#include "apps/desktop/results/SheetView.h"
#include "tests/host/results/Books.h"

namespace korvana::desktop {
namespace {

QItemSelection block(const SheetModel& model, int top, int left, int bottom, int right) {
    return {model.index(top, left), model.index(bottom, right)};
}

std::string textOf(const QMimeData& data) {
    return data.text().toStdString();
}

TEST(SheetCopy, CellsAreCopiedAtFullPrecisionOrAsShown) {
    const Spreadsheet sheet = test::smallSheet();
    const SheetModel model(sheet);
    const QItemSelection cells = block(model, 0, 0, 2, 3);
    EXPECT_EQ(textOf(*copiedCells(sheet, cells, {})), "1\t60\tcomplete\t0.3333333333333333\n"
                                                      "10.5\t-59\tcensored\tinf\n"
                                                      "\t8\t\t1e-09\n");
    EXPECT_EQ(textOf(*copiedCells(sheet, cells, {CopyValues::AsShown, true})),
              "\tSurvival Time\tNumber at Risk\tStatus\tCumulatv Survival\n"
              "Case 1\t1.000\t60\tcomplete\t0.333333\n"
              "Case 2\t10.500\t-59\tcensored\tinf\n"
              "Case 17\t\t8\t\t1e-09\n");
    EXPECT_EQ(copiedCells(sheet, {}, {}), nullptr);
}

TEST(SheetCopy, TextsNeverBreakTheTableAndRowsWithoutASelectedCellAreLeftOut) {
    const Spreadsheet sheet = test::smallSheet();
    const SheetModel model(sheet);
    const auto data = copiedCells(sheet, block(model, 0, 4, 2, 4), {});
    EXPECT_EQ(data->text().count('\n'), 3);
    EXPECT_EQ(data->text().count('\t'), 0);
    EXPECT_TRUE(data->html().contains("<td>&lt;&amp;"));
    EXPECT_EQ(data->html().count("<td>"), 3);

    QItemSelection cells = block(model, 0, 0, 0, 0);
    cells.merge(block(model, 2, 1, 2, 1), QItemSelectionModel::Select);
    EXPECT_EQ(textOf(*copiedCells(sheet, cells, {})), "1\t\n\t8\n");
}

TEST(SheetView, ManyFootnotesLeaveTheTableItsRowsAndCanBeScrolled) {
    for (const int notes : {1, 3, 40}) {
        Spreadsheet sheet = test::smallSheet();
        sheet.notes.clear();
        for (int i = 0; i < notes; ++i)
            sheet.footnotes.push_back("Gompertz, weight " + std::to_string(i) +
                                      ": a line needs two closed intervals.");
        SheetView view(sheet);
        view.resize(420, 400);
        view.show();
        QTest::qWait(50);
        auto* table = view.findChild<QTableView*>();
        EXPECT_GE(table->viewport()->height(), 3 * table->rowHeight(0)) << notes;
        QScrollBar* bar = nullptr;
        for (auto* area : view.findChildren<QScrollArea*>()) {
            EXPECT_TRUE(area->isVisible());
            bar = area->verticalScrollBar();
        }
        ASSERT_NE(bar, nullptr);
        EXPECT_EQ(bar->maximum() > 0, notes == 40) << "what fits needs no scroll bar: " << notes;
    }
}

TEST(SheetView, AMillionRowsAreShownWithoutACopy) {
    Spreadsheet sheet;
    std::vector<double> values(1'000'000);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<double>(i);
    sheet.columns.push_back({"Cumulatv", "Survival", ozm::CellFormat::integer(), std::move(values)});
    SheetView view(sheet);
    view.resize(400, 300);
    view.show();
    auto* table = view.findChild<QTableView*>();
    table->scrollToBottom();
    const QModelIndex last = table->model()->index(999'999, 0);
    EXPECT_TRUE(table->viewport()->rect().contains(table->visualRect(last).center()));
    std::get<std::vector<double>>(sheet.columns[0].cells).back() = -7.0;
    EXPECT_EQ(last.data().toString(), "-7"); // the current value, not an earlier one

    EXPECT_EQ(table->model()->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(),
              "Cumulatv\nSurvival");
    EXPECT_GE(table->columnWidth(0), table->fontMetrics().horizontalAdvance("999999"));
    EXPECT_GE(table->verticalHeader()->width(), table->fontMetrics().horizontalAdvance("1000000"));
}

TEST(SheetView, WholeColumnsAreCopiedWithTheirHeadings) {
    const Spreadsheet sheet = test::smallSheet();
    SheetView view(sheet);
    view.resize(600, 300);
    view.show();
    auto* table = view.findChild<QTableView*>();
    const int x = table->columnViewportPosition(1) + 5;
    QTest::mouseClick(table->horizontalHeader()->viewport(), Qt::LeftButton, {}, {x, 5});
    view.copy();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
              "\tNumber at Risk\nCase 1\t60\nCase 2\t-59\nCase 17\t8\n");
    table->setCurrentIndex(table->model()->index(1, 1));
    view.copy();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "-59\n");
}

TEST(SheetView, WhateverTheTableHolds) {
    Spreadsheet sheet; // columns of unequal length, none, and rows with headings only
    SheetView view(sheet);
    view.copy();
    sheet.rowHeadings = {"only a heading"};
    sheet.columns.push_back({"", "", {}, std::vector<double>{}});
    sheet.columns.push_back({"x", "", {}, std::vector<std::string>{"a", "b", test::awkwardText}});
    view.refresh();
    view.copy();
    EXPECT_EQ(QApplication::clipboard()->text().count('\n'), 4); // headings and three rows
    view.grab();
}

TEST(ReportView, TheRestOfALongReportIsShownOnRequest) {
    const std::vector<std::string> lines(ReportView::linesAtFirst + 5, "a line");
    ReportView view([&lines] { return lines; }, "Report");
    view.show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    EXPECT_EQ(view.text().count('\n') + 1, static_cast<qsizetype>(ReportView::linesAtFirst));
    QTest::keyClick(&view, Qt::Key_A, Qt::AltModifier); // "Show all lines"
    // A key presses a button for a moment before it is clicked.
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return view.text().count('\n') + 1 == static_cast<qsizetype>(lines.size()); }));
}

/// The rightmost drawn pixel in some lines of a picture.
int inkEnds(const QImage& image, int from, int to) {
    int last = -1;
    for (int y = from; y < to; ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qGray(image.pixel(x, y)) < 100) last = std::max(last, x);
    return last;
}

TEST(SheetView, LongHeadingsEndInAnEllipsisAndAreWholeInTheirTooltips) {
    const QString tooLong(200, QLatin1Char('H'));
    Spreadsheet sheet;
    sheet.columns.push_back({tooLong.toStdString(), "", {}, std::vector<double>{1.0, 2.0}});
    sheet.rowHeadings = {"short", tooLong.toStdString()};
    SheetView view(sheet);
    view.resize(1200, 300);
    view.show();
    auto* table = dynamic_cast<QTableView*>(view.content());
    for (const Qt::Orientation each : {Qt::Horizontal, Qt::Vertical})
        EXPECT_EQ(table->model()->headerData(each == Qt::Vertical, each, Qt::ToolTipRole), tooLong);
    // The dots of an ellipsis are on the base line; a text that is cut off, or continues, ends in an H.
    const QHeaderView& header = *table->horizontalHeader();
    const QImage image =
        header.viewport()->grab({2, 0, header.sectionSize(0) - 4, header.height()}).toImage();
    const int middle = image.height() / 2;
    const int reach = header.fontMetrics().capHeight() / 2;
    EXPECT_GE(inkEnds(image, middle, middle + reach + 2) - inkEnds(image, middle - reach, middle),
              header.fontMetrics().averageCharWidth() / 2);
}

} // namespace
} // namespace korvana::desktop
