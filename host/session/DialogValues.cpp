#include "host/session/DialogValues.h"

#include "support/ModuleResources.h"
#include "support/dialogs/ControlText.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>
#include <variant>

namespace korvana {
namespace {

class Reading {
public:
    Reading(const ozm::CAnalysisDialog& dialog, const DataSet& data) : dialog_(dialog), data_(data) {}

    Setting::Value value(const ozm::AutomationMember& member, const ozm::ControlTemplate& control) const {
        const ozm::ControlValue& value = dialog_.Value(control.id);
        if (member.type == ozm::MemberType::Enumeration) return choice(member, control, std::get<int>(value));
        if (member.choice != 0) return std::get<int>(value) == member.choice;
        if (const auto* selection = std::get_if<ozm::VariableSelection>(&value))
            return roles(control, *selection);
        if (const auto* codes = std::get_if<std::vector<double>>(&value)) {
            if (control.kind == ozm::ControlKind::NumberList) return *codes;
            std::vector<Setting::Code> named;
            for (const double each : *codes)
                named.push_back(code(control, each));
            return named;
        }
        if (const auto* number = std::get_if<double>(&value)) {
            if (control.kind == ozm::ControlKind::CodeField) return code(control, *number);
            return *number;
        }
        if (const auto* texts = std::get_if<std::vector<std::string>>(&value)) return *texts;
        if (const auto* flag = std::get_if<bool>(&value)) return *flag;
        if (const auto* whole = std::get_if<int>(&value)) return *whole;
        if (const auto* text = std::get_if<std::string>(&value)) return *text;
        return std::string{};
    }

private:
    const Variable* variable(int number1) const {
        return number1 >= 1 && number1 <= data_.variableCount() ? &data_.variable(number1 - 1) : nullptr;
    }

    std::vector<Setting::Role> roles(const ozm::ControlTemplate& control,
                                     const ozm::VariableSelection& selection) const {
        std::vector<Setting::Role> named;
        for (std::size_t place = 0; place < selection.size() && place < control.roles.size(); ++place) {
            Setting::Role& role = named.emplace_back();
            role.prompt = ozm::PlainControlText(control.roles[place].prompt);
            for (const int number : selection[place])
                if (const Variable* found = variable(number)) role.variables.push_back(found->name);
        }
        return named;
    }

    /// Codes are those of the first variable in the role that the control names.
    Setting::Code code(const ozm::ControlTemplate& control, double value) const {
        Setting::Code named{value, {}};
        if (std::isnan(value) || control.codesOfRole < 0) return named;
        const auto role = static_cast<std::size_t>(control.codesOfRole);
        for (const ozm::ControlTemplate& other : dialog_.Template().controls) {
            const auto* selection = std::get_if<ozm::VariableSelection>(&dialog_.Value(other.id));
            if (selection == nullptr || role >= selection->size() || (*selection)[role].empty()) continue;
            if (const Variable* found = variable((*selection)[role].front()))
                if (const auto label = found->labelOf(value)) named.label = *label;
            break;
        }
        return named;
    }

    Setting::Choice choice(const ozm::AutomationMember& member, const ozm::ControlTemplate& control,
                           int position) const {
        Setting::Choice named;
        const auto place =
            static_cast<std::size_t>(position - (control.kind == ozm::ControlKind::RadioGroup ? 1 : 0));
        const ozm::ModuleHandle module = dialog_.Analysis().GetLibInstance();
        if (place >= control.choices.size() || module == nullptr) return named;
        const ozm::ChoiceTemplate& chosen = control.choices[place];
        // The entries of a list have no accelerators.
        const std::string_view text = module->String(chosen.text);
        named.text = control.kind == ozm::ControlKind::List ? std::string{text} : ozm::PlainControlText(text);
        if (module->typeLibrary == nullptr) return named;
        for (const ozm::AutomationEnumeration& each : module->typeLibrary->enumerations) {
            const auto index = static_cast<std::size_t>(chosen.member) - 1;
            if (each.name == member.enumeration && index < each.members.size())
                named.name = each.members[index];
        }
        return named;
    }

    const ozm::CAnalysisDialog& dialog_;
    const DataSet& data_;
};

/// The label of a member for the user; for one that stands for a choice, that of the choice.
std::string labelOf(const ozm::CAnalysisDialog& dialog, const ozm::AutomationMember& member,
                    const ozm::ControlTemplate& control) {
    const auto place = static_cast<std::size_t>(member.choice) - 1;
    const ozm::ModuleHandle module = dialog.Analysis().GetLibInstance();
    if (member.choice == 0 || place >= control.choices.size() || module == nullptr)
        return ozm::PlainControlText(control.text);
    return ozm::PlainControlText(module->String(control.choices[place].text));
}

/// Whether the module has a dialog that opens because the member was put.
bool asks(const ozm::CAnalysisDialog& dialog, std::string_view member) {
    const ozm::ModuleHandle module = dialog.Analysis().GetLibInstance();
    return module != nullptr && module->typeLibrary != nullptr &&
           std::ranges::find(module->typeLibrary->interfaces, member, &ozm::AutomationInterface::askedBy) !=
               module->typeLibrary->interfaces.end();
}

} // namespace

DialogSettings settingsOf(const ozm::CAnalysisDialog& dialog, const DataSet& data, Greyed greyed) {
    DialogSettings all;
    all.title = dialog.Template().title;
    all.number = dialog.Template().number;
    const ozm::AutomationInterface* interface = dialog.Interface();
    if (interface == nullptr) return all;
    all.id = interface->name;
    all.askedBy = interface->askedBy;
    all.onTheWay = !all.askedBy.empty();
    const Reading reading(dialog, data);
    for (const ozm::AutomationMember& member : interface->members) {
        if (member.kind != ozm::MemberKind::Property) continue;
        const ozm::ControlTemplate* control = dialog.Template().Find(member.control);
        if (control == nullptr) continue;
        // The value of one that is greyed out may be none that could be set.
        if (!dialog.IsEnabled(control->id) &&
            (greyed == Greyed::LeftOut || !dialog.Fits(*control, dialog.Value(control->id)).done))
            continue;
        all.settings.push_back({std::string{member.name}, labelOf(dialog, member, *control),
                                reading.value(member, *control), member.choice != 0,
                                asks(dialog, member.name)});
    }
    return all;
}

ButtonName nameOfButton(const ozm::CAnalysisDialog& dialog, int control) {
    ButtonName name;
    const ozm::ControlTemplate* found = dialog.Template().Find(control);
    if (found == nullptr) return name;
    if (const ozm::ControlTemplate* first = dialog.Template().Find(found->repeats)) found = first;
    name.label = ozm::PlainControlText(found->text);
    if (const ozm::AutomationInterface* interface = dialog.Interface())
        for (const ozm::AutomationMember& member : interface->members)
            if (member.kind == ozm::MemberKind::Action && member.control == found->id) name.id = member.name;
    return name;
}

} // namespace korvana
