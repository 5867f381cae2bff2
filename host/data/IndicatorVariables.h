#pragma once

#include "host/data/ComputedVariable.h"

namespace korvana {

/// The indicator of one code of a variable (from 0): 1 for the cases that have the code, 0 for those with
/// another one, missing where the variable is missing. Its name is "celltype=smallcell", with the code where
/// that has no label.
Definition indicatorOf(const DataSet& data, int variable0, double code);

} // namespace korvana
