#pragma once
// How each dialog of the type library is reached, and what each of its members must do there.

#include "support/automation/AutomationValue.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace walk {

using ozm::AutomationValue;
using List = AutomationValue::List;
using Settings = std::vector<std::pair<std::string_view, AutomationValue>>;

/// A way through an analysis: the members that are set in each dialog on it, and the action that shows in the
/// end whether a setting had an effect.
struct Way {
    std::string_view name;
    std::vector<std::pair<std::string_view, Settings>> dialogs; ///< by their interfaces
    std::string_view action = "Summary";
    bool table = false; ///< the data are a life table
};

/// Another value of a property gives another outcome: other dialogs on the way, other outputs, or a message.
struct PropertyCheck {
    std::string_view interface;
    std::string_view member;
    std::string_view way;
    AutomationValue first;
    AutomationValue second;
    std::string_view action{}; ///< instead of the way's
    Settings with{};           ///< set in the same dialog before
};

/// An action makes outputs of these kinds: R report, S spreadsheet, C chart.
struct ActionCheck {
    std::string_view interface;
    std::string_view member;
    std::string_view way;
    std::string_view kinds;
};

const std::vector<Way>& ways();
const std::vector<PropertyCheck>& propertyChecks();
const std::vector<ActionCheck>& actionChecks();

} // namespace walk
