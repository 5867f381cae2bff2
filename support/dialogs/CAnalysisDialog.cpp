#include "support/dialogs/CAnalysisDialog.h"

#include "support/dialogs/ControlText.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>
#include <utility>

namespace ozm {

CAnalysisDialog::CAnalysisDialog(CAnalysisSupport& analysis, const DialogTemplate& dialogTemplate)
    : analysis_(analysis), template_(dialogTemplate) {
    for (const ControlTemplate& control : template_.controls)
        values_.emplace(control.id, InitialValue(control));
}

CAnalysisDialog::~CAnalysisDialog() = default;

std::string_view CAnalysisDialog::ClassName() const {
    return interface_ != nullptr ? interface_->dialogClass : std::string_view{"CAnalysisDialog"};
}

template <class Action>
DialogResult CAnalysisDialog::Guarded(const Action& action) {
    try {
        action();
        return {};
    } catch (const std::bad_alloc&) {
        TellNoMemory();
        return DialogResult::refused("out of memory"); // short enough to need none
    } catch (const std::exception& error) {
        return DialogResult::refused(error.what());
    } catch (...) {
        return DialogResult::refused({});
    }
}

void CAnalysisDialog::TellNoMemory() noexcept {
    try {
        if (const int id = NotEnoughMemoryString(); id != 0)
            analysis_.DspMessageBox(MessageStyle::Error, this, id);
    } catch (...) { // NOLINT(bugprone-empty-catch): no memory even for the message
    }
}

template <class Event>
void CAnalysisDialog::Tell(const Event& event) {
    // By position: an observer may remove itself while it is called.
    for (std::size_t i = 0; i < observers_.size(); ++i)
        event(*observers_[i]);
}

DialogResult CAnalysisDialog::Open() {
    if (open_ || closed_) return DialogResult::refused("the dialog is open already");
    open_ = true;
    return Guarded([this] { OnOpen(); });
}

void CAnalysisDialog::ThrowIfClosed() const {
    if (IsClosed()) throw std::logic_error("the dialog has been closed");
}

DialogResult CAnalysisDialog::Usable(int control, std::string_view kind) const {
    if (closed_) return DialogResult::refused("the dialog has been closed");
    if (template_.Find(control) == nullptr)
        return DialogResult::refused("there is no " + std::string{kind} + " " + std::to_string(control) +
                                     " in this dialog");
    return {};
}

DialogResult CAnalysisDialog::DataChanged() {
    if (!open_ || closed_) return DialogResult::refused("the dialog is not open");
    return Guarded([this] { OnDataChanged(); });
}

void CAnalysisDialog::Enable(int control, bool enabled) {
    for (const ControlTemplate& each : template_.controls) {
        if (each.id != control && (each.repeats == 0 || each.repeats != control)) continue;
        if (IsEnabled(each.id) == enabled) continue;
        if (enabled)
            disabled_.erase(each.id);
        else
            disabled_.insert(each.id);
        Tell([&](DialogObserver& observer) { observer.ControlEnabled(*this, each.id); });
    }
}

DialogResult CAnalysisDialog::Press(int control) {
    const ControlTemplate* found = template_.Find(control);
    if (DialogResult usable = Usable(control, "button"); !usable.done) return usable;
    if (!IsEnabled(control))
        return DialogResult::refused(QuotedControl(*found) +
                                     " is disabled while the dialog's settings are as they are");
    if (found->kind != ControlKind::PushButton && found->kind != ControlKind::List)
        return DialogResult::refused("there is no button " + std::to_string(control) + " in this dialog");
    bool succeeded = false;
    DialogResult result = Guarded([&, this] {
        Tell([&](DialogObserver& each) { each.CommandBegins(*this, control); });
        OnUse();
        succeeded = OnCommand(control);
    });
    result.succeeded = succeeded;
    Tell([&](DialogObserver& each) { each.CommandEnded(*this, control, succeeded); });
    return result;
}

DialogResult CAnalysisDialog::PutValue(int control, ControlValue value) {
    const ControlTemplate* found = template_.Find(control);
    if (DialogResult usable = Usable(control, "control"); !usable.done) return usable;
    return Guarded([&, this] {
        if (DialogResult fit = Fits(*found, value); !fit.done) throw std::runtime_error(fit.reason);
        OnUse();
        SetValue(control, std::move(value));
        OnValueChanged(control);
    });
}

const ControlValue& CAnalysisDialog::Value(int control) const {
    static const ControlValue none;
    const auto found = values_.find(control);
    return found != values_.end() ? found->second : none;
}

void CAnalysisDialog::SetValue(int control, ControlValue value) {
    if (auto* selection = std::get_if<VariableSelection>(&value))
        if (const ControlTemplate* found = template_.Find(control)) selection->resize(found->roles.size());
    values_[control] = std::move(value);
    Tell([&](DialogObserver& each) { each.ControlChanged(*this, control); });
}

const ListRows& CAnalysisDialog::EntriesOf(int control) const {
    static const ListRows none;
    const auto found = entries_.find(control);
    return found != entries_.end() ? found->second : none;
}

void CAnalysisDialog::SetEntries(int control, ListRows rows) {
    const ControlTemplate* found = template_.Find(control);
    if (found == nullptr || found->kind != ControlKind::List || found->columns.empty())
        throw std::logic_error("control " + std::to_string(control) + " is no list with columns");
    for (auto& row : rows)
        row.resize(found->columns.size());
    const int count = static_cast<int>(rows.size());
    entries_[control] = std::move(rows);
    Tell([&](DialogObserver& each) { each.EntriesChanged(*this, control); });
    if (ValueAs<int>(control) >= count) SetValue(control, noEntry);
}

void CAnalysisDialog::PutSetting(std::string_view name, std::string value) {
    settings_[std::string{name}] = std::move(value);
}

std::string CAnalysisDialog::Setting(std::string_view name) const {
    const auto found = settings_.find(name);
    return found != settings_.end() ? found->second : std::string{};
}

void CAnalysisDialog::AddObserver(DialogObserver& observer) {
    observers_.push_back(&observer);
}

void CAnalysisDialog::RemoveObserver(DialogObserver& observer) {
    std::erase(observers_, &observer);
}

void CAnalysisDialog::ExitDialog(int nextStep, ExitMode mode, int page) {
    if (closed_) return;
    forward_ = mode == ExitMode::Forward;
    MarkClosed();
    analysis_.Dialogs().DialogExits(*this, nextStep, mode, page);
}

void CAnalysisDialog::MarkClosed() {
    closed_ = true;
    Tell([this](DialogObserver& each) { each.DialogClosed(*this); });
}

} // namespace ozm
