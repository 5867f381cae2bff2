// Where the keyboard is: on the way through dialogs and back, and whether it is seen. And the window's
// beginning.

#include "tests/apps/desktop/Labels.h"
#include "tests/apps/desktop/window/OpenWindow.h"

#include "apps/desktop/data/DataView.h"
#include "apps/desktop/window/FocusRing.h"

#include <QComboBox>
#include <QCommandLinkButton>
#include <QListView>
#include <QTableView>
#include <QTreeWidget>

#include <cmath>

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
        WindowTest::specify({{3}, {4}}, 1, 0);
        activate(*view());
    }
    void escape() {
        activate(*view());
        QTest::keyClick(view(), Qt::Key_Escape);
        QApplication::processEvents();
    }
};

TEST_F(Focus, StaysInTheDialogThatOpenedAnother) {
    specify();
    for (const char* opener : {"Select Cases", "Case Weights"}) {
        const QWidget* parent = nullptr;
        answering([&] { click(opener); },
                  [&](QDialog& dialog) {
                      parent = dialog.parentWidget();
                      dialog.reject();
                  });
        EXPECT_EQ(parent, view()) << opener << ": a window manager goes back to what a window stands over";
        EXPECT_EQ(view()->focusWidget(), button(opener)) << opener;
    }
}

TEST_F(Focus, ComesBackToTheFieldInADialogThatWasLeft) {
    specify();
    const auto field = [this](const char* control) { return view()->findChild<QWidget*>(control); };
    put(1001, ozm::VariableSelection{{}, {}});
    for (const int code : {1002, 1003})
        put(code, std::nan(""));
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

    // A part of a field, too; and what was left with Cancel.
    view()->findChild<QListView*>("role1")->setFocus();
    escape();
    click("OK");
    ASSERT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
    EXPECT_EQ(view()->focusWidget(), view()->findChild<QListView*>("role1"));
}

TEST_F(Focus, IsSeenInEveryListAlsoInAnEmptyOne) {
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

} // namespace
} // namespace korvana::desktop
