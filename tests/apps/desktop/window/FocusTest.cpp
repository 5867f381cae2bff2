// The keyboard focus: on the way through dialogs and back, and whether it is visible. Also the start page.

#include "tests/apps/desktop/Labels.h"
#include "tests/apps/desktop/window/OpenWindow.h"

#include "apps/desktop/data/DataView.h"
#include "apps/desktop/window/FocusRing.h"

#include <set>

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
    void addRun() {
        ResultsBook something;
        something.append(Report{"To export", {"a line"}});
        window->workbook().addRun(std::make_shared<const ResultsBook>(std::move(something)), "Run");
    }
    void escape() {
        activate(*view());
        QTest::keyClick(view(), Qt::Key_Escape);
        QApplication::processEvents();
    }
};

/// Also run under window managers, which differ in where they put the focus after a dialog.
TEST_F(Focus, ReturnsToTheWindowThatHadIt) {
    specify();
    auto* tree = window->findChild<QTreeWidget*>();
    addRun();
    const auto cancel = [](QDialog& dialog) { dialog.reject(); };
    const auto ok = [](QDialog& dialog) { dialog.accept(); };
    const std::function<void()> ways[] = {
        [&] { answering([&] { window->defineSelection(); }, cancel); },
        [&] { answering([&] { window->defineSelection(); }, ok); },
        [&] { answering([&] { window->defineWeights(); }, ok); },
        [&] { answering([&] { window->computeVariable(); }, cancel); },
        [&] { answering([&] { window->askForFileAndOptions(); }, naming(example("aml.csv")), cancel); },
        [&] { // one after the other, for a name without an extension
            answering([&] { window->workbook().exportOutputAction()->trigger(); },
                      naming(folder.path("out.xyz")), pressing(QMessageBox::Ok), cancel);
        },
        [&] { // opened by the dialog itself, above which a window manager keeps it
            answering([&] { click("Select Cases"); },
                      [&](QDialog& dialog) {
                          EXPECT_EQ(dialog.parentWidget(), view());
                          dialog.reject();
                      });
        },
    };
    for (QWidget* before : std::initializer_list<QWidget*>{view(), window.get()}) {
        if (before != view()) { // a window above its own dialog gets the focus only by the mouse
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
            QTest::qWait(200); // it does not move later either
            EXPECT_EQ(QApplication::focusWidget(), focus) << &way - ways;
        }
    }
}

TEST_F(Focus, InADialogLeavesTheWindowItsKeys) {
    specify();
    const auto* list = qobject_cast<QListView*>(view()->focusWidget());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->selectionModel()->selectedIndexes().size(), 1) << "keys have something to act on";
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
    EXPECT_TRUE(filledIn()) << "what was filled in is still marked so";
    auto* other = field("control1002")->findChild<QComboBox*>();
    other->setFocus();
    other->lineEdit()->selectAll();
    QTest::keyClicks(other, "7");
    boxOf([&] { click("OK"); });
    ASSERT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
    EXPECT_TRUE(says(*field("control1003"), "(filled in)")) << "also after an OK that failed on the other";

    // Also to a part of a field, and in a dialog left by Cancel.
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
    // A selected row, which may fill the box, is distinct from the ring, and grey without it.
    for (const char* name : {"role0", "role1"}) {
        auto* list = view()->findChild<QListView*>(name);
        list->setFocus();
        list->setCurrentIndex(list->model()->index(0, 0));
        const auto colours = [list] { // from the upper edge down to the row
            const QImage image = list->grab().toImage();
            QList<QColor> found;
            for (int y = 0; y < image.height() / 2; ++y)
                if (const QColor at = image.pixelColor(image.width() / 2, y);
                    found.empty() || found.back() != at)
                    found += at;
            return found;
        };
        ASSERT_GT(colours().size(), 2) << name;
        EXPECT_EQ(colours()[0], view()->palette().color(QPalette::Highlight)) << name;
        EXPECT_EQ(colours()[1], view()->palette().color(QPalette::Base)) << name;
        view()->findChild<QComboBox*>()->setFocus();
        for (const QColor& one : colours())
            EXPECT_EQ(one.hsvSaturation(), 0) << name << one.name().toStdString();
    }
    put(1002, 1.0);
    put(1003, 0.0);
    click("OK"); // to a dialog whose first control is a button
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

