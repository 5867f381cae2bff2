#include "host/results/ChartPlot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <qcustomplot.h>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/results/AtRisk.h"
#include "host/results/ChartGeometry.h"
#include "host/results/ChartLegend.h"
#include "host/results/ChartText.h"
#include "host/results/Utf8.h"

namespace korvana {
namespace {

using ozm::ChartSeries;

/// Okabe and Ito (2008), told apart with any colour vision; without its yellow, which is lost on white.
constexpr std::array<QRgb, 7> kPalette{0xFF0072B2, 0xFFD55E00, 0xFF009E73, 0xFFCC79A7,
                                       0xFFE69F00, 0xFF56B4E9, 0xFF000000};
/// The same hues, lightened to stand out from a dark ground; white in black's place.
constexpr std::array<QRgb, 7> kDarkPalette{0xFF5AB0F0, 0xFFF28446, 0xFF2EC79B, 0xFFE59CC8,
                                           0xFFFFC247, 0xFFA6DEFF, 0xFFFFFFFF};
constexpr int kMostReversals = 300;
constexpr std::size_t kMostBands = 3; // more shades than that hide each other

struct Tones {
    QColor ink;
    QColor grid;
    QColor ground;
};
const Tones kLight{{0x22, 0x22, 0x22}, {0xE4, 0xE4, 0xE4}, Qt::white};
const Tones kDark{{0xE6, 0xE6, 0xE6}, {0x46, 0x46, 0x46}, {0x1C, 0x1C, 0x1C}};

bool isBound(const ChartSeries& series) {
    return series.role == ChartSeries::Role::LowerBound || series.role == ChartSeries::Role::UpperBound;
}

bool hasMarkers(const ChartSeries& series) {
    return series.marker != ChartSeries::Marker::None || series.style == ChartSeries::Style::Markers;
}

/// How often a path turns from rising to falling or back.
int reversals(const ChartPath& path) {
    int count = 0;
    double last = 0.0;
    for (std::size_t i = 1; i < path.size(); ++i) {
        const double change = path[i].y - path[i - 1].y;
        if (change * last < 0.0) ++count;
        if (change != 0.0) last = change > 0.0 ? 1.0 : -1.0;
    }
    return count;
}

/// Qt's rasteriser takes time by the square of the edges that one outline has in a scan line, so a path that
/// goes up and down often is painted in short pieces. Their square caps fill the corners.
ChartPath inPieces(const ChartPath& path) {
    constexpr std::size_t kPiece = 4;
    constexpr double kGap = std::numeric_limits<double>::quiet_NaN();
    if (reversals(path) <= kMostReversals) return path;
    ChartPath pieces;
    pieces.reserve(2 * path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        pieces.push_back(path[i]);
        if (i % kPiece == kPiece - 1) pieces.insert(pieces.end(), {{kGap, kGap}, path[i]});
    }
    return pieces;
}

class Painter {
public:
    Painter(QCustomPlot& plot, const ozm::CChartInfo& info, const PlotOptions& options)
        : plot_(plot), info_(info), options_(options), tones_(options.dark ? kDark : kLight) {}

    void paint() {
        for (const ChartSeries& series : info_.series)
            groups_.try_emplace(series.group, groups_.size());
        chooseRanges();
        styleAxes();
        paintBands();
        for (const ChartSeries& series : info_.series)
            paintSeries(series);
        addTitle();
        addNumbersAtRisk();
        addLegend(plot_, std::move(legend_), groups_.size(), options_.width, font(13), tones_.ink);
    }

private:
    [[nodiscard]] std::size_t groupIndex(const ChartSeries& series) const { return groups_.at(series.group); }

    [[nodiscard]] QColor colour(const ChartSeries& series) const {
        const auto& palette = options_.dark ? kDarkPalette : kPalette;
        return QColor::fromRgb(palette[groupIndex(series) % palette.size()]);
    }

    [[nodiscard]] QFont font(int pixels, bool bold = false) const {
        return chartFont(std::max(1, static_cast<int>(std::lround(pixels * options_.textScale))), bold);
    }

