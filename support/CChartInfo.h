#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ozm {

/// One series of a chart: equally long x and y, drawn in the order given.
struct ChartSeries {
    enum class Style : std::uint8_t {
        Line,
        Step,      ///< holds each y until the next x
        Markers,   ///< points without a line
        Histogram, ///< y are the values to be counted into classes, x is empty
    };
    /// What a series is to the reader: bounds are drawn dashed and thin, the estimate with a full line.
    enum class Role : std::uint8_t { Estimate, LowerBound, UpperBound, Observed, Censored };
    enum class Marker : std::uint8_t { None, Plus, Circle, Square, Triangle, Cross };

    std::string legend;
    std::vector<double> x;
    std::vector<double> y;
    Style style = Style::Line;
    Role role = Role::Estimate;
    Marker marker = Marker::None;
    /// Series of one group share a colour: an estimate, its bounds and its censored observations.
    int group = 0;
    /// Of an estimate over time: when observations leave its sample, complete or censored, ascending, each
    /// time as often as observations leave. From these the numbers at risk under the curve are counted; empty
    /// where there are none to show.
    std::vector<double> leaving;
    /// Of a long sample, gathered: how many leave at each of these times, which are multiples of a step and
    /// stand for all that leave before the next multiple. Empty: one observation leaves at each time.
    std::vector<double> leavingCounts;
    double leavingStep = 0.0; ///< of gathered times: numbers at risk are known at its multiples
    double staying = 0.0;     ///< observations that leave after the last of these times (those not plotted)
};

/// Axis: title, and a range where the caller wants one (min < max), else chosen from the data.
struct ChartAxis {
    std::string title;
    double min = 0.0;
    double max = 0.0;
    [[nodiscard]] bool hasRange() const { return min < max; }
};

/// Descriptor of a chart: what is drawn, not how large nor where.
struct CChartInfo {
    enum class Kind : std::uint8_t { Line, Step, Scatter, Histogram };

    std::string title;
    ChartAxis xAxis;
    ChartAxis yAxis;
    Kind kind = Kind::Line;
    std::vector<ChartSeries> series;
    /// What a reader must know to read the picture rightly, one sentence each; drawn with it.
    std::vector<std::string> notes;
    /// Whether the numbers at risk are wanted under the axis, where series tell them.
    bool numbersAtRisk = true;
};

} // namespace ozm
