#include "apps/desktop/data/DataView.h"

#include "apps/desktop/data/CaseTableModel.h"
#include "tests/apps/desktop/data/Trial.h"

namespace korvana::desktop {
namespace {

struct DataViews : testing::Test {
    void show() {
        view.setData(&data);
        view.show();
    }
    const QAbstractItemModel& model() const { return *view.table()->model(); }
    QString cell(int row, int column, int role = Qt::DisplayRole) const {
        return model().index(row, column).data(role).toString();
    }
    bool flag(int row, int column, int role) const { return model().index(row, column).data(role).toBool(); }
    void select(int top, int left, int bottom, int right) const {
        view.table()->selectionModel()->select({model().index(top, left), model().index(bottom, right)},
                                               QItemSelectionModel::Select);
    }
    QString copied(bool names = false) {
        QApplication::clipboard()->clear();
        view.copy(names);
        return QApplication::clipboard()->text();
    }

    ActiveData data;
    DataView view;
};

TEST_F(DataViews, ShowsLabelsCodesDatesAndWhatIsMissing) {
    openTrial(data);
    const QAbstractItemModelTester tester(view.table()->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    view.setData(&data);
    EXPECT_EQ(cell(1, 0), "Ben");
    EXPECT_EQ(cell(1, 2), "male");
    EXPECT_EQ(cell(1, 3), "1996-02-29");
    EXPECT_EQ(cell(1, 4), "dead");
    EXPECT_EQ(cell(1, 4, Qt::ToolTipRole), "1 = dead");
    EXPECT_EQ(cell(2, 4), "9");
    EXPECT_TRUE(flag(2, 4, CaseTableModel::MissingRole));
    EXPECT_EQ(cell(1, 5), ".");
    EXPECT_TRUE(flag(1, 5, CaseTableModel::MissingRole));
    EXPECT_FALSE(flag(2, 5, CaseTableModel::MissingRole));

    view.setShowLabels(false);
    EXPECT_EQ(cell(1, 3), "1996-02-29"); // not the number of the day
    EXPECT_EQ(cell(1, 4), "1");
}

TEST_F(DataViews, SelectionMarksCasesAndKeepsThePlace) {
    openTrial(data);
    view.setData(&data);
    view.goToCase(3);
    data.select("age > 60");
    data.weightBy("age");
    view.setData(&data);
    EXPECT_EQ(view.table()->currentIndex().row(), 2);
    EXPECT_TRUE(flag(0, 1, CaseTableModel::LeftOutRole));
    EXPECT_FALSE(flag(1, 1, CaseTableModel::LeftOutRole));
    EXPECT_TRUE(says(view, "4 cases, 5 variables; 2 selected: age > 60; weighted by age"));
}

TEST_F(DataViews, CopiesWhatIsSelected) {
    openTrial(data);
    view.setData(&data);
    view.table()->clearSelection();
    select(0, 3, 2, 4);
    EXPECT_EQ(copied(), "1995-01-10\talive\n1996-02-29\tdead\n\t9\n");
    view.table()->clearSelection();
    select(0, 1, 0, 1);
    select(3, 5, 3, 5);
    EXPECT_EQ(copied(true), "age\twhite cells\n51\t\n\t4\n");

    view.show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    view.table()->clearSelection();
    view.table()->setFocus();
    view.goToCase(2);
    QTest::keyClick(view.table(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "Ben\n");
}

TEST_F(DataViews, GoesToTheCaseThatIsAskedFor) {
    data.open(numbers(1000));
    view.resize(300, 300);
    show();
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

TEST_F(DataViews, OfMoreCasesThanATableHasRowsReachesEachAndCopiesWhatAClipboardHolds) {
    constexpr int cases = CaseTableModel::mostRows + 3;
    data.open(numbers(cases));
    view.setData(&data);
    view.table()->selectAll();
    EXPECT_EQ(copied(), "");
    view.goToCase(cases);
    EXPECT_EQ(model().rowCount(), 3);
    const QModelIndex last = view.table()->currentIndex();
    EXPECT_EQ(last.data().toString(), QString::number(cases - 1));
    EXPECT_EQ(model().headerData(last.row(), Qt::Vertical).toInt(), cases);
    EXPECT_EQ(copied(), QString::number(cases - 1) + '\n');
}

TEST_F(DataViews, HandlesOtherDataAndNone) {
    view.setData(nullptr);
    view.goToCase(1);
    view.setData(&data);
    openTrial(data);
    show();
    data.open(numbers(2)); // without a call to the view
    view.grab();
    EXPECT_EQ(cell(1, 3), "");
    view.setData(&data);
    EXPECT_EQ(cell(1, 0), "1");
}

} // namespace
} // namespace korvana::desktop
