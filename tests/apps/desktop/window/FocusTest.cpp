// Where the keyboard is: on the way through dialogs and back, and whether it is seen. And the window's
// beginning.

#include "tests/apps/desktop/Labels.h"
#include "tests/apps/desktop/window/OpenWindow.h"

#include "apps/desktop/data/DataView.h"
#include "apps/desktop/window/FocusRing.h"

namespace korvana::desktop {
namespace {

struct Focus : WindowTest {
    void SetUp() override {
        WindowTest::SetUp();
        activate(*window);
    }
    static void activate(QWidget& widget) {
        widget.activateWindow();
        // A window with an active dialog over it counts as active for qWaitForWindowActive.
        ASSERT_TRUE(QTest::qWaitFor([&widget] { return QApplication::activeWindow() == &widget; }));
    }
    void specify() {
        ASSERT_TRUE(window->openFile(example("veteran.csv")));
        window->startAnalysis();
        put(180, 1);
        click("OK");
        ASSERT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
        activate(*view());
    }
    void escape() {
        activate(*view());
        QTest::keyClick(view(), Qt::Key_Escape);
        QApplication::processEvents();
    }
};

/// Run under window managers too: each has its own mind about what comes after a dialog.
TEST_F(Focus, ReturnsToTheWindowThatHadIt) {
    specify();
    auto* tree = window->findChild<QTreeWidget*>();
    tree->show();
    const auto cancel = [](QDialog& dialog) { dialog.reject(); };
    const auto ok = [](QDialog& dialog) { dialog.accept(); };
    const std::function<void()> ways[] = {
        [&] { answering([&] { window->defineSelection(); }, cancel); },
        [&] { answering([&] { window->defineSelection(); }, ok); },
        [&] { answering([&] { window->defineWeights(); }, ok); },
        [&] { answering([&] { window->computeVariable(); }, cancel); },
        [&] { answering([&] { window->askForFileAndOptions(); }, naming(example("aml.csv")), cancel); },
        [&] { // of the dialog itself, over which a window manager keeps it
            answering([&] { click("Select Cases"); },
                      [&](QDialog& dialog) {
                          EXPECT_EQ(dialog.parentWidget(), view());
                          dialog.reject();
                      });
        },
    };
    for (QWidget* before : std::initializer_list<QWidget*>{view(), window.get()}) {
        if (before != view()) { // a window is brought to the front of its own dialog by the mouse alone
            view()->hide();
            activate(*before);
            view()->setAttribute(Qt::WA_ShowWithoutActivating);
            view()->show();
        }
        QWidget* focus = before == view() ? button("Select Cases") : static_cast<QWidget*>(tree);
        focus->setFocus();
        for (const auto& way : ways) {
            way();
            EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == focus; })) << &way - ways;
            QTest::qWait(200); // nor does it go elsewhere then
            EXPECT_EQ(QApplication::focusWidget(), focus) << &way - ways;
        }
    }
}

