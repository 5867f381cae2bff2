// Results say how they were made, in the window and when exported.

#include "tests/apps/desktop/window/OpenWindow.h"

#include "apps/desktop/results/OutputExport.h"

namespace korvana::desktop {
namespace {

struct Origin : WindowTest {
    Workbook& workbook() { return window->workbook(); }
    QString line() { return workbook().findChild<QLabel*>("origin")->text(); }
    /// The notice of the dialog; empty when there is none.
    QString notice() {
        auto* label = view()->findChild<QLabel*>("notice");
        return label->isVisible() ? label->text() : QString{};
    }
    /// Selects cases and weights them as the menus do.
    void change(const char* condition, const char* weights) {
        runner().data().select(condition);
        runner().data().weightBy(weights);
        runner().dataChanged();
    }
    void compute() {
        ASSERT_TRUE(window->openFile(example("veteran.csv")));
        change("trt = 1", "prior");
        specify({{3}, {4}}, 1, 0);
        click("OK");
        ASSERT_EQ(title(), "Product-Limit (Kaplan-Meier) Analysis Results");
    }
};

TEST_F(Origin, EveryOutputShowsTheStateThatItsRunWasMadeFrom) {
    compute();
    const auto isOfTheRun = [this] {
        return line().contains("veteran.csv | 69 of 137 cases: trt = 1 | weighted by prior | time, status | "
                               "Code for complete responses: 1 | Code for censored responses: 0");
    };
    click("Summary: Product-limit survival analysis");
    EXPECT_TRUE(isOfTheRun()) << line().toStdString();
    EXPECT_TRUE(line().contains("weight of 0 or less in 'prior' count once")) << line().toStdString();
    change("", "");
    EXPECT_TRUE(isOfTheRun()) << "results do not change with the data";
    click("Survival times vs. cum. proportion surviving");
    for (int place = 0; place < static_cast<int>(book()->outputs.size()); ++place) {
        ASSERT_TRUE(workbook().showOutput(workbook().currentRun(), place));
        EXPECT_TRUE(isOfTheRun()) << place << ": " << line().toStdString();
    }

    // Outputs that one button made with different settings name them; those of other buttons do not change.
    const int plot = workbook().currentOutput();
    EXPECT_FALSE(line().contains("Conf. Level")) << line().toStdString();
    put(1106, 0.8);
    click("Survival times vs. cum. proportion surviving");
    const auto* outputs = workbook().findChild<QTreeWidget*>();
    for (const auto& [place, level] :
         {std::pair{workbook().currentOutput(), "Conf. Level: 0.8"}, {plot, "Conf. Level: 0.95"}}) {
        ASSERT_TRUE(workbook().showOutput(workbook().currentRun(), place));
        EXPECT_TRUE(line().contains(level)) << line().toStdString();
        EXPECT_TRUE(outputs->currentItem()->text(0).contains(level));
    }

    // A run with other settings is a separate one, and does not change this one.
    click("Cancel");
    click("OK");
    click("Survival times vs. cum. proportion surviving");
    EXPECT_EQ(workbook().runCount(), 2);
    EXPECT_TRUE(line().contains("veteran.csv | 137 cases | time, status")) << line().toStdString();
    for (int run : {0, 1}) {
        const QTreeWidgetItem* item = outputs->topLevelItem(run);
        EXPECT_TRUE(item->text(0).startsWith("Product-Limit (Kaplan & Meier) Analysis, "))
            << item->text(0).toStdString();
        EXPECT_EQ(item->child(0)->toolTip(0).contains("trt = 1"), run == 0);
    }
}

TEST_F(Origin, AResultsDialogSaysWhenItsResultsAreOfAnEarlierState) {
    compute();
    EXPECT_EQ(notice(), "");
    const auto* page = view()->findChild<QTabWidget*>();
    change("", "");
    change("trt = 1", "prior"); // by now all of the dialog has been laid out
    QApplication::processEvents();
    const QSize before = view()->size();
    const QSize room = page->size();
    change("trt = 2", "prior");
    QApplication::processEvents();
    EXPECT_EQ(page->size(), room) << "the notice takes no room from the page";
    EXPECT_TRUE(notice().contains("the selection of cases was changed since")) << notice().toStdString();
    change("trt = 2", "");
    EXPECT_TRUE(notice().contains("changed and the case weights were changed since"));
    change("trt = 1", "prior");
    EXPECT_EQ(notice(), "") << "as it was";
    EXPECT_EQ(view()->size(), before);
    runner().data().describe(3, "", 9, {});
    runner().dataChanged();
    EXPECT_TRUE(notice().contains("labels or missing codes were changed"));
    click("Cancel");
    EXPECT_EQ(notice(), "") << "a specification has no results";
    click("OK");
    EXPECT_EQ(notice(), "") << "computed anew";
}

TEST_F(Origin, GoesAlongWhenAnOutputIsExported) {
    compute();
    click("Survival times vs. cum. proportion surviving");
    QFile file(folder.path("output.html"));
    writeOutput(*book(), 0, nullptr, OutputFormat::Html, file.fileName().toStdString());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    for (const char* part : {"trt = 1", "prior", "count once each"})
        EXPECT_TRUE(text.contains(part)) << part;
}

/// What was done by hand becomes a script, without the ways round about.
TEST_F(Origin, ARunIsSavedAsAScriptThatDoesItAgain) {
    QAction* save = workbook().saveScriptAction();
    EXPECT_FALSE(save->isEnabled());
    ASSERT_TRUE(window->openFile(example("veteran.csv")));
    runner().data().describe(3, "", 9, {{1, "it's over"}});
    runner().data().define(Definition{"old", "age > 60"});
    runner().data().describe(3, "the end", 9, {{1, "it's over"}});
    change("trt = 1", "prior");
    specify({{3}, {4}}, 1, 0);
    click("OK");
    EXPECT_FALSE(save->isEnabled()) << "there are no results";
    click("Cancel");
    change("trt = 2", "");
    click("OK");
    click("Summary: Product-limit survival analysis");
    put(1106, 0.8);
    click("Survival times vs. cum. proportion surviving");
    ASSERT_TRUE(workbook().showOutput(workbook().currentRun(), 0));
    ASSERT_TRUE(save->isEnabled());

    answering([&] { save->trigger(); }, naming(folder.path("mine")));
    QFile file(folder.path("mine.py"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    const QByteArray data = "DATA = \"" + QDir::cleanPath(example("veteran.csv")).toUtf8() + "\"\n";
    EXPECT_TRUE(text.contains(data)) << text.toStdString();
    const QByteArray begin = R"(app.open(DATA)
app.missing("status", 9)
app.describe("status", labels={1: "it's over"})
app.define("old", "age > 60")
app.describe("status", label="the end")
app.select("trt = 2")

run =)";
    EXPECT_TRUE(text.contains(begin)) << text.toStdString();
    EXPECT_TRUE(text.contains("run.dialog.CodeForCompleteResponses = 1  # \"it's over\"\n"));
    const QByteArray end = R"(run.dialog.Summary()
run.dialog.ConfidenceLevel = 0.8
run.dialog.PlotOfSurvivalTimesVsCumProportionSurviving()

results =)";
    EXPECT_TRUE(text.contains(end)) << text.toStdString();

    // An export has it beside the results.
    QStringList problems;
    workbook().writeRun(workbook().currentRun(), folder.path("out").toStdString(), parseFormats("txt,py"),
                        problems);
    QFile exported(folder.path("out/script.py"));
    ASSERT_TRUE(exported.open(QIODevice::ReadOnly)) << problems.join('\n').toStdString();
    EXPECT_EQ(exported.readAll(), text);
}

/// The dialog that estimates with the defaults is a step of its own in the window; a script meets it within
/// the OK of the specification, and asks for it.
TEST_F(Origin, AnEstimationIsSavedAsAScriptAsksForIt) {
    ASSERT_TRUE(window->openFile(example("veteran.csv")));
    window->startAnalysis();
    put(180, 4);
    click("OK");
    ASSERT_EQ(title(), "Regression Models for Censored Data");
    put(1001, ozm::VariableSelection{{3}, {4}, {5}, {}});
    put(1002, 1.0);
    put(1003, 0.0);
    put(1023, false);
    click("OK");
    ASSERT_EQ(title(), "Regression Model Estimation");
    put(1030, 0.5);
    put(1031, 7);
    click("OK");
    const QString results = title();
    ASSERT_TRUE(results.contains("Results")) << results.toStdString();
    click("Summary: Parameter estimates");
    answering([&] { workbook().saveScriptAction()->trigger(); }, naming(folder.path("mine")));
    QFile file(folder.path("mine.py"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    const QByteArray asks = R"(
run.dialog.NonDefaultStartValuesIterations = True
run.dialog.CasewiseDeletionOfMD = True
run.modal = {
    # Regression Model Estimation
    "MaxNumberOfIterations": 7,
    "ConvergenceCriterion": 0.5,
}
run.dialog.OK()

# Results
)";
    EXPECT_TRUE(text.contains(asks)) << text.toStdString();
}

} // namespace
} // namespace korvana::desktop