    [[nodiscard]] QPen pen(const ChartSeries& series) const {
        QPen pen(colour(series), isBound(series) ? 1.0 : 2.0);
        pen.setCapStyle(isBound(series) ? Qt::FlatCap : Qt::SquareCap);
        pen.setJoinStyle(Qt::MiterJoin);
        if (isBound(series)) {
            pen.setDashPattern({5.0, 3.0});
        } else if (groupIndex(series) >= kPalette.size()) {
            pen.setStyle(Qt::DashDotLine); // colours come round again
        }
        return pen;
    }

    void chooseRanges() {
        std::vector<double> pooled;
        Extent x = extentOf({});
        Extent y = x;
        const auto include = [](Extent& extent, const Extent& more) {
            extent = {std::min(extent.low, more.low), std::max(extent.high, more.high)};
        };
        bool counts = false;
        for (const ChartSeries& series : info_.series) {
            if (series.style == ChartSeries::Style::Histogram) {
                pooled.insert(pooled.end(), series.y.begin(), series.y.end());
                counts = true;
                continue;
            }
            include(x, extentOf(series.x));
            include(y, extentOf(series.y));
        }
        if (counts) {
            classes_ = histogramClasses(pooled);
            include(x, {classes_.start, classes_.end()});
            for (const ChartSeries& series : info_.series) {
                if (series.style != ChartSeries::Style::Histogram) continue;
                include(y, extentOf(countInto(classes_, series.y)));
            }
            include(y, {0.0, 1.0});
        }
        x_ = axisExtent(info_.xAxis, x, 0.02);
        y_ = axisExtent(info_.yAxis, y, 0.03);
        if (counts && !info_.yAxis.hasRange()) y_.low = std::min(0.0, y.low); // bars stand on the axis
        for (const ChartSeries& series : info_.series) {
            if (series.style == ChartSeries::Style::Histogram || !hasMarkers(series)) continue;
            makeRoom(x_, info_.xAxis, series.x);
            makeRoom(y_, info_.yAxis, series.y);
        }
    }

    /// A marker on an end of a given range is drawn whole.
    static void makeRoom(Extent& shown, const ozm::ChartAxis& axis, const std::vector<double>& markers) {
        if (!axis.hasRange()) return;
        const auto marked = [&markers](double end) {
            return std::find(markers.begin(), markers.end(), end) != markers.end();
        };
        const double room = 0.012 * (axis.max - axis.min);
        if (shown.low == axis.min && marked(axis.min)) shown.low -= room;
        if (shown.high == axis.max && marked(axis.max)) shown.high += room;
    }

    void styleAxis(QCPAxis& axis, const Extent& range, const std::string& title, int length) {
        axis.setRange(range.low, range.high);
        axis.setLabelFont(font(15));
        axis.setTickLabelFont(font(13));
        axis.setLabel(elidedLine(title, axis.labelFont(), length));
        axis.setLabelColor(tones_.ink);
        axis.setTickLabelColor(tones_.ink);
        axis.setLabelPadding(8);
        axis.setBasePen(QPen(tones_.ink, 1));
        axis.setTickPen(QPen(tones_.ink, 1));
        axis.setSubTickPen(QPen(tones_.ink, 1));
        axis.setTickLength(0, 6);
        axis.setSubTickLength(0, 3);
        axis.setNumberFormat("gb");
        axis.setNumberPrecision(tickPrecision(range.low, range.high));
        axis.ticker()->setTickCount(6);
        axis.grid()->setPen(QPen(tones_.grid, 1));
        axis.grid()->setZeroLinePen(Qt::NoPen);
    }

    void styleAxes() {
        plot_.setLocale(plainLocale());
        plot_.setBackground(QBrush(tones_.ground));
        plot_.setAutoAddPlottableToLegend(false);
        plot_.axisRect()->setMinimumMargins(QMargins(20, 12, 24, 10));
        styleAxis(*plot_.xAxis, x_, info_.xAxis.title, options_.width - 120);
        styleAxis(*plot_.yAxis, y_, info_.yAxis.title, options_.height - 240);
    }