TEST_F(Focus, TabReachesEverythingAndTheKeysOfTheWindowWorkThere) {
    specify();
    put(1001, ozm::VariableSelection{{3}, {4}});
    put(1002, 1.0);
    put(1003, 0.0);
    addRun();
    int heard = 0;
    const QAction* keys[] = {window->workbook().exportOutputAction(), window->workbook().exportRunAction(),
                             window->workbook().printAction()};
    for (const QAction* action : keys) {
        action->disconnect(&window->workbook());
        QObject::connect(action, &QAction::triggered, [&heard] { ++heard; });
    }
    for (const char* pressed : {"", "OK"}) {
        if (*pressed != 0) click(pressed);
        activate(*view());
        std::set<QWidget*> reached;
        for (int steps = 0; steps < 60; ++steps) {
            QWidget* at = QApplication::focusWidget();
            if (reached.insert(at).second) {
                heard = 0;
                for (const QAction* action : keys)
                    QTest::keyClick(at, static_cast<Qt::Key>(action->shortcut()[0].key()),
                                    action->shortcut()[0].keyboardModifiers());
                EXPECT_EQ(heard, 3) << at->metaObject()->className() << at->objectName().toStdString();
            }
            QTest::keyClick(at, Qt::Key_Tab);
        }
        for (QWidget* each : view()->findChildren<QWidget*>()) {
            if (!each->isVisible() || !each->isEnabled() || each->focusProxy() != nullptr) continue;
            if ((each->focusPolicy() & Qt::TabFocus) == 0 || qobject_cast<QRadioButton*>(each)) continue;
            EXPECT_TRUE(reached.contains(each))
                << each->metaObject()->className() << each->objectName().toStdString();
        }
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

    renew();
    answering([this] { window->startAnalysis(); }, [](QMessageBox& box) { box.defaultButton()->click(); },
              naming(example("veteran.csv")));
    EXPECT_EQ(title(), "Survival and Failure Time Analysis") << "the analysis offers it too, and goes on";

    renew(); // the file is remembered
    const auto recent = window->findChildren<QCommandLinkButton*>();
    ASSERT_EQ(recent.size(), 1);
    EXPECT_EQ(recent.front()->text(), "veteran.csv");
    QTest::mouseClick(recent.front(), Qt::LeftButton);
    EXPECT_FALSE(recent.front()->isVisible());
}

TEST_F(Focus, TheKeyboardAloneLeadsFromTheFirstDialogToTheResultsAndBack) {
    // Whether the dialog of this title comes up; the steps between are queued.
    const auto opens = [this](const char* wanted) {
        if (!QTest::qWaitFor([&] { return title() == QLatin1String(wanted); })) return false;
        if (view() != nullptr) activate(*view());
        return true;
    };
    const auto key = [this](Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) {
        activate(*view());
        QTest::keyClick(view()->focusWidget(), pressed, modifiers);
        QApplication::processEvents();
    };
    const auto holds = [this](std::size_t outputs) {
        return QTest::qWaitFor([=, this] { return book() != nullptr && book()->outputs.size() == outputs; });
    };
    ASSERT_TRUE(window->openFile(example("veteran.csv")));
    window->startAnalysis();
    ASSERT_TRUE(opens("Survival and Failure Time Analysis"));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    ASSERT_TRUE(opens("Product-Limit (Kaplan & Meier) Analysis"));
    auto* search = view()->findChild<QLineEdit*>("search");
    for (const auto& [variable, box] : {std::pair{"time", Qt::Key_1}, {"status", Qt::Key_2}}) {
        search->setFocus();
        search->selectAll();
        QTest::keyClicks(search, variable);
        QTest::keyClick(search, Qt::Key_Down);
        QTest::keyClick(view()->findChild<QListView*>("available"), box, Qt::ControlModifier);
    }
    for (const auto& [letter, code] : {std::pair{Qt::Key_O, "1"}, {Qt::Key_C, "0"}}) {
        key(letter, Qt::AltModifier);
        QTest::keyClicks(view()->focusWidget(), code);
    }
    key(Qt::Key_Return);
    ASSERT_TRUE(opens("Product-Limit (Kaplan-Meier) Analysis Results"));
    key(Qt::Key_U, Qt::AltModifier);
    EXPECT_TRUE(holds(3)) << "two reports, a table";
    key(Qt::Key_T, Qt::AltModifier);
    EXPECT_TRUE(holds(4)) << "a chart";
    EXPECT_EQ(window->workbook().currentOutput(), 3) << "what was asked for is shown";
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

    key(Qt::Key_Escape);
    ASSERT_TRUE(opens("Product-Limit (Kaplan & Meier) Analysis"));
    EXPECT_EQ(std::get<ozm::VariableSelection>(model().Value(1001)), (ozm::VariableSelection{{3}, {4}}))
        << "selections stay";
    EXPECT_EQ(view()->findChild<QComboBox*>()->currentText(), "1");
    key(Qt::Key_Escape);
    ASSERT_TRUE(opens("Survival and Failure Time Analysis"));
    EXPECT_EQ(std::get<int>(model().Value(180)), 1);
    key(Qt::Key_Escape);
    EXPECT_TRUE(opens("")) << "no dialog";
    EXPECT_FALSE(window->workbook().isEmpty()) << "results stay";
}

} // namespace
} // namespace korvana::desktop
