#pragma once

#include "support/CChartInfo.h"

#include <span>
#include <string_view>

namespace ozm {

/// Creates charts in the host's results.
class ChartService {
public:
    virtual ~ChartService() = default;

    /// Creates a chart of several series (line, step, scatter or histogram) from a descriptor, which the host
    /// copies; the caller keeps it and releases it with `c_gr0`. Returns 0, or non-zero when none was
    /// created.
    virtual short NewGeneralMultipleChartLongEx(const CChartInfo& chart) = 0;

    /// Creates a simple scatterplot of equally long single-precision arrays. Returns 0, or non-zero on
    /// failure.
    virtual short MakeScatterplot(std::span<const float> x, std::span<const float> y, std::string_view title,
                                  std::string_view xAxis, std::string_view yAxis) = 0;

    /// Empties a chart descriptor and gives its memory back.
    virtual void c_gr0(CChartInfo& chart) = 0;
};

} // namespace ozm
