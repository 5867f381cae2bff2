#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <span>
#include <vector>

#include "support/CChartInfo.h"

class QCustomPlot;

namespace korvana {

/// Numbers at risk under a curve over time (Pocock, Clayton and Altman 2002, Lancet 359:1686-9).

/// Whether a series has them.
[[nodiscard]] bool tellsNumbersAtRisk(const ozm::ChartSeries& series);
/// Whether any of the chart's series has them.
[[nodiscard]] bool tellsNumbersAtRisk(const ozm::CChartInfo& info);

/// When observations leave a sample, taken from the series of a chart.
struct Leaving {
    std::vector<double> times;    ///< ascending
    std::vector<double> counts{}; ///< how many leave at each; empty: one at each
    double step = 0.0;            ///< 0: the times are exact
    double staying = 0.0;         ///< how many leave after the last of the times
    std::vector<double> known{};  ///< instead of all these: the numbers at risk at the times, and only there

    [[nodiscard]] static Leaving of(const ozm::ChartSeries& series);
    /// How many are under observation just before a time: those that leave then or later. NaN where it is not
    /// known: beyond the last time if some leave later, between the multiples of the step,
    /// and apart from the times at which it is known.
    [[nodiscard]] double atRisk(double time) const;
    [[nodiscard]] double all() const;
};

struct AtRiskRow {
    QString label;
    QColor colour;
    double from = 0.0; ///< the curve begins here; no number is shown before it
    Leaving leaving;
};

/// Appends the rows to the plot's layout, below the axes; each number is under its tick of the x axis, or
/// where numbers are known at other times than the ticks, under such a time, and follows it when the axis
/// changes. Where numbers would touch, only every second (third, ...) place has one. Makes room for the
/// labels at the left. Does nothing when there is no row.
void addAtRiskRows(QCustomPlot& plot, std::vector<AtRiskRow> rows, const QFont& font, const QColor& ink);

} // namespace korvana
