#include "apps/desktop/data/VariablesView.h"

#include "apps/desktop/data/ValueLabelsDialog.h"
#include "apps/desktop/data/VariableTableModel.h"
#include "tests/apps/desktop/Modals.h"
#include "tests/apps/desktop/data/Trial.h"

namespace korvana::desktop {
namespace {

class Variables : public testing::Test {
protected:
    Variables() {
        openTrial(data);
        view.setData(&data);
        view.show();
    }

    QString cell(int variable, int column) const {
        return view.table()->model()->index(variable, column).data().toString();
    }

    bool edit(int variable, int column, const QString& text) {
        return view.table()->model()->setData(view.table()->model()->index(variable, column), text);
    }

    bool said(const QString& text) const { return says(view, text); }

    ActiveData data;
    VariablesView view;
};

TEST_F(Variables, AreDescribedAndCountedOverTheSelectedCases) {
    const QAbstractItemModelTester tester(view.table()->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    using Model = VariableTableModel;
    EXPECT_TRUE(QTest::qWaitFor([&] { return cell(4, Model::Cases) == "3"; }));
    EXPECT_EQ(cell(3, Model::Label), "alive or dead");
    EXPECT_EQ(cell(3, Model::MissingCode), "9");
    EXPECT_EQ(cell(3, Model::ValueLabels), "0 = alive, 1 = dead");
    EXPECT_EQ(cell(3, Model::Missing), "1");
    EXPECT_EQ(cell(3, Model::Distinct), "2");
    EXPECT_EQ(cell(2, Model::Range), "1995-01-10 to 2001-12-31");
    EXPECT_EQ(cell(1, Model::Range), "");

    data.select("age > 60");
    view.setData(&data);
    EXPECT_TRUE(QTest::qWaitFor([&] { return cell(4, Model::Cases) == "1"; }));
    EXPECT_EQ(cell(0, Model::Range), "62 to 70");
}

TEST_F(Variables, LabelAndMissingCodeAreEditedByKeyboard) {
    QSignalSpy changed(&view, &VariablesView::variablesChanged);
    view.table()->setCurrentIndex(view.table()->model()->index(0, VariableTableModel::Label));
    view.table()->setFocus();
    QTest::keyClick(view.table(), Qt::Key_F2);
    auto* const editor = view.table()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, "Age in years");
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::qWait(0); // a return commits when events are handled
    EXPECT_EQ(data.dataSet().variable(0).label, "Age in years");
    EXPECT_EQ(changed.size(), 1);

    EXPECT_TRUE(edit(2, VariableTableModel::MissingCode, "2001-12-31"));
    EXPECT_TRUE(data.dataSet().isMissing(2, 3));
    EXPECT_TRUE(edit(1, VariableTableModel::MissingCode, "male"));
    EXPECT_EQ(data.dataSet().variable(1).missingCode, 2);
    EXPECT_TRUE(edit(1, VariableTableModel::MissingCode, ""));
    EXPECT_FALSE(data.dataSet().isMissing(1, 1));

    EXPECT_FALSE(edit(3, VariableTableModel::MissingCode, "nine"));
    EXPECT_EQ(data.dataSet().variable(3).missingCode, 9);
    EXPECT_TRUE(said("status: 'nine' is not a value of this variable; enter a number, or nothing"));

    view.setEditable(false);
    EXPECT_FALSE(edit(0, VariableTableModel::Label, "x"));
}

TEST_F(Variables, AMissingCodeRepeatsTheSelectionAndIsRefusedIfItWouldBreakIt) {
    data.select("age >= 51");
    EXPECT_TRUE(edit(0, VariableTableModel::MissingCode, "51"));
    EXPECT_EQ(data.selectedCount(), 2);
    data.select("1 / (age - 51) > 0 and status = 'alive'");
    EXPECT_FALSE(edit(0, VariableTableModel::MissingCode, ""));
    EXPECT_TRUE(said("case 1 (Ada)"));
    EXPECT_THROW(data.describe(3, "", 9, {}), std::exception); // the condition uses one of its labels
    EXPECT_EQ(data.dataSet().variable(0).missingCode, 51);
    EXPECT_EQ(data.dataSet().variable(3).valueLabels.size(), 2U);
}

TEST_F(Variables, ValueLabelsAreEditedInADialog) {
    EXPECT_TRUE(QTest::qWaitFor([&] { return cell(4, VariableTableModel::Cases) == "3"; }));
    view.table()->setCurrentIndex(view.table()->model()->index(3, VariableTableModel::ValueLabels));
    const auto edits = [](ValueLabelsDialog& dialog) {
        auto* const table = dialog.findChild<QTableWidget*>();
        EXPECT_EQ(table->rowCount(), 2);
        EXPECT_EQ(table->item(1, 2)->text(), "2");
        table->item(0, 1)->setText("censored");
        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            if (button->text() == "&Add Value") button->click();
        table->item(2, 1)->setText("twice");
        for (const char* wrong : {"1", "two"}) {
            table->item(2, 0)->setText(wrong);
            dialog.accept();
            EXPECT_TRUE(dialog.isVisible()) << wrong;
        }
        table->item(2, 0)->setText("2");
        dialog.accept();
    };
    answering([this] { QTest::keyClick(view.table(), Qt::Key_Return); }, edits);
    EXPECT_EQ(cell(3, VariableTableModel::ValueLabels), "0 = censored, 1 = dead, 2 = twice");

    const QSignalSpy changes(&view, &VariablesView::variablesChanged);
    answering([this] { view.editValueLabels(3); }, [](ValueLabelsDialog& dialog) { dialog.accept(); });
    EXPECT_TRUE(edit(3, VariableTableModel::MissingCode, "9.0"));
    EXPECT_EQ(changes.count(), 0) << "an OK that changes nothing is no edit";

    view.editValueLabels(1); // no dialog, but a message
    EXPECT_TRUE(said("texts"));
}

} // namespace
} // namespace korvana::desktop
