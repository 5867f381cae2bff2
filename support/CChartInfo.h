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
    /// What a series means: bounds are drawn thin and dashed, the estimate as a solid line.
    enum class Role : std::uint8_t { Estimate, LowerBound, UpperBound, Observed, Censored };
    enum class Marker : std::uint8_t { None, Plus, Circle, Square, Triangle, Cross };

    std::string legend;
    std::vector<double> x;
    std::vector<double> y;
    Style style = Style::Line;
    Role role = Role::Estimate;
    Marker marker = Marker::None;
    /// Series of one group share a colour: an estimate, its bounds and its censored observations. A series of
    /// `allGroups` has none of their colours: an entry of the legend that explains a marker of all of them.
    int group = 0;
    static constexpr int allGroups = -1;
    /// For an estimate over time: the times at which observations leave its sample, complete or censored,
    /// ascending, one entry per observation. The numbers at risk under the curve are counted from these;
    /// empty where there are none to show.
    std::vector<double> leaving;
    /// For a long sample: how many leave at each of these times, which are then multiples of a step and stand
    /// for all times before the next multiple. Empty: one observation leaves at each time.
    std::vector<double> leavingCounts;
    double leavingStep = 0.0; ///< for a long sample: numbers at risk are known at its multiples
    double staying = 0.0;     ///< observations that leave after the last of these times (those not plotted)
    /// Instead of these: the numbers at risk at the places of the series, one per x, where they are known
    /// only there.
    std::vector<double> atRisk;
};

/// An axis: its title, and its range if the caller sets one (min < max), else chosen from the data.
struct ChartAxis {
    std::string title;
    double min = 0.0;
    double max = 0.0;
    bool logarithmic = false; ///< for values above 0
    /// Names of the places 1, 2, 3 ... of the axis, which stand there in place of numbers.
    std::vector<std::string> names{};
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
    /// What a reader must know to understand the picture, one sentence each; drawn with it.
    std::vector<std::string> notes;
    /// Whether the numbers at risk are drawn under the axis, where series have them.
    bool numbersAtRisk = true;
};

} // namespace ozm
