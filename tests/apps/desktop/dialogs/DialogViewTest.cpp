#include "tests/apps/desktop/dialogs/EveryKind.h"

namespace everykind {
namespace {

using korvana::desktop::DialogView;
struct View : Window {};
struct ResultsView : Window {
    ResultsView() : Window(results) {}
};

TEST_F(View, OperationsDoNotNestAndAreReportedAfterwards) {
    view->showPage(1);
    const QSignalSpy stops(view.get(), &DialogView::stopRequested);
    const QSignalSpy told(view.get(), &DialogView::operated);
    analysis->onCommand = [&](EveryKindDlg&, int) {
        EXPECT_TRUE(view->isBusy());
        settle(); // the module processes events
        editor<QPushButton>(Beside)->click();
        editor<QCheckBox>(Box)->click();
        view->close();
        QTest::keyClick(view.get(), Qt::Key_Escape);
        settle();
        EXPECT_EQ(told.count(), 0);
    };
    QTest::mouseClick(editor<QPushButton>(Go), Qt::LeftButton);
    EXPECT_EQ(analysis->commands, std::vector<int>{Go});
    EXPECT_FALSE(value<bool>(Box));
    EXPECT_FALSE(editor<QCheckBox>(Box)->isChecked()) << "what was not taken is not shown";
    EXPECT_EQ(stops.count(), 2);
    settle();
    EXPECT_EQ(told.count(), 1) << "after it has returned";
    EXPECT_TRUE(view->isVisible());
}

TEST_F(View, DetachesFromAModelThatClosed) {
    QStringList told;
    QObject::connect(view.get(), &DialogView::dialogClosed, view.get(), [&] { told.append("closed"); });
    QObject::connect(view.get(), &DialogView::operated, view.get(), [&] {
        told.append("operated");
        session.pump(); // the analysis ends
        session.close();
    });
    auto* level = editor<QLineEdit>(Level);
    level->setFocus();
    QTest::keyClicks(level, "5");
    view->close();
    EXPECT_EQ(view->dialog(), nullptr);
    EXPECT_TRUE(told.isEmpty());
    settle();
    EXPECT_EQ(told, (QStringList{"closed", "operated"}));
    EXPECT_FALSE(view->isVisible());
    // The model is gone. Nothing done to the view has an effect now.
    editor<QCheckBox>(Box)->click();
    editor<QPushButton>(Go)->click();
    editor<QLineEdit>(Level)->setText("7");
    view->refreshData();
    view->showPage(1);
    view->reject();
    EXPECT_EQ(told.size(), 2);
}

TEST_F(View, MayBeDestroyedBeforeItsModel) {
    editor<QLineEdit>(Level)->setFocus();
    QTest::keyClicks(editor<QLineEdit>(Level), "3");
    view.reset();
    dynamic_cast<EveryKindDlg&>(dialog()).SetValue(Box, true);
    dialog().Press(ControlCancel);
    EXPECT_EQ(value<double>(Level), 0.0) << "what was not taken is dropped";
}

TEST_F(View, ShowsARefusalBesideItsButton) {
    analysis->onCommand = [](EveryKindDlg&, int) { throw std::runtime_error("the disk is full"); };
    QTest::mouseClick(editor<QPushButton>(Go), Qt::LeftButton);
    EXPECT_EQ(complaint(), "The disk is full.");
    EXPECT_EQ(complainedAt(), editor<QPushButton>(Go)->parentWidget());
    analysis->onCommand = [](EveryKindDlg&, int) { throw 1; };
    QTest::mouseClick(editor<QPushButton>(Go), Qt::LeftButton);
    EXPECT_TRUE(complaint().contains("no reason"));
}

TEST_F(View, AComplaintDisappearsWithItsCause) {
    type("dead"); // no variable has codes yet
    ASSERT_FALSE(complaint().isEmpty());
    auto* level = editor<QLineEdit>(Level);
    retype(level, "0.5"); // unrelated to the complaint
    QTest::keyClick(level, Qt::Key_Return);
    settle();
    EXPECT_FALSE(complaint().isEmpty());
    doubleClick(available(), 0);
    doubleClick(available(), 2); // status, which has the label
    settle();
    EXPECT_EQ(complaint(), "");
    EXPECT_EQ(code(), 1.0);
}

TEST_F(View, AComplaintIsShownAtItsFieldAndCoversNothing) {
    const auto placeOf = [this](const QWidget& one) {
        return QRect(one.mapTo(view.get(), QPoint()), one.size());
    };
    const int line = view->fontMetrics().height();
    for (const int page : {0, 1}) {
        view->showPage(page);
        settle(); // the first layout
        const QSize before = view->size();
        std::vector<QWidget*> subjects{list("role0"), list("role1"), available()};
        for (QWidget* field : view->findChildren<QWidget*>()) // to Qt, fields are no class of their own
            if (dynamic_cast<korvana::desktop::ControlField*>(field) != nullptr) subjects.push_back(field);
        for (QWidget* subject : subjects) {
            if (!subject->isVisible()) continue;
            for (const QString& reason : {QStringLiteral("No."), QString("this is no number; ").repeated(9),
                                          QString("a_name_without_").repeated(15)}) {
                const std::string what = subject->objectName().toStdString() + reason.toStdString();
                callout()->showBeside(*subject, reason);
                const QRect place = callout()->geometry();
                const QRect row = placeOf(*subject).adjusted(0, -line, 0, line);
                EXPECT_TRUE(place.bottom() >= row.top() && place.top() <= row.bottom()) << what;
                EXPECT_TRUE(view->rect().contains(place)) << what;
                auto* text = callout()->findChild<QLabel*>();
                EXPECT_LE(text->minimumSizeHint().width(), text->width()) << "cut: " << what;
                for (QWidget* one : view->findChildren<QWidget*>()) {
                    const auto* label = qobject_cast<QLabel*>(one);
                    const bool shows = qobject_cast<QLineEdit*>(one) || qobject_cast<QAbstractButton*>(one) ||
                                       qobject_cast<QAbstractItemView*>(one) ||
                                       qobject_cast<QPlainTextEdit*>(one) || qobject_cast<QComboBox*>(one) ||
                                       (label != nullptr && !label->text().isEmpty());
                    if (!shows || !one->isVisible() || callout()->isAncestorOf(one)) continue;
                    EXPECT_FALSE(placeOf(*one).intersects(place)) << what << one->objectName().toStdString();
                }
                callout()->hide();
                EXPECT_EQ(view->size(), before) << what;
            }
        }
    }
}

TEST_F(View, EnterTakesWhatWasTypedAndPressesOk) {
    view->showPage(1);
    auto* level = editor<QLineEdit>(Level);
    retype(level, "0.5");
    analysis->onCommand = [&](EveryKindDlg&, int) { EXPECT_EQ(value<double>(Level), 0.5); };
    QTest::keyClick(level, Qt::Key_Return);
    EXPECT_EQ(analysis->commands, std::vector<int>{ControlOk});
    QTest::keyClick(editor<QPushButton>(Beside), Qt::Key_Return);
    EXPECT_EQ(analysis->commands, (std::vector<int>{ControlOk, Beside}))
        << "a button with the focus comes first";

    // Wherever the focus is, except in a text of several lines.
    select({{1}, {3}});
    analysis->onCommand = {};
    for (const int page : {0, 1}) {
        view->showPage(page);
        for (QWidget* each : view->findChildren<QWidget*>()) {
            const auto* text = qobject_cast<QPlainTextEdit*>(each);
            if (!each->isVisible() || qobject_cast<QPushButton*>(each) != nullptr) continue;
            if ((each->focusPolicy() & Qt::TabFocus) == 0 || (text != nullptr && !text->isReadOnly()))
                continue;
            each->setFocus(Qt::TabFocusReason);
            analysis->commands.clear();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            EXPECT_EQ(analysis->commands, std::vector<int>{ControlOk})
                << each->metaObject()->className() << ' ' << each->objectName().toStdString();
        }
    }
}

TEST_F(View, AWrongFieldOnAnotherPageIsTurnedTo) {
    view->showPage(1);
    auto* level = editor<QLineEdit>(Level);
    level->setText("x");
    level->setModified(true);
    view->showPage(0);
    editor<QPushButton>(ControlOk)->click();
    EXPECT_TRUE(level->hasFocus()); // and so its page is shown
    EXPECT_TRUE(complaint().startsWith("'x' is not a number"));
    editor<QPushButton>(ControlCancel)->click();
    EXPECT_TRUE(dialog().IsClosed()) << "Cancel asks for nothing";
}

TEST_F(View, AcceleratorsAndTabOrder) {
    ASSERT_TRUE(view->isActiveWindow());
    QTest::keyClick(view.get(), Qt::Key_S, Qt::AltModifier);
    // An accelerator shows its button pressed before it clicks.
    EXPECT_TRUE(QTest::qWaitFor([this] { return !analysis->commands.empty(); }));
    EXPECT_EQ(analysis->commands, std::vector<int>{Beside});
    QTest::keyClick(view.get(), Qt::Key_L, Qt::AltModifier);
    EXPECT_TRUE(editor<QLineEdit>(Level)->hasFocus());
    for (const int next : {int{Go}, int{ControlOk}, int{ControlCancel}, int{Beside}}) {
        QTest::keyClick(view->focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(editor<QPushButton>(next)->hasFocus()) << next;
    }
}

TEST_F(ResultsView, EnterInAFieldPressesNothingWithoutAnOk) {
    auto* level = editor<QLineEdit>(Level);
    retype(level, "0.9");
    QTest::keyClick(level, Qt::Key_Return);
    EXPECT_EQ(value<double>(Level), 0.9);
    EXPECT_TRUE(analysis->commands.empty());
}

} // namespace
} // namespace everykind
