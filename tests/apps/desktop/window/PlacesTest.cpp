// Where dialogs are placed. Offscreen there is no window manager; under_window_manager.sh runs the same tests
// with one.

#include "tests/apps/desktop/window/OpenWindow.h"

#include "apps/desktop/dialogs/Callout.h"

namespace korvana::desktop {
namespace {

class PlacesTest : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        ASSERT_TRUE(window->openFile(example("veteran.csv")));
    }
    /// Waits until the window manager has placed the windows.
    void settle() {
        ASSERT_NE(view(), nullptr);
        (void)QTest::qWaitForWindowExposed(view());
        QTest::qWait(1);
        // There is no telling that it has nothing more to say: it is given time, and more while it moves
        // things.
        for (QRect before; windowManager() && before != view()->geometry();) {
            before = view()->geometry();
            QTest::qWait(150);
        }
    }
    static bool windowManager() { return QGuiApplication::platformName() == QStringLiteral("xcb"); }
    QRect frame() { return view()->windowHandle()->frameGeometry(); }

    /// OK with codes that no case has: the dialog closes, a message is shown, the dialog opens again.
    void okThatFails() {
        put(1001, ozm::VariableSelection{{3}, {4}});
        put(1002, 5.0);
        put(1003, 6.0);
        EXPECT_TRUE(boxOf([this] { click("OK"); }).contains("valid cases"));
        settle();
    }
    /// Each dialog on the way from startup to results and back, failures included.
    void round(const std::function<void()>& check) {
        window->startAnalysis();
        settle();
        check();
        put(180, 1);
        click("OK");
        settle();
        check();
        for (int again = 0; again < 2; ++again) {
            okThatFails();
            check();
        }
        put(1002, 1.0);
        put(1003, 0.0);
        click("OK");
        settle();
        check();
        for (int step = 0; step < 2; ++step) {
            click("Cancel");
            settle();
            check();
        }
        click("Cancel");
        EXPECT_EQ(view(), nullptr);
    }
};

TEST_F(PlacesTest, DialogsStayWhereTheyArePut) {
    if (windowManager()) {
        window->startAnalysis();
        settle();
        EXPECT_NE(view()->windowHandle()->frameMargins(), QMargins()) << "nothing decorates the windows";
    }
    // First without moving: the toolkit does not know the frames of windows yet.
    for (const QPoint place : {QPoint(), QPoint(60, 70), QPoint(30, 110)}) {
        window->startAnalysis();
        settle();
        if (!place.isNull()) {
            view()->windowHandle()->setFramePosition(place); // like the mouse
            settle();
            EXPECT_LE((frame().topLeft() - place).manhattanLength(), 2);
        }
        const QPoint put = frame().topLeft();
        for (int n = 0; n < (windowManager() ? 2 : 10); ++n)
            round([&] { EXPECT_EQ(frame().topLeft(), put) << title().toStdString() << ", round " << n; });
    }
}

TEST_F(PlacesTest, ASizeThatWasGivenStays) {
    window->startAnalysis();
    settle();
    const QSize larger = view()->size() + QSize(40, 30);
    view()->resize(larger);
    settle();
    for (int round = 0; round < 2; ++round) {
        // A size needed only for a while is not the user's choice.
        auto* callout = dynamic_cast<Callout*>(view()->findChild<QFrame*>("callout"));
        callout->showBeside(*button("OK"), QString("this is no number; ").repeated(9));
        const QSize grown = view()->size();
        ASSERT_NE(grown, larger);
        // A slow window manager still reports what was asked for earlier.
        for (const QSize& late : {larger, grown}) {
            if (windowManager()) break;
            view()->windowHandle()->resize(late);
            QTest::qWait(1);
        }
        EXPECT_EQ(view()->size(), grown);
        ASSERT_TRUE(window->openFile(example("aml.csv"))); // the analysis starts again
        settle();
        EXPECT_EQ(view()->size(), larger);
    }
}

TEST_F(PlacesTest, ADialogIsMeasuredAsItIsThenShown) {
    QDialog dialog;
    auto* part = new QWidget;
    auto* text = new QLineEdit;
    (new QVBoxLayout(&dialog))->addWidget(part);
    (new QVBoxLayout(part))->addWidget(text);
    dialog.adjustSize();
    text->setMinimumSize(500, 90); // when it got its text, say
    DialogPlaces().place(dialog, *window);
    const QSize measured = dialog.size();
    dialog.show();
    (void)QTest::qWaitForWindowExposed(&dialog);
    EXPECT_EQ(dialog.size(), measured);
}

TEST_F(PlacesTest, AllOfADialogIsOnTheScreen) {
    const QRect screen = window->screen()->availableGeometry();
    for (const QPoint corner : {QPoint(-3000, -40), QPoint(screen.width() - 30, screen.height() - 30)}) {
        window->startAnalysis();
        settle();
        view()->windowHandle()->setFramePosition(corner);
        settle();
        click("Cancel");
        round([&] {
            EXPECT_TRUE(screen.contains(frame()))
                << title().toStdString() << ": " << frame().right() << ", " << frame().bottom();
        });
    }
}

} // namespace
} // namespace korvana::desktop
