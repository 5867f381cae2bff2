// A control's hint in the status line of the window.

#include "apps/desktop/window/AnalysisRunner.h"
#include "apps/desktop/window/MainWindow.h"
#include "tests/apps/desktop/Modals.h"
#include "tests/apps/desktop/dialogs/EveryKind.h"

namespace korvana::desktop {
namespace {

using namespace everykind;

TEST(Hint, IsInTheStatusLineWhileItsControlOrTheListOfItHasTheFocus) {
    const QTemporaryDir folder;
    MainWindow window(Analysis(new EveryKind(everyKind)), {}, folder.filePath("settings.ini"));
    window.show();
    window.runner().data().open(data());
    window.startAnalysis();
    QPointer<DialogView> view(window.runner().currentView());
    const auto told = [&](const QString& text) {
        return QTest::qWaitFor([&] { return window.statusBar()->currentMessage() == text; }, 2000);
    };
    const auto field = [&](int control) {
        return view->findChild<QWidget*>(QStringLiteral("control%1").arg(control));
    };
    window.statusBar()->showMessage("12 cases read");
    view->showPage(1);
    view->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(view));
    EXPECT_TRUE(told("12 cases read"));

    ASSERT_TRUE(view->dialog()->PutValue(Variables, VariableSelection{{}, {3}}).done);
    field(Codes)->setFocus();
    EXPECT_TRUE(told("Select the codes."));
    answering([&] { field(Codes)->findChild<QToolButton*>()->click(); },
              [&](QDialog& list) {
                  EXPECT_TRUE(list.isAncestorOf(QApplication::focusWidget()));
                  EXPECT_TRUE(told("Select the codes."));
                  list.reject();
              });
    field(Name)->setFocus();
    EXPECT_TRUE(told("12 cases read")) << "what was there before comes back";
    field(Codes)->setFocus();
    EXPECT_TRUE(told("Select the codes."));
    window.activateWindow();
    EXPECT_TRUE(told("12 cases read")) << "not while another window has the focus";
    view->activateWindow();
    EXPECT_TRUE(told("Select the codes."));
    window.statusBar()->showMessage("Saved.");
    field(Name)->setFocus();
    EXPECT_TRUE(told("Saved.")) << "a later message stays";

    field(Codes)->setFocus();
    EXPECT_TRUE(told("Select the codes."));
    view->reject();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window.runner().isActive(); }));
    EXPECT_FALSE(window.statusBar()->currentMessage().contains("Select")) << "it ends with its dialog";
}

} // namespace
} // namespace korvana::desktop
