#include "apps/desktop/data/WeightsDialog.h"

#include "apps/desktop/data/VariableChooser.h"
#include "tests/apps/desktop/data/Trial.h"

namespace korvana::desktop {
namespace {

struct Weights : DataDialog<WeightsDialog> {
    VariableChooser& variables() { return *part<VariableChooser>(); }
};

TEST_F(Weights, AVariableIsFoundAndChosenByKeyboard) {
    openDialog();
    EXPECT_EQ(variables().count(), 3); // neither texts nor dates
    QTest::keyClicks(variables().search(), "white");
    EXPECT_TRUE(says("1 case without a weight"));
    QTest::keyClick(variables().search(), Qt::Key_Down);
    QTest::keyClick(variables().list(), Qt::Key_Return);
    EXPECT_TRUE(accepted());
    EXPECT_EQ(data.weightVariable(), 5);

    openDialog();
    QTest::keyClicks(variables().search(), "no such name");
    EXPECT_FALSE(accepts()) << "searching for nothing chooses nothing";
    EXPECT_TRUE(says("choose one"));
}

TEST_F(Weights, CancelLeavesThemAndNoneEndsThem) {
    data.weightBy("age");
    openDialog();
    EXPECT_EQ(variables().current(), 0);
    variables().setCurrent(3);
    dialog->reject();
    EXPECT_EQ(data.weightVariable(), 1);
    openDialog();
    part<QRadioButton>()->click();
    EXPECT_TRUE(accepts());
    EXPECT_EQ(data.weightVariable(), 0);

    open(data, "x,1\n5,3\n5,3\n"); // its name is the number of another
    openDialog();
    variables().setCurrent(1);
    EXPECT_TRUE(accepts());
    EXPECT_EQ(data.weightVariable(), 2);
}

} // namespace
} // namespace korvana::desktop
