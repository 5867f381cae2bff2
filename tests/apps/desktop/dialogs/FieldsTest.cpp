#include "tests/apps/desktop/dialogs/EveryKind.h"

namespace everykind {
namespace {

struct Fields : Window {
    Fields() { view->showPage(1); }
};

TEST_F(Fields, EachControlIsOnEachOfItsPages) {
    for (const ControlTemplate& control : controls) {
        const auto fields = view->findChildren<QWidget*>(QStringLiteral("control%1").arg(control.id));
        EXPECT_EQ(fields.size(), control.pages.size() == 2 ? 2 : 1) << control.id;
        for (QWidget* field : fields) {
            field->setFocus(); // the focus goes to a part of it
            QWidget* part = field->focusProxy() != nullptr ? field->focusProxy() : view->focusWidget();
            ASSERT_TRUE(field->isAncestorOf(part)) << control.id;
            const QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(part);
            EXPECT_FALSE(heard->text(QAccessible::Name).isEmpty()) << control.id;
        }
    }
    EXPECT_EQ(editor<QPushButton>(Go)->text(), "&Go on") << "the icon's number is no text";
    EXPECT_FALSE(editor<QPushButton>(Go)->icon().isNull());
    EXPECT_TRUE(editor<QPushButton>(Beside)->icon().isNull());
}

TEST_F(Fields, WhatIsDoneReachesTheModel) {
    QTest::mouseClick(editor<QCheckBox>(Box), Qt::LeftButton, {},
                      QPoint(5, editor<QCheckBox>(Box)->height() / 2));
    EXPECT_TRUE(value<bool>(Box));
    editor<QRadioButton>(Choice)->setFocus();
    QTest::keyClick(editor<QRadioButton>(Choice), Qt::Key_Down);
    EXPECT_EQ(value<int>(Choice), 2);
    auto* number = editor<QSpinBox>(Count);
    number->setFocus();
    number->selectAll();
    QTest::keyClicks(number, "-37");
    EXPECT_EQ(value<int>(Count), 0) << "not while it is being typed";
    QTest::keyClick(number, Qt::Key_Tab);
    EXPECT_EQ(value<int>(Count), -37);
    auto* name = editor<QLineEdit>(Name);
    QTest::keyClicks(name, "Zoe");
    auto* names = editor<QPlainTextEdit>(Names);
    names->setFocus();
    EXPECT_EQ(value<std::string>(Name), "Zoe") << "leaving a field writes it";
    QTest::keyClicks(names, "one");
    QTest::keyClick(names, Qt::Key_Return);
    QTest::keyClick(names, Qt::Key_Return);
    QTest::keyClicks(names, " two ");
    QTest::keyClick(names, Qt::Key_Tab);
    EXPECT_EQ(value<std::vector<std::string>>(Names), (std::vector<std::string>{"one", "two"}));
}

TEST_F(Fields, SeveralNumbersAreALine) {
    view->showPage(1);
    auto* line = editor<QLineEdit>(Numbers);
    const auto typed = [&](const char* text) {
        retype(line, text);
        QTest::keyClick(line, Qt::Key_Tab);
        return value<std::vector<double>>(Numbers);
    };
    EXPECT_EQ(typed(" 1.5,-2e-3 ,  0;7,"), (std::vector<double>{1.5, -0.002, 0, 7}));
    EXPECT_EQ(line->text(), "1.5 -0.002 0 7");
    for (const char* wrong : {"1 x 2", "0x10", "1e999", "nan", "1..2", "1.000.000", "-"}) {
        EXPECT_EQ(typed(wrong).size(), 4U) << wrong;
        EXPECT_TRUE(complaint().contains("is not a number")) << wrong;
        EXPECT_EQ(line->text(), wrong) << "to be corrected";
    }
    const auto withGap = typed("3 . 4");
    ASSERT_EQ(withGap.size(), 3U);
    EXPECT_TRUE(std::isnan(withGap[1]));
    EXPECT_TRUE(complaint().isEmpty());
    EXPECT_EQ(line->text(), "3 . 4");
    EXPECT_TRUE(typed("").empty());

    const std::vector<double> exact{1.0 / 3.0, 1e-300, -1e22};
    dynamic_cast<EveryKindDlg&>(dialog()).SetValue(Numbers, exact);
    const std::string shown = line->text().toStdString();
    EXPECT_EQ(typed(shown.c_str()), exact) << "all digits are shown";
}

TEST_F(Fields, TheModelsValuesAreShown) {
    auto& own = dynamic_cast<EveryKindDlg&>(dialog());
    own.SetValue(Box, true);
    own.SetValue(Choice, 3);
    own.SetValue(Count, std::numeric_limits<int>::min());
    own.SetValue(Level, 0.95);
    own.SetValue(Name, std::string{"Zoë"});
    own.SetValue(Names, std::vector<std::string>{"x", "y"});
    own.SetValue(Overview, std::string{"line 1\nline 2"});
    EXPECT_TRUE(editor<QCheckBox>(Box)->isChecked());
    EXPECT_TRUE(view->findChildren<QRadioButton*>().at(2)->isChecked());
    EXPECT_EQ(editor<QSpinBox>(Count)->text(), "-2147483648");
    for (const int page : {0, 1}) {
        view->showPage(page);
        EXPECT_EQ(editor<QLineEdit>(Level)->text(), "0.950") << page;
    }
    EXPECT_EQ(editor<QLineEdit>(Name)->text(), QStringLiteral("Zoë"));
    EXPECT_EQ(editor<QPlainTextEdit>(Names)->toPlainText(), "x\ny");
    EXPECT_EQ(editor<QPlainTextEdit>(Overview)->toPlainText(), "line 1\nline 2");
    EXPECT_TRUE(editor<QPlainTextEdit>(Overview)->isReadOnly());

    own.SetValue(Level, 0.123456789); // more digits than are shown
    editor<QLineEdit>(Level)->setFocus();
    QTest::keyClick(editor<QLineEdit>(Level), Qt::Key_Tab);
    EXPECT_EQ(value<double>(Level), 0.123456789) << "looking changes nothing";
}

TEST_F(Fields, ASummaryIsSeenWholeAtTheSizeInWhichItsDialogOpens) {
    const std::string line80 =
        "Plots 1 to 3 draw the first 32000 things that were read, and the others not once";
    std::string words;
    while (words.size() < 300)
        words += "a name of seven words, perhaps, ";
    for (const std::string& text : {std::string("short"), line80, "a\nb\nc\nd\ne\nf\n" + line80 + "\nh",
                                    words, std::string(300, 'x'), line80 + '\n' + words + '\n' + words}) {
        dynamic_cast<EveryKindDlg&>(dialog()).SetValue(Overview, text);
        korvana::desktop::DialogView again(dialog());
        again.show();
        const auto* summary = again.findChild<QWidget*>(QStringLiteral("control%1").arg(Overview))
                                  ->findChild<QPlainTextEdit*>();
        EXPECT_EQ(summary->horizontalScrollBar()->maximum(), 0) << text;
        EXPECT_EQ(summary->verticalScrollBar()->maximum(), 0) << text;
        EXPECT_LT(again.width(), 1000) << text;
    }
}

TEST_F(Fields, WhatIsDisabledIsGreyedOutAndTakesNothing) {
    auto& own = dynamic_cast<EveryKindDlg&>(dialog());
    QLineEdit* name = editor<QLineEdit>(Name);
    retype(name, "half written");
    for (const ControlTemplate& control : controls) {
        own.Enable(control.id, false);
        for (const QWidget* field : view->findChildren<QWidget*>(QStringLiteral("control%1").arg(control.id)))
            EXPECT_FALSE(field->isEnabled()) << control.id;
    }
    for (const QLabel* caption : view->findChildren<QLabel*>())
        EXPECT_FALSE(caption->buddy() != nullptr && caption->isEnabled()) << caption->text().toStdString();
    EXPECT_EQ(name->text(), "") << "what was being typed does not count any more";
    EXPECT_EQ(value<std::string>(Name), "");
    own.Enable(Name, true);
    EXPECT_TRUE(name->isEnabled());
    retype(name, "Zoe");
    QTest::keyClick(name, Qt::Key_Tab);
    EXPECT_EQ(value<std::string>(Name), "Zoe");
    // A view that comes later shows it at once.
    korvana::desktop::DialogView again(dialog());
    for (const QPushButton* button : again.findChildren<QPushButton*>())
        EXPECT_FALSE(button->isEnabledTo(&again)) << button->text().toStdString();
}

TEST_F(Fields, ANumberOutOfRangeIsRefusedBesideTheField) {
    auto* number = editor<QSpinBox>(Count);
    retype(number->findChild<QLineEdit*>(), "39");
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(number, Qt::Key_Up);
    EXPECT_EQ(value<int>(Count), 40) << "the arrows stop at the end";
    EXPECT_TRUE(complaint().isEmpty());
    retype(number->findChild<QLineEdit*>(), "41");
    QTest::keyClick(number, Qt::Key_Tab);
    EXPECT_TRUE(complaint().contains("'Number' takes numbers from")) << complaint().toStdString();
    EXPECT_EQ(value<int>(Count), 40);
    EXPECT_EQ(number->text(), "41") << "to be corrected";
    QTest::keyClick(number, Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(number->text(), "41") << "which turns the page of the dialog";
    retype(number->findChild<QLineEdit*>(), "7");
    QTest::keyClick(number, Qt::Key_Tab);
    EXPECT_TRUE(complaint().isEmpty());
    EXPECT_EQ(value<int>(Count), 7);
}

TEST_F(Fields, WhatIsNotANumberIsRefusedBesideTheFieldAndStopsButtons) {
    auto* level = editor<QLineEdit>(Level);
    for (const char* wrong : {"0,9", "", "abc", "inf", "nan", "1e999"}) {
        retype(level, wrong);
        level->setModified(true);
        QTest::mouseClick(editor<QPushButton>(Go), Qt::LeftButton);
        EXPECT_TRUE(complaint().contains("number")) << wrong;
        EXPECT_EQ(complainedAt(), level->parentWidget()) << wrong;
        EXPECT_TRUE(level->hasFocus());
    }
    EXPECT_TRUE(analysis->commands.empty());
    retype(level, "0.9");
    EXPECT_EQ(complaint(), "") << "typing takes the reason away";
    QTest::mouseClick(editor<QPushButton>(Go), Qt::LeftButton);
    EXPECT_EQ(value<double>(Level), 0.9);
    EXPECT_EQ(analysis->commands, std::vector<int>{Go});
}

TEST_F(Fields, ARefusedValueIsExplainedAndThePreviousOneShown) {
    analysis->onValue = [](EveryKindDlg& dlg, int control) {
        if (control != Box) return;
        dlg.SetValue(Box, false);
        throw std::runtime_error("not with these data");
    };
    QTest::keyClick(editor<QCheckBox>(Box), Qt::Key_Space);
    EXPECT_EQ(complaint(), "Not with these data.");
    EXPECT_FALSE(editor<QCheckBox>(Box)->isChecked());
}

TEST_F(Fields, AListSkipsTheEntryWithoutAText) {
    auto* list = editor<QListWidget>(Entries);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(value<int>(Entries), 2);
    QTest::keyClick(list, Qt::Key_Up);
    EXPECT_EQ(value<int>(Entries), 0);
    doubleClick(list, 1);
    EXPECT_TRUE(analysis->commands.empty());
    doubleClick(list, 2);
    EXPECT_EQ(analysis->commands, std::vector<int>{Entries});
    dynamic_cast<EveryKindDlg&>(dialog()).SetValue(Entries, 1);
    EXPECT_TRUE(list->selectedItems().isEmpty()) << "a line is not selected";
}

} // namespace
} // namespace everykind
