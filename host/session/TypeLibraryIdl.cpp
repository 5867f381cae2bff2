#include "host/session/TypeLibraryIdl.h"

#include "support/dialogs/DialogTemplate.h"

#include <cstdint>

namespace korvana {
namespace {

/// What a compiler would else read from its platform's files. Type libraries keep the names of these types
/// alone.
constexpr std::string_view platform = R"(typedef long HRESULT;
typedef unsigned short OLECHAR;
typedef OLECHAR *BSTR;
typedef short VARIANT_BOOL;
typedef struct tagVARIANT { unsigned short vt; } VARIANT;

[object, local, uuid(00000000-0000-0000-C000-000000000046), pointer_default(unique)]
interface IUnknown
{
}

[object, local, uuid(00020400-0000-0000-C000-000000000046), pointer_default(unique)]
interface IDispatch : IUnknown
{
}
)";

constexpr int firstBaseMember = 1;
constexpr int firstMember = 101;

/// FNV-1a.
std::uint64_t hash(std::string_view text, std::uint64_t start) {
    for (const char c : text)
        start = (start ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    return start;
}

/// A uuid of version 8, whose bits are the maker's own.
std::string uuid(std::string_view library, std::string_view name) {
    const std::string path = std::string{library} + "/" + std::string{name};
    const std::uint64_t high = hash(path, 0xcbf29ce484222325U);
    const std::uint64_t low = hash(path, high);
    const std::uint64_t halves[] = {(high & ~0xf000ULL) | 0x8000ULL, (low & ~(3ULL << 62)) | (2ULL << 62)};
    std::string digits;
    for (int place = 0; place < 32; ++place) {
        if (place == 8 || place == 12 || place == 16 || place == 20) digits += '-';
        digits += "0123456789abcdef"[(halves[place / 16] >> (60 - place % 16 * 4)) & 15];
    }
    return digits;
}

std::string quoted(std::string_view text) {
    std::string all = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') all += '\\';
        all += c;
    }
    return all + "\"";
}

std::string_view typeName(const ozm::AutomationMember& member) {
    switch (member.type) {
    case ozm::MemberType::Boolean:
        return "VARIANT_BOOL";
    case ozm::MemberType::Integer:
        return "long";
    case ozm::MemberType::Real:
        return "double";
    case ozm::MemberType::Text:
        return "BSTR";
    case ozm::MemberType::Enumeration:
        return member.enumeration;
    case ozm::MemberType::Object:
        return "IDispatch *";
    case ozm::MemberType::None:
    case ozm::MemberType::Code: // a number or a text
    case ozm::MemberType::Variables:
    case ozm::MemberType::Codes:
    case ozm::MemberType::Numbers:
    case ozm::MemberType::Texts:
        break;
    }
    return "VARIANT";
}

void appendMember(std::string& text, const ozm::AutomationMember& member, int number) {
    const std::string name{member.name};
    const std::string help = member.help.empty() ? "" : ", helpstring(" + quoted(member.help) + ")";
    const auto declare = [&](std::string_view kind, const std::string& argument) {
        text.append("    [id(").append(std::to_string(number)).append(")").append(kind).append(help);
        text.append("]\n    HRESULT ").append(name).append("(").append(argument).append(");\n");
    };
    if (member.added) text += "    // added by this program\n";
    if (member.kind == ozm::MemberKind::Action)
        return declare("",
                       member.control == ozm::ControlCancel ? "" : "[out, retval] VARIANT_BOOL *succeeded");
    const std::string type{typeName(member)};
    declare(", propget", "[out, retval] " + type + (type.ends_with('*') ? "*value" : " *value"));
    if (!member.IsReadOnly()) declare(", propput", "[in] " + type + " value");
}

void appendInterface(std::string& text, std::string_view library, const ozm::AutomationInterface& one,
                     std::string_view base, int number) {
    text.append("\n  [object, dual, oleautomation, uuid(").append(uuid(library, one.name));
    text.append("),\n   helpstring(").append(quoted(one.help)).append(")]\n  interface ").append(one.name);
    text.append(" : ").append(base).append("\n  {\n");
    for (const ozm::AutomationMember& member : one.members)
        appendMember(text, member, number++);
    text += "  };\n";
}

} // namespace

std::string typeLibraryIdl(const ozm::TypeLibrary& library) {
    std::string text{platform};
    text.append("\n[uuid(").append(uuid(library.name, "")).append("), version(1.0),\n helpstring(");
    text.append(quoted(library.help)).append(")]\nlibrary ").append(library.name).append("\n{\n");
    for (const ozm::AutomationEnumeration& enumeration : library.enumerations) {
        // With a tag, for without one compilers make two types of it.
        text.append("  typedef [uuid(").append(uuid(library.name, enumeration.name)).append(")] enum ");
        text.append(enumeration.name).append("\n  {\n");
        for (std::size_t i = 0; i < enumeration.members.size(); ++i)
            text.append("    ")
                .append(enumeration.members[i])
                .append(" = ")
                .append(std::to_string(i + 1))
                .append(i + 1 < enumeration.members.size() ? ",\n" : "\n");
        text.append("  } ").append(enumeration.name).append(";\n\n");
    }
    text.pop_back();
    const ozm::AutomationInterface& base = ozm::BaseDialogInterface();
    appendInterface(text, library.name, base, "IDispatch", firstBaseMember);
    for (const ozm::AutomationInterface& one : library.interfaces)
        appendInterface(text, library.name, one, base.name, firstMember);
    return text + "}\n";
}

} // namespace korvana