    QCPCurve* addCurve(const ChartPath& path) {
        auto* curve = new QCPCurve(plot_.xAxis, plot_.yAxis); // the plot owns it
        QVector<QCPCurveData> data;
        data.reserve(static_cast<qsizetype>(path.size()));
        double t = 0.0;
        for (const ChartPoint& point : path)
            data.append(QCPCurveData(t++, point.x, point.y));
        curve->data()->set(data, true);
        curve->setScatterSkip(0);
        return curve;
    }

    [[nodiscard]] ChartPath visible(ChartPath path) const {
        if (!options_.thin) return path;
        return thinned(clipped(path, x_, y_), x_, 2 * options_.width);
    }

    void paintSeries(const ChartSeries& series) {
        switch (series.style) {
        case ChartSeries::Style::Histogram:
            paintHistogram(series);
            return;
        case ChartSeries::Style::Markers:
            addLegendEntry(series, paintMarkers(series));
            return;
        case ChartSeries::Style::Line:
        case ChartSeries::Style::Step:
            break;
        }
        const ChartPath path = visible(pathOf(series));
        QCPCurve* curve = addCurve(inPieces(path));
        QPen line = pen(series);
        if (reversals(path) > kMostReversals)
            line.setWidthF(1.0); // else one block of colour, and slow to paint
        curve->setPen(line);
        if (!hasMarkers(series)) return addLegendEntry(series, curve);
        paintMarkers(series);
        QCPCurve* icon = addCurve({}); // line and marker in one
        icon->setPen(line);
        icon->setScatterStyle(scatter(series));
        addLegendEntry(series, icon);
    }

    QCPCurve* paintMarkers(const ChartSeries& series) {
        const bool thin = options_.thin;
        QCPCurve* curve =
            addCurve(thin ? markersOf(series, x_, y_, options_.width, options_.height) : pathOf(series));
        curve->setLineStyle(QCPCurve::lsNone);
        curve->setPen(pen(series)); // the legend's icon
        curve->setScatterStyle(scatter(series));
        return curve;
    }

    [[nodiscard]] QCPScatterStyle scatter(const ChartSeries& series) const {
        using Marker = ChartSeries::Marker;
        Marker marker = series.marker;
        if (marker == Marker::None)
            marker = series.role == ChartSeries::Role::Censored ? Marker::Plus : Marker::Circle;
        QColor fill = colour(series);
        fill.setAlpha(110);
        const QPen outline(colour(series), 1.0);
        const QPen stroke(colour(series), 1.5);
        switch (marker) {
        case Marker::Plus:
            return {QCPScatterStyle::ssPlus, stroke, Qt::NoBrush, 9};
        case Marker::Cross:
            return {QCPScatterStyle::ssCross, stroke, Qt::NoBrush, 8};
        case Marker::Square:
            return {QCPScatterStyle::ssSquare, outline, fill, 7};
        case Marker::Triangle:
            return {QCPScatterStyle::ssTriangle, outline, fill, 8};
        case Marker::Circle:
        case Marker::None:
            break;
        }
        return {QCPScatterStyle::ssCircle, outline, fill, 7};
    }

    void paintHistogram(const ChartSeries& series) {
        auto* bars = new QCPBars(plot_.xAxis, plot_.yAxis);
        const std::vector<double> counts = countInto(classes_, series.y);
        QVector<QCPBarsData> data;
        for (std::size_t k = 0; k < counts.size(); ++k) {
            const double left = classes_.start + classes_.width * static_cast<double>(k);
            if (left + classes_.width <= x_.low || left >= x_.high) continue;
            data.append(QCPBarsData(left + classes_.width / 2, std::min(counts[k], y_.high)));
        }
        bars->data()->set(data, true);
        bars->setWidth(classes_.width);
        QColor fill = colour(series);
        fill.setAlpha(groups_.size() > 1 ? 90 : 150);
        bars->setBrush(fill);
        bars->setPen(QPen(colour(series).darker(130), 1));
        addLegendEntry(series, bars);
    }

