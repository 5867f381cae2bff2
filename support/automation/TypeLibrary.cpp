#include "support/automation/TypeLibrary.h"

#include "support/dialogs/DialogTemplate.h"

namespace ozm {
namespace {

constexpr AutomationMember members[] = {
    {"Name", MemberKind::Property, MemberType::Text, 0, ""},
    {"Application", MemberKind::Property, MemberType::Text, 0, "Returns application object "},
    {"Parent", MemberKind::Property, MemberType::Text, 0, "Returns the parent of the object"},
    {"OK", MemberKind::Action, MemberType::None, ControlOk, ""},
    {"Cancel", MemberKind::Action, MemberType::None, ControlCancel, ""},
    {"ResultsSelection", MemberKind::Property, MemberType::Text, 0, ""},
    {"ResultsSelectionOption", MemberKind::Property, MemberType::Text, 0, ""},
    {"ResultsVariables", MemberKind::Property, MemberType::Text, 0, ""},
    {"ResultsOption", MemberKind::Property, MemberType::Text, 0, ""},
    {"ResultsCodes", MemberKind::Property, MemberType::Text, 0, ""},
    {"ResultsSaveFileName", MemberKind::Property, MemberType::Text, 0, ""},
    {"ResultsValues", MemberKind::Property, MemberType::Text, 0, ""},
    {"ResultsOutputFields", MemberKind::Property, MemberType::Text, 0, ""},
};

constexpr AutomationInterface base{"OzmAnalysisDialog", "CAnalysisDialog", "KORVANA Dialog", members};

} // namespace

const AutomationInterface& BaseDialogInterface() {
    return base;
}

} // namespace ozm
