#pragma once

#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <string>

namespace ozm::survival {

/// Opens a block of the report: its title, the report's title and the data file, then an empty line.
void OpenReport(CAnalysisSupport& host, const SharedSettings& settings, int title);

/// The name of the time variable for summaries; times computed from dates have a text instead.
std::string TimesName(CAnalysisSupport& host, const SharedSettings& settings);

/// Lists the input of an analysis in the report, one item a line: time variables, censoring variable with its
/// codes and their value labels, and for the comparisons of groups the grouping variable with all of its
/// codes. For a life table given as a table, lists the variables of that table.
void WriteInputHeader(CAnalysisSupport& host, const SharedSettings& settings);

} // namespace ozm::survival
