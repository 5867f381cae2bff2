#include "tests/apps/desktop/Modals.h"
#include "tests/apps/desktop/dialogs/EveryKind.h"

#include <cmath>
#include <functional>
#include <numeric>

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
    EXPECT_TRUE(std::isnan(code())) << "opening the list chooses nothing";

    combo()->setFocus();
    QTest::keyClick(combo(), Qt::Key_Down);
    EXPECT_EQ(code(), 0.0);
    QTest::keyClick(combo(), Qt::Key_Down);
    EXPECT_EQ(code(), 1.0);
    EXPECT_EQ(combo()->currentText(), "1") << "the number, not the line of the list";

    select({{}, {4}});
    EXPECT_EQ(combo()->currentText(), "1") << "a code survives the choice of another variable";
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
    type("");
    EXPECT_TRUE(std::isnan(code())) << "emptying unsets the code";
    type("alive");
    type("gone");
    EXPECT_EQ(code(), 0.0);
    EXPECT_TRUE(complaint().startsWith("'gone' is neither a number nor a value label"));
    EXPECT_EQ(combo()->currentText(), "gone") << "to be corrected";
    select({{}, {}});
    type("dead");
    EXPECT_TRUE(complaint().contains("once the variable is chosen"));
}

TEST_F(CodeFields, ListOfCodesIsTypedOrChecked) {
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

TEST_F(CodeFields, ManyCodesAreChosenByTheKeyboardAlone) {
    using korvana::desktop::answering;
    std::vector<double> all(250);
    std::iota(all.begin(), all.end(), 1.0);
    openCodes(all);
    select({{}, {1}});
    view->showPage(1);
    settle();
    const auto chosen = [this] { return value<std::vector<double>>(Codes); };
    const auto key = [](Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClick(QApplication::focusWidget(), pressed, modifiers);
    };
    // Opens the list from the field, presses keys and ends with the last one.
    const auto inTheList = [&](const std::function<void()>& keys, Qt::Key last) {
        view->activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == view.get(); }));
        editor<QLineEdit>(Codes)->setFocus();
        key(Qt::Key_Tab);
        answering([&] { key(Qt::Key_Space); },
                  [&](QDialog& list) {
                      EXPECT_EQ(list.findChild<QListWidget*>()->count(), 250);
                      keys();
                      QTest::qWait(150); // a button pressed by its letter moves first
                      key(last);
                      EXPECT_FALSE(list.isVisible());
                  });
        EXPECT_TRUE(view->isVisible());
    };
    EXPECT_EQ(chosen(), std::vector<double>{});
    inTheList([] {}, Qt::Key_Return);
    EXPECT_EQ(chosen(), std::vector<double>{}) << "none stays none";
    inTheList([&] { key(Qt::Key_A, Qt::AltModifier); }, Qt::Key_Escape);
    EXPECT_EQ(chosen(), std::vector<double>{}) << "Escape changes nothing";
    inTheList(
        [&] {
            key(Qt::Key_End);
            key(Qt::Key_Space);
        },
        Qt::Key_Return);
    EXPECT_EQ(chosen(), std::vector<double>{250});
    inTheList(
        [&] { // the one chosen is where it begins; three more
            key(Qt::Key_Space);
            key(Qt::Key_Space);
            key(Qt::Key_Home);
            key(Qt::Key_Down, Qt::ShiftModifier);
            key(Qt::Key_Down, Qt::ShiftModifier);
            key(Qt::Key_Space);
        },
        Qt::Key_Return);
    EXPECT_EQ(chosen(), (std::vector<double>{250, 1, 2, 3})) << "those chosen first come first";
    inTheList([&] { key(Qt::Key_A, Qt::AltModifier); }, Qt::Key_Return);
    EXPECT_EQ(chosen().size(), 250U);
    EXPECT_TRUE(editor<QLineEdit>(Codes)->text().startsWith("250, 1, 2, 3, 4"));
    inTheList([&] { key(Qt::Key_N, Qt::AltModifier); }, Qt::Key_Return);
    EXPECT_EQ(chosen(), std::vector<double>{});
    EXPECT_EQ(editor<QLineEdit>(Codes)->text(), "");
}

TEST_F(CodeFields, ShowFewerDigitsThanTheyKeepAndTellCodesApart) {
    const std::vector<double> codes{1.0 / 3.0, 2.00001, 2.00002, 100000000.0};
    const QStringList texts{"0.3333", "2.00001", "2.00002", "100000000"};
    openCodes(codes);
    select({{}, {1}});
    combo()->setFocus();
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(offered().at(i), texts[i] + " (1 case)");
        QTest::keyClick(combo(), Qt::Key_Down);
        EXPECT_EQ(code(), codes[static_cast<std::size_t>(i)]) << "chosen from the list";
        EXPECT_EQ(combo()->currentText(), texts[i]);
    }
    for (int i = 0; i < 4; ++i) {
        type(qPrintable(texts[i]));
        EXPECT_EQ(code(), codes[static_cast<std::size_t>(i)]) << "typed as it is shown";
        EXPECT_EQ(combo()->currentText(), texts[i]);
    }
    for (const char* other : {"0.33333", "2.000014", "1e-20", "-0.12345678901"}) {
        type(other);
        EXPECT_EQ(code(), std::stod(other));
        EXPECT_EQ(combo()->currentText(), other) << "no code of the data: as it was typed";
    }
    ASSERT_TRUE(dialog().PutValue(Code, codes[0]).done);
    EXPECT_EQ(combo()->currentText(), texts[0]);
    select({{}, {}});
    EXPECT_EQ(combo()->currentText().toDouble(), codes[0]) << "of no variable, it may be any";

    select({{}, {1}});
    view->showPage(1);
    const std::vector<double> two{codes[2], codes[0]};
    ASSERT_TRUE(dialog().PutValue(Codes, two).done);
    auto* line = editor<QLineEdit>(Codes);
    EXPECT_EQ(line->text(), "2.00002, 0.3333");
    retype(line, "2.00001, 0.3333");
    QTest::keyClick(line, Qt::Key_Tab);
    EXPECT_EQ(value<std::vector<double>>(Codes), (std::vector<double>{codes[1], codes[0]}));
}

} // namespace
} // namespace everykind
