// Every dialog and message box of the window closes by Escape and by its close button, to which Alt+F4 comes
// down.

#include "tests/apps/desktop/window/OpenWindow.h"

namespace korvana::desktop {
namespace {

struct Closing : WindowTest, testing::WithParamInterface<bool> {
    void closeIt(QDialog& dialog) const {
        const QPointer<QDialog> open(&dialog);
        QWidget* focus = QApplication::focusWidget();
        if (GetParam())
            QTest::keyClick(focus != nullptr ? focus : &dialog, Qt::Key_Escape);
        else
            dialog.close();
        const auto gone = [&open] { return open.isNull() || !open->isVisible(); };
        if (QTest::qWaitFor(gone, 1000)) return;
        ADD_FAILURE() << "stays open: " << dialog.windowTitle().toStdString();
        dialog.done(QDialog::Rejected);
    }
    /// The dialog of the analysis, after which the one before it may come.
    void closeView() {
        view()->activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == view(); }));
        closeIt(*view());
    }
    auto closes() const {
        return [this](QDialog& dialog) { closeIt(dialog); };
    }
    /// The actions of the menus that open a dialog.
    QList<QAction*> opening() const {
        QList<QAction*> found;
        for (QAction* menu : window->menuBar()->actions()) {
            emit menu->menu()->aboutToShow(); // some fill themselves then
            for (QAction* action : menu->menu()->actions())
                if (action->isEnabled() &&
                    (action->text().endsWith("...") || action->text().contains("About")))
                    found += action;
        }
        return found;
    }
};

TEST_P(Closing, WhatTheMenusOpen) {
    ASSERT_TRUE(window->openFile(example("veteran.csv")));
    specify({{3}, {4}}, 1, 0);
    click("OK");
    click("Survival times vs. cum. proportion surviving");
    while (view() != nullptr)
        closeView();
    EXPECT_FALSE(runner().isActive());
    QStringList opened;
    for (QAction* action : opening()) {
        opened += action->text().remove('&');
        SCOPED_TRACE(opened.back().toStdString());
        if (action->shortcut() == QKeySequence(Qt::Key_F5)) {
            action->trigger();
            ASSERT_NE(view(), nullptr);
            closeView();
            EXPECT_FALSE(runner().isActive());
        } else {
            answering([action] { action->trigger(); }, closes());
        }
    }
    EXPECT_GE(opened.size(), 12) << opened.join(", ").toStdString();
}

TEST_P(Closing, WhatAsksOrComplains) {
    const QString mixed = folder.write("mixed.csv", "t;c\n1,5;1\n2.25;0\n");
    const QString dates = folder.write("dates.csv", "id,day\n1,02/03/1995\n2,04/05/1996\n");
    answering([&] { window->startAnalysis(); }, closes()); // without data
    for (const QString& file : {folder.path("gone.csv"), mixed, dates})
        answering([&] { EXPECT_FALSE(window->openFile(file)); }, closes());
    ASSERT_TRUE(window->openFile(example("veteran.csv")));
    runner().data().define(Definition{"logtime", "log(time)"});
    answering([&] { EXPECT_FALSE(window->openFile(mixed)); }, closes());
    answering([&] { EXPECT_FALSE(window->close()); }, closes());
    specify({{3}, {4}}, 5, 6);
    answering([&] { click("OK"); }, closes());
}

INSTANTIATE_TEST_SUITE_P(By, Closing, testing::Bool(),
                         [](const auto& by) { return by.param ? "Escape" : "CloseButton"; });

} // namespace
} // namespace korvana::desktop
