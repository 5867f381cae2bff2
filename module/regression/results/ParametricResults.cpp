#include "module/regression/results/Forest.h"
#include "module/regression/results/ParametricOutput.h"
#include "module/resources/RegressionResults.h"
#include "module/survdata/NormalQuantile.h"

#include <cmath>

namespace ozm::survival {
namespace {

std::vector<FitMeasure> Measures(const RegReportOf& of) {
    const RegressionResults& results = of.Results();
    const double likelihood = results.estimate.logLikelihood;
    const double logTimes = SumOfLogTimes(results.sample);
    const bool lognormal = results.kind == RegressionKind::Lognormal;
    const double ofTimes = likelihood - (lognormal ? logTimes : 0.0);
    std::vector<FitMeasure> measures;
    if (lognormal) measures.push_back({StrParLikelihoodTime, StrParRowTime, ofTimes, 10});
    if (results.kind == RegressionKind::Exponential && std::isfinite(logTimes))
        measures.push_back({StrParLikelihoodLogTime, StrParRowLogTime, likelihood + logTimes, 10});
    measures.push_back({StrParParameters, StrParRowParameters, static_cast<double>(results.Parameters())});
    measures.push_back({StrParAkaike, StrParRowAkaike, Akaike(ofTimes, results.Parameters()), 10});
    return measures;
}

constexpr ModelOutput exponentialOutputs[] = {
    {RegPlot1, PlotFittedSurvival, StrRegPlotName1, StrRegSurvivalTitle},
    {RegPlot2, PlotCoxSnellHazard, StrRegPlotName2, StrParCoxSnellTitle},
    {RegPlot3, PlotParametricResiduals, StrRegPlotName3, StrParCoxSnellVsTitle},
    {RegUserPlot, PlotPredictions},
    {RegSurvivalTable, WriteFittedSurvival},
    {RegResiduals, WriteParametricResiduals},
    {RegForest, PlotTimeRatios},
    {RegComparison, WriteComparison},
};
constexpr ModelOutput lognormalOutputs[] = {
    {RegPlot1, PlotFittedSurvival, StrRegPlotName1, StrRegSurvivalTitle},
    {RegPlot2, PlotNormalScores, StrRegPlotName2, StrParNormalPlotTitle},
    {RegPlot3, PlotParametricResiduals, StrRegPlotName3, StrParStandardisedVsTitle},
    {RegUserPlot, PlotPredictions},
    {RegSurvivalTable, WriteFittedSurvival},
    {RegResiduals, WriteParametricResiduals},
    {RegComparison, WriteComparison},
    {RegForest, PlotTimeRatios},
};
/// Of its coefficients the exponents are no ratios, so there is no forest of them.
constexpr auto normalOutputs = std::span{lognormalOutputs}.first<std::size(lognormalOutputs) - 1>();

} // namespace

const ModelResults exponentialResults{.title = StrParExponentialTitle,
                                      .lineOfModel = StrParExponentialModel,
                                      .lineOfScale = StrParScaleTime,
                                      .exponents = StrParNoteMean,
                                      .noteOnParameters = StrParNoteConstant,
                                      .tellsDistance = true,
                                      .noteOnCriterion = StrRegNoteCriterion,
                                      .noteOnCovariance = StrParNoteCovariance,
                                      .outputs = exponentialOutputs,
                                      .measures = Measures,
                                      .noteOnMeasures = StrParNoteAkaike};
const ModelResults lognormalResults{.title = StrParLognormalTitle,
                                    .lineOfModel = StrParLognormalModel,
                                    .lineOfScale = StrParScaleLogTime,
                                    .exponents = StrParNoteMedian,
                                    .noteOnParameters = StrParNoteSigmaLog,
                                    .tellsDistance = true,
                                    .noteOnCriterion = StrParNoteSmallSteps,
                                    .countsInUnits = true,
                                    .noteOnCovariance = StrParNoteObserved,
                                    .outputs = lognormalOutputs,
                                    .measures = Measures,
                                    .noteOnMeasures = StrParNoteAkaike};
const ModelResults normalResults{.title = StrParNormalTitle,
                                 .lineOfModel = StrParNormalModel,
                                 .lineOfScale = StrParScaleTime,
                                 .noteOnParameters = StrParNoteSigma,
                                 .tellsDistance = true,
                                 .noteOnCriterion = StrParNoteSmallSteps,
                                 .countsInUnits = true,
                                 .noteOnCovariance = StrParNoteObserved,
                                 .outputs = normalOutputs,
                                 .measures = Measures,
                                 .noteOnMeasures = StrParNoteAkaikeTime};

OutputResult PlotTimeRatios(const RegReportOf& of) {
    return PlotForest(
        of, {StrParForestTitle, StrParAxisRatio, StrParLegendRatio, StrParNoteForest, StrParNoRatio});
}

TimeDistribution DistributionOf(RegressionKind kind) {
    if (kind == RegressionKind::Exponential) return TimeDistribution::Exponential;
    return kind == RegressionKind::Lognormal ? TimeDistribution::Lognormal : TimeDistribution::Normal;
}

Predictor PredictorAt(const RegReportOf& of, std::span<const double> covariates) {
    return {FittedOf(of.Results()), of.Results().estimate.covariance, covariates,
            ConfidenceZ(of.state.output.confidenceLevel)};
}

ParametricResiduals ResidualsOf(const RegressionResults& results) {
    const OrderedSample sample = results.sample.Ordered();
    return ComputeParametricResiduals(FittedOf(results), sample.times, sample.complete, sample.x,
                                      sample.stride);
}

double SumOfLogTimes(const RegressionSample& sample) {
    double sum = 0.0;
    for (std::size_t i = 0; i < sample.Cases(); ++i)
        if (sample.Complete()[i] != 0) sum += std::log(sample.Times()[i]);
    return sum;
}

} // namespace ozm::survival
