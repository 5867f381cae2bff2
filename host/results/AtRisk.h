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

/// Whether any of the chart's series tells them.
[[nodiscard]] bool tellsNumbersAtRisk(const ozm::CChartInfo& info);

/// How many of the observations are under observation just before `time`: those that leave then or later.
/// `leaving` ascends. NaN where it is not known, beyond the last of these times while others stay.
[[nodiscard]] double numberAtRisk(std::span<const double> leaving, double staying, double time);

struct AtRiskRow {
    QString label;
    QColor colour;
    double from = 0.0; ///< the curve begins here; nothing is shown before
    std::vector<double> leaving;
    double staying = 0.0;
};

/// Appends the rows to the plot's layout, below the axes; each number stands under its tick of the x axis and
/// follows it when the axis changes. Where numbers would touch, only every second (third, ...) tick has one.
/// Makes room for the labels at the left. Nothing when there is no row.
void addAtRiskRows(QCustomPlot& plot, std::vector<AtRiskRow> rows, const QFont& font, const QColor& ink);

} // namespace korvana
