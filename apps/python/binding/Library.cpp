#include "apps/python/binding/Library.h"

#include "apps/python/binding/Errors.h"
#include "support/ModuleResources.h"

namespace korvana::python {
namespace {

const char* kindName(ozm::MemberKind kind) {
    return kind == ozm::MemberKind::Action ? "action" : "property";
}

const char* typeName(ozm::MemberType type) {
    switch (type) {
    case ozm::MemberType::Boolean:
        return "boolean";
    case ozm::MemberType::Integer:
        return "integer";
    case ozm::MemberType::Real:
        return "real";
    case ozm::MemberType::Text:
        return "text";
    case ozm::MemberType::Code:
        return "code";
    case ozm::MemberType::Enumeration:
        return "enumeration";
    case ozm::MemberType::Variables:
        return "variables";
    case ozm::MemberType::Codes:
        return "codes";
    case ozm::MemberType::Texts:
        return "texts";
    case ozm::MemberType::Numbers:
        return "numbers";
    case ozm::MemberType::Object:
        return "object";
    case ozm::MemberType::None:
        break;
    }
    return "none";
}

py::dict interfaceTable(const ozm::AutomationInterface& one) {
    py::list members;
    for (const ozm::AutomationMember& member : one.members)
        members.append(py::make_tuple(text(member.name), kindName(member.kind), typeName(member.type),
                                      text(member.help), text(member.enumeration), member.IsReadOnly()));
    py::dict table;
    table["name"] = text(one.name);
    table["dialog"] = text(one.dialogClass);
    table["help"] = text(one.help);
    table["asked_by"] = text(one.askedBy);
    table["members"] = members;
    return table;
}

py::dict libraryTable() {
    const Analysis analysis = loadModule(); // which keeps what the table points to
    const ozm::ModuleHandle resources = analysis->GetLibInstance();
    if (resources == nullptr || resources->typeLibrary == nullptr)
        throw ModuleError("the analysis module has no type library");
    const ozm::TypeLibrary& library = *resources->typeLibrary;
    py::list enumerations;
    for (const ozm::AutomationEnumeration& each : library.enumerations) {
        py::list members;
        for (const std::string_view member : each.members)
            members.append(text(member));
        enumerations.append(py::make_tuple(text(each.name), members));
    }
    py::list interfaces;
    for (const ozm::AutomationInterface& each : library.interfaces)
        interfaces.append(interfaceTable(each));
    py::dict table;
    table["name"] = text(library.name);
    table["help"] = text(library.help);
    table["analysis"] = text(analysis->GetAnalysisName());
    table["enumerations"] = enumerations;
    table["base"] = interfaceTable(ozm::BaseDialogInterface());
    table["interfaces"] = interfaces;
    return table;
}

} // namespace

Analysis loadModule() {
    return loadAnalysis(modulePaths("libOZMSurvival.so"));
}

void bindLibrary(py::module_& module) {
    module.def("library", libraryTable, "The module's type library, as plain lists.");
}

} // namespace korvana::python
