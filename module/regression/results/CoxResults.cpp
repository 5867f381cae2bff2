#include "module/regression/cox/Concordance.h"
#include "module/regression/results/CoxOutput.h"
#include "module/regression/results/Forest.h"
#include "module/resources/RegressionResults.h"

namespace ozm::survival {
namespace {

std::vector<FitMeasure> Measures(const RegReportOf& of) {
    const OrderedSample sample = of.Results().sample.Ordered();
    const RiskSets sets = RiskSetsOf(of.Results());
    const Concordance found = ComputeConcordance(sample, sets.Predictors());
    return {{StrRegConcordance, StrRegRowConcordance, found.value},
            {StrRegConcordanceError, StrRegRowConcordanceError, found.error}};
}

OutputResult PlotHazardRatios(const RegReportOf& of) {
    return PlotForest(
        of, {StrCoxForestTitle, StrCoxAxisRatio, StrCoxLegendRatio, StrCoxNoteForest, StrCoxNoRatio});
}

constexpr ModelOutput outputs[] = {
    {RegPlot1, PlotCoxSurvival, StrRegPlotName1, StrRegSurvivalTitle},
    {RegPlot2, PlotCoxResiduals, StrRegPlotName2, StrCoxMartingaleTitle},
    {RegPlot3, PlotCoxLogLog, StrRegPlotName3, StrCoxLogLogTitle},
    {RegUserPlot, PlotCoxAtValues},
    {RegSurvivalTable, WriteCoxSurvival},
    {RegResiduals, WriteCoxResiduals},
    {RegProportionality, WriteProportionality},
    {RegSchoenfeld, WriteSchoenfeld},
    {RegPlotSchoenfeld, PlotSchoenfeld},
    {RegForest, PlotHazardRatios},
    {RegStratified, WriteStratifiedAnalysis},
};

} // namespace

const ModelResults coxResults{.title = StrRegOutCox,
                              .lineOfModel = StrRegTies,
                              .hasScoreTest = true,
                              .exponents = StrRegNoteExp,
                              .noteOnCriterion = StrRegNoteCriterion,
                              .noteOnCovariance = StrRegNoteCovariance,
                              .outputs = outputs,
                              .measures = Measures,
                              .noteOnMeasures = StrCoxNoteConcordance};

double MeanPredictor(const RegressionResults& results) {
    double sum = 0.0;
    for (std::size_t k = 0; k < results.Parameters(); ++k)
        sum += results.estimates[k] * results.sample.Summary(k).mean;
    return sum;
}

RiskSets RiskSetsOf(const RegressionResults& results) {
    return {results.sample.Ordered(), results.estimates, MeanPredictor(results)};
}

} // namespace ozm::survival
