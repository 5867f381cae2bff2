#pragma once

#include "module/kaplan/KaplanState.h"
#include "module/regression/RegressionState.h"
#include "module/survdata/SharedSettings.h"
#include "module/twosample/TwoState.h"
#include "support/CAnalysisSupport.h"

namespace ozm::survival {

/// The module-wide state, one set for the whole module: only one analysis is active at a time. An analysis
/// gets its own struct and the shared one handed in.
struct SurvivalState {
    SharedSettings shared;
    KaplanState kaplan;
    TwoState twoSamples;
    RegressionState regression;
    int startupPosition = 0; ///< entry of the startup dialog's list that was chosen last

    /// Every default for an analysis object that begins; selections and codes are cleared, results released,
    /// the counts of the data read. What is kept from one analysis to the next stays: the entry chosen last,
    /// the confidence level.
    void Reset(CAnalysisSupport& host);
    /// Other data: the codes become unset, the counts are read anew, results of the data before are released.
    /// Selections stay where the new data have variables of the same names.
    void DataChanged(CAnalysisSupport& host);
    /// Forgets all variables and codes that were selected.
    void ClearSelections();
    /// An analysis object does a step: results of another one are released.
    void Enter(CAnalysisSupport& host);
    /// An analysis object goes: its results are released.
    void Leave(const CAnalysisSupport& host);

private:
    void ReleaseResults();
};

SurvivalState& ModuleState();

} // namespace ozm::survival
