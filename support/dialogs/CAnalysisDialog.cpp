#include "support/dialogs/CAnalysisDialog.h"

#include "support/dialogs/ControlText.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

namespace ozm {
namespace {

ControlValue InitialValue(const ControlTemplate& control) {
    switch (control.kind) {
    case ControlKind::PushButton:
        return std::monostate{};
    case ControlKind::CheckBox:
        return false;
    case ControlKind::RadioGroup:
        return 1;
    case ControlKind::Integer:
    case ControlKind::List:
        return 0;
    case ControlKind::Real:
        return 0.0;
    case ControlKind::CodeField:
        return std::numeric_limits<double>::quiet_NaN();
    case ControlKind::Text:
    case ControlKind::Summary:
        return std::string{};
    case ControlKind::VariableSelection:
        return VariableSelection(control.roles.size());
    case ControlKind::CodeList:
    case ControlKind::NumberList:
        return std::vector<double>{};
    case ControlKind::TextList:
        return std::vector<std::string>{};
    }
    return std::monostate{};
}

std::string Plural(std::size_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string{noun} + (count == 1 ? "" : "s");
}

/// A control's name for use in a sentence.
std::string Quoted(const ControlTemplate& control) {
    const std::string text = PlainControlText(control.text);
    return text.empty() ? "control " + std::to_string(control.id) : "'" + text + "'";
}

std::optional<double> NumberOf(const ControlTemplate& control, const ControlValue& value) {
    if (control.kind == ControlKind::Integer) return std::get<int>(value);
    if (control.kind == ControlKind::Real) return std::get<double>(value);
    return std::nullopt;
}

} // namespace

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

std::string CAnalysisDialog::TextOf(int string, double number) const {
    std::string text = string != 0 ? analysis_.GetResourceString(string) : std::string{};
    if (const auto place = text.find("%1"); place != std::string::npos)
        text.replace(place, 2, NumberInWords(number));
    return text;
}

bool CAnalysisDialog::RangeHolds(int control) {
    const ControlTemplate* found = template_.Find(control);
    const auto number = found != nullptr ? NumberOf(*found, Value(control)) : std::nullopt;
    if (!number || Contains(found->range, *number)) return true;
    const NumberRange& range = found->range;
    if (range.message != 0)
        analysis_.DspMessageBox(MessageStyle::Refusal, this, range.message, TextOf(range.detail, *number));
    else
        analysis_.DspMessageBox(MessageStyle::Refusal, this, 0,
                                Quoted(*found) + " takes numbers " + RangeInWords(range) + ".",
                                TextOf(range.detail, *number));
    if (range.IsReset()) {
        if (found->kind == ControlKind::Integer)
            SetValue(control, static_cast<int>(range.resetTo));
        else
            SetValue(control, range.resetTo);
        OnValueChanged(control);
    }
    return false;
}

DialogResult CAnalysisDialog::Press(int control) {
    const ControlTemplate* found = template_.Find(control);
    if (DialogResult usable = Usable(control, "button"); !usable.done) return usable;
    if (!IsEnabled(control))
        return DialogResult::refused(Quoted(*found) +
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

DialogResult CAnalysisDialog::Fits(const ControlTemplate& control, const ControlValue& value) const {
    if (control.kind == ControlKind::PushButton || control.kind == ControlKind::Summary)
        return DialogResult::refused("this control takes no value");
    if (value.index() != InitialValue(control).index())
        return DialogResult::refused("the value is of a type that this control does not take");

    const auto number = NumberOf(control, value);
    if (number && !control.range.IsReset() && !Contains(control.range, *number)) {
        const std::string known = TextOf(control.range.message, *number);
        return DialogResult::refused(!known.empty()
                                         ? known
                                         : Quoted(control) + " takes numbers " + RangeInWords(control.range) +
                                               ", not " + NumberInWords(*number));
    }
    if (const auto* list = std::get_if<std::vector<double>>(&value);
        list != nullptr && control.kind == ControlKind::NumberList)
        for (std::size_t place = 0; place < list->size(); ++place)
            if (!std::isfinite((*list)[place]) && !(control.mayMiss && std::isnan((*list)[place])))
                return DialogResult::refused("value " + std::to_string(place + 1) + " of " + Quoted(control) +
                                             " is not a finite number");
    if (const auto* position = std::get_if<int>(&value)) {
        const int first = control.kind == ControlKind::RadioGroup ? 1 : 0;
        const int entries = static_cast<int>(control.choices.size());
        if (control.kind != ControlKind::Integer && (*position < first || *position >= first + entries))
            return DialogResult::refused("there is no entry " + std::to_string(*position) +
                                         "; entries go from " + std::to_string(first) + " to " +
                                         std::to_string(first + entries - 1));
    }
    if (const auto* selection = std::get_if<VariableSelection>(&value)) {
        if (selection->size() > control.roles.size())
            return DialogResult::refused(
                Plural(selection->size(), "list") + " of variables were given, but there " +
                (control.roles.size() == 1 ? "is " : "are ") + Plural(control.roles.size(), "role"));
        const int variables = analysis_.NumberOfVariables();
        for (std::size_t role = 0; role < selection->size(); ++role) {
            const auto& list = (*selection)[role];
            if (list.size() > control.roles[role].maximum)
                return DialogResult::refused(
                    "'" + std::string{control.roles[role].prompt} + "' takes at most " +
                    Plural(control.roles[role].maximum, "variable") + ", not " + std::to_string(list.size()));
            for (const int variable : list) {
                if (variable < 1 || variable > variables)
                    return DialogResult::refused("there is no variable number " + std::to_string(variable) +
                                                 "; the data have " +
                                                 Plural(static_cast<std::size_t>(variables), "variable"));
                if (!control.roles[role].measures || !analysis_.HoldsTexts(variable)) continue;
                std::string name;
                (void)analysis_.getvn5(variable, name);
                return DialogResult::refused("'" + name + "' holds texts; '" +
                                             std::string{control.roles[role].prompt} +
                                             "' takes numbers or dates");
            }
        }
    }
    return {};
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
