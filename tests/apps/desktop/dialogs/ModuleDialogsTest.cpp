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
    /// Types a code into the field that Alt and a letter lead to.
    void code(Qt::Key letter, const char* typed) {
        key(letter, Qt::AltModifier);
        QTest::keyClicks(view->focusWidget(), typed);
    }
    /// Presses the button of a letter; whether the book then holds so many outputs.
    bool makes(Qt::Key letter, std::size_t outputs) {
        key(letter, Qt::AltModifier);
        return QTest::qWaitFor([this, outputs] { return session.book().outputs.size() == outputs; });
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
    code(Qt::Key_O, "1");
    code(Qt::Key_C, "0");
    key(Qt::Key_Return);
    ASSERT_TRUE(opens("Product-Limit (Kaplan-Meier) Analysis Results"));

    EXPECT_TRUE(view->findChild<QPlainTextEdit*>()->toPlainText().contains("137"));
    EXPECT_TRUE(makes(Qt::Key_U, 3)) << "two reports, a table";
    EXPECT_TRUE(makes(Qt::Key_T, 4)) << "a chart";

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

TEST_F(ModuleDialogs, TwoSamplesByKeyboardToBothPagesOfTheirResultsAndBack) {
    EXPECT_TRUE(opens("Survival and Failure Time Analysis"));
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    ASSERT_TRUE(opens("Comparing Survival in Two Groups"));
    choose("time", Qt::Key_1);
    choose("status", Qt::Key_2);
    choose("trt", Qt::Key_3);
    code(Qt::Key_O, "1");
    code(Qt::Key_C, "0");
    code(Qt::Key_1, "2");
    code(Qt::Key_2, "1");
    key(Qt::Key_Return);
    ASSERT_TRUE(opens("Two-Sample Tests Results"));

    EXPECT_TRUE(view->findChild<QPlainTextEdit*>()->toPlainText().contains("64 ( 94.12%)")) << "group 1 is 2";
    EXPECT_TRUE(makes(Qt::Key_L, 4)) << "two reports, two tables";
    key(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_TRUE(makes(Qt::Key_S, 5)) << "a chart";

    key(Qt::Key_Escape);
    ASSERT_TRUE(opens("Comparing Survival in Two Groups"));
    EXPECT_EQ(view->findChild<QListView*>("role2")->model()->rowCount(), 1) << "selections stay";
    EXPECT_EQ(view->findChild<QWidget*>("control1004")->findChild<QComboBox*>()->currentText(), "2");
}

} // namespace
} // namespace korvana::desktop
