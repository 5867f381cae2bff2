// The dialogs of the module as people meet them: from the first to the results and back.

#include "apps/desktop/dialogs/DialogView.h"
#include "apps/desktop/dialogs/DragList.h"
#include "host/data/ReadData.h"
#include "host/session/Session.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace korvana::desktop {
namespace {

struct ModuleDialogs : ::testing::Test, SessionObserver {
    ModuleDialogs() : session(loadAnalysis(findModules()), options()) {
        session.addObserver(*this);
        session.data().open(readData(KORVANA_SOURCE_DIR "/examples/data/veteran.csv"));
        session.start();
    }
    ~ModuleDialogs() override { view.reset(); }
    static SessionOptions options() {
        SessionOptions interactive;
        interactive.automation = false;
        return interactive;
    }
    void dialogOpened(ozm::CAnalysisModelessDialog& dialog, int page) override {
        view = std::make_unique<DialogView>(dialog);
        QObject::connect(
            view.get(), &DialogView::operated, view.get(), [this] { session.pump(); }, Qt::QueuedConnection);
        view->showPage(page);
        view->show();
        view->activateWindow();
    }
    void dialogClosed(ozm::CAnalysisModelessDialog& /*dialog*/) override { view.release()->deleteLater(); }
    void settle() {
        QTest::qWait(1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (view) (void)QTest::qWaitForWindowActive(view.get());
    }
    /// Whether the dialog of this title comes up; the steps between are queued.
    bool opens(const char* wanted) {
        return QTest::qWaitFor([&] { return title() == QLatin1String(wanted); });
    }
    QString title() { return view ? view->windowTitle() : QString{}; }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(view->focusWidget(), key, modifiers);
        settle();
    }
    void choose(const char* variable, Qt::Key box) {
        auto* search = view->findChild<QLineEdit*>("search");
        search->setFocus();
        search->selectAll();
        QTest::keyClicks(search, variable);
        auto* available = view->findChild<QListView*>("available");
        QTest::keyClick(search, Qt::Key_Down);
        QTest::keyClick(available, box, Qt::ControlModifier);
    }

    Session session;
    std::unique_ptr<DialogView> view;
};

TEST_F(ModuleDialogs, KaplanMeierByKeyboardFromTheStartToItsResultsAndBack) {
    EXPECT_TRUE(opens("Survival and Failure Time Analysis"));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    ASSERT_TRUE(opens("Product-Limit (Kaplan & Meier) Analysis"));

    choose("time", Qt::Key_1);
    choose("status", Qt::Key_2);
    key(Qt::Key_O, Qt::AltModifier);
    QTest::keyClicks(view->focusWidget(), "1");
    key(Qt::Key_C, Qt::AltModifier);
    QTest::keyClicks(view->focusWidget(), "0");
    key(Qt::Key_Return);
    ASSERT_TRUE(opens("Product-Limit (Kaplan-Meier) Analysis Results"));

    EXPECT_TRUE(view->findChild<QPlainTextEdit*>()->toPlainText().contains("137"));
    key(Qt::Key_U, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return session.book().outputs.size() == 3; }))
        << "two reports, a table";
    key(Qt::Key_T, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return session.book().outputs.size() == 4; })) << "a chart";

    key(Qt::Key_Escape);
    ASSERT_TRUE(opens("Product-Limit (Kaplan & Meier) Analysis"));
    EXPECT_EQ(view->findChild<QListView*>("role1")->model()->rowCount(), 1) << "selections stay";
    EXPECT_EQ(view->findChild<QComboBox*>()->currentText(), "1");
    key(Qt::Key_Escape);
    EXPECT_TRUE(opens("Survival and Failure Time Analysis"));
    key(Qt::Key_Escape);
    EXPECT_TRUE(opens("")) << "no dialog";
    EXPECT_FALSE(session.isActive());
}

} // namespace
} // namespace korvana::desktop
