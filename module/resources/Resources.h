#pragma once

#include "support/ModuleResources.h"

#include <span>
#include <string_view>

namespace ozm::survival {

/// The module's string table, ascending by number.
std::span<const StringResource> StringTable();

/// The text of a number of this module's table; empty when there is none.
std::string_view Text(int id);

/// Dialog templates by number; nullptr for a number that has none.
std::span<const DialogTemplate* const> DialogTemplates();
const DialogTemplate& TaskTemplate();
const DialogTemplate& KaplanTemplate();
const DialogTemplate& KaplanResultsTemplate();
const DialogTemplate& TwoTemplate();
const DialogTemplate& TwoResultsTemplate();

/// The type library and the interfaces of the dialogs.
const TypeLibrary& SurvivalTypeLibrary();
const AutomationInterface& StartupInterface();
const AutomationInterface& KaplanInterface();
const AutomationInterface& KaplanResultsInterface();
const AutomationInterface& TwoInterface();
const AutomationInterface& TwoResultsInterface();

/// Everything together, as the host gets it.
const ModuleResources& Resources();

} // namespace ozm::survival
