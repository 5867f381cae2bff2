#pragma once
// The whole window with the survival module in it, and helpers to operate it.

#include "apps/desktop/dialogs/DialogView.h"
#include "apps/desktop/results/Workbook.h"
#include "apps/desktop/window/AnalysisRunner.h"
#include "apps/desktop/window/MainWindow.h"
#include "tests/apps/desktop/Modals.h"
#include "tests/apps/desktop/data/Trial.h"

#include <functional>
#include <memory>

namespace korvana::desktop {

class WindowTest : public testing::Test {
protected:
    Folder folder;
    std::unique_ptr<MainWindow> window;

    void SetUp() override { renew(); }
    void renew() {
        window.reset(); // only one analysis object may exist
        window =
            std::make_unique<MainWindow>(loadAnalysis(findModules()), QString{}, folder.path("settings.ini"));
        window->show();
    }
    static QString example(const char* name) {
        return QStringLiteral(KORVANA_SOURCE_DIR "/examples/data/") + QString::fromLatin1(name);
    }

    AnalysisRunner& runner() { return window->runner(); }
    DialogView* view() { return runner().currentView(); }
    ozm::CAnalysisDialog& model() { return *view()->dialog(); }
    QString title() { return view() == nullptr ? QString{} : view()->windowTitle(); }

    QPushButton* button(const QString& text) {
        for (QPushButton* each : view()->findChildren<QPushButton*>())
            if (each->isVisible() && each->text().remove(QLatin1Char('&')) == text) return each;
        return nullptr;
    }
    void click(const QString& text) {
        QPushButton* found = button(text);
        ASSERT_NE(found, nullptr) << text.toStdString() << " in " << title().toStdString();
        QTest::mouseClick(found, Qt::LeftButton);
        QApplication::processEvents();
    }
    /// Sets a control as a user's choice would, through the model that the view follows.
    void put(int control, ozm::ControlValue value) {
        const ozm::DialogResult result = model().PutValue(control, std::move(value));
        EXPECT_TRUE(result.done) << result.reason;
    }

    /// Goes from the menu to the specification of the second analysis in the list, and fills it in.
    void specify(const ozm::VariableSelection& variables, double complete, double censored) {
        window->startAnalysis();
        ASSERT_EQ(title(), "Survival and Failure Time Analysis");
        put(180, 1);
        click("OK");
        ASSERT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
        put(1001, variables);
        put(1002, complete);
        put(1003, censored);
    }
    std::shared_ptr<const ResultsBook> book() {
        return window->workbook().book(window->workbook().currentRun());
    }
};

} // namespace korvana::desktop
