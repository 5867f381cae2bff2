#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <cstddef>
#include <vector>

class QCPAbstractPlottable;
class QCustomPlot;

namespace korvana {

struct LegendEntry {
    QString text;
    QCPAbstractPlottable* plottable; ///< lends its icon and takes the text as its name
};

/// Adds the legend below what the plot has so far, when there is more than one entry; of very many the last
/// ones are counted only.
void addLegend(QCustomPlot& plot, std::vector<LegendEntry> entries, std::size_t groups, int width,
               const QFont& font, const QColor& ink);

} // namespace korvana
