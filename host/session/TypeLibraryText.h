#pragma once

#include "support/automation/TypeLibrary.h"

#include <string>

namespace korvana {

/// A type library for people who write scripts: its enumerations with their values and its interfaces with
/// their members, types and help texts, in declaration order. Added members are marked by "+".
std::string typeLibraryText(const ozm::TypeLibrary& library);

} // namespace korvana
