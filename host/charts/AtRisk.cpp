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
                                metrics_.horizontalAdvance(QString::number(row.leaving.all(), 'f', 0)) / 2);
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
        const std::vector<double> ticks = places(axis);
        const std::size_t stride = strideOf(ticks, axis);

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
            for (std::size_t i = 0; i < ticks.size(); i += stride) {
                const QString number = text(row, ticks[i]);
                const double width = metrics_.horizontalAdvance(number) + 2;
                painter->drawText(line(axis.coordToPixel(ticks[i]) - width / 2, y, width),
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
        return std::isnan(number) ? QString() : QString::number(number, 'f', 0);
    }

    /// The ticks of the axis; where nearly no number is known there, multiples of the step at which they are.
    [[nodiscard]] std::vector<double> places(const QCPAxis& axis) const {
        std::vector<double> ticks;
        for (const double tick : axis.tickVector())
            if (axis.range().contains(tick)) ticks.push_back(tick);
        const double step = rows_.front().leaving.step;
        const auto known = std::ranges::count_if(
            ticks, [this](double tick) { return !std::isnan(rows_.front().leaving.atRisk(tick)); });
        if (step <= 0.0 || known > 1) return ticks;
        constexpr double most = 8.0;
        const QCPRange range = axis.range();
        const double apart = step * std::max(1.0, std::ceil(range.size() / step / most));
        ticks.clear();
        for (double i = std::ceil(range.lower / apart); i * apart <= range.upper; ++i)
            ticks.push_back(i * apart);
        return ticks;
    }

    /// How many ticks apart the numbers must be to have room.
    [[nodiscard]] std::size_t strideOf(const std::vector<double>& ticks, const QCPAxis& axis) const {
        if (ticks.size() < 2) return 1;
        double widest = 0.0;
        for (const AtRiskRow& row : rows_)
            for (const double tick : ticks)
                widest = std::max(widest, metrics_.horizontalAdvance(text(row, tick)));
        const double apart = std::fabs(axis.coordToPixel(ticks[1]) - axis.coordToPixel(ticks[0]));
        if (!(apart > 0.0)) return ticks.size();
        return std::clamp<std::size_t>(static_cast<std::size_t>(std::ceil((widest + gap) / apart)), 1,
                                       ticks.size());
    }

    std::vector<AtRiskRow> rows_;
    QFont font_;
    QColor ink_;
    QFontMetricsF metrics_;
};

} // namespace

bool tellsNumbersAtRisk(const ozm::CChartInfo& info) {
    return std::any_of(info.series.begin(), info.series.end(),
                       [](const ozm::ChartSeries& series) { return !series.leaving.empty(); });
}

Leaving Leaving::of(const ozm::ChartSeries& series) {
    return {series.leaving, series.leavingCounts, series.leavingStep, series.staying};
}

double Leaving::atRisk(double time) const {
    constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
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
