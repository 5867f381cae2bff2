#include "apps/desktop/data/SelectionDialog.h"

#include "apps/desktop/data/ConditionEdit.h"
#include "apps/desktop/data/ExpressionPieces.h"
#include "apps/desktop/data/VariableChooser.h"
#include "tests/apps/desktop/data/Trial.h"

namespace korvana::desktop {
namespace {

struct Selecting : DataDialog<SelectionDialog> {
    void openDialog() {
        DataDialog::openDialog();
        condition = part<ConditionEdit>();
        variables = part<VariableChooser>();
        codes = part<QListWidget>();
    }
    void pressOk() const {
        QTest::mouseClick(part<QDialogButtonBox>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    }
    /// Whether OK leaves the dialog open for this condition.
    bool refuses(const QString& text) const {
        condition->setPlainText(text);
        pressOk();
        return dialog->isVisible();
    }

    ConditionEdit* condition = nullptr;
    VariableChooser* variables = nullptr;
    QListWidget* codes = nullptr;
};

TEST_F(Selecting, ByTypingWithTheCountShown) {
    openDialog();
    EXPECT_TRUE(says("All 4 cases selected"));
    QTest::keyClicks(condition, "`white cells` > 2");
    EXPECT_TRUE(says("2 of 4 cases selected. 1 case left out"));
    QTest::keyClick(condition, Qt::Key_Return); // the dialog's default button
    EXPECT_TRUE(accepted());
    EXPECT_EQ(data.condition(), "`white cells` > 2");
    EXPECT_EQ(data.selectedCount(), 2);

    openDialog();
    condition->setPlainText("age > 0");
    QTest::keyClick(condition, Qt::Key_Escape);
    EXPECT_EQ(data.selectedCount(), 2);

    openDialog();
    condition->setPlainText(" \n");
    pressOk();
    EXPECT_EQ(data.condition(), "");
}

TEST_F(Selecting, ByInsertingVariablesAndTheirValues) {
    openDialog();
    QTest::keyClicks(variables->search(), "stat");
    QTest::keyClick(variables->list(), Qt::Key_Space);
    EXPECT_TRUE(QTest::qWaitFor([&] { return codes->count() == 3; })); // two values and the missing ones
    EXPECT_EQ(codes->item(1)->text(), "1 = dead   (2)");
    codes->setCurrentRow(1);
    QTest::keyClick(codes, Qt::Key_Space);
    EXPECT_EQ(condition->toPlainText(), "status = 1");
    QTest::keyClicks(condition, " and");
    variables->search()->clear();
    variables->setCurrent(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return codes->count() == 2; }));
    codes->setCurrentRow(0);
    emit codes->itemDoubleClicked(codes->item(0));
    EXPECT_EQ(condition->toPlainText(), "status = 1 and sex = 'female'");
    QTest::keyClick(codes, Qt::Key_Return); // OK, here too
    EXPECT_TRUE(accepted());
    EXPECT_EQ(data.selectedCount(), 1);
}

TEST_F(Selecting, AnErrorIsMarkedWhereItIs) {
    openDialog();
    EXPECT_TRUE(refuses(QStringLiteral("sex = 'm\u00e4le' or agee > 3")));
    EXPECT_TRUE(says("'m\u00e4le'"));
    EXPECT_EQ(condition->markedAt(), 6);
    EXPECT_TRUE(refuses("age > 1 or missing(sex) or agee > 3"));
    EXPECT_TRUE(says("did you mean 'age'"));
    EXPECT_EQ(condition->textCursor().position(), 27);
    EXPECT_EQ(condition->extraSelections().at(0).cursor.selectedText(), "agee");
    EXPECT_TRUE(refuses("age >"));
    EXPECT_EQ(condition->extraSelections().at(0).cursor.selectedText(), ">");
    QTest::keyClicks(condition, " 3");
    EXPECT_EQ(condition->markedAt(), -1);
    EXPECT_TRUE(data.condition().empty());

    EXPECT_TRUE(refuses("1 / (age - 70) < 0")) << "valid, but without a value for one case";
    EXPECT_TRUE(says("case 3 (Cyd)"));
}

TEST_F(Selecting, OkWaitsUntilManyCasesAreCounted) {
    constexpr int cases = 3'000'000;
    data.open(numbers(cases));
    openDialog();
    condition->setPlainText("x < 1000000 or x = 2999999");
    pressOk();
    EXPECT_TRUE(QTest::qWaitFor([&] { return accepted(); }, 60'000));
    EXPECT_EQ(data.selectedCount(), 1'000'001);

    openDialog();
    // So much to compute that no machine is through before the next line.
    condition->setPlainText(QString("exp(-x) + ").repeated(200) + "x < 5");
    pressOk();
    dialog->reject(); // while the dialog is counting
    EXPECT_EQ(data.selectedCount(), 1'000'001);
}

TEST(ExpressionPieces, SelectTheCasesThatHaveTheValue) {
    ActiveData data;
    open(data, "age,and,Pi,it`s,min,d\u00e9j\u00e0,a b,9x,day\n"
               "-1.5,1,x'y,1,2,1e300,\"a,b\",7,1995-01-01\n"
               "2,2,O\"K,2,3,2,it's,8,1996-01-01\n");
    const DataSet& set = data.dataSet();
    for (int v = 0; v < set.variableCount(); ++v) {
        for (std::size_t i = 0; i < 2; ++i) {
            const QString piece = comparisonPiece(set.variable(v), set.column(v)[i], {});
            const CaseSelection selected = selectCases(set, piece.toStdString());
            EXPECT_EQ(selected.mask[i], 1) << piece.toStdString();
            EXPECT_EQ(selected.selectedCount, 1) << piece.toStdString();
        }
    }
    const Variable& age = set.variable(0);
    EXPECT_EQ(comparisonPiece(age, 2, "age"), "= 2");
    EXPECT_EQ(comparisonPiece(age, 2, "Pi = 'age' and not age >="), "2");
    EXPECT_EQ(comparisonPiece(age, 2, "dosage"), "age = 2");
}

} // namespace
} // namespace korvana::desktop
