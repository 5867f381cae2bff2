#pragma once

#include "module/regression/RegressionState.h"
#include "module/regression/estimation/Diagnosis.h"

#include <span>

namespace ozm::survival {

/// A kind of regression model, as the driver of the estimation and the dialogs know it.
struct RegressionModel {
    RegressionKind kind = RegressionKind::ProportionalHazards;
    int name = 0; ///< number in the string table
    /// Whether there must be as many uncensored cases as parameters.
    bool parametersNeedEvents = false;
    /// Estimates the parameters of a sample in its order; `parameters` holds start values, and estimates
    /// afterwards, both on the scale of the data.
    EstimationStatus (*fit)(RegressionSample& sample, const IterationLimits& limits,
                            const IterationWatch& watch, std::span<double> parameters,
                            NewtonEstimate& estimate) = nullptr;
    /// What the data say about an estimation that has ended, with this status at these parameters.
    Diagnosis (*diagnose)(const RegressionSample& sample, std::span<const double> parameters,
                          const NewtonEstimate& estimate, EstimationStatus status) = nullptr;
};

/// nullptr for a kind that this version does not have.
const RegressionModel* FindRegressionModel(RegressionKind kind);

} // namespace ozm::survival
