// An estimation from a modal dialog: its lines, its Cancel, its question and its start values.

#include "apps/desktop/window/AnalysisRunner.h"
#include "apps/desktop/window/NamedValuesDialog.h"
#include "support/CAnalysisSupport.h"
#include "support/dialogs/CAnalysisModalDialog.h"
#include "support/dialogs/CAnalysisModelessDialog.h"
#include "tests/apps/desktop/Modals.h"

#include <set>

namespace korvana::desktop {
namespace {

using namespace ozm;

enum Control { Fit = 101, Starts };
constexpr ControlTemplate frameControls[] = {{.id = Fit, .text = "Fit"},
                                             {.id = ControlCancel, .text = "Cancel"}};
constexpr ControlTemplate fitControls[] = {{.id = Starts, .text = "Start values"},
                                           {.id = ControlOk, .text = "OK"},
                                           {.id = ControlCancel, .text = "Cancel"}};
constexpr DialogTemplate frameTemplate{1, "Frame", {}, frameControls};
constexpr DialogTemplate fitTemplate{2, "Estimation", {}, fitControls};
constexpr StringResource strings[] = {{9, "30 more?"}};

/// Fits until it is cancelled or has made so many iterations; then it asks, and goes on once.
class Fitting final : public CAnalysisSupport {
public:
    Fitting() {
        SetSequenceTable(table);
        resources_.strings = strings;
    }
    ModuleHandle GetLibInstance() override { return &resources_; }
    bool fit() {
        int k = 0;
        for (int end = limit;; end = 2 * limit) {
            while (k < end) {
                Iterations().AddText("iteration " + std::to_string(++k));
                QTest::qSleep(3);
                if (Iterations().WasCanceled() || !parts(k)) return false;
            }
            if (end > limit || DisplayInstQuestion(&resources_, nullptr, 9) != ButtonYes) return end > limit;
        }
    }

    /// The parts of an iteration, of a millisecond each.
    bool parts(int iteration) {
        if (units == 0) return true;
        dstart(units);
        d_pbar("Iteration " + std::to_string(iteration));
        for (unsigned part = 0; part < units; ++part) {
            QTest::qSleep(1);
            termom(1);
            if (pcancel() || IsExternallyCancelled() || Iterations().WasCanceled()) return false;
        }
        dstop();
        return true;
    }

    int limit = 0;
    unsigned units = 0;
    int answer = -2; ///< of the modal dialog
    std::vector<double> starts{0.5, -2, 0};

private:
    static int Open(CAnalysisSupport& analysis);
    static constexpr SEQFUNCTTBL table[] = {{1, &Open, 0}};
    ModuleResources resources_;
};

class FitDlg final : public CAnalysisModalDialog {
public:
    explicit FitDlg(Fitting& own) : CAnalysisModalDialog(own, fitTemplate), own_(own) {}

private:
    bool OnCommand(int control) override {
        const std::string names[] = {"age", "a very long name of a covariate, longer than any column", "x"};
        if (control == Starts) return own_.GetStartValues(names, own_.starts);
        if (control == ControlOk && !own_.fit()) return false;
        EndDialog(control == ControlOk ? 0 : 1);
        return true;
    }
    Fitting& own_;
};

class FrameDlg final : public CAnalysisModelessDialog {
public:
    explicit FrameDlg(Fitting& own) : CAnalysisModelessDialog(own, frameTemplate), own_(own) {}

private:
    bool OnCommand(int control) override {
        if (control == Fit) own_.answer = FitDlg(own_).DoModal();
        if (control == ControlCancel) ExitDialog(0, ExitMode::Back);
        return true;
    }
    Fitting& own_;
};

int Fitting::Open(CAnalysisSupport& analysis) {
    auto dialog = std::make_unique<FrameDlg>(static_cast<Fitting&>(analysis));
    return CAnalysisModelessDialog::CreateAnalysisDialog(std::move(dialog)) ? -1 : 0;
}

struct Estimation : testing::Test {
    Estimation() {
        window.show();
        runner.setProgressDelay(0);
        runner.start();
    }
    static void click(QWidget& in, const QString& text) {
        for (QPushButton* each : in.findChildren<QPushButton*>())
            if (each->text().remove(QLatin1Char('&')) == text) {
                QTest::mouseClick(each, Qt::LeftButton);
                QApplication::processEvents();
                return;
            }
        FAIL() << text.toStdString();
    }
    void pressFit() { click(*runner.currentView(), "Fit"); }
    QStringList lines() {
        const auto* text = runner.progressWindow().findChild<QPlainTextEdit*>();
        return text->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    QWidget window;
    Fitting* analysis = new Fitting;
    AnalysisRunner runner{Analysis(analysis), &window};
};

TEST_F(Estimation, ShowsItsLinesAndItsCancelEndsItAlone) {
    analysis->limit = 100'000;
    for (const bool byKey : {false, true}) {
        answering([this] { pressFit(); },
                  [this](DialogView& dialog) {
                      click(dialog, "OK");
                      EXPECT_TRUE(dialog.isVisible()) << "nothing was estimated";
                      EXPECT_FALSE(runner.progressWindow().isVisible());
                      EXPECT_TRUE(runner.isBusy()) << "the analysis still waits for its dialog";
                      click(dialog, "Cancel");
                  },
                  [this, byKey](ProgressWindow& progress) {
                      const QStringList shown = lines();
                      EXPECT_GE(shown.size(), 2);
                      EXPECT_EQ(shown.value(0), "iteration 1") << "those before the window appeared, too";
                      if (byKey)
                          QTest::keyClick(&progress, Qt::Key_Escape);
                      else
                          QTest::mouseClick(progress.findChild<QPushButton*>(), Qt::LeftButton);
                  });
        EXPECT_EQ(analysis->answer, 1);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !runner.isBusy(); }));
    }
}

