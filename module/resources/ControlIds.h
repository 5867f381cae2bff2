#pragma once

namespace ozm::survival {

/// Controls of the startup dialog.
enum TaskControl : int {
    TaskList = 180,
    TaskCaseWeights = 207,
    TaskSelectCases = 214,
    TaskOpenData = 216,
    TaskResetSelections = 217,
};

/// Controls that several specification dialogs have. Case weights and selection conditions keep the startup
/// dialog's numbers.
enum SpecifyControl : int {
    SpecifyVariables = 1001,
    SpecifyCompleteCode = 1002,
    SpecifyCensoredCode = 1003,
};

/// Controls of the Kaplan-Meier results dialog.
enum KaplanResultsControl : int {
    KaplanSummaryBox = 1100,
    KaplanSummary = 1101,
    KaplanPercentiles = 1102,
    KaplanPlot1 = 1103,
    KaplanPlot2 = 1104,
    KaplanPlot3 = 1105,
    KaplanLevel = 1106,
    KaplanPlot1Again = 1113, ///< the same output on the plots' tab
};

/// Places of the boxes of a variable-selection control.
enum SpecifyRole : int { RoleTimes = 0, RoleCensoring = 1 };

} // namespace ozm::survival
