#pragma once

#include "module/kaplan/KaplanState.h"
#include "module/survdata/OutputResult.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {

/// Plots 1 to 3 show at most this many observations, the first in order of time.
inline constexpr std::size_t mostPlotted = 32000;
[[nodiscard]] inline bool AllPlotted(const KaplanResults& results) {
    return static_cast<std::size_t>(results.Valid()) <= mostPlotted;
}

/// The lines of the summary after its title: variables and counts of observations.
std::vector<std::string> KaplanSummaryLines(CAnalysisSupport& host, const SharedSettings& shared,
                                            const KaplanResults& results);

/// Report with the summary and the input, then the product-limit table, one row per observation.
OutputResult WriteKaplanReport(CAnalysisSupport& host, const SharedSettings& shared, KaplanResults& results);

/// Spreadsheet of the percentiles with their limits. The columns of the limits are then renamed by
/// `NameLimitColumns`.
OutputResult WritePercentiles(CAnalysisSupport& host, const KaplanResults& results, double level);
void NameLimitColumns(CAnalysisSupport& host, double level);

/// Which of the three plots.
enum class KaplanPlot : std::uint8_t { Survival = 1, LogTime = 2, LogLog = 3 };
OutputResult PlotKaplan(CAnalysisSupport& host, const SharedSettings& shared, const KaplanResults& results,
                        KaplanPlot plot, double level);
/// The survival curve of all observations, without a limit to their number.
OutputResult PlotSurvivalCurve(CAnalysisSupport& host, const SharedSettings& shared,
                               const KaplanResults& results, double level);

/// One observation in time order; at a tie the uncensored ones come first.
struct KaplanRow {
    double time = 0.0;
    bool censored = false;
    double survival = 1.0;      ///< the estimate after the observation
    double standardError = 0.0; ///< of that estimate
    std::int32_t caseNumber = 0;
};

/// Calls `visit(const KaplanRow&)` for the first `most` observations in time order, as long as it returns
/// true. False when it did not.
template <class Visit>
bool ForEachObservation(const KaplanResults& results, std::size_t most, Visit&& visit) {
    const auto uncensored = results.UncensoredTimes();
    const auto censored = results.CensoredTimes();
    KaplanRow row;
    std::size_t u = 0;
    std::size_t c = 0;
    for (std::size_t n = 0; n < most && u + c < uncensored.size() + censored.size(); ++n) {
        row.censored = u == uncensored.size() || (c < censored.size() && censored[c] < uncensored[u]);
        if (row.censored) {
            row.time = censored[c];
            row.caseNumber = results.CensoredCases()[c++];
        } else {
            row.time = uncensored[u];
            row.survival = results.Survival()[u];
            row.standardError = results.StandardError()[u];
            row.caseNumber = results.UncensoredCases()[u++];
        }
        if (!visit(row)) return false;
    }
    return true;
}

} // namespace ozm::survival
