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

/// What a script does with a modal dialog, which is open and never shown to it.
using ModalScript = std::function<void(ozm::AutomationObject& dialog)>;

/// What the services of one session share.
struct SessionParts {
    ActiveData data;
    OriginRecorder origins{data};
    /// Shared, so that a front end may keep the book of a run beyond the next one.
    std::shared_ptr<ResultsBook> book = std::make_shared<ResultsBook>();
    ObserverList observers;
    StopSignals ownSignals;
    StopSignals* stops = &ownSignals; ///< a program may have its own, for its signal handler
    FrontEnd* frontEnd = &scriptAnswers();
    ozm::CAnalysisSupport* analysis = nullptr;
    bool automation = true; ///< a script drives the analysis
    ModalScript modalScript;
    std::exception_ptr scriptFailure; ///< what a modal script threw, for the script that is to learn of it
    std::vector<std::string> remarks; ///< of the analysis, about its runs in this book

    /// Records a message and tells the observers.
    void note(ResultMessage message) {
        book->messages.push_back(std::move(message));
        observers.message(book->messages.back());
    }
    /// A failure of the host's own.
    void fail(std::string text) { note({0, std::move(text), {}, ResultMessage::Severity::Error}); }

    template <class T>
    void addOutput(T output) {
        if (output.origin == nullptr) output.origin = origins.current();
        book->append(std::move(output));
        observers.outputAdded(book->outputs.back());
    }

    /// A button was pressed.
    void commandBegins() {
        messagesBefore_ = book->messages.size();
        notesBefore_ = book->notes.size();
    }
    /// An output, by the action that makes it, was made or was not. The book's status says whether each that
    /// was asked for was made in the end.
    void outputEnded(const std::string& action, bool made) {
        if (made)
            notMade_.erase(action);
        else
            notMade_.insert(action);
        book->status = notMade_.empty() ? 0 : 1;
    }
    /// A dialog was accepted: what follows are results of its settings, and of the data as they are. Results
    /// that stand keep a book of their own, with what was said of them; what was said since the button was
    /// pressed is about those that follow. What was said in between, by an OK that was refused or failed, was
    /// mended and is dropped.
    void beginRun() {
        std::vector<ResultMessage> messages = takeFrom(book->messages, messagesBefore_);
        if (book->outputs.empty()) {
            book->messages.clear();
        } else {
            if (resultsLeft_) (void)takeFrom(book->messages, *resultsLeft_);
            (void)takeFrom(book->notes, notesBefore_);
            auto next = std::make_shared<ResultsBook>();
            next->analysis = book->analysis;
            book = std::move(next);
        }
        book->messages = std::move(messages);
        book->status = 0;
        notMade_.clear();
        resultsLeft_.reset();
        remarks = origins.run()->remarks;
        describeData();
    }

    /// A dialog led back. What is said from the first time on is not about the results that stand.
    void goesBack() {
        if (!resultsLeft_) resultsLeft_ = book->messages.size();
    }

    /// Data, selection or weights changed: the book of a run that was made keeps what it says of them.
    void dataChanged() {
        if (origins.run() == nullptr) describeData();
    }

    /// Puts what there is to know about the data into the book.
    void describeData() {
        book->source = data.dataSet().fileName();
        book->notes = data.notes();
        book->notes.insert(book->notes.end(), remarks.begin(), remarks.end());
    }
    /// What the analysis remarks about a run stands among the book's notes, below those about the data. A run
    /// that is repeated repeats no remark.
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
    /// What stands in a list from a place on, which then leaves it.
    template <class T>
    static std::vector<T> takeFrom(std::vector<T>& list, std::size_t place) {
        const auto first = list.begin() + static_cast<std::ptrdiff_t>(std::min(place, list.size()));
        std::vector<T> taken(first, list.end());
        list.erase(first, list.end());
        return taken;
    }

    std::size_t messagesBefore_ = 0;
    std::size_t notesBefore_ = 0;
    std::set<std::string> notMade_;          ///< outputs asked for, by their actions
    std::optional<std::size_t> resultsLeft_; ///< how many messages there were then
};

} // namespace korvana
