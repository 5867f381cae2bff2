// The whole window, offscreen, with the survival module in it: errors on the way to results, and warnings
// about what would be lost.

#include "apps/desktop/data/OpenOptionsDialog.h"
#include "apps/desktop/data/VariableTableModel.h"
#include "apps/desktop/results/ExportDialog.h"
#include "tests/apps/desktop/window/OpenWindow.h"

namespace korvana::desktop {
namespace {

TEST_F(WindowTest, MessagesAreShownOverTheDialogWithDetailsOfTheRun) {
    ASSERT_TRUE(window->openFile(example("veteran.csv")));
    specify({{3}, {4}}, 5, 6);
    const QString shown = boxOf([this] { click("OK"); });
    EXPECT_TRUE(shown.contains("Fewer than two valid cases.")) << shown.toStdString();
    EXPECT_TRUE(shown.contains("0 (9 cases), 1 (128 cases)")) << shown.toStdString();
    EXPECT_TRUE(shown.contains("14152")) << shown.toStdString();
    EXPECT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
}

TEST_F(WindowTest, OtherDataWhileAnAnalysisRunsKeepVariablesByName) {
    const QString other = folder.write("other.csv", "status,time\n1,3\n0,4\n1,5\n1,9\n");
    const QString elsewhere = folder.write("elsewhere.csv", "a,b,c\n1,3,1\n0,4,2\n1,5,3\n");
    const ozm::VariableSelection found{{2}, {1}};
    for (const bool whileResults : {false, true}) {
        ASSERT_TRUE(window->openFile(example("veteran.csv")));
        specify({{3}, {4}}, 1, 0);
        if (whileResults) {
            click("OK");
            ASSERT_EQ(title(), "Product-Limit (Kaplan-Meier) Analysis Results");
            click("Survival curve of all observations");
        }
        ASSERT_TRUE(window->openFile(other));
        ASSERT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
        EXPECT_EQ(std::get<ozm::VariableSelection>(model().Value(1001)), found);
        EXPECT_TRUE(std::isnan(std::get<double>(model().Value(1002)))) << "the codes have to be chosen again";
        put(1002, 1.0);
        put(1003, 0.0);
        click("OK");
        ASSERT_EQ(title(), "Product-Limit (Kaplan-Meier) Analysis Results");
        click("Cancel");
        ASSERT_TRUE(window->openFile(elsewhere));
        EXPECT_EQ(std::get<ozm::VariableSelection>(model().Value(1001)), (ozm::VariableSelection{{}, {}}));
        click("Cancel");
        click("Cancel");
    }
    // Opening data does not restart an analysis that has ended; its list opens on the entry chosen last.
    ASSERT_TRUE(window->openFile(example("aml.csv")));
    EXPECT_FALSE(runner().isActive());
    window->startAnalysis();
    EXPECT_EQ(std::get<int>(model().Value(180)), 1);
    EXPECT_EQ(view()->findChild<QListView*>()->currentIndex().row(), 1);
}

TEST_F(WindowTest, TheConfidenceLevelIsKeptFromRunToRun) {
    ASSERT_TRUE(window->openFile(example("veteran.csv")));
    specify({{3}, {4}}, 1, 0);
    click("OK");
    put(1106, 0.9);
    for (int i = 0; i < 3; ++i)
        click("Cancel");
    EXPECT_FALSE(runner().isActive());
    specify({{3}, {4}}, 1, 0);
    click("OK");
    EXPECT_EQ(std::get<double>(model().Value(1106)), 0.9);
    // An invalid level is reported, and reset, once it is used.
    put(1106, 1.5);
    EXPECT_TRUE(
        boxOf([this] { click("Survival curve of all observations"); }).contains("The level given was 1.5"));
    EXPECT_EQ(std::get<double>(model().Value(1106)), 0.95);
}

TEST_F(WindowTest, TheEntryAndTheLevelAreKeptFromOneStartOfTheProgramToTheNext) {
    const auto shows = [this](int entry, double level) {
        ASSERT_TRUE(window->openFile(example("veteran.csv")));
        window->startAnalysis();
        EXPECT_EQ(std::get<int>(model().Value(180)), entry);
        EXPECT_EQ(view()->findChild<QListView*>()->currentIndex().row(), entry);
        click("Cancel");
        specify({{3}, {4}}, 1, 0);
        click("OK");
        EXPECT_EQ(std::get<double>(model().Value(1106)), level);
    };
    shows(0, 0.95);
    put(1106, 0.1 + 0.2); // all digits are kept
    click("Cancel");
    click("Cancel");
    auto* list = view()->findChild<QListWidget*>();
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Down);
    QApplication::processEvents();
    EXPECT_TRUE(window->close()) << "while the list is open";
    renew();
    shows(2, 0.1 + 0.2);
    // What does not fit is ignored.
    window.reset();
    folder.write("settings.ini", "[analysis3001]\ndialog3059\\control180=17\ndialog3032\\control1106=many\n");
    renew();
    shows(0, 0.95);
}

TEST_F(WindowTest, AMissingFileIsReportedAndTheDataStay) {
    ASSERT_TRUE(window->openFile(example("aml.csv")));
    const QString shown = boxOf([this] { EXPECT_FALSE(window->openFile(folder.path("gone.csv"))); });
    EXPECT_TRUE(shown.contains("gone.csv")) << shown.toStdString();
    EXPECT_EQ(runner().data().dataSet().caseCount(), 23);

    // If other options may help, they can be chosen at once.
    const QString marks = folder.write("marks.csv", "time;score\n850;61,5\n12;60.2\n");
    answering([&] { EXPECT_TRUE(window->openFile(marks)); },
              [](QMessageBox& box) {
                  EXPECT_TRUE(textOf(box).contains("(File, Open With Options)")) << textOf(box).toStdString();
                  EXPECT_FALSE(textOf(box).contains("--")) << "an option of the command line";
                  ASSERT_EQ(box.buttons().size(), 2);
                  box.buttons().back()->click();
              },
              [](OpenOptionsDialog& options) {
                  options.findChild<QComboBox*>("decimal")->setCurrentIndex(1);
                  options.accept();
              });
    EXPECT_EQ(runner().data().dataSet().caseCount(), 2);

    // A file that was read, but may have been meant differently, comes with a note.
    ASSERT_TRUE(window->openFile(folder.write("first.csv", "\"a,b\",x,1\n1,2,3\n")));
    const QString note = window->statusBar()->currentMessage();
    EXPECT_TRUE(note.contains("(File, Open With Options)")) << note.toStdString();
}

TEST_F(WindowTest, ADroppedFileIsOpenedAndWhatCannotBeIsExplained) {
    const auto drop = [this](const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        const QPoint at = window->rect().center();
        QDragEnterEvent enter(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(window.get(), &enter);
        if (!enter.isAccepted()) return false;
        QDropEvent event(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        event.setDropAction(Qt::MoveAction);
        QApplication::sendEvent(window.get(), &event);
        EXPECT_EQ(event.dropAction(), Qt::CopyAction) << "a move would let the other program delete the file";
        QApplication::processEvents();
        return event.isAccepted();
    };
    const auto cases = [this] { return runner().data().dataSet().caseCount(); };
    const QUrl aml = QUrl::fromLocalFile(example("aml.csv"));
    const QUrl veteran = QUrl::fromLocalFile(example("veteran.csv"));
    EXPECT_TRUE(drop({aml}));
    EXPECT_EQ(cases(), 23);
    EXPECT_TRUE(boxOf([&] { drop({veteran, aml}); }).contains("Drop a single file"));
    EXPECT_TRUE(boxOf([&] { drop({QUrl::fromLocalFile(folder.path(""))}); }).contains(folder.path("")));
    EXPECT_FALSE(drop({QUrl("https://example.org/veteran.csv")}));
    EXPECT_FALSE(drop({}));
    EXPECT_EQ(cases(), 23);
    EXPECT_EQ(window->windowTitle(), "aml.csv - Korvana");
}

TEST_F(WindowTest, WithoutAModuleItShowsData) {
    MainWindow alone(nullptr, "the module is not there\nat all", folder.path("other.ini"));
    EXPECT_EQ(alone.statusBar()->currentMessage(), "the module is not there");
    EXPECT_TRUE(alone.openFile(example("aml.csv")));
}

TEST_F(WindowTest, ClosingAsksWhatWouldBeLost) {
    ASSERT_TRUE(window->openFile(example("veteran.csv")));
    const auto computeAndClose = [this](bool closes, auto... answers) {
        if (!runner().isActive()) {
            specify({{3}, {4}}, 1, 0);
            click("OK");
        }
        click("Survival times vs. cum. proportion surviving");
        answering([&] { EXPECT_EQ(window->close(), closes); }, answers...);
        EXPECT_EQ(runner().isActive(), !closes) << "kept open, it is as if nothing had been asked";
    };
    computeAndClose(false, pressing(QMessageBox::Cancel));
    computeAndClose(true, pressing(QMessageBox::Save), [this](ExportDialog& dialog) {
        dialog.findChild<QLineEdit*>()->setText(folder.path("saved"));
        QTest::keyClick(&dialog, Qt::Key_Enter);
    });
    EXPECT_TRUE(QFile::exists(folder.path("saved/report.html")));
    window->show();
    EXPECT_TRUE(window->close()); // nothing left to lose
    window->show();
    computeAndClose(true, pressing(QMessageBox::Discard));
}

TEST_F(WindowTest, EditsOfLabelsAreNotLostUnasked) {
    ASSERT_TRUE(window->openFile(example("veteran.csv")));
    auto* model = window->findChild<VariableTableModel*>();
    ASSERT_TRUE(model->setData(model->index(3, VariableTableModel::Label), "how it ended", Qt::EditRole));
    const auto openOther = [this] { return window->openFile(example("aml.csv")); };
    answering([&] { EXPECT_FALSE(openOther()); }, pressing(QMessageBox::Cancel));
    EXPECT_EQ(window->windowTitle(), "veteran.csv - Korvana");
    EXPECT_TRUE(boxOf([&] { window->close(); }).contains("Labels or codes that you edited exist only"));
    answering([&] { EXPECT_TRUE(openOther()); }, pressing(QMessageBox::Discard));
    EXPECT_TRUE(window->openFile(example("veteran.csv"))); // nothing was edited since
    runner().data().define(Definition{"logtime", "log(time)"});
    EXPECT_TRUE(
        boxOf([&] { window->close(); }).contains("One variable that you computed (logtime) exists only"));
    runner().data().undefine(runner().data().dataSet().variableCount() - 1);
    EXPECT_TRUE(window->close());
}

/// A long reading pass: few cases, each weighted heavily enough to be read for a while.
class LongRunTest : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        QByteArray text("time,status,copies\n");
        for (int i = 0; i < 3000; ++i)
            text += QByteArray::number(i % 97) + "," + QByteArray::number(i % 2) + ",3000\n";
        ASSERT_TRUE(window->openFile(folder.write("long.csv", text)));
        runner().data().weightBy("copies");
        runner().setProgressDelay(0);
        specify({{1}, {2}}, 1, 0);
    }
    /// Presses OK and does something as soon as the progress window has appeared.
    bool whileComputing(const std::function<void()>& action) {
        bool done = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (done || !runner().progressWindow().isVisible()) return;
            done = true;
            action();
        });
        timer.start(5);
        click("OK");
        EXPECT_TRUE(done) << "the run was over before it was stopped";
        return done;
    }
};

