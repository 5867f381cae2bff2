#pragma once

#include "module/regression/RegressionState.h"
#include "module/survdata/OutputResult.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"
#include "support/CChartInfo.h"

#include <cstddef>
#include <string>
#include <vector>

namespace ozm::survival {

/// What the outputs of a run are made of.
struct RegReportOf {
    CAnalysisSupport& host;
    const SharedSettings& shared;
    const RegressionState& state;

    [[nodiscard]] const RegressionResults& Results() const { return state.results; }
};

// The outputs that every model has.

/// The lines of the summary after its title: variables, counts, the fit and its tests.
std::vector<std::string> RegSummaryLines(const RegReportOf& of);
/// Report with the summary and the input; then its numbers as spreadsheets, and the parameter estimates.
OutputResult WriteRegSummary(const RegReportOf& of);

/// Spreadsheets of the estimates' covariances and of their correlations.
OutputResult WriteParameterCovariances(const RegReportOf& of);
/// Spreadsheet of the covariates' means and standard deviations.
OutputResult WriteCovariateMeans(const RegReportOf& of);

/// The strata fitted alone, and the test of equal coefficients; with separate coefficients also these.
/// Fails with StrRegNotStratified.
OutputResult WriteStratifiedAnalysis(const RegReportOf& of);

// What several outputs need.

/// An empty chart of survival, from 0 to 1, over the survival time.
CChartInfo SurvivalChart(CChartInfo::Kind kind, int title);

/// The name of a stratum by its place among them (from 0): "sex = female".
std::string StratumName(const RegReportOf& of, std::size_t stratum);
/// The stratum of a block of the sample.
inline std::size_t StratumOfBlock(const RegressionResults& results, std::size_t block) {
    return results.strata.empty() ? 0 : results.strata.size() - 1 - block;
}

} // namespace ozm::survival
