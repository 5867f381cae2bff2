#include "apps/desktop/data/DataView.h"

#include "apps/desktop/data/CaseTableModel.h"
#include "apps/desktop/data/VariableChooser.h"
#include "tests/apps/desktop/Ellipsis.h"
#include "tests/apps/desktop/data/Trial.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QScrollBar>
#include <QSpinBox>
#include <QTableView>

namespace korvana::desktop {
namespace {

QString cell(const DataView& view, int row, int column, int role = Qt::DisplayRole) {
    return view.table()->model()->index(row, column).data(role).toString();
}

bool flag(const DataView& view, int row, int column, int role) {
    return view.table()->model()->index(row, column).data(role).toBool();
}

void select(const DataView& view, int top, int left, int bottom, int right) {
    const auto* const model = view.table()->model();
    view.table()->selectionModel()->select(
        QItemSelection(model->index(top, left), model->index(bottom, right)), QItemSelectionModel::Select);
}

QString copied(DataView& view, bool names = false) {
    QApplication::clipboard()->clear();
    view.copy(names);
    return QApplication::clipboard()->text();
}

TEST(DataView, ShowsLabelsCodesDatesAndWhatIsMissing) {
    ActiveData data;
    openTrial(data);
    DataView view;
    const QAbstractItemModelTester tester(view.table()->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    view.setData(&data);
    EXPECT_EQ(cell(view, 1, 0), "Ben");
    EXPECT_EQ(cell(view, 1, 2), "male");
    EXPECT_EQ(cell(view, 1, 3), "1996-02-29");
    EXPECT_EQ(cell(view, 1, 4), "dead");
    EXPECT_EQ(cell(view, 1, 4, Qt::ToolTipRole), "1 = dead");
    EXPECT_EQ(cell(view, 2, 4), "9");
    EXPECT_TRUE(flag(view, 2, 4, CaseTableModel::MissingRole));
    EXPECT_EQ(cell(view, 1, 5), ".");
    EXPECT_TRUE(flag(view, 1, 5, CaseTableModel::MissingRole));
    EXPECT_FALSE(flag(view, 2, 5, CaseTableModel::MissingRole));

    view.setShowLabels(false);
    EXPECT_EQ(cell(view, 1, 2), "2");
    EXPECT_EQ(cell(view, 1, 3), "1996-02-29"); // a day number is nothing to read
    EXPECT_EQ(cell(view, 1, 4), "1");
}

TEST(DataView, SelectionMarksCasesAndKeepsThePlace) {
    ActiveData data;
    openTrial(data);
    DataView view;
    view.setData(&data);
    view.goToCase(3);
    data.select("age > 60");
    data.weightBy("age");
    view.setData(&data);
    EXPECT_EQ(view.table()->currentIndex().row(), 2);
    EXPECT_TRUE(flag(view, 0, 1, CaseTableModel::LeftOutRole));
    EXPECT_FALSE(flag(view, 1, 1, CaseTableModel::LeftOutRole));
    bool said = false;
    for (const QLabel* label : view.findChildren<QLabel*>())
        said = said || label->text() == "4 cases, 5 variables; 2 selected: age > 60; weighted by age";
    EXPECT_TRUE(said);
}

TEST(DataView, CopiesWhatIsSelected) {
    ActiveData data;
    openTrial(data);
    DataView view;
    view.setData(&data);
    view.table()->clearSelection();
    EXPECT_EQ(copied(view), "");

    select(view, 0, 3, 2, 4);
    EXPECT_EQ(copied(view), "1995-01-10\talive\n1996-02-29\tdead\n\t9\n");
    view.table()->clearSelection();
    select(view, 0, 1, 0, 1);
    select(view, 3, 5, 3, 5);
    EXPECT_EQ(copied(view, true), "age\twhite cells\n51\t\n\t4\n");

    view.show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    view.table()->clearSelection();
    view.table()->setFocus();
    view.goToCase(2);
    QTest::keyClick(view.table(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "Ben\n");
}

TEST(DataView, RefusesToCopyMoreThanAClipboardHolds) {
    ActiveData data;
    data.open(numbers(6'000'000));
    DataView view;
    view.setData(&data);
    view.table()->selectAll();
    EXPECT_EQ(copied(view), "");
    view.table()->clearSelection();
    select(view, 5'999'998, 0, 5'999'999, 0);
    EXPECT_EQ(copied(view), "5999998\n5999999\n");
}

TEST(DataView, GoesToTheCaseThatIsAskedFor) {
    ActiveData data;
    data.open(numbers(1000));
    DataView view;
    view.resize(300, 300);
    view.setData(&data);
    view.show();
    QApplication::setActiveWindow(&view);
    view.askForCase();
    auto* const field = view.findChild<QSpinBox*>();
    EXPECT_TRUE(field->hasFocus());
    QTest::keyClicks(field, "700");
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(view.table()->currentIndex().row(), 699);
    EXPECT_TRUE(
        view.table()->viewport()->rect().intersects(view.table()->visualRect(view.table()->currentIndex())));
    view.goToCase(100000);
    EXPECT_EQ(view.table()->currentIndex().row(), 999);
    EXPECT_EQ(field->value(), 1000);
}

TEST(DataView, ReachesCasesBeyondTheRowsOfATable) {
    constexpr int cases = CaseTableModel::mostRows + 3;
    ActiveData data;
    data.open(numbers(cases));
    DataView view;
    view.setData(&data);
    EXPECT_EQ(view.table()->model()->rowCount(), CaseTableModel::mostRows);
    view.goToCase(cases);
    EXPECT_EQ(view.table()->model()->rowCount(), 3);
    const QModelIndex last = view.table()->currentIndex();
    EXPECT_EQ(last.data().toString(), QString::number(cases - 1));
    EXPECT_EQ(view.table()->model()->headerData(last.row(), Qt::Vertical).toInt(), cases);
}

TEST(DataView, StandsOtherDataAndNone) {
    ActiveData data;
    DataView view;
    view.setData(nullptr);
    view.goToCase(1);
    view.setData(&data);
    openTrial(data);
    view.setData(&data);
    view.show();
    data.open(numbers(2)); // and nobody has told the view
    view.grab();
    EXPECT_EQ(cell(view, 1, 3), "");
    view.setData(&data);
    EXPECT_EQ(cell(view, 1, 0), "1");
}

TEST(LongNames, EndInAnEllipsisAndAreWholeInTheirTooltips) {
    ActiveData data;
    open(data, "a," + tooLong().toUtf8() + "\n1,2\n3,4\n");
    DataView view;
    view.setData(&data);
    view.resize(900, 300);
    view.show();
    const QHeaderView& header = *view.table()->horizontalHeader();
    EXPECT_TRUE(endsInEllipsis(header, 1));
    EXPECT_TRUE(
        header.model()->headerData(1, Qt::Horizontal, Qt::ToolTipRole).toString().contains(tooLong()));
    view.table()->setColumnWidth(0, 200);
    EXPECT_FALSE(endsInEllipsis(header, 0));

    VariableChooser chooser(data.dataSet(), false);
    chooser.show();
    EXPECT_TRUE(endsInEllipsis(*chooser.list(), 1));
    EXPECT_EQ(chooser.list()->model()->index(1, 0).data(Qt::ToolTipRole).toString(), tooLong());
}

} // namespace
} // namespace korvana::desktop
