#include "apps/desktop/data/WeightsDialog.h"

#include "apps/desktop/data/VariableChooser.h"
#include "tests/apps/desktop/Labels.h"
#include "tests/apps/desktop/data/Trial.h"

#include <QLineEdit>
#include <QListView>
#include <QRadioButton>

namespace korvana::desktop {
namespace {

class Weights : public testing::Test {
protected:
    Weights() { openTrial(data); }

    ActiveData data;
};

TEST_F(Weights, AVariableIsFoundAndChosenByKeyboard) {
    WeightsDialog dialog(data);
    dialog.show();
    auto* const variables = dialog.findChild<VariableChooser*>();
    EXPECT_EQ(variables->count(), 3); // neither texts nor dates
    QTest::keyClicks(variables->search(), "white");
    EXPECT_TRUE(says(dialog, "1 case without a weight"));
    QTest::keyClick(variables->search(), Qt::Key_Down);
    QTest::keyClick(variables->list(), Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(data.weightVariable(), 5);
}

TEST_F(Weights, CancelLeavesThemAndNoneEndsThem) {
    data.weightBy("age");
    {
        WeightsDialog dialog(data);
        EXPECT_EQ(dialog.findChild<VariableChooser*>()->current(), 0);
        dialog.findChild<VariableChooser*>()->setCurrent(3);
        dialog.reject();
    }
    EXPECT_EQ(data.weightVariable(), 1);
    WeightsDialog dialog(data);
    dialog.findChild<QRadioButton*>()->click();
    dialog.accept();
    EXPECT_EQ(data.weightVariable(), 0);
}

TEST_F(Weights, SearchingForNothingChoosesNothing) {
    WeightsDialog dialog(data);
    auto* const variables = dialog.findChild<VariableChooser*>();
    variables->setCurrent(0);
    QTest::keyClicks(variables->search(), "no such name");
    dialog.accept();
    EXPECT_NE(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(says(dialog, "choose one"));
}

TEST_F(Weights, AVariableNamedLikeANumberIsItself) {
    DataSet set = numbers(2);
    Variable one;
    one.name = "1";
    test::addVariable(set, one, [](int) { return 3; });
    data.open(std::move(set));
    WeightsDialog dialog(data);
    dialog.findChild<VariableChooser*>()->setCurrent(1);
    dialog.accept();
    EXPECT_EQ(data.weightVariable(), 2);
    EXPECT_EQ(data.notes().back(), "Cases weighted by '1'.");
}

} // namespace
} // namespace korvana::desktop
