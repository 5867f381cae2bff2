#pragma once

#include "module/regression/data/RegressionSample.h"
#include "module/regression/estimation/DampedNewton.h"
#include "module/regression/timedependent/CompiledCovariates.h"
#include "module/regression/timedependent/CovariateList.h"
#include "module/survdata/CaseReader.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ozm::survival {

/// The kinds of regression models; the numbers are known to scripts.
enum class RegressionKind : std::int16_t {
    ProportionalHazards = 1,
    Exponential = 2,
    Lognormal = 3,
    Normal = 4,
    TimeDependent = 5, ///< proportional hazards with time-dependent covariates
};

/// What the dialogs of the regression analysis edit.
struct RegressionSettings {
    RegressionKind kind = RegressionKind::ProportionalHazards;
    std::int16_t timeDependentCovariates = 0; ///< 4 with time-dependent covariates
    std::vector<double> strata; ///< codes of the stratification variable; empty: all that it has
    std::vector<DefinedCovariate> expressions; ///< with time-dependent covariates
    double convergenceCriterion = 0.0001;
    std::int16_t maximumIterations = 50;
    std::vector<double> startValues;  ///< one per parameter; empty: the model's own
    bool differentBaselines = true;   ///< equal coefficients, different baseline h0 (stratified analysis)
    bool nonDefaultEstimation = true; ///< non-default number of iterations, start values, etc.
    bool substituteMeans = false;     ///< for missing covariates; else their cases are left out
    /// A script itself asked for the dialog of the estimation.
    bool estimationAsked = false;

    /// What an estimation begins with where nobody says otherwise.
    void UseDefaultEstimation() {
        const RegressionSettings defaults;
        convergenceCriterion = defaults.convergenceCriterion;
        maximumIterations = defaults.maximumIterations;
        startValues.clear();
    }
};

/// What the results dialog edits.
struct RegressionOutputSettings {
    double confidenceLevel = 0.95;
    /// Values of the covariates for the user-defined plot, in their order; the mean of those that are missing
    /// or NaN.
    std::vector<double> covariateValues;
};

/// What a run leaves for the results dialog: first the prepared data, then the estimates.
struct RegressionResults {
    bool prepared = false; ///< the data stand
    bool held = false;     ///< and the estimates
    // The data.
    RegressionKind kind = RegressionKind::ProportionalHazards;
    RegressionSample sample;
    ReadingCounts reading;
    std::vector<int> covariates;             ///< numbers of the variables that are read for them
    std::vector<std::string> variableNames;  ///< of these
    std::vector<std::string> names;          ///< of the covariates: the same, unless expressions define them
    std::vector<DefinedCovariate> defined;   ///< where they do
    CompiledCovariates compiled;             ///< these
    std::vector<std::string> parameterNames; ///< these, and of parameters that the model has besides
    std::vector<std::int32_t> missing;       ///< per covariate: cases, valid otherwise, without a value of it
    bool meansSubstituted = false;           ///< in these; else they were left out
    int stratumVariable = 0;                 ///< 0: not stratified
    /// The strata that have cases, by their codes in ascending place; the sample's blocks are in the opposite
    /// order: block 0 is the last stratum.
    std::vector<double> strata;
    std::vector<double> strataWithoutCases; ///< codes that were chosen, or that the data have
    // The estimates.
    double criterion = 0.0001;
    std::vector<double> estimates; ///< one per parameter, on the scale of the data
    NewtonEstimate estimate;       ///< `nullScore` is that of models fitted by Newton's method alone

    [[nodiscard]] bool Stratified() const { return stratumVariable != 0; }
    [[nodiscard]] std::size_t Parameters() const { return parameterNames.size(); }
    void Release() { *this = {}; }
};

/// Everything of the analysis that lives from its specification dialog to its results.
struct RegressionState {
    RegressionSettings settings;
    RegressionOutputSettings output;
    RegressionResults results;
    std::vector<std::string> valuesOf;                            ///< the covariates of the last run
    RegressionKind startOf = RegressionKind::ProportionalHazards; ///< its model

    /// Values for covariates by their place mean nothing for others, nor start values for other models.
    void ForgetValuesOfOthers() {
        if (valuesOf != results.names || startOf != results.kind) settings.startValues.clear();
        if (valuesOf != results.names) output.covariateValues.clear();
        valuesOf = results.names;
        startOf = results.kind;
    }
    /// Other data: what was chosen by their codes or number of covariates is forgotten.
    void ForgetData() {
        settings.strata.clear();
        settings.startValues.clear();
        output.covariateValues.clear();
    }
};

} // namespace ozm::survival
