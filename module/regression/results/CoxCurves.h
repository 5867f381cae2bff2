#pragma once

#include "module/regression/cox/CoxSurvival.h"
#include "module/regression/results/RegOutput.h"

#include <vector>

namespace ozm::survival {

/// The survival function of a stratum (0 without strata).
struct StratumCurve {
    std::size_t stratum = 0;
    std::vector<double> leaving; ///< times of all its cases, ascending
    std::vector<CoxSurvivalPoint> points;
};

/// The survival functions of all strata, in their order, for somebody with these covariates.
std::vector<StratumCurve> CurvesAt(const RegReportOf& of, std::span<const double> covariates);
/// The same at the means of the covariates.
std::vector<StratumCurve> CurvesAtMeans(const RegReportOf& of);

/// What a table of curves shows.
struct CurveTable {
    int title;
    int note;
    bool atZero; ///< has the cumulative hazard where all covariates are 0
};
OutputResult WriteCurves(const RegReportOf& of, const std::vector<StratumCurve>& curves,
                         const CurveTable& what, const std::string& furtherNote);

} // namespace ozm::survival
