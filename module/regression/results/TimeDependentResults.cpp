#include "module/regression/results/CoxOutput.h"
#include "module/regression/results/Forest.h"
#include "module/regression/results/ModelResults.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"

namespace ozm::survival {
namespace {

OutputResult PlotHazardRatios(const RegReportOf& of) {
    return PlotForest(
        of, {StrCoxForestTitle, StrCoxAxisRatio, StrCoxLegendRatio, StrCoxNoteForest, StrCoxNoRatio});
}

constexpr ModelOutput outputs[] = {{RegForest, PlotHazardRatios}};

} // namespace

const ModelResults timeDependentResults{
    .title = StrRegTimeDependent,
    .lineOfModel = StrRegTies,
    .hasScoreTest = true,
    .exponents = StrRegNoteExp,
    .noteOnCriterion = StrRegNoteCriterion,
    .noteOnCovariance = StrRegNoteCovariance,
    .outputs = outputs,
    .measures = [](const RegReportOf&) { return std::vector<FitMeasure>{}; },
    .noteOnMeasures = StrRegNoteWald};

} // namespace ozm::survival
