#include "host/charts/AtRisk.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <qcustomplot.h>
#include <utility>

namespace korvana {
namespace {

constexpr double gap = 8.0; // between a label and the first number, and between numbers

class AtRiskRows : public QCPLayoutElement {
public:
    AtRiskRows(QCustomPlot& plot, std::vector<AtRiskRow> rows, const QFont& font, const QColor& ink)
        : QCPLayoutElement(&plot), rows_(std::move(rows)), font_(font), ink_(ink), metrics_(font) {
        setMargins({});
    }

    /// The width between the left edge of the plot and that of the axes.
    [[nodiscard]] int roomForLabels() const {
        double room = 0.0;
        for (const AtRiskRow& row : rows_) {
            room = std::max(room,
                            metrics_.horizontalAdvance(row.label) +
                                metrics_.horizontalAdvance(QString::number(row.leaving.all(), 'g', 10)) / 2);
        }
        return static_cast<int>(std::ceil(room + 2 * gap));
    }

    [[nodiscard]] QSize minimumOuterSizeHint() const override {
        return {0, static_cast<int>(std::ceil(lineHeight() * (static_cast<double>(rows_.size()) + 1.5)))};
    }
    [[nodiscard]] QSize maximumOuterSizeHint() const override {
        return {QWIDGETSIZE_MAX, minimumOuterSizeHint().height()};
    }

protected:
    void applyDefaultAntialiasingHint(QCPPainter* painter) const override { painter->setAntialiasing(true); }

    void draw(QCPPainter* painter) override {
        const QCPAxis& axis = *mParentPlot->xAxis;
        const QRect area = axis.axisRect()->rect();
        const std::vector<double> ticks = apart(places(axis), axis);

        painter->setFont(font_);
        painter->setPen(ink_);
        double y = rect().top();
        painter->drawText(line(area.left(), y, area.width()), Qt::AlignLeft | Qt::AlignVCenter,
                          QStringLiteral("Numbers at risk"));
        for (const AtRiskRow& row : rows_) {
            y += lineHeight();
            painter->setPen(row.colour);
            const double half = metrics_.horizontalAdvance(text(row, row.from)) / 2;
            const double end = area.left() - half - gap;
            painter->drawText(line(0, y, end), Qt::AlignRight | Qt::AlignVCenter, row.label);
            painter->setPen(ink_);
            for (const double tick : ticks) {
                const QString number = text(row, tick);
                const double width = metrics_.horizontalAdvance(number) + 2;
                painter->drawText(line(axis.coordToPixel(tick) - width / 2, y, width),
                                  Qt::AlignHCenter | Qt::AlignVCenter, number);
            }
        }
    }

private:
    [[nodiscard]] double lineHeight() const { return std::ceil(metrics_.height() * 1.15); }
    [[nodiscard]] QRectF line(double x, double y, double width) const { return {x, y, width, lineHeight()}; }

    [[nodiscard]] static QString text(const AtRiskRow& row, double time) {
        if (time < row.from) return {};
        const double number = row.leaving.atRisk(time);
        return std::isnan(number) ? QString() : QString::number(number, 'g', 10);
    }

    /// The ticks of the axis; where nearly no number is known there, some of the times at which they are.
    [[nodiscard]] std::vector<double> places(const QCPAxis& axis) const {
        std::vector<double> ticks;
        for (const double tick : axis.tickVector())
            if (axis.range().contains(tick)) ticks.push_back(tick);
        const Leaving& first = rows_.front().leaving;
        const auto known =
            std::ranges::count_if(ticks, [&](double tick) { return !std::isnan(first.atRisk(tick)); });
        if (first.known.empty() || known > 1) return ticks;
        ticks.clear();
        for (const double time : first.times)
            if (axis.range().contains(time)) ticks.push_back(time);
        constexpr std::size_t most = 8;
        const std::size_t each = std::max<std::size_t>((ticks.size() + most - 1) / most, 1);
        std::size_t kept = 0;
        for (std::size_t i = 0; i < ticks.size(); i += each)
            ticks[kept++] = ticks[i];
        ticks.resize(kept);
        return ticks;
    }

    /// Those at which the numbers do not touch, from the first one on.
    [[nodiscard]] std::vector<double> apart(const std::vector<double>& ticks, const QCPAxis& axis) const {
        double widest = 0.0;
        for (const AtRiskRow& row : rows_)
            for (const double tick : ticks)
                widest = std::max(widest, metrics_.horizontalAdvance(text(row, tick)));
        std::vector<double> kept;
        for (const double tick : ticks)
            if (kept.empty() ||
                std::fabs(axis.coordToPixel(tick) - axis.coordToPixel(kept.back())) >= widest + gap)
                kept.push_back(tick);
        return kept;
    }

    std::vector<AtRiskRow> rows_;
    QFont font_;
    QColor ink_;
    QFontMetricsF metrics_;
};

} // namespace

bool tellsNumbersAtRisk(const ozm::ChartSeries& series) {
    return !series.leaving.empty() || !series.atRisk.empty();
}

bool tellsNumbersAtRisk(const ozm::CChartInfo& info) {
    return std::any_of(info.series.begin(), info.series.end(),
                       [](const ozm::ChartSeries& series) { return tellsNumbersAtRisk(series); });
}

Leaving Leaving::of(const ozm::ChartSeries& series) {
    if (!series.atRisk.empty()) return {.times = series.x, .known = series.atRisk};
    return {series.leaving, series.leavingCounts, series.leavingStep, series.staying};
}

double Leaving::atRisk(double time) const {
    constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
    if (!known.empty()) {
        const double near = 1e-9 * (times.back() - times.front());
        const auto place = std::ranges::lower_bound(times, time - near);
        const bool found = place != times.end() && *place <= time + near;
        return found ? known[static_cast<std::size_t>(place - times.begin())] : unknown;
    }
    const double steps = step > 0.0 ? time / step : 0.0;
    if (std::fabs(steps - std::round(steps)) > 1e-6) return unknown;
    // A tick is a multiple of the tick step and may be a rounding error above the time that it means.
    const double just = time - 1e-12 * std::fabs(time);
    const auto first = std::lower_bound(times.begin(), times.end(), just);
    if (first == times.end() && staying > 0.0) return unknown;
    if (counts.empty()) return static_cast<double>(times.end() - first) + staying;
    return std::accumulate(counts.begin() + (first - times.begin()), counts.end(), staying);
}

double Leaving::all() const {
    if (!known.empty()) return known.front();
    return counts.empty() ? static_cast<double>(times.size()) + staying
                          : std::accumulate(counts.begin(), counts.end(), staying);
}

void addAtRiskRows(QCustomPlot& plot, std::vector<AtRiskRow> rows, const QFont& font, const QColor& ink) {
    if (rows.empty()) return;
    auto* element = new AtRiskRows(plot, std::move(rows), font, ink); // the layout owns it
    plot.plotLayout()->addElement(plot.plotLayout()->rowCount(), 0, element);
    plot.plotLayout()->setRowStretchFactor(plot.plotLayout()->rowCount() - 1, 0.001);
    QMargins margins = plot.axisRect()->minimumMargins();
    margins.setLeft(std::max(margins.left(), element->roomForLabels()));
    plot.axisRect()->setMinimumMargins(margins);
}

} // namespace korvana
