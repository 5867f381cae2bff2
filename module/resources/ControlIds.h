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
    SpecifyGroup1Code = 1004,
    SpecifyGroup2Code = 1005,
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
    KaplanCurve = 1107,
    KaplanPlot1Again = 1113, ///< the same output on the plots' tab
};

/// Controls of the two-sample results dialog.
enum TwoResultsControl : int {
    TwoSummaryBox = 1120,
    TwoSummary = 1121,
    TwoGehan = 1122,
    TwoCoxF = 1123,
    TwoCoxMantel = 1124,
    TwoLogRank = 1125,
    TwoPetoPeto = 1126,
    TwoLifeTables = 1127,
    TwoPlotSurviving = 1128,
    TwoPlotCumulative = 1129,
};

/// Places of the boxes of a variable-selection control.
enum SpecifyRole : int { RoleTimes = 0, RoleCensoring = 1, RoleGrouping = 2 };

} // namespace ozm::survival
