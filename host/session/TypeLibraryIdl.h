#pragma once

#include "support/automation/TypeLibrary.h"

#include <string>

namespace korvana {

/// A type library in the interface definition language, for compilers that make type libraries or headers of
/// it: dual interfaces, with the base dialog interface. It imports nothing. Identifiers (uuid) are derived
/// from the names of library, enumeration and interface, so they stay the same from version to version;
/// numbers of members follow their order.
std::string typeLibraryIdl(const ozm::TypeLibrary& library);

} // namespace korvana
