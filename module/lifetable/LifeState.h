#pragma once

#include "module/lifetable/DistributionFits.h"
#include "module/lifetable/LifeTable.h"
#include "module/lifetable/MedianLife.h"

#include <cstdint>
#include <string>

namespace ozm::survival {

/// What the specification dialogs edit.
struct LifeSettings {
    std::int16_t intervals = Intervals::defaultCount;
    double step = 1.0;
    bool byStep = false; ///< whether the step builds the intervals, or their number
    bool correct = true;
    std::int32_t entering = 0;  ///< table input: the number entering the first interval; 0: from the data
    bool enteringGiven = false; ///< whether somebody gave that number

    /// Other data: their own number is to be found.
    void ForgetEntering() {
        entering = 0;
        enteringGiven = false;
    }

    static constexpr std::int32_t leastEntering = 5;
    static constexpr std::int32_t mostEntering = 99'999'999;
};

/// What the results dialog edits.
struct LifeOutputSettings {
    Distribution distribution = Distribution::Exponential;
    std::size_t weighting = 0; ///< from 0
    std::string proportions = "0.75 0.5 0.25";
    std::string times; ///< empty: the interval starts
    double confidenceLevel = 0.95;
};

/// What a run leaves for the results dialog.
struct LifeResults {
    bool held = false;
    bool corrected = false;
    bool fromTable = false;
    // Observations; in a table as input these need not be whole.
    double valid = 0.0; ///< those that enter the first interval
    double uncensored = 0.0;
    double censored = 0.0;
    LifeTable table;
    MedianLives medians;
    double logLikelihood = 0.0; ///< of the data
    DistributionFits fits;

    void Release() { *this = {}; }
};

/// Everything of the analysis that lives from its specification dialog to its results.
struct LifeState {
    LifeSettings settings;
    LifeOutputSettings output;
    LifeResults results;
};

} // namespace ozm::survival
