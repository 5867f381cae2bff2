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
};

/// An output that a model has of its own, by the button that makes it.
struct ModelOutput {
    int control;
    OutputResult (*make)(const RegReportOf& of);
    // Of Plot 1 to 3: what it is called and what it shows, for the dialog.
    int plotName = 0;
    int plotTitle = 0;
};

/// What the results of a model have of their own.
struct ModelResults {
    int title;          ///< of the report
    int lineOfModel;    ///< a line of the summary; 0: none
    int noteOnExponent; ///< what exp(beta) is
    std::span<const ModelOutput> outputs;
    std::vector<FitMeasure> (*measures)(const RegReportOf& of);
    int noteOnMeasures; ///< what they are

    [[nodiscard]] const ModelOutput* Find(int control) const {
        for (const ModelOutput& output : outputs)
            if (output.control == control) return &output;
        return nullptr;
    }
};

/// Of the model that was fitted.
const ModelResults& ResultsOf(RegressionKind kind);

} // namespace ozm::survival
