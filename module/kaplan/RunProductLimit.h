#pragma once

#include "module/kaplan/KaplanState.h"
#include "module/survdata/SharedSettings.h"
#include "module/survdata/Status.h"
#include "support/CAnalysisSupport.h"

namespace ozm {
class CAnalysisDialog;
}

namespace ozm::survival {

/// The run that the specification dialog's OK starts: obtains the arrays, reads the cases, sorts, computes.
/// True when `state.results` is filled; the shared statistics then begin with the percentiles. Else a message
/// was shown over `window` (none after a stop), and nothing is kept.
bool RunProductLimit(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state,
                     CAnalysisDialog* window);

/// The reading pass: fills times and case numbers of `results` up to the capacity of its arrays, and its
/// counts.
Status ReadKaplanMeierData(CAnalysisSupport& host, SharedSettings& shared, KaplanResults& results);

/// Puts the case numbers of tied times into the order of the paired heap sort, where the run has not done so.
/// Called by outputs that list case numbers. NoMemory or Stopped leave the results as they were.
Status MakeTieOrderExact(CAnalysisSupport& host, KaplanResults& results);

/// The number of a status's message, 0 for none.
int KaplanMessage(Status status);

} // namespace ozm::survival
