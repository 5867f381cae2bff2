#pragma once

#include "module/kaplan/KaplanState.h"
#include "module/ksample/KsState.h"
#include "module/lifetable/LifeState.h"
#include "module/regression/RegressionState.h"
#include "module/survdata/SharedSettings.h"
#include "module/twosample/TwoState.h"
#include "support/CAnalysisSupport.h"

namespace ozm::survival {

/// The module-wide state, one set for the whole module: only one analysis is active at a time. An analysis is
/// passed its own struct and the shared one.
struct SurvivalState {
    SharedSettings shared;
    LifeState lifeTables;
    KaplanState kaplan;
    TwoState twoSamples;
    KsState kSamples;
    RegressionState regression;
    int startupPosition = 0; ///< entry of the startup dialog's list that was chosen last

    /// Sets the defaults for a new analysis object: selections and codes are cleared, results released, the
    /// counts of the data read. The entry chosen last and, for people, the confidence level are kept from one
    /// analysis to the next.
    void Reset(CAnalysisSupport& host);
    /// Other data were opened: codes become unset, the counts are read again, results of the earlier data are
    /// released. Selections are kept where the new data have variables of the same names.
    void DataChanged(CAnalysisSupport& host);
    /// Forgets all variables and codes that were selected.
    void ClearSelections();
    /// An analysis object is destroyed: its results are released.
    void Leave(const CAnalysisSupport& host);

private:
    void UnsetCodes();
    void ReleaseResults();
};

SurvivalState& ModuleState();

} // namespace ozm::survival
