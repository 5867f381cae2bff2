#include "host/session/SessionDialogs.h"

#include "host/session/DialogValues.h"

#include <utility>

namespace korvana {
namespace {

/// Keeps a modal dialog in the list of those that run, until it ends, also by an exception.
class OpenModal {
public:
    OpenModal(std::vector<ozm::CAnalysisModalDialog*>& running, SessionRouting& routing,
              ozm::CAnalysisModalDialog& dialog)
        : running_(running), routing_(routing) {
        running_.push_back(&dialog);
    }
    ~OpenModal() {
        routing_.forget(*running_.back()); // its owner is about to destroy it
        running_.pop_back();
    }
    OpenModal(const OpenModal&) = delete;
    OpenModal& operator=(const OpenModal&) = delete;

private:
    std::vector<ozm::CAnalysisModalDialog*>& running_;
    SessionRouting& routing_;
};

/// What a dialog was set to when its button was pressed last: the action may change that, such as by raising
/// the most iterations when it goes on after them.
class AskedSettings final : public ozm::DialogObserver {
public:
    AskedSettings(ozm::CAnalysisDialog& dialog, const DataSet& data) : dialog_(dialog), data_(data) {
        dialog_.AddObserver(*this);
    }
    ~AskedSettings() override { dialog_.RemoveObserver(*this); }
    AskedSettings(const AskedSettings&) = delete;
    AskedSettings& operator=(const AskedSettings&) = delete;

    [[nodiscard]] std::vector<Setting> take() { return std::move(settings_); }

private:
    void CommandBegins(ozm::CAnalysisDialog& dialog, int /*control*/) override {
        settings_ = settingsOf(dialog, data_, Greyed::Taken).settings;
    }

    ozm::CAnalysisDialog& dialog_;
    const DataSet& data_;
    std::vector<Setting> settings_;
};

} // namespace

bool SessionDialogs::CreateAnalysisDialog(std::unique_ptr<ozm::CAnalysisModelessDialog>& dialog) {
    if (dialog == nullptr) return false;
    if (current_ != nullptr) {
        parts_.fail("A dialog of the analysis is open already.");
        return false;
    }
    // Owned before it opens, as it may name the next step while opening.
    current_ = dialogs_.emplace_back(std::move(dialog)).get();
    current_->AddObserver(parts_.origins);
    current_->AddObserver(*this);
    const int page = std::exchange(page_, 0);
    const ozm::DialogResult opened = current_->Open();
    if (opened.done) {
        parts_.observers.dialogOpened(*current_, page);
        return true;
    }
    const std::string title{current_->Template().title};
    current_ = nullptr;
    exit_.reset();
    dialog = std::move(dialogs_.back());
    dialogs_.pop_back();
    parts_.fail("The dialog '" + title + "' could not be opened" +
                (opened.reason.empty() ? "." : ": " + opened.reason + "."));
    return false;
}

int SessionDialogs::RunModal(ozm::CAnalysisModalDialog& dialog) {
    if (!dialog.Open().done) return -1;
    AskedSettings asked(dialog, parts_.data.dataSet());
    if (!dialog.IsClosed()) {
        const OpenModal open(modal_, routing_, dialog);
        if (parts_.automation)
            runByScript(dialog);
        else
            parts_.frontEnd->runModal(dialog);
    }
    if (!dialog.IsClosed()) return -1;
    if (dialog.Result() == 0) parts_.origins.alsoAccepted(dialog, asked.take());
    return dialog.Result();
}

void SessionDialogs::runByScript(ozm::CAnalysisModalDialog& dialog) {
    try {
        ozm::AutomationObject object(dialog);
        if (parts_.modalScript) parts_.modalScript(object);
    } catch (...) { // a script's exception must not pass through the analysis
        parts_.scriptFailure = std::current_exception();
        return;
    }
    if (!dialog.IsClosed()) dialog.Press(ozm::ControlOk);
}

ozm::CAnalysisDialog* SessionDialogs::open() const {
    if (!modal_.empty()) return modal_.back()->IsClosed() ? nullptr : modal_.back();
    return current_ != nullptr && !current_->IsClosed() ? current_ : nullptr;
}

void SessionDialogs::DialogExits(ozm::CAnalysisDialog& dialog, int nextStep, ozm::ExitMode mode, int page) {
    if (&dialog != current_ || exit_) return;
    exit_ = Exit{nextStep, mode, page};
    if (mode == ozm::ExitMode::Back) parts_.goesBack();
    if (mode == ozm::ExitMode::SwitchForm) parts_.switchesForm();
    if (mode != ozm::ExitMode::Forward) return;
    parts_.origins.accepted(dialog);
    parts_.beginRun();
}

std::optional<SessionDialogs::Exit> SessionDialogs::takeExit() {
    if (!exit_) return std::nullopt;
    const Exit taken = *std::exchange(exit_, std::nullopt);
    ozm::CAnalysisModelessDialog& dialog = *std::exchange(current_, nullptr);
    parts_.observers.dialogClosed(dialog);
    return taken;
}

bool SessionDialogs::OpenDataFile() {
    // The dialog that asked updates itself.
    if (!parts_.frontEnd->openData(parts_.data)) return false;
    tellAnalysis();
    return true;
}

void SessionDialogs::tellAnalysis() {
    parts_.dataChanged();
    if (parts_.analysis != nullptr) parts_.analysis->InitializeAfterFileChanged();
}

void SessionDialogs::dataReplaced() {
    tellAnalysis();
    if (current_ == nullptr || current_->IsClosed()) return;
    if (const ozm::DialogResult shown = current_->DataChanged(); !shown.done)
        parts_.fail("The dialog '" + std::string{current_->Template().title} +
                    "' does not take the new data" +
                    (shown.reason.empty() ? "." : ": " + shown.reason + "."));
}

void SessionDialogs::TurnWeightsOff() {
    if (parts_.data.weightVariable() == 0) return;
    parts_.data.weightBy({});
    parts_.origins.dataUseChanged();
    parts_.dataChanged();
    parts_.frontEnd->dataUseChanged();
}

void SessionDialogs::DefineWeight() {
    parts_.frontEnd->defineWeights(parts_.data);
    parts_.dataChanged();
}

void SessionDialogs::DefineSelCond() {
    parts_.frontEnd->defineSelection(parts_.data);
    parts_.dataChanged();
}

void SessionDialogs::CommandEnded(ozm::CAnalysisDialog& dialog, int control, bool succeeded) {
    parts_.commandEnded();
    // A dialog without an OK is a results dialog: its buttons make outputs.
    if (dialog.Template().Find(ozm::ControlOk) == nullptr)
        parts_.outputEnded(nameOfButton(dialog, control).id, succeeded);
}

void SessionDialogs::release() {
    current_ = nullptr;
    exit_.reset();
    page_ = 0;
    routing_.forgetAll();
    dialogs_.clear();
}

} // namespace korvana
