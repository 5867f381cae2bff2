#pragma once

#include "host/session/ModuleLibrary.h"
#include "host/session/SessionParts.h"
#include "host/session/SessionServices.h"
#include "support/automation/AutomationObject.h"

#include <memory>
#include <optional>
#include <string>

namespace korvana {

struct SessionOptions {
    bool automation = true;       ///< a script drives the analysis: modal dialogs are not shown
    FrontEnd* frontEnd = nullptr; ///< nullptr: the defaults of `FrontEnd`; must outlive the session
    StopSignals* stops = nullptr; ///< nullptr: the session's own; must outlive the session
    /// Under automation: called when a modal dialog is open, to set its members; when it leaves the dialog
    /// open, OK is pressed. What it throws is rethrown by `pump`.
    ModalScript modalScript{};
    ServiceOverrides services{};
    ActiveData* data = nullptr; ///< nullptr: the session's own; must outlive the session
};

/// One run of an analysis over one data set: gives the analysis object its document, calls its step functions
/// and follows its dialogs. Everything happens on the caller's thread.
///
///     Session session(loadAnalysis(...));
///     session.data().open(readData(...));
///     session.start();                                  // the first dialog is open
///     session.currentDialog()->Put("TypeOfAnalysis", 2);
///     session.currentDialog()->Call("OK");
///     session.pump();                                   // the next one
///
/// Step rule: a step's function returns -1 (its dialog owns the step), 0 (the analysis ends), the number of a
/// row of the step table (that row is next), or anything else (the row that follows by default is next). A
/// dialog that closes names the next step, and `pump` goes there.
class Session {
public:
    /// The most steps without a dialog in between before the analysis is assumed to loop.
    static constexpr int mostStepsWithoutDialog = 1000;

    explicit Session(Analysis analysis, const SessionOptions& options = {});
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    ActiveData& data() { return parts_.data; }
    /// Opens another data set in place of the current one, and informs a running analysis.
    void openData(DataSet data);
    /// To be called after another data set was opened in `data()`: a running analysis continues with it, and
    /// its dialog shows what is left of its selections, or goes back to one that does. Not while an operation
    /// of a dialog runs.
    void dataReplaced();
    StopSignals& stops() { return *parts_.stops; }
    void addObserver(SessionObserver& observer) { parts_.observers.add(observer); }
    void removeObserver(SessionObserver& observer) { parts_.observers.remove(observer); }

    /// Starts the analysis with an empty book: defaults are set, the step table begins at its first row.
    /// Dialogs of an earlier run are destroyed.
    void start();
    /// Follows a dialog that has closed to the next step. To be called after each operation on a dialog has
    /// returned; does nothing while the dialog is open, or while a step is being taken.
    void pump();
    /// Whether a dialog owns the step.
    [[nodiscard]] bool isActive() const { return services_.dialogs().current() != nullptr; }
    /// Number of the step that is being taken or was taken last; 0 before the first.
    [[nodiscard]] int step() const { return step_; }
    /// The open dialog, for a script: a modal one while it runs, else that of the step. Nothing when none is
    /// open. Objects are valid until `start` or `close`, those of a modal dialog until it is closed.
    std::optional<ozm::AutomationObject> currentDialog();
    /// Under automation: the path that the next operation's file dialog gets, for opening or saving; without
    /// one it is cancelled. To be called before the operation; `pump` forgets a path that nobody asked for.
    void nameFile(std::string path) { parts_.scriptFile = std::move(path); }
    /// The name of the open dialog's automation interface, empty when none is open.
    [[nodiscard]] std::string currentInterface() const;

    ResultsBook& book() { return *parts_.book; }
    /// The same, shared: the next `start` begins a new book.
    [[nodiscard]] std::shared_ptr<ResultsBook> sharedBook() const { return parts_.book; }

    /// The book so far; what follows goes into a new one.
    [[nodiscard]] ResultsBook takeBook();

    /// The origin of the current results, nullptr before the first specification was accepted. The results
    /// are of an earlier state of the data when `run()->data != data().state()`.
    [[nodiscard]] const std::shared_ptr<const RunOrigin>& run() const { return parts_.origins.run(); }

    /// Ends the analysis: dialogs and analysis object are destroyed; the book is kept.
    void close();
    /// Allocations that the analysis has not released; must be 0 after `close`.
    [[nodiscard]] std::size_t outstandingAllocations() const { return services_.memory().outstanding(); }
    [[nodiscard]] const ozm::CAnalysisSupport* analysis() const { return analysis_.get(); }

private:
    void followExits();
    void run(int step);
    int take(const ozm::SEQFUNCTTBL& row);
    [[nodiscard]] const ozm::SEQFUNCTTBL* row(int step) const;
    void end();

    SessionParts parts_;
    SessionServices services_;
    Analysis analysis_;
    int step_ = 0;
    int stepsWithoutDialog_ = 0;
    bool stepping_ = false;
};

} // namespace korvana
