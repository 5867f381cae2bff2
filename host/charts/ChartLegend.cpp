#include "host/charts/ChartLegend.h"

#include <QFontMetricsF>
#include <algorithm>
#include <qcustomplot.h>

namespace korvana {
namespace {

constexpr int iconWidth = 30;
constexpr int spacing = 14;
constexpr std::size_t mostRows = 6;

std::size_t columnsFor(const std::vector<LegendEntry>& entries, std::size_t groups, int width,
                       const QFont& font) {
    const QFontMetricsF metrics(font);
    double widest = 0.0;
    for (const LegendEntry& entry : entries)
        widest = std::max(widest, metrics.horizontalAdvance(entry.text));
    auto columns = static_cast<std::size_t>(std::max(1.0, (width - 60) / (widest + iconWidth + 2 * spacing)));
    // Where every group has the same number of entries, no group is split between two lines.
    const std::size_t perGroup = entries.size() / groups;
    if (entries.size() % groups == 0 && perGroup > 1 && columns > perGroup) columns -= columns % perGroup;
    return columns;
}

} // namespace

std::string bandText(std::string_view lower, std::string_view upper) {
    if (lower == upper || upper.empty()) return std::string(lower);
    const auto differ = std::mismatch(lower.begin(), lower.end(), upper.begin(), upper.end()).first;
    const std::string_view head = lower.substr(0, static_cast<std::size_t>(differ - lower.begin()));
    const std::size_t word = head.rfind(' '); // the last whole word that both share ends here
    if (word == std::string_view::npos || word == 0)
        return std::string(lower) + (lower.empty() ? "" : ", ") + std::string(upper);
    return std::string(head.substr(0, word)) + " limits";
}

void addLegend(QCustomPlot& plot, std::vector<LegendEntry> entries, std::size_t groups, int width,
               const QFont& font, const QColor& ink) {
    if (entries.size() < 2) return;
    const std::size_t columns = columnsFor(entries, groups, width, font);
    if (entries.size() > columns * mostRows) {
        const std::size_t left = entries.size() - columns * mostRows + 1;
        entries.resize(columns * mostRows - 1);
        auto* blank = new QCPCurve(plot.xAxis, plot.yAxis); // the plot owns it
        blank->setPen(Qt::NoPen);
        entries.push_back({QString("and %1 more").arg(left), blank});
    }

    auto* legend = new QCPLegend; // beside the plot's built-in one, which lies over the data
    plot.plotLayout()->addElement(plot.plotLayout()->rowCount(), 0, legend);
    legend->setLayer("legend");
    legend->setFont(font);
    legend->setTextColor(ink);
    legend->setIconSize(iconWidth, 14);
    // SVG does not clip a line's icon, which is 5 pixels longer than its space.
    legend->setIconTextPadding(12);
    legend->setColumnSpacing(spacing);
    legend->setRowSpacing(2);
    legend->setBorderPen(Qt::NoPen);
    legend->setBrush(Qt::NoBrush);
    legend->setFillOrder(QCPLegend::foColumnsFirst);
    legend->setWrap(static_cast<int>(std::min(columns, entries.size())));
    legend->setMargins(QMargins(30, 0, 30, 10));
    for (const LegendEntry& entry : entries) {
        entry.plottable->setName(entry.text);
        entry.plottable->addToLegend(legend);
    }
    plot.plotLayout()->setRowStretchFactor(plot.plotLayout()->rowCount() - 1, 0.001);
}

} // namespace korvana
