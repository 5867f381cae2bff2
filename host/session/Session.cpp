#include "host/session/Session.h"

#include <exception>
#include <utility>

namespace korvana {
namespace {

constexpr int dialogOwnsStep = -1;
constexpr int sequenceEnds = 0;

class Flag {
public:
    explicit Flag(bool& flag) : flag_(flag) { flag_ = true; }
    ~Flag() { flag_ = false; }
    Flag(const Flag&) = delete;
    Flag& operator=(const Flag&) = delete;

private:
    bool& flag_;
};

} // namespace

Session::Session(Analysis analysis, const SessionOptions& options)
    : parts_(options.data), services_(parts_, options.services), analysis_(std::move(analysis)) {
    if (options.frontEnd != nullptr) parts_.frontEnd = options.frontEnd;
    if (options.stops != nullptr) parts_.stops = options.stops;
    parts_.automation = options.automation;
    parts_.modalScript = options.modalScript;
    parts_.analysis = analysis_.get();
    if (analysis_ != nullptr) analysis_->AttachDocument(&services_);
}

Session::~Session() {
    close();
}

void Session::close() {
    services_.report().type();
    services_.dialogs().release();
    parts_.analysis = nullptr;
    analysis_.reset();
}

void Session::openData(DataSet data) {
    parts_.data.open(std::move(data));
    dataReplaced();
}

void Session::dataReplaced() {
    if (step_ == 0) return parts_.dataChanged();
    services_.dialogs().dataReplaced();
    pump();
}

void Session::start() {
    if (stepping_) return;
    services_.dialogs().release();
    parts_.origins.restart();
    parts_.book = std::make_shared<ResultsBook>();
    parts_.remarks.clear();
    parts_.describeData();
    step_ = 0;
    stepsWithoutDialog_ = 0;
    if (analysis_ == nullptr || analysis_->SequenceTable().empty()) {
        parts_.fail("The analysis has no steps.");
        return end();
    }
    parts_.book->analysis = analysis_->GetAnalysisName();
    try {
        analysis_->Initialize();
    } catch (const std::exception& failure) {
        parts_.fail(std::string{"The analysis could not be prepared: "} + failure.what() + ".");
        return end();
    }
    run(analysis_->SequenceTable().front().step);
}

ResultsBook Session::takeBook() {
    services_.report().type();
    ResultsBook next;
    next.analysis = parts_.book->analysis;
    next.source = parts_.book->source;
    return std::exchange(*parts_.book, std::move(next));
}

void Session::pump() {
    if (stepping_) return;
    parts_.scriptFile.reset();
    followExits();
    if (parts_.scriptFailure) std::rethrow_exception(std::exchange(parts_.scriptFailure, nullptr));
}

void Session::followExits() {
    while (const auto exit = services_.dialogs().takeExit()) {
        services_.report().type();
        if (exit->nextStep == sequenceEnds || exit->mode == ozm::ExitMode::End) return end();
        if (analysis_->ForwardSequence(step_, exit->nextStep) == 0) {
            parts_.fail("Step " + std::to_string(step_) + " leads to step " + std::to_string(exit->nextStep) +
                        ", which the analysis does not have.");
            return end();
        }
        services_.dialogs().openNextOn(exit->page);
        run(exit->nextStep);
    }
}

void Session::run(int next) {
    const Flag taking(stepping_);
    // The limit also catches dialogs that close as they open, which are followed without a user in between.
    while (const ozm::SEQFUNCTTBL* found = row(next)) {
        if (++stepsWithoutDialog_ > mostStepsWithoutDialog) {
            parts_.fail("The analysis goes in circles at step " + std::to_string(next) + ".");
            return end();
        }
        step_ = next;
        const int answer = take(*found);
        if (answer == dialogOwnsStep) {
            const ozm::CAnalysisModelessDialog* dialog = services_.dialogs().current();
            if (dialog == nullptr) {
                parts_.fail("Step " + std::to_string(step_) + " waits for a dialog that is not there.");
                return end();
            }
            if (!dialog->IsClosed()) stepsWithoutDialog_ = 0;
            return;
        }
        if (answer == sequenceEnds) return end();
        next = row(answer) != nullptr ? answer : found->followsByDefault;
    }
    end();
}

int Session::take(const ozm::SEQFUNCTTBL& row) {
    if (row.function == nullptr) return row.followsByDefault;
    try {
        return row.function(*analysis_);
    } catch (const std::exception& failure) {
        parts_.fail("Step " + std::to_string(row.step) + " failed: " + failure.what() + ".");
    } catch (...) {
        parts_.fail("Step " + std::to_string(row.step) + " failed.");
    }
    return sequenceEnds;
}

const ozm::SEQFUNCTTBL* Session::row(int step) const {
    for (const ozm::SEQFUNCTTBL& each : analysis_->SequenceTable())
        if (each.step == step) return &each;
    return nullptr;
}

void Session::end() {
    services_.report().type();
    parts_.observers.analysisEnded();
}

std::optional<ozm::AutomationObject> Session::currentDialog() {
    ozm::CAnalysisDialog* dialog = services_.dialogs().open();
    if (dialog == nullptr) return std::nullopt;
    return ozm::AutomationObject{*dialog};
}

std::string Session::currentInterface() const {
    const ozm::CAnalysisDialog* dialog = services_.dialogs().open();
    if (dialog == nullptr || dialog->Interface() == nullptr) return {};
    return std::string{dialog->Interface()->name};
}

} // namespace korvana
