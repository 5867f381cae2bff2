#pragma once

#include "support/Export.h"
#include "support/dialogs/DialogTemplate.h"

#include <string>
#include <string_view>

namespace ozm {

/// A control's text as a person reads it: without icon, accelerator, trailing colon and runs of blanks.
/// "!249S&ummary:  All" -> "Summary: All", "&Conf. Level:" -> "Conf. Level".
KORVANA_SUPPORT std::string PlainControlText(std::string_view controlText);

/// A control's name for use in a sentence: 'Conf. Level'.
std::string QuotedControl(const ControlTemplate& control);

} // namespace ozm
