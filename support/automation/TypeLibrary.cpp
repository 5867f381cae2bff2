#include "support/automation/TypeLibrary.h"

#include "support/dialogs/DialogTemplate.h"

namespace ozm {
namespace {

// These would have a meaning only for a host that sends single results elsewhere.
constexpr AutomationMember Refused(std::string_view name, std::string_view why) {
    return {name, MemberKind::Refused, MemberType::Text, 0, why};
}

constexpr std::string_view oneByOne =
    "each output is made by the member named after it and goes into the book of results";
constexpr std::string_view asSpecified =
    "results use the variables and codes set in the specification dialog";
constexpr std::string_view savedByProgram =
    "the book of results is saved and exported by the program that runs the analysis";

constexpr AutomationMember members[] = {
    {"Name", MemberKind::Property, MemberType::Text, 0, "Name of the dialog's class"},
    {"Application", MemberKind::Property, MemberType::Object, 0, "Returns application object "},
    {"Parent", MemberKind::Property, MemberType::Object, 0, "Returns the parent of the object"},
    {"OK", MemberKind::Action, MemberType::None, ControlOk, ""},
    {"Cancel", MemberKind::Action, MemberType::None, ControlCancel, ""},
    Refused("ResultsSelection", oneByOne),
    Refused("ResultsSelectionOption", oneByOne),
    Refused("ResultsVariables", asSpecified),
    Refused("ResultsOption", oneByOne),
    Refused("ResultsCodes", asSpecified),
    Refused("ResultsSaveFileName", savedByProgram),
    Refused("ResultsValues", savedByProgram),
    Refused("ResultsOutputFields", savedByProgram),
};

constexpr AutomationInterface base{"OzmAnalysisDialog", "CAnalysisDialog", "KORVANA Dialog", members};

} // namespace

const AutomationInterface& BaseDialogInterface() {
    return base;
}

} // namespace ozm
