#include "module/resources/ControlIds.h"
#include "module/resources/Resources.h"

namespace ozm::survival {
namespace {

constexpr std::string_view surMethod[] = {"scSurLifeTablesAndDistributions", "scSurKaplanMeierProductLimit",
                                          "scSurComparingTwoSamples",        "scSurComparingMultipleSamples",
                                          "scSurRegressionModels",           "scSurTimeDependentCovariates"};
constexpr std::string_view surResultsForModel[] = {"scSurExponential", "scSurLinearHazard", "scSurGompertz",
                                                   "scSurWeibull"};
constexpr std::string_view surRegressionModel[] = {"scSurProportionalHazardRegression",
                                                   "scSurExponentialRegression", "scSurLogNormalRegression",
                                                   "scSurNormalRegression"};
constexpr std::string_view surTypeOfInputDataTabs[] = {"scSurRawData", "scSurTableOfSurvivalTimes"};

constexpr AutomationEnumeration enumerations[] = {
    {"SurMethod", surMethod},
    {"SurResultsForModel", surResultsForModel},
    {"SurRegressionModel", surRegressionModel},
    {"SurTypeOfInputDataTabs", surTypeOfInputDataTabs},
};

// Members that several interfaces have.
constexpr AutomationMember variables{"Variables", MemberKind::Property, MemberType::Variables,
                                     SpecifyVariables, "Variables for analysis"};
constexpr AutomationMember completeCode{"CodeForCompleteResponses", MemberKind::Property, MemberType::Code,
                                        SpecifyCompleteCode,
                                        "Code for complete responses (observed failures)"};
constexpr AutomationMember censoredCode{"CodeForCensoredResponses", MemberKind::Property, MemberType::Code,
                                        SpecifyCensoredCode, "Code for censored responses"};

constexpr AutomationMember startupMembers[] = {
    {"TypeOfAnalysis", MemberKind::Property, MemberType::Enumeration, TaskList, "Type of analysis",
     "SurMethod"},
};
constexpr AutomationMember kaplanMembers[] = {variables, completeCode, censoredCode};
constexpr AutomationMember kaplanResultsMembers[] = {
    {"Summary", MemberKind::Action, MemberType::None, KaplanSummary,
     "Summary, Kaplan-Meier product limit estimates"},
    {"PercentilesOfSurvivalFunction", MemberKind::Action, MemberType::None, KaplanPercentiles,
     "Percentiles of survival function"},
    {"PlotOfSurvivalTimesVsCumProportionSurviving", MemberKind::Action, MemberType::None, KaplanPlot1,
     "Plot of survival times vs. cumulative proportion surviving"},
    {"PlotOfLogSurvivalTimesVsCumProportionSurviving", MemberKind::Action, MemberType::None, KaplanPlot2,
     "Plot of log survival times vs. cumulative proportion surviving"},
    {"PlotOfLogSurvivalTimesVsLogCumProportionSurviving", MemberKind::Action, MemberType::None, KaplanPlot3,
     "Plot of log-survival times vs. log-cumulative proportion surviving"},
    {"ConfidenceLevel", MemberKind::Property, MemberType::Real, KaplanLevel,
     "Confidence level of the limits, between 0 and 1"},
    {"SurvivalCurve", MemberKind::Action, MemberType::None, KaplanCurve,
     "Survival curve of all observations"},
    {"DefaultPlot", MemberKind::Property, MemberType::Text, 0,
     "The action that plots survival best for these data (read only)"},
};

constexpr AutomationMember twoMembers[] = {
    variables,
    completeCode,
    censoredCode,
    {"CodeForGroup1", MemberKind::Property, MemberType::Code, SpecifyGroup1Code, "Code identifying group 1"},
    {"CodeForGroup2", MemberKind::Property, MemberType::Code, SpecifyGroup2Code, "Code identifying group 2"},
};
constexpr AutomationMember twoResultsMembers[] = {
    {"GehanWilcoxonTest", MemberKind::Action, MemberType::None, TwoGehan, "Gehan-Wilcoxon test"},
    {"CoxFTest", MemberKind::Action, MemberType::None, TwoCoxF, "Cox F test"},
    {"CoxMantelTest", MemberKind::Action, MemberType::None, TwoCoxMantel, "Cox-Mantel test"},
    {"LogRankTest", MemberKind::Action, MemberType::None, TwoLogRank, "Log-rank test"},
    {"PetoPetoWilcoxonTest", MemberKind::Action, MemberType::None, TwoPetoPeto,
     "Peto and Peto's Wilcoxon test"},
    {"ProportionSurvivingByGroup", MemberKind::Action, MemberType::None, TwoLifeTables,
     "Proportion surviving by group"},
    {"PlotOfProportionSurvivingByGroup", MemberKind::Action, MemberType::None, TwoPlotSurviving,
     "Plot of proportion surviving by group"},
    {"CumulativeProportionSurvivingByGroup", MemberKind::Action, MemberType::None, TwoPlotCumulative,
     "Cumulative proportion surviving by group"},
    {"Summary", MemberKind::Action, MemberType::None, TwoSummary, "Summary, the five tests side by side"},
};

constexpr AutomationInterface interfaces[] = {
    {"SurStartup", "CDefineTask", "Survival Analysis startup dialog", startupMembers},
    {"SurKaplanMeier", "CDefineKaplanDlg", "Survival Analysis Kaplan-Meier dialog", kaplanMembers},
    {"SurKaplanMeierResults", "CKaplanResultsDlg", "Survival Analysis Kaplan-Meier results dialog",
     kaplanResultsMembers},
    {"SurTwoSamples", "CDefineTwoDlg", "Survival Analysis two-sample comparisons dialog", twoMembers},
    {"SurTwoSamplesResults", "CTwoResultsDlg", "Survival Analysis two-sample comparisons results dialog",
     twoResultsMembers},
};

constexpr TypeLibrary library{"OZMSurvival", "KORVANA Survival Analysis Library", enumerations, interfaces};

} // namespace

const TypeLibrary& SurvivalTypeLibrary() {
    return library;
}

const AutomationInterface& StartupInterface() {
    return interfaces[0];
}

const AutomationInterface& KaplanInterface() {
    return interfaces[1];
}

const AutomationInterface& KaplanResultsInterface() {
    return interfaces[2];
}

const AutomationInterface& TwoInterface() {
    return interfaces[3];
}

const AutomationInterface& TwoResultsInterface() {
    return interfaces[4];
}

const ModuleResources& Resources() {
    static const ModuleResources resources{StringTable(), DialogTemplates(), &library};
    return resources;
}

std::string_view Text(int id) {
    return Resources().String(id);
}

} // namespace ozm::survival
