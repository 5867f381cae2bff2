#pragma once

#include "host/session/ActiveData.h"
#include "host/session/FrontEnd.h"
#include "host/session/OriginRecorder.h"
#include "host/session/SessionObserver.h"
#include "host/session/StopSignals.h"
#include "support/automation/AutomationObject.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace korvana {

/// Lets a script operate a modal dialog, which is open but not shown.
using ModalScript = std::function<void(ozm::AutomationObject& dialog)>;

/// What the services of one session share.
struct SessionParts {
    /// @param given  the data of a program that keeps them beyond the session; nullptr: the session's own
    explicit SessionParts(ActiveData* given = nullptr) : data(given != nullptr ? *given : own_) {}

private:
    ActiveData own_;

public:
    ActiveData& data;
    OriginRecorder origins{data};
    /// Shared, so that a front end can keep the book of an earlier run.
    std::shared_ptr<ResultsBook> book = std::make_shared<ResultsBook>();
    ObserverList observers;
    StopSignals ownSignals;
    StopSignals* stops = &ownSignals; ///< a program may have its own, for its signal handler
    FrontEnd* frontEnd = &scriptAnswers();
    ozm::CAnalysisSupport* analysis = nullptr;
    bool automation = true; ///< a script drives the analysis
    ModalScript modalScript;
    std::optional<std::string> scriptFile; ///< the path that a script has for the next file dialog
    std::exception_ptr scriptFailure;      ///< what a modal script threw, to be rethrown to the script
    std::vector<std::string> remarks;      ///< by the analysis, about its runs in this book

    /// Records a message and tells the observers.
    void note(ResultMessage message) {
        book->messages.push_back(std::move(message));
        observers.message(book->messages.back());
    }
    /// Records a failure of the host itself.
    void fail(std::string text) { note({0, std::move(text), {}, ResultMessage::Severity::Error}); }

    template <class T>
    void addOutput(T output) {
        if (output.origin == nullptr) output.origin = origins.current();
        book->append(std::move(output));
        observers.outputAdded(book->outputs.back());
    }

    /// A button was pressed.
    void commandBegins() {
        stops->clear(StopSignals::Display); // which nobody noticed
        commandRuns_ = true;
        outputsBefore_ = book->outputs.size();
        messagesBefore_ = book->messages.size();
        notesBefore_ = book->notes.size();
        iterationsBefore_ = book->iterations.size();
    }
    /// Its action has ended.
    void commandEnded() {
        messagesAfter_ = book->messages.size();
        commandRuns_ = false;
    }
    [[nodiscard]] bool commandRuns() const { return commandRuns_; }
    /// The place of the first output of the last command in the book, from 0.
    [[nodiscard]] std::size_t firstOutputOfCommand() const { return outputsBefore_; }
    /// An output, named by the action that makes it, was made or not. The book's status says whether each one
    /// asked for was made in the end.
    void outputEnded(const std::string& action, bool made) {
        if (made)
            notMade_.erase(action);
        else
            notMade_.insert(action);
        book->status = notMade_.empty() ? 0 : 1;
    }
    /// A dialog was accepted: the results that follow are of its settings and of the current data. Earlier
    /// results keep their own book with the messages about them; messages since the button was pressed, and
    /// those on the way to this form of the dialog, belong to the new results. Messages in between, from an
    /// OK that was refused or failed, are dropped, and so are its iterations.
    void beginRun() {
        std::vector<ResultMessage> messages = std::move(aboutForm_);
        const std::vector<ResultMessage> sincePress = takeFrom(book->messages, messagesBefore_);
        messages.insert(messages.end(), sincePress.begin(), sincePress.end());
        std::vector<std::string> iterations = takeFrom(book->iterations, iterationsBefore_);
        aboutForm_.clear();
        if (book->outputs.empty()) {
            book->messages.clear();
        } else {
            if (resultsLeft_) {
                (void)takeFrom(book->messages, *resultsLeft_);
                (void)takeFrom(book->iterations, iterationsLeft_);
            }
            (void)takeFrom(book->notes, notesBefore_);
            auto next = std::make_shared<ResultsBook>();
            next->analysis = book->analysis;
            book = std::move(next);
            outputsBefore_ = 0;
        }
        book->messages = std::move(messages);
        book->iterations = std::move(iterations);
        book->status = 0;
        notMade_.clear();
        resultsLeft_.reset();
        remarks = origins.run()->remarks;
        describeData();
    }

    /// The analysis went back from its results. Messages from then on are not about these results.
    void goesBack() {
        aboutForm_.clear();
        if (resultsLeft_) return;
        resultsLeft_ = book->messages.size();
        iterationsLeft_ = book->iterations.size();
    }

    /// The dialog goes on in another of its forms. What it said since its last command belongs to that form.
    void switchesForm() {
        const auto first = std::min(messagesAfter_, book->messages.size());
        aboutForm_.assign(book->messages.begin() + static_cast<std::ptrdiff_t>(first), book->messages.end());
        messagesAfter_ = book->messages.size();
    }

    /// Data, selection or weights changed: the book of a completed run keeps its description of them.
    void dataChanged() {
        if (origins.run() == nullptr) describeData();
    }

    /// Puts the description of the data into the book.
    void describeData() {
        book->source = data.dataSet().fileName();
        book->notes = data.notes();
        book->notes.insert(book->notes.end(), remarks.begin(), remarks.end());
    }
    /// Adds a remark of the analysis about a run to the book's notes, below those about the data. Repeating a
    /// run does not repeat its remarks.
    void remark(std::string text) {
        origins.remark(text);
        if (std::find(remarks.begin(), remarks.end(), text) != remarks.end()) return;
        book->notes.push_back(text);
        remarks.push_back(std::move(text));
    }

    static FrontEnd& scriptAnswers() {
        static FrontEnd answers;
        return answers;
    }

private:
    /// Removes and returns the elements of a list from a place on.
    template <class T>
    static std::vector<T> takeFrom(std::vector<T>& list, std::size_t place) {
        const auto first = list.begin() + static_cast<std::ptrdiff_t>(std::min(place, list.size()));
        std::vector<T> taken(first, list.end());
        list.erase(first, list.end());
        return taken;
    }

    bool commandRuns_ = false;
    std::size_t outputsBefore_ = 0;
    std::size_t messagesBefore_ = 0; ///< the last command
    std::size_t messagesAfter_ = 0;  ///< the last command, or the last change of forms
    std::vector<ResultMessage> aboutForm_;
    std::size_t notesBefore_ = 0;
    std::size_t iterationsBefore_ = 0;
    std::set<std::string> notMade_;          ///< outputs asked for, by their actions
    std::optional<std::size_t> resultsLeft_; ///< how many messages there were then
    std::size_t iterationsLeft_ = 0;         ///< and how many lines of iterations
};

} // namespace korvana
