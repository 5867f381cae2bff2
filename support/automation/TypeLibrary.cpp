#include "support/automation/TypeLibrary.h"

#include "support/dialogs/DialogTemplate.h"

namespace ozm {
namespace {

constexpr AutomationMember Routed(std::string_view name, MemberType type, std::string_view help) {
    return {name, MemberKind::Routed, type, 0, help};
}

constexpr AutomationMember members[] = {
    {"Name", MemberKind::Property, MemberType::Text, 0, "Name of the dialog's class"},
    {"Application", MemberKind::Property, MemberType::Object, 0, "Returns application object "},
    {"Parent", MemberKind::Property, MemberType::Object, 0, "Returns the parent of the object"},
    {"OK", MemberKind::Action, MemberType::None, ControlOk, "Accepts the dialog; returns whether it closed"},
    {"Cancel", MemberKind::Action, MemberType::None, ControlCancel, "Leaves the dialog and goes back"},
    Routed("ResultsSelection", MemberType::Texts,
           "Names of the actions whose outputs are saved in the file; none: all"),
    Routed("ResultsSelectionOption", MemberType::Text,
           "Whether the actions of ResultsSelection are those saved or those not: include, exclude"),
    Routed("ResultsVariables", MemberType::Texts,
           "Columns of the spreadsheets by whose values rows are saved; none: all rows"),
    Routed("ResultsOption", MemberType::Text,
           "Where outputs go: book and file (where a file is named), or book"),
    Routed("ResultsCodes", MemberType::Codes,
           "The values of the columns of ResultsVariables of which rows are saved"),
    Routed("ResultsSaveFileName", MemberType::Text,
           "File into which the outputs of this dialog are saved after each action; its suffix names the "
           "format"),
    Routed("ResultsValues", MemberType::Text,
           "How the numbers of spreadsheets are saved: full, or rounded as shown"),
    Routed("ResultsOutputFields", MemberType::Texts,
           "Names of the columns of spreadsheets that are saved; none: all"),
};

constexpr AutomationInterface base{"OzmAnalysisDialog", "CAnalysisDialog", "KORVANA Dialog", members};

} // namespace

const AutomationInterface& BaseDialogInterface() {
    return base;
}

} // namespace ozm
