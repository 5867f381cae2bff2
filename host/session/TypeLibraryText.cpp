#include "host/session/TypeLibraryText.h"

#include <algorithm>

namespace korvana {
namespace {

std::string_view valueName(const ozm::AutomationMember& member) {
    switch (member.type) {
    case ozm::MemberType::None:
        return "action";
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
        return member.enumeration;
    case ozm::MemberType::Variables:
        return "list of variables per role";
    case ozm::MemberType::Codes:
        return "list of codes";
    case ozm::MemberType::Numbers:
        return "list of numbers";
    case ozm::MemberType::Texts:
        return "list of texts";
    case ozm::MemberType::Object:
        return "object";
    }
    return "";
}

std::string typeName(const ozm::AutomationMember& member) {
    return std::string{valueName(member)} + (member.IsReadOnly() ? ", read only" : "");
}

void appendPadded(std::string& text, std::string_view word, std::size_t width) {
    text += word;
    text.append(width > word.size() ? width - word.size() : 0, ' ');
}

void appendHelp(std::string& text, std::string_view help) {
    if (const auto end = help.find_last_not_of(' '); end != std::string_view::npos)
        text.append("  ").append(help.substr(0, end + 1));
}

void appendInterface(std::string& text, const ozm::AutomationInterface& one, bool extends) {
    text.append("\ninterface ").append(one.name);
    if (extends) text.append(" : ").append(ozm::BaseDialogInterface().name);
    appendHelp(text, one.help);
    text += '\n';
    std::size_t names = 0;
    std::size_t types = 0;
    for (const ozm::AutomationMember& member : one.members) {
        names = std::max(names, member.name.size());
        types = std::max(types, typeName(member).size());
    }
    for (const ozm::AutomationMember& member : one.members) {
        std::string line = member.added ? "+ " : "  ";
        appendPadded(line, member.name, names + 2);
        appendPadded(line, typeName(member), types);
        appendHelp(line, member.help);
        line.erase(line.find_last_not_of(' ') + 1);
        text.append(line).append("\n");
    }
}

} // namespace

std::string typeLibraryText(const ozm::TypeLibrary& library) {
    std::string text = "library ";
    text += library.name;
    appendHelp(text, library.help);
    text += "\n\n+ marks members that this program adds.\n";
    for (const ozm::AutomationEnumeration& enumeration : library.enumerations) {
        text.append("\nenumeration ").append(enumeration.name).append("\n");
        for (std::size_t i = 0; i < enumeration.members.size(); ++i)
            text.append("  ")
                .append(std::to_string(i + 1))
                .append("  ")
                .append(enumeration.members[i])
                .append("\n");
    }
    appendInterface(text, ozm::BaseDialogInterface(), false);
    for (const ozm::AutomationInterface& one : library.interfaces)
        appendInterface(text, one, true);
    return text;
}

} // namespace korvana