TEST_F(LongRunTest, TakesNothingButItsCancelWhichStopsItQuietly) {
    for (const bool byKey : {false, true}) {
        ASSERT_TRUE(whileComputing([&] {
            const QSignalSpy stops(view(), &DialogView::stopRequested);
            QTest::mouseClick(button("Cancel"), Qt::LeftButton);
            QTest::keyClick(view(), Qt::Key_Escape);
            QTest::keyClick(window.get(), Qt::Key_F5);
            EXPECT_EQ(stops.count(), 0);
            EXPECT_TRUE(runner().isBusy());
            QWidget& progress = runner().progressWindow();
            if (byKey)
                QTest::keyClick(&progress, Qt::Key_Escape);
            else
                QTest::mouseClick(progress.findChild<QPushButton*>(), Qt::LeftButton);
        }));
        EXPECT_FALSE(runner().isBusy());
        EXPECT_FALSE(runner().progressWindow().isVisible());
        EXPECT_EQ(title(), "Product-Limit (Kaplan & Meier) Analysis");
        EXPECT_EQ(runner().session().outstandingAllocations(), 0U);
        EXPECT_TRUE(window->workbook().isEmpty());
    }
    click("Cancel"); // and now again
    EXPECT_EQ(title(), "Survival and Failure Time Analysis");
}

TEST_F(LongRunTest, LeavingStopsItFirst) {
    const std::function<void()> ways[] = {
        [this] { EXPECT_FALSE(window->close()); },
        [this] { QTest::keyClick(&runner().progressWindow(), Qt::Key_Q, Qt::ControlModifier); },
        [this] { window->abandon(); }}; // as a signal does
    for (const auto& leave : ways) {
        window->show();
        if (!runner().isActive()) specify({{1}, {2}}, 1, 0);
        ASSERT_TRUE(whileComputing([&] {
            EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "a request to close would be dropped";
            leave();
            EXPECT_TRUE(window->isVisible()) << "not during its own computation";
        }));
        QApplication::processEvents();
        EXPECT_FALSE(runner().isBusy());
        EXPECT_TRUE(window->workbook().isEmpty());
        EXPECT_EQ(runner().isActive(), &leave == &ways[2]);
        EXPECT_EQ(window->isVisible(), &leave == &ways[2]) << "a signal ends the program without it";
    }
}

} // namespace
} // namespace korvana::desktop
