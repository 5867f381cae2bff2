#pragma once

#include "module/resources/Shared.h"
#include "module/survdata/OutputResult.h"
#include "support/CAnalysisSupport.h"

namespace ozm::survival {

/// Hands a chart to the host, as every plot does. Fails with StrGraphicsError.
inline OutputResult ShowChart(CAnalysisSupport& host, CChartInfo& chart) {
    const short outcome = host.NewGeneralMultipleChartLongEx(chart);
    host.c_gr0(chart);
    return outcome == 0 ? OutputResult{} : OutputResult::Failed(StrGraphicsError);
}

} // namespace ozm::survival
