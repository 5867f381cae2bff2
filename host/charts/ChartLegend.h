#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class QCPAbstractPlottable;
class QCustomPlot;

namespace korvana {

struct LegendEntry {
    QString text;
    QCPAbstractPlottable* plottable; ///< gives its icon, and gets the text as its name
};

/// One text for the two bounds of a band: "95% limits" for "95% lower" and "95% upper".
[[nodiscard]] std::string bandText(std::string_view lower, std::string_view upper);

/// Adds the legend below the plot's other elements, if there is more than one entry; of very many, the last
/// are only counted.
void addLegend(QCustomPlot& plot, std::vector<LegendEntry> entries, std::size_t groups, int width,
               const QFont& font, const QColor& ink);

} // namespace korvana