TEST_F(Focus, InADialogLeavesTheWindowItsKeys) {
    specify();
    QTest::keyClick(view(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(Focus, ComesBackToTheFieldInADialogThatWasLeft) {
    specify();
    const auto field = [this](const char* control) { return view()->findChild<QWidget*>(control); };
    auto* search = view()->findChild<QLineEdit*>("search");
    for (const auto& [name, box] : {std::pair{"time", Qt::Key_1}, {"status", Qt::Key_2}}) {
        search->setText(name);
        QTest::keyClick(search, box, Qt::ControlModifier);
    }
    const auto filledIn = [&] { return says(*field("control1002"), "(filled in)"); };
    EXPECT_TRUE(filledIn());
    field("control1003")->setFocus();
    click("OK");
    ASSERT_EQ(title(), "Product-Limit (Kaplan-Meier) Analysis Results");
    escape();
    ASSERT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
    EXPECT_EQ(view()->focusWidget(), field("control1003")->focusProxy());
    EXPECT_TRUE(filledIn()) << "what was filled in before is it still";
    auto* other = field("control1002")->findChild<QComboBox*>();
    other->setFocus();
    other->lineEdit()->selectAll();
    QTest::keyClicks(other, "7");
    boxOf([&] { click("OK"); });
    ASSERT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
    EXPECT_TRUE(says(*field("control1003"), "(filled in)")) << "also after an OK that failed on the other";

    // A part of a field, too; and what was left with Cancel.
    view()->findChild<QListView*>("role1")->setFocus();
    escape();
    click("OK");
    ASSERT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
    EXPECT_EQ(view()->focusWidget(), view()->findChild<QListView*>("role1"));
}

TEST_F(Focus, IsSeenInEveryListAlsoInAnEmptyOneAndOnAButton) {
    const FocusRing* ring = &window->focusRing();
    specify();
    for (QListView* list : view()->findChildren<QListView*>()) {
        if (!list->isVisible()) continue;
        list->setFocus();
        list->selectionModel()->clear();
        ASSERT_EQ(ring->around(), list) << list->objectName().toStdString();
        const QImage with = list->grab().toImage();
        view()->findChild<QComboBox*>()->setFocus();
        EXPECT_EQ(ring->around(), nullptr) << "a field shows its focus itself";
        EXPECT_NE(with, list->grab().toImage()) << list->objectName().toStdString();
    }
    put(1001, ozm::VariableSelection{{3}, {4}});
    put(1002, 1.0);
    put(1003, 0.0);
    click("OK"); // to a dialog that begins with a button
    activate(*view());
    auto* first = qobject_cast<QPushButton*>(view()->focusWidget());
    ASSERT_NE(first, nullptr);
    const QImage with = first->grab().toImage();
    first->clearFocus();
    EXPECT_NE(with, first->grab().toImage());

    activate(*window);
    for (QWidget* view :
         std::initializer_list<QWidget*>{window->dataView().table(), window->findChild<QTreeWidget*>()}) {
        view->show();
        view->setFocus();
        ASSERT_EQ(ring->around(), view) << view->metaObject()->className();
        EXPECT_EQ(view->findChild<QWidget*>("focusRing")->size(), view->size());
        view->resize(view->width() - 10, view->height());
        EXPECT_EQ(view->findChild<QWidget*>("focusRing")->size(), view->size());
    }
}

TEST_F(Focus, WithoutDataTheWindowOffersToOpenSome) {
    auto* open = window->findChild<QPushButton*>("open");
    ASSERT_NE(open, nullptr);
    EXPECT_EQ(window->focusWidget(), open);
    EXPECT_TRUE(window->findChildren<QCommandLinkButton*>().empty());
    answering([&] { QTest::mouseClick(open, Qt::LeftButton); }, naming(example("veteran.csv")));
    EXPECT_FALSE(open->isVisible());
    EXPECT_EQ(window->focusWidget(), window->dataView().table());

    renew(); // the file is remembered
    const auto recent = window->findChildren<QCommandLinkButton*>();
    ASSERT_EQ(recent.size(), 1);
    EXPECT_EQ(recent.front()->text(), "veteran.csv");
    QTest::mouseClick(recent.front(), Qt::LeftButton);
    EXPECT_EQ(window->runner().data().dataSet().caseCount(), 137);
    EXPECT_FALSE(recent.front()->isVisible());
}

TEST_F(Focus, AnAnalysisWithoutDataOffersToOpenSomeAndGoesOn) {
    answering([this] { window->startAnalysis(); }, [](QMessageBox& box) { box.defaultButton()->click(); },
              naming(example("veteran.csv")));
    EXPECT_EQ(title(), "Survival and Failure Time Analysis");
    EXPECT_EQ(window->runner().data().dataSet().caseCount(), 137);
}

/// From the first dialog to the results and back, by keyboard alone.
struct Keyboard : Focus {
    void SetUp() override {
        Focus::SetUp();
        ASSERT_TRUE(window->openFile(example("veteran.csv")));
        window->startAnalysis();
        ASSERT_TRUE(opens("Survival and Failure Time Analysis"));
    }
    /// Whether the dialog of this title comes up; the steps between are queued.
    bool opens(const char* wanted) {
        if (!QTest::qWaitFor([&] { return title() == QLatin1String(wanted); })) return false;
        if (view() != nullptr) activate(*view());
        return true;
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(view()->focusWidget(), key, modifiers);
        QApplication::processEvents();
    }
    void choose(const char* variable, Qt::Key box) {
        auto* search = view()->findChild<QLineEdit*>("search");
        search->setFocus();
        search->selectAll();
        QTest::keyClicks(search, variable);
        QTest::keyClick(search, Qt::Key_Down);
        QTest::keyClick(view()->findChild<QListView*>("available"), box, Qt::ControlModifier);
    }
    /// Types a code into the field that Alt and a letter lead to.
    void code(Qt::Key letter, const char* typed) {
        key(letter, Qt::AltModifier);
        QTest::keyClicks(view()->focusWidget(), typed);
    }
    /// Presses the button of a letter; whether the book then holds so many outputs.
    bool makes(Qt::Key letter, std::size_t outputs) {
        key(letter, Qt::AltModifier);
        return QTest::qWaitFor([=, this] { return book() != nullptr && book()->outputs.size() == outputs; });
    }
};

TEST_F(Keyboard, KaplanMeier) {
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    ASSERT_TRUE(opens("Product-Limit (Kaplan & Meier) Analysis"));
    choose("time", Qt::Key_1);
    choose("status", Qt::Key_2);
    code(Qt::Key_O, "1");
    code(Qt::Key_C, "0");
    key(Qt::Key_Return);
    ASSERT_TRUE(opens("Product-Limit (Kaplan-Meier) Analysis Results"));
    EXPECT_TRUE(view()->findChild<QPlainTextEdit*>()->toPlainText().contains("137"));
    EXPECT_TRUE(makes(Qt::Key_U, 3)) << "two reports, a table";
    EXPECT_TRUE(makes(Qt::Key_T, 4)) << "a chart";
    EXPECT_EQ(window->workbook().currentOutput(), 3) << "what was asked for is shown";
    activate(*view());
    key(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(view()->findChild<QTabWidget*>()->currentIndex(), 1);
    for (QMenu* menu : window->menuBar()->findChildren<QMenu*>()) {
        emit menu->aboutToShow();
        QList<QKeySequence> letters;
        for (const QAction* action : menu->actions())
            if (const auto letter = QKeySequence::mnemonic(action->text()); !letter.isEmpty())
                letters += letter;
        for (const QKeySequence& letter : letters)
            EXPECT_EQ(letters.count(letter), 1) << letter.toString().toStdString() << " means two entries";
    }

    activate(*view());
    key(Qt::Key_Escape);
    ASSERT_TRUE(opens("Product-Limit (Kaplan & Meier) Analysis"));
    EXPECT_EQ(view()->findChild<QListView*>("role1")->model()->rowCount(), 1) << "selections stay";
    EXPECT_EQ(std::get<ozm::VariableSelection>(model().Value(1001)), (ozm::VariableSelection{{3}, {4}}));
    EXPECT_EQ(view()->findChild<QComboBox*>()->currentText(), "1");
    key(Qt::Key_Escape);
    ASSERT_TRUE(opens("Survival and Failure Time Analysis"));
    EXPECT_EQ(std::get<int>(model().Value(180)), 1);
    key(Qt::Key_Escape);
    EXPECT_TRUE(opens("")) << "no dialog";
    EXPECT_FALSE(window->workbook().isEmpty()) << "results stay";
    EXPECT_FALSE(runner().isActive());
}

} // namespace
} // namespace korvana::desktop
