#pragma once

#include "module/lifetable/LifeOutput.h"

namespace ozm::survival {

/// The spreadsheet of the summary: the life table with its standard errors and median life expectancies, the
/// log-likelihood of the data below it.
OutputResult WriteLifeTableSheet(const LifeReportOf& of);

} // namespace ozm::survival