TEST_F(Estimation, ShowsHowFarAnIterationIsAndStopsWithinIt) {
    analysis->limit = 10;
    analysis->units = 60'000;
    QElapsedTimer sinceCancel;
    std::set<int> values;
    QString text;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &window, [&] {
        // The window repaints and takes clicks while the iteration runs.
        auto* bar = runner.progressWindow().findChild<QProgressBar*>();
        values.insert(bar->value());
        if (values.size() < 4) return;
        text = bar->text();
        const auto* shown = runner.progressWindow().findChild<QPlainTextEdit*>();
        EXPECT_TRUE(runner.progressWindow().rect().contains(shown->geometry())) << "lines are cut off";
        look.stop();
        sinceCancel.start();
        QTest::mouseClick(runner.progressWindow().findChild<QPushButton*>(), Qt::LeftButton);
    });
    answering([this] { pressFit(); },
              [&](DialogView& dialog) {
                  click(dialog, "OK");
                  EXPECT_LT(sinceCancel.elapsed(), 1000);
                  click(dialog, "Cancel");
              },
              [&](ProgressWindow&) { look.start(10); });
    EXPECT_GE(values.size(), 4U);
    EXPECT_TRUE(text.startsWith("Iteration 1 ")) << text.toStdString();
    EXPECT_EQ(analysis->answer, 1);
}

TEST_F(Estimation, GoesOnWhenItsQuestionIsAnsweredYes) {
    analysis->limit = 20;
    answering([this] { pressFit(); }, [](DialogView& dialog) { click(dialog, "OK"); },
              [](QMessageBox& box) {
                  EXPECT_EQ(box.text(), "30 more?");
                  EXPECT_EQ(box.parentWidget()->windowTitle(), "Estimation");
                  box.button(QMessageBox::Yes)->click();
              },
              [this](ProgressWindow&) { EXPECT_EQ(lines().value(0), "iteration 1"); });
    EXPECT_EQ(analysis->answer, 0);
    EXPECT_EQ(runner.session().book().iterations.size(), 40U);
    answering([this] { pressFit(); },
              [this](DialogView& dialog) {
                  click(dialog, "OK");
                  runner.stop(); // as a request to close the program does
              },
              pressing(QMessageBox::No));
    EXPECT_EQ(analysis->answer, 1);
}

TEST_F(Estimation, TakesItsStartValuesFromATable) {
    const auto typing = [](NamedValuesDialog& dialog, std::initializer_list<const char*> texts) {
        auto* table = dialog.findChild<QTableWidget*>();
        table->setCurrentCell(0, 0);
        table->setFocus();
        for (const char* text : texts) {
            for (const char c : std::string(text)) // the first one opens an editor
                QTest::keyClick(QApplication::focusWidget(), c);
            ASSERT_NE(QApplication::focusWidget(), table);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        }
    };
    const auto startsOf = [](NamedValuesDialog& dialog) {
        QStringList texts;
        auto* table = dialog.findChild<QTableWidget*>();
        for (int row = 0; row < table->rowCount(); ++row)
            texts += table->item(row, 0)->text();
        return texts.join(' ');
    };
    const auto reason = [](NamedValuesDialog& dialog) { return dialog.findChild<QLabel*>()->text(); };
    answering([this] { pressFit(); },
              [&](DialogView& dialog) {
                  for (int times = 0; times < 3; ++times)
                      click(dialog, "Start values");
                  click(dialog, "Cancel");
              },
              [&](NamedValuesDialog& dialog) {
                  EXPECT_EQ(startsOf(dialog), "0.5 -2 0");
                  typing(dialog, {"1", "2", "3"});
                  EXPECT_EQ(startsOf(dialog), "1 2 3") << "Enter goes on to the next";
                  dialog.reject();
              },
              [&](NamedValuesDialog& dialog) {
                  EXPECT_EQ(startsOf(dialog), "0.5 -2 0") << "Cancel keeps the old ones";
                  typing(dialog, {"1e-3", "0,5"});
                  dialog.accept();
                  EXPECT_TRUE(dialog.isVisible());
                  EXPECT_TRUE(reason(dialog).startsWith("'0,5' of a very long"))
                      << reason(dialog).toStdString();
                  EXPECT_EQ(dialog.findChild<QTableWidget*>()->currentRow(), 1);
                  QGuiApplication::clipboard()->setText("7\n1e999\n9");
                  QTest::keyClick(dialog.findChild<QTableWidget*>(), Qt::Key_V, Qt::ControlModifier);
                  dialog.accept();
                  EXPECT_TRUE(reason(dialog).startsWith("'1e999' of x"));
                  EXPECT_EQ(startsOf(dialog), "1e-3 7 1e999") << "what is too much is left out";
                  QGuiApplication::clipboard()->setText("8 -8.25");
                  dialog.findChild<QTableWidget*>()->setCurrentCell(1, 0);
                  QTest::keyClick(QApplication::focusWidget(), '4');
                  QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
                  dialog.accept();
                  EXPECT_FALSE(dialog.isVisible());
              },
              [&](NamedValuesDialog& dialog) {
                  EXPECT_EQ(startsOf(dialog), "0.001 8 -8.25");
                  click(dialog, "All Zero");
                  dialog.accept();
              });
    EXPECT_EQ(analysis->starts, (std::vector<double>{0, 0, 0}));
}

} // namespace
} // namespace korvana::desktop
