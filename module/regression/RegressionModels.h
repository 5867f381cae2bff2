#pragma once

#include "module/regression/RegressionState.h"
#include "module/regression/estimation/DampedNewton.h"
#include "module/regression/estimation/Diagnosis.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace ozm::survival {

/// How an estimation ended, for every model.
enum class Ending : std::uint8_t {
    Estimated,
    Stopped,   ///< by the user
    NotSorted, ///< without memory for it, which ends the estimation without a message, too
    UsedUp,    ///< all iterations, without convergence; more may follow
    Failed,
};
struct Outcome {
    Ending ending = Ending::Estimated;
    int code = 0;    ///< the model's own number for it
    int message = 0; ///< why there are no estimates, in the string table
    std::string detail;
    int iterations = 0;      ///< that the failure is about, where they are not the estimate's
    std::string otherwise{}; ///< a reason where the data say nothing about it
};

/// What the estimation of a model works on.
struct EstimationRun {
    CAnalysisSupport& host;
    RegressionSample& sample;
    const std::vector<std::string>& covariates; ///< their names
    const CompiledCovariates& compiled;         ///< where expressions define them
    const std::vector<int>& variables;          ///< in the sample's columns
    std::size_t strata = 1;
    IterationLimits limits;
    bool startGiven = false; ///< start values other than the model's own
    int made = 0;            ///< continued: iterations so far, which ended at the parameters; else 0
    int further = 0;         ///< continued: so many more
    /// On entry start values, or nothing for the model's own; estimates afterwards, on the scale of the data.
    std::vector<double>& parameters;
    NewtonEstimate& estimate;
    std::function<void(int)> show; ///< says by a text's number what is going on; may be empty
    IterationWatch watch;
};

/// A kind of regression model, as the driver of the estimation and the dialogs know it.
struct RegressionModel {
    RegressionKind kind = RegressionKind::ProportionalHazards;
    int name = 0;                         ///< number in the string table
    std::span<const int> ownParameters{}; ///< the names of those after the covariates' coefficients
    bool stratified = false;              ///< has a baseline hazard per stratum, where there are strata
    bool showsLikelihood = true;          ///< in the lines of its iterations
    /// Continued, it takes further iterations and counts on; else it begins a run with a higher maximum.
    bool countsOn = false;
    int firstText = 0; ///< what the status line shows first
    /// The model's own start values, for so many covariates.
    std::vector<double> (*start)(const RegressionSample& sample, std::size_t covariates) = nullptr;
    /// Estimates the parameters. The sample may be put into another order, and stays in it.
    Outcome (*fit)(EstimationRun& run) = nullptr;
    /// What the data say about an outcome, in sentences: after an estimation warnings, else the reasons.
    std::vector<std::string> (*explain)(const EstimationRun& run, const Outcome& outcome) = nullptr;
    /// The same, by covariates; of models that can be stratified.
    Diagnosis (*diagnose)(const EstimationRun& run, const Outcome& outcome) = nullptr;

    [[nodiscard]] std::size_t Parameters(std::size_t covariates) const {
        return covariates + ownParameters.size();
    }
};

const RegressionModel& ModelOf(RegressionKind kind);

} // namespace ozm::survival
