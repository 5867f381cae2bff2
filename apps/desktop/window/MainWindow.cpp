#include "apps/desktop/window/MainWindow.h"

#include "apps/desktop/InputGate.h"
#include "apps/desktop/data/ComputeDialog.h"
#include "apps/desktop/data/DataView.h"
#include "apps/desktop/data/GridText.h"
#include "apps/desktop/data/SelectionDialog.h"
#include "apps/desktop/data/StartPage.h"
#include "apps/desktop/data/VariablesView.h"
#include "apps/desktop/data/WeightsDialog.h"
#include "apps/desktop/results/Workbook.h"
#include "apps/desktop/text/BoxTexts.h"
#include "apps/desktop/text/ElidedLabel.h"
#include "apps/desktop/window/AnalysisRunner.h"
#include "apps/desktop/window/FocusReturn.h"
#include "apps/desktop/window/FocusRing.h"
#include "host/results/OriginText.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStyle>
#include <QTabWidget>

#include <utility>

namespace korvana::desktop {
namespace {

/// The name of a run: the title of the dialog that specified it and the time of day, as far as they are
/// known.
QString runTitle(const ResultsBook& book) {
    for (const ResultsBook::Output& output : book.outputs) {
        const auto& origin = ResultsBook::originOf(output);
        if (origin == nullptr || origin->run == nullptr || origin->run->dialogs.empty()) continue;
        return QStringLiteral("%1, %2").arg(QString::fromStdString(specificationOf(*origin->run).title),
                                            QString::fromStdString(timeOfDay(*origin)));
    }
    return QStringLiteral("%1: %2").arg(QString::fromStdString(book.analysis),
                                        QString::fromStdString(book.source));
}

} // namespace

MainWindow::MainWindow(Analysis analysis, const QString& noAnalysis, const QString& settingsFile)
    : recent_(settingsFile),
      runner_(std::make_unique<AnalysisRunner>(std::move(analysis), this, settingsFile)),
      dataView_(new DataView), variablesView_(new VariablesView), dataTabs_(new QTabWidget),
      startPage_(new StartPage(recent_)), left_(new QStackedWidget), workbook_(new Workbook),
      ring_(new FocusRing(this)), state_(new ElidedLabel) {
    dataTabs_->addTab(dataView_, tr("Data"));
    dataTabs_->addTab(variablesView_, tr("Variables"));
    dataTabs_->setDocumentMode(true);
    left_->addWidget(startPage_);
    left_->addWidget(dataTabs_);
    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(left_);
    splitter->addWidget(workbook_);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 2);
    splitter->setChildrenCollapsible(false);
    setCentralWidget(splitter);
    setAcceptDrops(true);
    new FocusReturn(this);
    state_->setTextFormat(Qt::PlainText); // a condition has < and >
    statusBar()->addPermanentWidget(state_);
    buildMenus(noAnalysis);
    connectRunner();
    connect(startPage_, &StartPage::openRequested, this, &MainWindow::askForFile);
    connect(startPage_, &StartPage::fileRequested, this, &MainWindow::openFile);
    connect(variablesView_, &VariablesView::labelsEdited, this, [this] { labelsEdited_ = true; });
    connect(variablesView_, &VariablesView::variablesChanged, this, &MainWindow::showData);
    connect(workbook_, &Workbook::statusText, this,
            [this](const QString& text) { statusBar()->showMessage(text); });
    const int frame = fontMetrics().height() * 2; // about what a window manager adds
    resize(QSize(fontMetrics().averageCharWidth() * 210, fontMetrics().height() * 50)
               .boundedTo(screen()->availableSize() - QSize(frame, frame)));
    showData();
    startPage_->setFocus();
}

MainWindow::~MainWindow() {
    // Views read the data of the session, which is destroyed with the runner.
    dataView_->setData(nullptr);
    variablesView_->setData(nullptr);
}

