#pragma once

#include "apps/desktop/dialogs/DialogView.h"
#include "apps/desktop/window/DialogPlaces.h"
#include "apps/desktop/window/EventTimer.h"
#include "apps/desktop/window/FileChooser.h"
#include "apps/desktop/window/ProgressWindow.h"
#include "apps/desktop/window/RememberedValues.h"
#include "host/session/Session.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>

#include <map>
#include <memory>
#include <optional>
#include <vector>

class QWidget;

namespace korvana::desktop {

/// Runs an analysis in the window: draws the dialogs of its steps, shows its messages, lets the window
/// process events while it computes, and reports its outputs. It is not tied to any particular analysis.
class AnalysisRunner final : public QObject, private SessionObserver, private FrontEnd {
    Q_OBJECT

public:
    /// `window` is the parent of dialogs and boxes. Without an analysis (nullptr) it only holds the data.
    /// `settingsFile`: where values are kept for the next start of the program (`RememberedValues`).
    AnalysisRunner(Analysis analysis, QWidget* window, const QString& settingsFile = {});
    ~AnalysisRunner() override;

    Session& session() { return session_; }
    ActiveData& data() { return session_.data(); }

    /// Starts the analysis, or raises its dialog when it is already running.
    void start();
    /// Closes the dialogs of a running analysis; its results stay.
    void abandon();
    /// Whether a dialog of the analysis is open.
    [[nodiscard]] bool isActive() const { return view_ != nullptr; }
    /// Whether it is computing, or waits for a modal dialog; no part of it may be destroyed then.
    [[nodiscard]] bool isBusy() const { return busy_ || modal_ != nullptr; }
    /// Asks a computation to stop, which it does within milliseconds, and a modal dialog to close.
    void stop();
    [[nodiscard]] DialogView* currentView() const { return view_; }
    [[nodiscard]] ProgressWindow& progressWindow() { return progress_; }
    /// A computation that takes longer than this shows its progress window; 250 ms unless set.
    void setProgressDelay(int milliseconds) { progressDelay_ = milliseconds; }

    /// Other data were opened: a running analysis continues with them in its own way.
    void dataReplaced();
    /// Data, selection or weights may have changed: a dialog with results of an earlier state says so.
    void dataChanged();

signals:
    /// A run has new outputs, perhaps its first.
    void outputAppeared(std::shared_ptr<ResultsBook> book);
    void outputWasChanged(std::shared_ptr<ResultsBook> book);
    void statusText(const QString& text);
    /// A text for the status line as long as a control has the focus; empty: no longer.
    void hintChanged(const QString& hint);
    void activeChanged(bool active);
    void startupMenusAllowed(bool allowed);
    /// The analysis asks for its host's dialogs. Answers come back through the pointers.
    void openDataRequested(bool* opened);
    void weightsRequested();
    void selectionRequested();
    void finishedComputing();
    /// The analysis itself turned the case weights off.
    void dataUseWasChanged();

private:
    void pump();
    void endComputation();
    void showView(ozm::CAnalysisDialog& dialog, int page);
    void dropView();

    // SessionObserver
    void dialogOpened(ozm::CAnalysisModelessDialog& dialog, int page) override;
    void dialogClosed(ozm::CAnalysisModelessDialog& dialog) override;
    void analysisEnded() override;
    void startupMenusEnabled(bool enabled) override { emit startupMenusAllowed(enabled); }
    void outputAdded(const ResultsBook::Output& output) override;
    void outputChanged(const ResultsBook::Output& output) override;
    void computationStarted(unsigned units) override;
    void computationEnded() override;
    void status(std::string_view text) override;
    void progressCaption(std::string_view text) override;
    void progress(unsigned done, unsigned units) override;
    void iterationLine(std::string_view line) override;
    void processEvents() override;

    // FrontEnd
    ozm::MessageButton showMessage(const ResultMessage& message, ozm::CAnalysisDialog* window) override;
    bool ask(const ResultMessage& question, ozm::CAnalysisDialog* window) override;
    void runModal(ozm::CAnalysisModalDialog& dialog) override;
    std::optional<std::string> fileToOpen(const FileRequest& request) override;
    std::optional<std::string> fileToSave(const FileRequest& request) override;
    bool openData(ActiveData& data) override;
    void defineWeights(ActiveData& data) override;
    void defineSelection(ActiveData& data) override;
    bool editStartValues(std::span<const std::string> names, std::span<double> values) override;
    void dataUseChanged() override { emit dataUseWasChanged(); }

    /// The parent for a message box, with nothing else in front of it.
    QWidget* boxParent();

    QWidget* window_;
    ProgressWindow progress_;
    StopSignals signals_;
    Session session_;
    EventTimer eventTimer_{signals_};
    QPointer<DialogView> view_;
    QPointer<DialogView> modal_; ///< the modal dialog that is open
    DialogPlaces places_;
    RememberedValues values_;
    FileChooser files_;
    /// The state in which a dialog was left.
    struct Left {
        DialogView::FocusPlace focus;
        std::vector<CodePairs::Known> codes;
        int generation = 0; ///< of the data that the codes belong to
    };
    std::map<int, Left> left_; ///< by the number of the template
    QElapsedTimer computing_;
    int progressDelay_ = 250;
    int knownData_ = 0; ///< generation of the data that the analysis works on
    bool busy_ = false;
    bool pumping_ = false;
};

} // namespace korvana::desktop
