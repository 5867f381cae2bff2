// The keys that the menus name work wherever the focus is.

#include "apps/desktop/data/DataView.h"
#include "apps/desktop/data/VariablesView.h"
#include "tests/apps/desktop/window/OpenWindow.h"
#include "tests/host/results/Books.h"

#include <QToolTip>
#include <set>

namespace korvana::desktop {
namespace {

class Keys : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        ASSERT_TRUE(window->openFile(example("veteran.csv")));
        Workbook& workbook = window->workbook();
        run_ = workbook.addRun(std::make_shared<ResultsBook>(test::smallBook()), "Run");
        workbook.removeRun(workbook.addRun(std::make_shared<ResultsBook>(test::smallBook()), "Undo me"));
        ASSERT_TRUE(workbook.showOutput(run_, 0));
        activate(*window);
    }
    static void activate(QWidget& widget) {
        widget.activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([&widget] { return QApplication::activeWindow() == &widget; }));
    }
    /// The actions of the menus that have keys and can be chosen now. No menu has been opened yet: one that
    /// fills itself then would lend its actions its keys.
    QList<QAction*> actions() const {
        QList<QAction*> found = window->workbook().menuActions();
        for (QAction* menu : window->menuBar()->actions())
            found += menu->menu()->actions();
        found.removeIf([](QAction* one) { return !one->isEnabled() || one->shortcut().isEmpty(); });
        return found;
    }
    /// Presses an action's keys, without letting it do anything, and tells whether it was triggered.
    static bool hears(QAction* action, QWidget* focus) {
        int heard = 0;
        action->disconnect(SIGNAL(triggered(bool)));
        const QObject life;
        QObject::connect(action, &QAction::triggered, &life, [&heard] { ++heard; });
        focus->setFocus();
        const QKeyCombination keys = action->shortcut()[0];
        QTest::keyClick(focus, keys.key(), keys.keyboardModifiers());
        return heard == 1;
    }

    int run_ = 0;
};

TEST_F(Keys, WorkForEveryOutputWhereverTheFocusIs) {
    auto* tree = window->findChild<QTreeWidget*>();
    QTableView* cases = window->dataView().table();
    std::set<QString> tried;
    for (int place = 0; window->workbook().showOutput(run_, place); ++place) {
        for (QAction* action : actions()) {
            const QString keys = action->shortcut().toString();
            tried.insert(keys);
            SCOPED_TRACE(action->text().toStdString() + " of output " + std::to_string(place));
            EXPECT_TRUE(hears(action, tree));
            // These copy or remove what has the focus, which may be something else.
            const bool ofWhatHasTheFocus = keys == "Ctrl+C" || keys == "Ctrl+Shift+C" || keys == "Del";
            EXPECT_EQ(hears(action, cases), !ofWhatHasTheFocus);
        }
    }
    for (const char* keys : {"F2", "F5", "Ctrl+E", "Ctrl+Z", "Ctrl+C", "Ctrl+Shift+C", "Del", "Ctrl+G"})
        EXPECT_TRUE(tried.contains(keys)) << keys;
}

TEST_F(Keys, OfResultsWorkInADialogOfTheAnalysisToo) {
    window->startAnalysis();
    activate(*view());
    std::set<QString> heard;
    for (int place = 0; window->workbook().showOutput(run_, place); ++place)
        for (QAction* action : actions())
            if (hears(action, view()->focusWidget())) heard.insert(action->shortcut().toString());
    for (const char* keys : {"Ctrl+E", "Ctrl+Shift+E", "Ctrl+P", "Ctrl+Q", "F2"})
        EXPECT_TRUE(heard.contains(keys)) << keys;
}

TEST_F(Keys, OfACellThatCanBeEditedStayWithIt) {
    auto* variables = window->findChild<VariablesView*>();
    auto* tabs = window->findChild<QTabWidget*>();
    tabs->setCurrentWidget(variables);
    QTableView* table = variables->table();
    for (int place = 0; window->workbook().showOutput(run_, place); ++place)
        for (QAction* action : actions())
            if (action->shortcut() == QKeySequence(Qt::Key_F2)) {
                table->setCurrentIndex(table->model()->index(0, 1));
                EXPECT_FALSE(hears(action, table));
                EXPECT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr)
                    << "it edits the label";
                return;
            }
    FAIL() << "no output with F2";
}

TEST_F(Keys, F1SaysWhatAFieldIsFor) {
    specify({{3}, {4}}, 1, 0);
    int told = 0;
    for (const ozm::AutomationMember& member : model().Interface()->members) {
        auto* field = view()->findChild<QWidget*>(QStringLiteral("control%1").arg(member.control));
        if (field == nullptr) continue;
        field->setFocus();
        QTest::keyClick(view()->focusWidget(), Qt::Key_F1);
        EXPECT_EQ(QToolTip::text().toStdString(), member.help);
        ++told;
    }
    EXPECT_GE(told, 3);
    QToolTip::hideText();
}

} // namespace
} // namespace korvana::desktop