    /// A light fill between the bounds of a group that has exactly one of each.
    void paintBands() {
        std::map<int, std::array<std::vector<const ChartSeries*>, 2>> bounds;
        for (const ChartSeries& series : info_.series) {
            const bool path =
                series.style == ChartSeries::Style::Line || series.style == ChartSeries::Style::Step;
            if (!isBound(series) || !path) continue;
            bounds[series.group][series.role == ChartSeries::Role::UpperBound ? 1 : 0].push_back(&series);
        }
        if (bounds.size() > kMostBands) return;
        for (const auto& [group, pair] : bounds) {
            if (pair[0].size() != 1 || pair[1].size() != 1) continue;
            ChartPath outline = inside(*pair[0][0]);
            ChartPath back = inside(*pair[1][0]);
            if (outline.size() < 2 || back.size() < 2) continue;
            outline.insert(outline.end(), back.rbegin(), back.rend());
            outline.push_back(outline.front());
            QColor shade = colour(*pair[0][0]);
            shade.setAlpha(28);
            QCPCurve* fill = addCurve(outline);
            fill->setPen(Qt::NoPen);
            fill->setBrush(shade);
        }
    }

    /// A bound's path pressed into the axes' ranges; empty when it has gaps, where a fill would mislead, or
    /// goes up and down so often that filling would take minutes.
    [[nodiscard]] ChartPath inside(const ChartSeries& series) const {
        ChartPath path = pathOf(series);
        for (ChartPoint& point : path) {
            if (!isDrawable(point)) return {};
            point = {std::clamp(point.x, x_.low, x_.high), std::clamp(point.y, y_.low, y_.high)};
        }
        path = thinned(path, x_, options_.width);
        return reversals(path) <= kMostReversals ? path : ChartPath{};
    }

    void addTitle() {
        if (info_.title.empty()) return;
        const QFont bold = font(18, true);
        const QString text = wrappedLines(info_.title, bold, options_.width - 60, 2).join('\n');
        plot_.plotLayout()->insertRow(0);
        auto* title = new QCPTextElement(&plot_, text, bold);
        title->setTextColor(tones_.ink);
        title->setMargins(QMargins(10, 12, 10, 2));
        plot_.plotLayout()->addElement(0, 0, title);
    }

    void addNumbersAtRisk() {
        if (!options_.numbersAtRisk) return;
        std::vector<AtRiskRow> rows;
        for (const ChartSeries& series : info_.series)
            if (!series.leaving.empty())
                rows.push_back({elidedLine(series.legend, font(13), options_.width / 4), colour(series),
                                series.x.empty() ? 0.0 : series.x.front(), Leaving::of(series)});
        addAtRiskRows(plot_, std::move(rows), font(13), tones_.ink);
    }

    /// Series with the same text in the same group (a pair of bounds) share one entry.
    void addLegendEntry(const ChartSeries& series, QCPAbstractPlottable* plottable) {
        if (series.legend.empty()) return;
        if (!named_.insert({series.group, series.legend}).second) return;
        legend_.push_back({elidedLine(series.legend, font(13), options_.width / 2), plottable});
    }

    QCustomPlot& plot_;
    const ozm::CChartInfo& info_;
    const PlotOptions& options_;
    const Tones& tones_;
    std::map<int, std::size_t> groups_; // group -> place in order of appearance
    std::set<std::pair<int, std::string>> named_;
    std::vector<LegendEntry> legend_;
    HistogramClasses classes_;
    Extent x_;
    Extent y_;
};

} // namespace

int tickPrecision(double low, double high) {
    const double magnitude = std::max(std::fabs(low), std::fabs(high));
    return std::clamp(static_cast<int>(std::log10(magnitude / (high - low))) + 4, 6, 15);
}

void fillPlot(QCustomPlot& plot, const ozm::CChartInfo& info, const PlotOptions& options) {
    Painter(plot, info, options).paint();
}

} // namespace korvana
