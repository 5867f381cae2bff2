#pragma once

#include "support/Export.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace ozm {

enum class MemberKind : std::uint8_t {
    Property, ///< read-write twin of a control's value; without a control read only
    Action,   ///< twin of a button
    Routed,   ///< read-write, kept by the host: where the outputs of the dialog's actions go
};

enum class MemberType : std::uint8_t {
    None, ///< actions
    Boolean,
    Integer,
    Real,
    Text,
    Code, ///< a number, or the text of a value label
    Enumeration,
    Variables, ///< one list per role, each entry a variable's number or name
    Codes,
    Texts,
    Numbers, ///< several numbers; "nothing" among them is NaN
    Object,
};

/// One member of an automation interface: the control that it stands for does the work.
struct AutomationMember {
    std::string_view name;
    MemberKind kind = MemberKind::Property;
    MemberType type = MemberType::None;
    int control = 0;
    std::string_view help;
    std::string_view enumeration{}; ///< the name of the enumeration, for members of that type
    int choice = 0; ///< a Boolean member of a radio group: the choice (from 1) that it stands for
    /// Not among the members that scripts of other hosts know; such members come last.
    bool added = false;

    [[nodiscard]] constexpr bool IsReadOnly() const { return kind == MemberKind::Property && control == 0; }
};

constexpr AutomationMember Added(AutomationMember member) {
    member.added = true;
    return member;
}

/// The automation interface of one dialog class.
struct AutomationInterface {
    std::string_view name;
    std::string_view dialogClass;
    std::string_view help;
    std::span<const AutomationMember> members;
    /// The member of other dialogs that, once it was put, opens this one within their OK; empty: none does.
    std::string_view askedBy{};

    [[nodiscard]] constexpr const AutomationMember* Find(std::string_view member) const {
        for (const AutomationMember& m : members)
            if (m.name == member) return &m;
        return nullptr;
    }
};

/// An enumeration; its members are numbered from 1 in the order given.
struct AutomationEnumeration {
    std::string_view name;
    std::span<const std::string_view> members;
};

/// The type library of a module. Interfaces are in declaration order and extend the base dialog interface.
struct TypeLibrary {
    std::string_view name;
    std::string_view help;
    std::span<const AutomationEnumeration> enumerations;
    std::span<const AutomationInterface> interfaces;
};

/// Members that every dialog's interface has (interface OzmAnalysisDialog).
KORVANA_SUPPORT const AutomationInterface& BaseDialogInterface();

} // namespace ozm
