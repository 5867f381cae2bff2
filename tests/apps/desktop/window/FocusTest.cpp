// Where the keyboard is: on the way through dialogs and back, and whether it is seen. And the window's
// beginning.

#include "apps/desktop/data/DataView.h"
#include "apps/desktop/dialogs/DialogView.h"
#include "apps/desktop/results/Workbook.h"
#include "apps/desktop/window/AnalysisRunner.h"
#include "apps/desktop/window/FocusRing.h"
#include "apps/desktop/window/MainWindow.h"
#include "tests/apps/desktop/Labels.h"
#include "tests/apps/desktop/data/Trial.h"

#include <QApplication>
#include <QComboBox>
#include <QCommandLinkButton>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QTreeWidget>

#include <functional>
#include <memory>

namespace korvana::desktop {
namespace {

const char* const example = KORVANA_SOURCE_DIR "/examples/data/veteran.csv";

struct Focus : testing::Test {
    Folder folder;
    std::unique_ptr<MainWindow> window;

    void SetUp() override { begin(); }
    void begin() {
        window.reset(); // one analysis object at a time
        window =
            std::make_unique<MainWindow>(loadAnalysis(findModules()), QString{}, folder.path("settings.ini"));
        window->show();
        activate(*window);
    }
    static void activate(QWidget& widget) {
        widget.activateWindow();
        // A window with an active dialog over it counts as active for qWaitForWindowActive.
        ASSERT_TRUE(QTest::qWaitFor([&widget] { return QApplication::activeWindow() == &widget; }));
    }
    DialogView* view() { return window->runner().currentView(); }
    QString title() { return view() == nullptr ? QString{} : view()->windowTitle(); }
    QPushButton* button(const QString& text) {
        for (QPushButton* each : view()->findChildren<QPushButton*>())
            if (each->isVisible() && each->text().remove(QLatin1Char('&')) == text) return each;
        return nullptr;
    }
    void press(const QString& text) {
        QPushButton* found = button(text);
        ASSERT_NE(found, nullptr) << text.toStdString() << " in " << title().toStdString();
        QTest::mouseClick(found, Qt::LeftButton);
        QApplication::processEvents();
    }
    /// Does something to the modal windows that an action opens, one after the other.
    static void answering(const std::function<void()>& action, const std::function<void(QWidget&)>& answer) {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (QWidget* modal = QApplication::activeModalWidget()) answer(*modal);
        });
        timer.start(10);
        action();
    }
    void specify() {
        ASSERT_TRUE(window->openFile(example));
        window->startAnalysis();
        ASSERT_TRUE(view()->dialog()->PutValue(180, 1).done);
        press("OK");
        ASSERT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
        activate(*view());
    }
};

TEST_F(Focus, StaysInTheDialogThatOpenedAnother) {
    specify();
    for (const char* opener : {"Select Cases", "Case Weights"}) {
        const QWidget* parent = nullptr;
        answering([&] { press(opener); },
                  [&](QWidget& modal) {
                      parent = modal.parentWidget();
                      modal.close();
                  });
        EXPECT_EQ(parent, view()) << opener << ": a window manager goes back to what a window stands over";
        EXPECT_EQ(view()->focusWidget(), button(opener)) << opener;
    }
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
    press("OK");
    ASSERT_EQ(title(), "Product-Limit (Kaplan-Meier) Analysis Results");
    activate(*view());
    QTest::keyClick(view(), Qt::Key_Escape);
    QApplication::processEvents();
    ASSERT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
    EXPECT_EQ(view()->focusWidget(), field("control1003")->focusProxy());
    EXPECT_TRUE(filledIn()) << "what was filled in before is it still";

    // A part of a field, too; and what was left with Cancel.
    activate(*view());
    view()->findChild<QListView*>("role1")->setFocus();
    QTest::keyClick(view(), Qt::Key_Escape);
    QApplication::processEvents();
    press("OK");
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
    bool asked = false;
    answering([&] { QTest::mouseClick(open, Qt::LeftButton); },
              [&](QWidget& modal) {
                  asked = qobject_cast<QFileDialog*>(&modal) != nullptr;
                  modal.close();
              });
    EXPECT_TRUE(asked);
    ASSERT_TRUE(window->openFile(example));
    EXPECT_FALSE(open->isVisible());
    EXPECT_EQ(window->focusWidget(), window->dataView().table());

    begin(); // the file is remembered
    const auto recent = window->findChildren<QCommandLinkButton*>();
    ASSERT_EQ(recent.size(), 1);
    EXPECT_EQ(recent.front()->text(), "veteran.csv");
    QTest::mouseClick(recent.front(), Qt::LeftButton);
    EXPECT_EQ(window->runner().data().dataSet().caseCount(), 137);
    EXPECT_FALSE(recent.front()->isVisible());
}

TEST_F(Focus, AnAnalysisWithoutDataOffersToOpenSomeAndGoesOn) {
    int boxes = 0;
    const auto answer = [&](QWidget& modal) {
        if (auto* files = qobject_cast<QFileDialog*>(&modal)) {
            // selectFile leaves a name field that has the keyboard as it is.
            files->findChild<QLineEdit*>("fileNameEdit")->setText(example);
            static_cast<QDialog&>(*files).accept();
        } else if (auto* box = qobject_cast<QMessageBox*>(&modal)) {
            ++boxes;
            box->defaultButton()->click();
        }
    };
    answering([this] { window->startAnalysis(); }, answer);
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(title(), "Survival and Failure Time Analysis");
    EXPECT_EQ(window->runner().data().dataSet().caseCount(), 137);
}

} // namespace
} // namespace korvana::desktop