void MainWindow::buildMenus(const QString& noAnalysis) {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&Open..."), QKeySequence::Open, this, &MainWindow::askForFile);
    file->addAction(tr("Open &With Options..."), this, &MainWindow::askForFileAndOptions);
    recentMenu_ = file->addMenu(tr("Open &Recent"));
    connect(recentMenu_, &QMenu::aboutToShow, this,
            [this] { recent_.fill(*recentMenu_, [this](const QString& path) { openFile(path); }); });
    file->addSeparator();
    file->addActions({workbook_->exportOutputAction(), workbook_->exportRunAction(),
                      workbook_->saveScriptAction(), workbook_->printAction(),
                      workbook_->printPreviewAction()});
    file->addSeparator();
    // These also work with the focus in a dialog of the analysis.
    file->addAction(tr("&Quit"), InputGate::quitKey(), this, &QWidget::close)
        ->setShortcutContext(Qt::ApplicationShortcut);

    QMenu* cases = menuBar()->addMenu(tr("&Data"));
    cases->addAction(tr("&Select Cases..."), this, &MainWindow::defineSelection);
    cases->addAction(tr("Case &Weights..."), this, &MainWindow::defineWeights);
    cases->addAction(tr("&Compute Variable..."), this, &MainWindow::computeVariable);
    cases->addAction(tr("&Go to Case"), QKeySequence(Qt::CTRL | Qt::Key_G), this, [this] {
        dataTabs_->setCurrentWidget(dataView_);
        dataView_->askForCase();
    });
    cases->addSeparator();
    QAction* labels = cases->addAction(tr("Show Value &Labels"));
    labels->setCheckable(true);
    labels->setChecked(true);
    connect(labels, &QAction::toggled, this, [this](bool on) { dataView_->setShowLabels(on); });

    QMenu* statistics = menuBar()->addMenu(tr("&Statistics"));
    statistics->setToolTipsVisible(true);
    const auto* analysis = runner_->session().analysis();
    startAction_ = statistics->addAction(tr("No analysis"), this, &MainWindow::startAnalysis);
    if (analysis != nullptr) {
        // Asking the analysis for its name does not change it.
        startAction_->setText(
            QString::fromStdString(const_cast<ozm::CAnalysisSupport*>(analysis)->GetAnalysisName()) +
            tr("..."));
        startAction_->setShortcut(QKeySequence(Qt::Key_F5));
    } else {
        startAction_->setToolTip(noAnalysis);
        startAction_->setEnabled(false);
        statusBar()->showMessage(noAnalysis.section(QLatin1Char('\n'), 0, 0));
    }

    QMenu* results = menuBar()->addMenu(tr("&Results"));
    connect(results, &QMenu::aboutToShow, this, [this, results] {
        // The menu depends on the output that is shown.
        results->clear();
        results->addActions(workbook_->menuActions());
    });

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("&About Korvana"), this, &MainWindow::about);
}

void MainWindow::connectRunner() {
    AnalysisRunner* runner = runner_.get();
    connect(runner, &AnalysisRunner::outputAppeared, this,
            [this](const std::shared_ptr<ResultsBook>& book) { showOutputs(book, false); });
    connect(runner, &AnalysisRunner::outputWasChanged, this,
            [this](const std::shared_ptr<ResultsBook>& book) { showOutputs(book, true); });
    connect(runner, &AnalysisRunner::statusText, this,
            [this](const QString& text) { statusBar()->showMessage(text); });
    connect(runner, &AnalysisRunner::hintChanged, this, [this](const QString& hint) { hint_.show(hint); });
    connect(runner, &AnalysisRunner::startupMenusAllowed, this, [this](bool allowed) {
        if (runner_->session().analysis() != nullptr) startAction_->setEnabled(allowed);
    });
    connect(runner, &AnalysisRunner::activeChanged, this, [this](bool active) {
        variablesView_->setEditable(!active);
        if (!active && runner_->session().analysis() != nullptr) startAction_->setEnabled(true);
    });
    connect(runner, &AnalysisRunner::openDataRequested, this, [this](bool* opened) {
        const QString path = chooseFile();
        *opened = !path.isEmpty() && loadFile(path, {});
    });
    connect(runner, &AnalysisRunner::weightsRequested, this, &MainWindow::defineWeights);
    connect(runner, &AnalysisRunner::selectionRequested, this, &MainWindow::defineSelection);
    connect(runner, &AnalysisRunner::dataUseWasChanged, this, &MainWindow::showData);
    connect(runner, &AnalysisRunner::finishedComputing, this, [this] {
        // Not from within the runner, which has more to report.
        if (std::exchange(closeWhenFinished_, false))
            QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    });
}

