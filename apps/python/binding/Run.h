#pragma once

#include "apps/python/binding/Data.h"
#include "apps/python/binding/Interrupts.h"
#include "apps/python/binding/Lease.h"
#include "apps/python/binding/Module.h"
#include "apps/python/binding/Results.h"
#include "host/session/Session.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvana::python {

/// An analysis that Python drives. Its operations release the interpreter's lock while the analysis works;
/// questions and modal dialogs take it again and ask the handler of the operation, a Python object with
///
///     ask(number, text, detail) -> bool
///     set_modal(dialog)          # sets members; OK is pressed afterwards
///
/// What the handler raises stops the analysis and is raised by the operation.
class Run final : private FrontEnd, private SessionObserver, public std::enable_shared_from_this<Run> {
public:
    /// Raises Busy, or Error when the module cannot be loaded.
    explicit Run(std::shared_ptr<Data> data);
    ~Run() override;
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    /// An open dialog. It is there until its analysis is closed; a modal one until it is left.
    struct Dialog {
        std::shared_ptr<Run> run;
        ozm::CAnalysisDialog* dialog;
        std::shared_ptr<const bool> alive;
        std::string dialogClass;
        std::string interfaceName;
        bool modal;
    };

    [[nodiscard]] bool isActive() const { return session_ != nullptr; }
    /// The running session, for what follows it (a recorder); nullptr after the end.
    [[nodiscard]] Session* session() { return session_.get(); }
    [[nodiscard]] Book results() const { return {book_, data_->gate}; }

    /// Opens the first dialog.
    void start(const py::object& handler);
    /// Nothing when the analysis has ended.
    [[nodiscard]] std::optional<Dialog> dialog();
    /// (done, value or None, error, detail); of an action also its messages and outputs.
    py::tuple get(const Dialog& dialog, const std::string& member);
    py::tuple put(const Dialog& dialog, const std::string& member, const py::object& value,
                  const py::object& handler);
    /// @param file  bytes: the path for the file dialog that the action opens; None: none
    py::tuple call(const Dialog& dialog, const std::string& member, const py::object& handler,
                   const py::object& file);
    /// The application has opened other data: the analysis goes on with them.
    void dataReplaced(const py::object& handler);
    /// Ends the analysis. Its results stay. Raises Busy while it works.
    void close();

private:
    class Operation;
    bool ask(const ResultMessage& question, ozm::CAnalysisDialog* window) override;
    void message(const ResultMessage& message) override { said_.push_back(message); }
    void end();
    void operate(const ozm::AutomationObject& dialog);
    py::tuple refusal(const Dialog& dialog, const char* prefix, const std::string& member,
                      const std::string& why) const;
    [[nodiscard]] std::string whyUnusable(const Dialog& dialog, bool changes) const;
    py::list outputsSince(const std::shared_ptr<ResultsBook>& before, std::size_t count) const;

    std::shared_ptr<Data> data_;
    std::optional<Lease> lease_; ///< until the end
    StopSignals stops_;
    Interrupts interrupts_{stops_};
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true); ///< of the dialogs that are not modal
    std::shared_ptr<ResultsBook> book_;
    std::vector<ResultMessage> said_; ///< in the operation
    py::handle handler_;              ///< of the operation; none outside of one
    std::vector<const ozm::CAnalysisDialog*> modals_;
    int operations_ = 0;
    std::unique_ptr<Session> session_;
};

} // namespace korvana::python
