#pragma once

#include "module/lifetable/LifeState.h"
#include "module/survdata/OutputResult.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ozm::survival {

/// What the outputs of a run are made of.
struct LifeReportOf {
    CAnalysisSupport& host;
    const SharedSettings& shared;
    const LifeResults& results;
};

/// The lines of the summary after its title: variables and counts of observations.
std::vector<std::string> LifeSummaryLines(const LifeReportOf& of);

/// Report with the summary and the input, then the life table, one row per interval.
OutputResult WriteLifeTable(const LifeReportOf& of);

// The outputs below fail with StrLifeNoFits where no fit that they need can be shown.

/// A spreadsheet for each distribution with its parameters, one row per weighting.
OutputResult WriteParameterEstimates(const LifeReportOf& of);

enum class LifeFunction : std::uint8_t { Hazard, Survival, Density };
/// A fitted function of one distribution by interval, one column per weighting.
OutputResult WriteFittedFunction(const LifeReportOf& of, LifeFunction function, Distribution family);
/// The same as lines, beside the observed values.
OutputResult PlotFittedFunction(const LifeReportOf& of, LifeFunction function, Distribution family);
/// The fitted survival functions of all distributions with one weighting (from 0), beside the observed one.
OutputResult PlotAllModels(const LifeReportOf& of, std::size_t weighting);

/// All fits by Akaike's criterion; those that are not adequate with the reason. Never without a fit.
OutputResult WriteFitRanking(const LifeReportOf& of);

/// Of each adequate fit, the times at which survival has fallen to these proportions, with limits.
OutputResult WriteSurvivalTimes(const LifeReportOf& of, std::span<const double> proportions, double level);
/// Of each adequate fit, survival at these times, with limits.
OutputResult WriteSurvivalAtTimes(const LifeReportOf& of, std::span<const double> times, double level);

} // namespace ozm::survival
