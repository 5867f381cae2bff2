// Which values the controls of a dialog take.
#include "support/dialogs/CAnalysisDialog.h"
#include "support/dialogs/ControlText.h"

#include <cmath>
#include <optional>

namespace ozm {
namespace {

std::string Plural(std::size_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string{noun} + (count == 1 ? "" : "s");
}

std::optional<double> NumberOf(const ControlTemplate& control, const ControlValue& value) {
    if (control.kind == ControlKind::Integer) return std::get<int>(value);
    if (control.kind == ControlKind::Real) return std::get<double>(value);
    return std::nullopt;
}

} // namespace

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
                                QuotedControl(*found) + " takes numbers " + RangeInWords(range) + ".",
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

DialogResult CAnalysisDialog::Fits(const ControlTemplate& control, const ControlValue& value) const {
    if (control.kind == ControlKind::PushButton || control.kind == ControlKind::Summary)
        return DialogResult::refused("this control takes no value");
    if (value.index() != InitialValue(control).index())
        return DialogResult::refused("the value is of a type that this control does not take");

    const auto number = NumberOf(control, value);
    if (number && !control.range.IsReset() && !Contains(control.range, *number)) {
        const std::string known = TextOf(control.range.message, *number);
        return DialogResult::refused(!known.empty() ? known
                                                    : QuotedControl(control) + " takes numbers " +
                                                          RangeInWords(control.range) + ", not " +
                                                          NumberInWords(*number));
    }
    if (const auto* list = std::get_if<std::vector<double>>(&value);
        list != nullptr && control.kind == ControlKind::NumberList)
        for (std::size_t place = 0; place < list->size(); ++place)
            if (!std::isfinite((*list)[place]) && !(control.mayMiss && std::isnan((*list)[place])))
                return DialogResult::refused("value " + std::to_string(place + 1) + " of " +
                                             QuotedControl(control) + " is not a finite number");
    if (const auto* position = std::get_if<int>(&value); position != nullptr)
        if (DialogResult there = PositionFits(control, *position); !there.done) return there;
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

DialogResult CAnalysisDialog::PositionFits(const ControlTemplate& control, int position) const {
    if (control.kind == ControlKind::Integer) return {};
    const bool hasColumns = !control.columns.empty();
    if (hasColumns && position == noEntry) return {};
    const int first = control.kind == ControlKind::RadioGroup ? 1 : 0;
    const int entries = static_cast<int>(hasColumns ? EntriesOf(control.id).size() : control.choices.size());
    if (position >= first && position < first + entries) return {};
    const std::string none = "there is no entry " + std::to_string(position);
    if (entries == 0) return DialogResult::refused(none + "; the list is empty");
    return DialogResult::refused(none + "; entries go from " + std::to_string(first) + " to " +
                                 std::to_string(first + entries - 1));
}

} // namespace ozm
