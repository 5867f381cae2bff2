#include "support/automation/AutomationObject.h"

#include "support/Overloaded.h"
#include "support/services/ResultsRouting.h"

#include <cmath>
#include <exception>
#include <limits>
#include <new>
#include <stdexcept>

namespace ozm {
namespace {

/// A failure without a text of its own still names the call.
std::string ErrorText(std::string_view dialogClass, std::string_view prefix, std::string_view member) {
    std::string text = "Exception in analysis method: ";
    if (member.empty()) return text + "Unexpected error";
    return text.append(dialogClass).append("::").append(prefix).append(member);
}

const AutomationMember* FindMember(const CAnalysisDialog& dialog, std::string_view name) {
    if (const AutomationInterface* own = dialog.Interface())
        if (const AutomationMember* member = own->Find(name)) return member;
    return BaseDialogInterface().Find(name);
}

[[noreturn]] void Refuse(const std::string& why) {
    throw std::invalid_argument(why);
}

double Number(const AutomationValue& value) {
    if (const auto* number = std::get_if<double>(&value.value)) return *number;
    if (const auto* whole = std::get_if<int>(&value.value)) return *whole;
    Refuse("a number is expected");
}

int WholeNumber(const AutomationValue& value) {
    const double number = Number(value);
    if (!(number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max()) ||
        number != std::trunc(number))
        Refuse("a whole number is expected");
    return static_cast<int>(number);
}

const AutomationValue::List& ListOf(const AutomationValue& value, const char* what) {
    if (const auto* list = std::get_if<AutomationValue::List>(&value.value)) return *list;
    Refuse(std::string{"a list of "} + what + " is expected");
}

int VariableNumber(const CAnalysisDialog& dialog, const AutomationValue& value) {
    const auto* name = std::get_if<std::string>(&value.value);
    if (name == nullptr) return WholeNumber(value);
    const int number = dialog.Analysis().FindVariable(*name);
    if (number == 0) Refuse("the data have no variable '" + *name + "'");
    return number;
}

/// The variable that a code control takes its codes from: the first one selected in the role; 0 when none is.
int VariableOfCodes(const CAnalysisDialog& dialog, const ControlTemplate& control) {
    if (control.codesOfRole < 0) return 0;
    for (const ControlTemplate& other : dialog.Template().controls)
        if (const auto* selection = std::get_if<VariableSelection>(&dialog.Value(other.id))) {
            const auto role = static_cast<std::size_t>(control.codesOfRole);
            if (role < selection->size() && !(*selection)[role].empty()) return (*selection)[role].front();
        }
    return 0;
}

double Code(const CAnalysisDialog& dialog, const ControlTemplate& control, const AutomationValue& value) {
    const auto* text = std::get_if<std::string>(&value.value);
    if (text == nullptr) return Number(value);
    double code = 0.0;
    std::string label = *text;
    const int variable = VariableOfCodes(dialog, control);
    if (variable == 0 || dialog.Analysis().vvlcod8(variable, LabelLookup::CodeOfText, label, code) == 0)
        Refuse("'" + *text + "' is the label of no code");
    return code;
}

/// The choice of a radio group after one of its Boolean members was set. Setting it to false needs exactly
/// one other choice to take its place.
int ChoiceOf(const AutomationMember& member, const ControlTemplate& group, int chosen, bool on) {
    if (on) return member.choice;
    if (chosen != member.choice) return chosen;
    if (group.choices.size() != 2)
        Refuse("'" + std::string{member.name} + "' is one of " + std::to_string(group.choices.size()) +
               " choices: set the wanted one to true instead");
    return 3 - member.choice;
}

ControlValue ToControl(const CAnalysisDialog& dialog, const AutomationMember& member,
                       const ControlTemplate& control, const AutomationValue& value) {
    switch (member.type) {
    case MemberType::Boolean: {
        const auto* flag = std::get_if<bool>(&value.value);
        const bool on = flag != nullptr ? *flag : WholeNumber(value) != 0;
        if (member.choice != 0) return ChoiceOf(member, control, std::get<int>(dialog.Value(control.id)), on);
        return on;
    }
    case MemberType::Integer:
        return WholeNumber(value);
    case MemberType::Real:
        return Number(value);
    case MemberType::Text:
        if (const auto* text = std::get_if<std::string>(&value.value)) return *text;
        Refuse("a text is expected");
    case MemberType::Code:
        return Code(dialog, control, value);
    case MemberType::Enumeration: {
        const int wanted = WholeNumber(value);
        for (std::size_t i = 0; i < control.choices.size(); ++i)
            if (control.choices[i].member == wanted && wanted != 0)
                return static_cast<int>(i) + (control.kind == ControlKind::RadioGroup ? 1 : 0);
        Refuse(std::to_string(wanted) + " is no member of " + std::string{member.enumeration});
    }
    case MemberType::Variables: {
        VariableSelection selection;
        for (const AutomationValue& role : ListOf(value, "lists, one per role,")) {
            auto& list = selection.emplace_back();
            for (const AutomationValue& entry : ListOf(role, "variables"))
                list.push_back(VariableNumber(dialog, entry));
        }
        return selection;
    }
    case MemberType::Codes: {
        std::vector<double> codes;
        for (const AutomationValue& entry : ListOf(value, "codes"))
            codes.push_back(Code(dialog, control, entry));
        return codes;
    }
    case MemberType::Numbers: {
        std::vector<double> numbers;
        for (const AutomationValue& entry : ListOf(value, "numbers"))
            numbers.push_back(std::holds_alternative<std::monostate>(entry.value)
                                  ? std::numeric_limits<double>::quiet_NaN()
                                  : Number(entry));
        return numbers;
    }
    case MemberType::Texts: {
        std::vector<std::string> texts;
        for (const AutomationValue& entry : ListOf(value, "texts")) {
            const auto* text = std::get_if<std::string>(&entry.value);
            if (text == nullptr) Refuse("a list of texts is expected");
            texts.push_back(*text);
        }
        return texts;
    }
    case MemberType::Object:
    case MemberType::None:
        break;
    }
    Refuse("this member takes no value");
}

AutomationValue FromControl(const AutomationMember& member, const ControlTemplate& control,
                            const ControlValue& value) {
    if (member.type == MemberType::Enumeration) {
        const int first = control.kind == ControlKind::RadioGroup ? 1 : 0;
        const auto position = static_cast<std::size_t>(std::get<int>(value) - first);
        return position < control.choices.size() ? control.choices[position].member : 0;
    }
    if (member.choice != 0) return std::get<int>(value) == member.choice;
    return std::visit(
        Overloaded{[](std::monostate) { return AutomationValue{}; },
                   [](const VariableSelection& selection) {
                       AutomationValue::List roles;
                       for (const auto& list : selection)
                           roles.emplace_back(AutomationValue::List(list.begin(), list.end()));
                       return AutomationValue{std::move(roles)};
                   },
                   [](const std::vector<double>& numbers) {
                       return AutomationValue{AutomationValue::List(numbers.begin(), numbers.end())};
                   },
                   [](const std::vector<std::string>& texts) {
                       return AutomationValue{AutomationValue::List(texts.begin(), texts.end())};
                   },
                   [](const auto& plain) { return AutomationValue{plain}; }},
        value);
}

/// Every accessor runs through here: a failure becomes an error that names the accessor.
template <class Action>
AutomationResult Accessor(const CAnalysisDialog& dialog, std::string_view prefix, std::string_view member,
                          Action action) {
    AutomationResult result;
    try {
        dialog.ThrowIfClosed();
        const AutomationMember* found = FindMember(dialog, member);
        if (found == nullptr) Refuse("the dialog has no member '" + std::string{member} + "'");
        action(*found, result);
        return result;
    } catch (const std::bad_alloc&) {
        result.detail = "out of memory";
        result.error = ErrorText(dialog.ClassName(), prefix, member);
    } catch (const std::exception& error) {
        result.detail = error.what();
        result.error = ErrorText(dialog.ClassName(), prefix, member);
    } catch (...) {
        result.error = ErrorText({}, {}, {});
    }
    result.ok = false;
    return result;
}

void Require(const DialogResult& outcome) {
    if (!outcome.done) Refuse(outcome.reason);
}

ResultsRouting& RoutingOf(const CAnalysisDialog& dialog) {
    if (ResultsRouting* routing = dialog.Analysis().Dialogs().Routing()) return *routing;
    Refuse("outputs go nowhere but into the book of results here");
}

} // namespace

AutomationResult AutomationObject::Get(std::string_view name) const {
    return Accessor(*dialog_, "get_", name, [&](const AutomationMember& member, AutomationResult& result) {
        if (member.kind == MemberKind::Action) Refuse("'" + std::string{name} + "' is an action: call it");
        if (member.kind == MemberKind::Routed) {
            result.value = RoutingOf(*dialog_).Get(*dialog_, name);
            return;
        }
        if (member.IsReadOnly()) {
            CAnalysisSupport& analysis = dialog_->Analysis();
            if (name == "Name")
                result.value = std::string{dialog_->ClassName()};
            else if (name == "Application")
                result.value = AutomationReference{"Application", analysis.Dialogs().ApplicationName()};
            else if (name == "Parent")
                result.value = AutomationReference{"Analysis", analysis.GetAnalysisName()};
            else
                result.value = dialog_->Setting(name);
            return;
        }
        const ControlTemplate* control = dialog_->Template().Find(member.control);
        if (control == nullptr) Refuse("the member stands for no control of this dialog");
        result.value = FromControl(member, *control, dialog_->Value(member.control));
    });
}

AutomationResult AutomationObject::Put(std::string_view name, const AutomationValue& value) {
    return Accessor(*dialog_, "put_", name, [&](const AutomationMember& member, AutomationResult&) {
        if (member.kind == MemberKind::Action) Refuse("'" + std::string{name} + "' is an action: call it");
        if (member.kind == MemberKind::Routed) return RoutingOf(*dialog_).Put(*dialog_, name, value);
        if (member.IsReadOnly()) Refuse("'" + std::string{name} + "' can only be read");
        const ControlTemplate* control = dialog_->Template().Find(member.control);
        if (control == nullptr) Refuse("the member stands for no control of this dialog");
        Require(dialog_->PutValue(member.control, ToControl(*dialog_, member, *control, value)));
    });
}

AutomationResult AutomationObject::Call(std::string_view name) {
    return Accessor(*dialog_, {}, name, [&](const AutomationMember& member, AutomationResult& result) {
        if (member.kind != MemberKind::Action)
            Refuse("'" + std::string{name} + "' is a property: get or put it");
        if (dialog_->IsOpen() && dialog_->Template().Find(member.control) == nullptr)
            Refuse("this dialog has no button '" + std::string{name} + "'");
        const DialogResult outcome = dialog_->Press(member.control);
        Require(outcome);
        result.value = outcome.succeeded;
        if (ResultsRouting* routing = dialog_->Analysis().Dialogs().Routing()) routing->Route(*dialog_, name);
    });
}

} // namespace ozm
