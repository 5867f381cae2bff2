#pragma once

#include "support/Export.h"

#include <string>
#include <string_view>

namespace ozm {

/// What a person reads of a control's text: without icon, accelerator, colon at its end and runs of blanks.
/// "!249S&ummary:  All" -> "Summary: All", "&Conf. Level:" -> "Conf. Level".
KORVANA_SUPPORT std::string PlainControlText(std::string_view controlText);

} // namespace ozm
