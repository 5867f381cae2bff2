#pragma once

#include "apps/cli/CommandApp.h"

#include <ostream>
#include <vector>

namespace korvana::cli {

/// The manual page korvana(1), in the language of man(7), from the commands and their options.
void writeManualPage(const std::vector<CommandApp>& commands, std::ostream& out);

} // namespace korvana::cli
