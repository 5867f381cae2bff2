#include "apps/desktop/window/AnalysisRunner.h"

#include "apps/desktop/dialogs/ControlField.h"
#include "apps/desktop/dialogs/DialogView.h"
#include "apps/desktop/text/BoxTexts.h"
#include "apps/desktop/window/NamedValuesDialog.h"

#include <QApplication>
#include <QMessageBox>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <utility>
#include <vector>

namespace korvana::desktop {
namespace {

/// The notice for results when the data have changed since; empty when they have not.
QString changesText(const DataState& then, const DataState& now) {
    if (then == now) return {};
    QStringList changes;
    if (then.generation != now.generation) changes += AnalysisRunner::tr("other data were opened");
    if (then.condition != now.condition) changes += AnalysisRunner::tr("the selection of cases was changed");
    if (then.weightVariable != now.weightVariable)
        changes += AnalysisRunner::tr("the case weights were changed");
    if (changes.isEmpty()) changes += AnalysisRunner::tr("labels or missing codes were changed");
    return AnalysisRunner::tr(
               "These results are from an earlier state of the data: %1 since. Cancel goes back, "
               "and OK there computes them again.")
        .arg(changes.join(AnalysisRunner::tr(" and ")));
}

} // namespace

AnalysisRunner::AnalysisRunner(Analysis analysis, QWidget* window, const QString& settingsFile)
    : QObject(window), window_(window), progress_(window),
      session_(std::move(analysis),
               {.automation = false, .frontEnd = this, .stops = &signals_, .services = {}}),
      values_(settingsFile) {
    session_.addObserver(*this);
    connect(&progress_, &ProgressWindow::cancelled, this, [this] { signals_.cancel(); });
}

AnalysisRunner::~AnalysisRunner() {
    dropView();
    session_.removeObserver(*this);
}

void AnalysisRunner::start() {
    if (view_ != nullptr) {
        view_->show();
        view_->raise();
        view_->activateWindow();
        return;
    }
    knownData_ = data().generation();
    session_.start();
    pump();
}

void AnalysisRunner::abandon() {
    dropView();
}

void AnalysisRunner::stop() {
    signals_.cancel();
    if (modal_ != nullptr && !modal_->isBusy()) modal_->reject();
}

void AnalysisRunner::dataReplaced() {
    knownData_ = data().generation();
    session_.dataReplaced();
    dataChanged();
    pump();
}

void AnalysisRunner::dataChanged() {
    if (view_ == nullptr || view_->dialog() == nullptr) return;
    if (knownData_ != data().generation()) return; // the dialog still holds variables of the previous data
    if (!view_->isBusy()) view_->refreshData();
    // A dialog without an OK has nothing to run: it shows the results of the run before it.
    const bool showsResults = view_->dialog()->Template().Find(ozm::ControlOk) == nullptr;
    const auto& run = session_.run();
    view_->setNotice(showsResults && run != nullptr ? changesText(run->data, data().state()) : QString{});
}

void AnalysisRunner::pump() {
    if (pumping_) return;
    pumping_ = true;
    session_.pump();
    pumping_ = false;
    endComputation();
    emit finishedComputing();
}

void AnalysisRunner::endComputation() {
    progress_.hide();
    progress_.reset();
    if (!busy_) return;
    busy_ = false;
    // A Cancel that came too late for this computation must not stop the next one.
    signals_.clear(StopSignals::Display);
}

void AnalysisRunner::showView(ozm::CAnalysisDialog& dialog, int page) {
    const bool first = view_ == nullptr;
    dropView();
    view_ = new DialogView(dialog, window_);
    connect(view_, &DialogView::operated, this, [this] {
        if (view_ != nullptr && view_->dialog() != nullptr) values_.keep(*view_->dialog());
        pump();
    });
    connect(view_, &DialogView::stopRequested, this, &AnalysisRunner::stop);
    connect(view_, &DialogView::hintChanged, this, &AnalysisRunner::hintChanged);
    view_->showPage(page);
    const auto left = left_.find(view_->number());
    if (left != left_.end() && left->second.generation == data().generation())
        view_->recallCodes(left->second.codes);
    dataChanged();
    places_.place(*view_, *window_);
    // Back in a dialog, the user continues where the focus was.
    if (left != left_.end()) view_->focusOn(left->second.focus);
    view_->show();
    if (first) emit activeChanged(true);
}

void AnalysisRunner::dropView() {
    if (view_ == nullptr) return;
    DialogView* view = std::exchange(view_, nullptr);
    view->takeBackRoom();
    places_.remember(*view);
    Left& left = left_[view->number()];
    left.focus = view->focusPlace();
    // Another form of the dialog, without codes, does not make those forgotten.
    if (auto codes = view->knownCodes(); !codes.empty() || left.generation != data().generation())
        left.codes = std::move(codes);
    left.generation = data().generation();
    view->detach();
    view->hide();
    view->deleteLater();
}

void AnalysisRunner::dialogOpened(ozm::CAnalysisModelessDialog& dialog, int page) {
    values_.recall(dialog);
    showView(dialog, page);
}

void AnalysisRunner::dialogClosed(ozm::CAnalysisModelessDialog& dialog) {
    values_.keep(dialog);
    if (view_ != nullptr && (view_->dialog() == nullptr || view_->dialog() == &dialog)) dropView();
}

void AnalysisRunner::analysisEnded() {
    dropView();
    emit activeChanged(false);
    emit statusText({});
}

void AnalysisRunner::outputAdded(const ResultsBook::Output& /*output*/) {
    emit outputAppeared(session_.sharedBook());
}

void AnalysisRunner::outputChanged(const ResultsBook::Output& /*output*/) {
    emit outputWasChanged(session_.sharedBook());
}

void AnalysisRunner::computationStarted(unsigned units) {
    progress_.setProgress(0, units);
}

void AnalysisRunner::computationEnded() {
    progress_.setProgress(0, 0);
}

void AnalysisRunner::status(std::string_view status) {
    progress_.setStatus(fromView(status));
    emit statusText(fromView(status).trimmed());
}

void AnalysisRunner::progressCaption(std::string_view caption) {
    progress_.setCaption(fromView(caption));
}

void AnalysisRunner::progress(unsigned done, unsigned units) {
    progress_.setProgress(done, units);
}

void AnalysisRunner::iterationLine(std::string_view line) {
    progress_.addLine(fromView(line));
}

void AnalysisRunner::processEvents() {
    if (!busy_) {
        busy_ = true;
        computing_.start();
    }
    if (!progress_.isVisible() && computing_.elapsed() >= progressDelay_) {
        // Above a modal dialog, and not locked out by it.
        progress_.setModal(modal_ != nullptr);
        progress_.winId();
        progress_.windowHandle()->setTransientParent(
            (modal_ != nullptr ? static_cast<QWidget*>(modal_) : window_)->windowHandle());
        progress_.show();
    }
    // Until the progress window is there to receive clicks, they wait in the queue.
    QCoreApplication::processEvents(progress_.isVisible() ? QEventLoop::AllEvents
                                                          : QEventLoop::ExcludeUserInputEvents);
}

QWidget* AnalysisRunner::boxParent() {
    progress_.hide();
    if (modal_ != nullptr) return modal_;
    return view_ != nullptr ? static_cast<QWidget*>(view_) : window_;
}

ozm::MessageButton AnalysisRunner::showMessage(const ResultMessage& message,
                                               ozm::CAnalysisDialog* /*window*/) {
    QMessageBox box(boxParent());
    box.setIcon(message.severity == ResultMessage::Severity::Error     ? QMessageBox::Critical
                : message.severity == ResultMessage::Severity::Warning ? QMessageBox::Warning
                                                                       : QMessageBox::Information);
    box.setWindowTitle(fromView(session_.book().analysis));
    box.setText(fromView(message.text).trimmed());
    QString more = fromView(message.detail);
    if (message.id != 0)
        more += (more.isEmpty() ? QString{} : QStringLiteral("\n\n")) + tr("Message %1").arg(message.id);
    box.setInformativeText(more);
    showBox(box);
    return ozm::ButtonOk;
}

bool AnalysisRunner::ask(const ResultMessage& question, ozm::CAnalysisDialog* /*window*/) {
    QMessageBox box(QMessageBox::Question, fromView(session_.book().analysis),
                    fromView(question.text).trimmed(), QMessageBox::Yes | QMessageBox::No, boxParent());
    box.setInformativeText(fromView(question.detail));
    return showBox(box) == QMessageBox::Yes;
}

void AnalysisRunner::runModal(ozm::CAnalysisModalDialog& dialog) {
    DialogView view(dialog, boxParent());
    view.setModal(true);
    const QPointer<DialogView> before = std::exchange(modal_, &view);
    // What it computes ends with each of its operations, while the analysis goes on waiting for it.
    connect(&view, &DialogView::operated, this, &AnalysisRunner::endComputation);
    connect(&view, &DialogView::stopRequested, this, &AnalysisRunner::stop);
    connect(&view, &DialogView::hintChanged, this, &AnalysisRunner::hintChanged);
    QEventLoop untilClosed;
    connect(&view, &DialogView::dialogClosed, &untilClosed, &QEventLoop::quit);
    connect(&view, &QDialog::finished, &untilClosed, &QEventLoop::quit); // one without a Cancel
    view.show();
    if (!dialog.IsClosed()) untilClosed.exec();
    endComputation();
    modal_ = before;
}

std::optional<std::string> AnalysisRunner::fileToOpen(const FileRequest& request) {
    return files_.toOpen(request, data().dataSet().path(), boxParent());
}

std::optional<std::string> AnalysisRunner::fileToSave(const FileRequest& request) {
    return files_.toSave(request, data().dataSet().path(), boxParent());
}

bool AnalysisRunner::openData(ActiveData& /*data*/) {
    bool opened = false;
    emit openDataRequested(&opened);
    knownData_ = data().generation();
    return opened;
}

void AnalysisRunner::defineWeights(ActiveData& /*data*/) {
    emit weightsRequested();
}

void AnalysisRunner::defineSelection(ActiveData& /*data*/) {
    emit selectionRequested();
}

bool AnalysisRunner::editStartValues(std::span<const std::string> names, std::span<double> values) {
    NamedValuesDialog dialog(names, values, boxParent());
    if (dialog.exec() != QDialog::Accepted) return false;
    std::copy(dialog.values().begin(), dialog.values().end(), values.begin());
    return true;
}

} // namespace korvana::desktop
