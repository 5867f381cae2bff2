#pragma once

namespace ozm::survival {

/// The numbers of the analysis's steps. A dialog names the step that follows it by these.
enum StepNumber : int {
    StepEnd = 0,
    StepInProgress = -1,
    StepInitialize = 100,
    StepStart = 102,
    StepSpecifyLifeTables = 103,
    StepSpecifyKaplan = 104,
    StepSpecifyTwoSamples = 105,
    StepSpecifyKSamples = 106,
    StepSpecifyRegression = 107,
    StepLifeResults = 108,
    StepKaplanResults = 109,
    StepTwoResults = 110,
    StepKsResults = 111,
    StepRegSpec = 112,
    StepRegressionResults = 113,
    StepRegEst = 114,
};

} // namespace ozm::survival
