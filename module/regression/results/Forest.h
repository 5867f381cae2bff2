#pragma once

#include "module/regression/results/RegOutput.h"

namespace ozm::survival {

/// What the ratios exp(beta) of a model are called; numbers of the string table.
struct ForestTexts {
    int title;
    int axis;
    int legend;
    int note;
    int noRatio; ///< the message where there is none to draw
};

/// The ratios of all covariates with their limits, those beyond any scale left out. Fails with `noRatio`.
OutputResult PlotForest(const RegReportOf& of, const ForestTexts& texts);

} // namespace ozm::survival