void MainWindow::showData() {
    const ActiveData& active = runner_->data();
    dataView_->setData(&runner_->data());
    variablesView_->setData(&runner_->data());
    runner_->dataChanged();
    const bool leavesStartPage = active.dataSet().variableCount() > 0 && left_->currentWidget() == startPage_;
    if (leavesStartPage) {
        left_->setCurrentWidget(dataTabs_);
        dataView_->setFocus();
    }
    const QString name = QString::fromStdString(active.dataSet().fileName());
    setWindowTitle(name.isEmpty() ? tr("Korvana") : tr("%1 - Korvana").arg(name));
    QStringList parts;
    if (!name.isEmpty()) parts << tr("%L1 cases").arg(active.dataSet().caseCount());
    if (!active.condition().empty())
        parts << tr("%L1 selected: %2")
                     .arg(active.selectedCount())
                     .arg(QString::fromStdString(active.condition()));
    if (active.weightVariable() != 0)
        parts << tr("weighted by %1")
                     .arg(
                         QString::fromStdString(active.dataSet().variable(active.weightVariable() - 1).name));
    state_->setText(parts.join(QStringLiteral("  |  ")));
}

void MainWindow::showOutputs(const std::shared_ptr<ResultsBook>& book, bool changed) {
    const auto run = runs_.find(book.get());
    // The book may have been destroyed and its address reused, so ask the workbook.
    if (run == runs_.end() || workbook_->book(run->second) != book) {
        const int added = workbook_->addRun(book, runTitle(*book));
        runs_[book.get()] = added;
        workbook_->showOutput(added, static_cast<int>(book->outputs.size()) - 1);
    } else if (changed) {
        workbook_->outputChanged(run->second);
    } else {
        workbook_->outputAdded(run->second);
    }
}

QWidget* MainWindow::front() {
    DialogView* view = runner_->currentView();
    return view != nullptr && view->isVisible() && view->isBusy() ? static_cast<QWidget*>(view) : this;
}

DataEdits MainWindow::edits() const {
    DataEdits edits{labelsEdited_, {}};
    const DataSet& known = runner_->data().dataSet();
    for (int variable0 = 0; variable0 < known.variableCount(); ++variable0)
        if (const Variable& variable = known.variable(variable0); !variable.expression.empty())
            edits.computed += shown(variable.name);
    return edits;
}

void MainWindow::defineWeights() {
    WeightsDialog dialog(runner_->data(), front());
    if (dialog.exec() == QDialog::Accepted) showData();
}

void MainWindow::defineSelection() {
    SelectionDialog dialog(runner_->data(), front());
    if (dialog.exec() == QDialog::Accepted) showData();
}

void MainWindow::computeVariable() {
    if (runner_->isBusy()) return;
    if (runner_->data().dataSet().caseCount() == 0 && !openFirst()) return;
    ComputeDialog dialog(runner_->data(), front());
    if (dialog.exec() != QDialog::Accepted) return;
    showData();
    dataView_->showLastVariable();
    statusBar()->showMessage(QString::fromStdString(runner_->data().dataSet().notes().back()));
}

void MainWindow::startAnalysis() {
    if (runner_->isBusy()) return;
    if (runner_->data().dataSet().caseCount() == 0 && !openFirst()) return;
    runner_->start();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!runner_->isBusy()) {
        const bool closes = mayClose(*this, *workbook_, edits());
        if (closes) runner_->abandon();
        event->setAccepted(closes);
        return;
    }
    // The module is computing further up this thread's stack: it is asked to stop, and the window closes once
    // it has.
    closeWhenFinished_ = true;
    runner_->stop();
    event->ignore();
}

void MainWindow::abandon() {
    runner_->session().stops().requestStop();
    if (!runner_->isBusy()) runner_->abandon();
}

void MainWindow::about() {
    QMessageBox box(
        QMessageBox::NoIcon, tr("About Korvana"),
        tr("Korvana %1\n\nAnalyses from a data file to numbers, reports, spreadsheets and charts.\n\n"
           "This program is free software under the GNU General Public License, version 3 or later.")
            .arg(QStringLiteral(KORVANA_VERSION)),
        QMessageBox::Ok, this);
    box.setIconPixmap(windowIcon().pixmap(box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize)));
    showBox(box);
}

} // namespace korvana::desktop
