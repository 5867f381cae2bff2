#pragma once

#include "module/regression/results/RegOutput.h"

#include <span>
#include <vector>

namespace ozm::survival {

/// A measure of fit that a model has of its own.
struct FitMeasure {
    int line; ///< text before it in the report
    int row;  ///< its name in the spreadsheet
    double value;
    int digits = 8; ///< in the report
};

/// An output that a model has of its own, by the button that makes it.
struct ModelOutput {
    int control;
    OutputResult (*make)(const RegReportOf& of);
    // Of Plot 1 to 3: what it is called and what it shows, for the dialog.
    int plotName = 0;
    int plotTitle = 0;
};

/// What the results of a model have of their own; of texts the numbers, 0: none.
struct ModelResults {
    int title;                 ///< of the report
    int lineOfModel = 0;       ///< a line of the summary
    int lineOfScale = 0;       ///< another: what the log-likelihoods are of
    bool hasScoreTest = false; ///< beside likelihood ratio and Wald test
    int exponents = 0;         ///< what exp(beta) is; 0: it means nothing
    /// Of a model with parameters besides the coefficients, what they are. Its table has limits of all.
    int noteOnParameters = 0;
    /// Whether it is worth saying that the iteration ended before the maximum: not of one that does so by
    /// design.
    bool tellsDistance = false;
    int noteOnCriterion = 0;
    bool countsInUnits = false; ///< the criterion is of the parameters' own units
    int noteOnCovariance = 0;
    std::span<const ModelOutput> outputs;
    OutputResult (*means)(const RegReportOf& of) = WriteCovariateMeans;
    std::vector<FitMeasure> (*measures)(const RegReportOf& of) = nullptr; ///< none where it is not set
    int noteOnMeasures = 0;                                               ///< what they are

    [[nodiscard]] const ModelOutput* Find(int control) const {
        for (const ModelOutput& output : outputs)
            if (output.control == control) return &output;
        return nullptr;
    }
};

/// Of the model that was fitted.
const ModelResults& ResultsOf(RegressionKind kind);

} // namespace ozm::survival
