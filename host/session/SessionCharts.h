#pragma once

#include "host/session/SessionParts.h"
#include "support/services/ChartService.h"

namespace korvana {

/// Puts charts into the session's book. One without a series, or with a series whose x and y are not equally
/// long, is refused.
class SessionCharts : public ozm::ChartService {
public:
    explicit SessionCharts(SessionParts& parts) : parts_(parts) {}

    short NewGeneralMultipleChartLongEx(const ozm::CChartInfo& chart) override;
    short MakeScatterplot(std::span<const float> x, std::span<const float> y, std::string_view title,
                          std::string_view xAxis, std::string_view yAxis) override;
    void c_gr0(ozm::CChartInfo& chart) override { chart = {}; }

private:
    SessionParts& parts_;
};

} // namespace korvana
