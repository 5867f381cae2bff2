#include "tests/apps/desktop/Modals.h"
#include "tests/apps/desktop/dialogs/EveryKind.h"

#include <cmath>

namespace everykind {
namespace {

struct CodeFields : Window {
    /// What the list says when it is opened.
    QStringList offered() {
        combo()->showPopup();
        QStringList texts;
        for (int i = 0; i < combo()->count(); ++i)
            texts.append(combo()->itemText(i));
        combo()->hidePopup();
        return texts;
    }
};

TEST_F(CodeFields, OfferTheCodesOfTheSelectedVariable) {
    EXPECT_EQ(offered(), QStringList{"Choose 'Indicator' first"});
    select({{}, {3}});
    EXPECT_EQ(offered(), (QStringList{"0 = alive (100 cases)", "1 = dead (50 cases)"}));
    EXPECT_TRUE(std::isnan(code())) << "looking chooses nothing";

    combo()->setFocus();
    QTest::keyClick(combo(), Qt::Key_Down);
    EXPECT_EQ(code(), 0.0);
    QTest::keyClick(combo(), Qt::Key_Down);
    EXPECT_EQ(code(), 1.0);
    EXPECT_EQ(combo()->currentText(), "1") << "the number, not the line of the list";

    select({{}, {4}});
    EXPECT_EQ(combo()->currentText(), "1") << "a code outlives another variable";
    ASSERT_EQ(offered().size(), 101);
    EXPECT_EQ(offered().back(), "and 50 more; type the code");
    select({{}, {3}});
    session.data().select("status = 1");
    view->refreshData();
    EXPECT_EQ(offered(), QStringList{"1 = dead (50 cases)"}) << "of the selected cases";
}

TEST_F(CodeFields, TakeNumbersAndLabels) {
    select({{}, {3}});
    type("dead");
    EXPECT_EQ(code(), 1.0);
    EXPECT_EQ(combo()->currentText(), "1");
    type("0.1");
    EXPECT_EQ(code(), 0.1);
    EXPECT_EQ(combo()->currentText(), "0.1") << "the shortest text of the number";
    type("");
    EXPECT_TRUE(std::isnan(code())) << "emptying unsets the code";
    type("alive");
    type("gone");
    EXPECT_EQ(code(), 0.0);
    EXPECT_TRUE(complaint().startsWith("'gone' is neither a number nor a value label"));
    EXPECT_EQ(combo()->currentText(), "gone") << "to be mended";
    select({{}, {}});
    type("dead");
    EXPECT_TRUE(complaint().contains("once the variable is chosen"));
}

TEST_F(CodeFields, ListOfCodesIsTypedOrTicked) {
    view->showPage(1);
    select({{}, {3}});
    auto* line = editor<QLineEdit>(Codes);
    line->setFocus();
    QTest::keyClicks(line, "dead, 7 ,alive,");
    QTest::keyClick(line, Qt::Key_Tab);
    EXPECT_EQ(value<std::vector<double>>(Codes), (std::vector<double>{1, 7, 0}));
    EXPECT_EQ(line->text(), "1, 7, 0");
    EXPECT_TRUE(line->toolTip().contains("1 = dead"));

    for (const char* wrong : {"1, 1", "1, gone"}) {
        retype(line, wrong);
        QTest::keyClick(line, Qt::Key_Tab);
        EXPECT_FALSE(complaint().isEmpty()) << wrong;
        EXPECT_EQ(value<std::vector<double>>(Codes), (std::vector<double>{1, 7, 0}));
    }
    line->setText("1, 7, 0");

    korvana::desktop::answering([this] { editor<QToolButton>(Codes)->click(); },
                                [](QDialog& window) {
                                    auto* list = window.findChild<QListWidget*>();
                                    EXPECT_EQ(list->item(0)->checkState(), Qt::Checked);
                                    list->item(0)->setCheckState(Qt::Unchecked);
                                    window.accept();
                                });
    EXPECT_EQ(value<std::vector<double>>(Codes), (std::vector<double>{1, 7})) << "7 was typed and stays";
}

} // namespace
} // namespace everykind
