#include "host/charts/ChartPlot.h"

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

#include "host/charts/AtRisk.h"
#include "host/charts/ChartCurve.h"
#include "host/charts/ChartFonts.h"
#include "host/charts/ChartGeometry.h"
#include "host/charts/ChartLegend.h"
#include "host/charts/ChartRanges.h"
#include "host/charts/ChartStyle.h"
#include "host/charts/ChartText.h"
#include "host/results/Utf8.h"

namespace korvana {
namespace {

using ozm::ChartSeries;

constexpr double bandTint = 0.11;
constexpr double barTint = 0.59;
constexpr std::size_t mostBands = 3; // more shades than that hide each other
constexpr double marksApart = 7.0;   // pixels, of the marks of censored observations
constexpr int mostNoteLines = 4;
constexpr std::size_t mostSideBySide = 12; // groups of bars

/// Qt's rasteriser takes time in proportion to the square of the edges of an outline in a scan line, so a
/// path that goes up and down often is painted in short pieces. Their square caps fill the corners.
ChartPath inPieces(const ChartPath& path) {
    constexpr std::size_t pieceSize = 4;
    constexpr double gap = std::numeric_limits<double>::quiet_NaN();
    if (reversals(path) <= mostReversals) return path;
    ChartPath pieces;
    pieces.reserve(2 * path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        pieces.push_back(path[i]);
        if (i % pieceSize == pieceSize - 1) pieces.insert(pieces.end(), {{gap, gap}, path[i]});
    }
    return pieces;
}

/// Ticks of a logarithmic scale: powers of two or ten where it is wide enough for some of them, else as on
/// any other.
class LogarithmicTicks : public QCPAxisTickerLog {
public:
    LogarithmicTicks() { setSubTickCount(0); }

protected:
    double getTickStep(const QCPRange& range) override {
        // NOLINTNEXTLINE(bugprone-parent-virtual-call): as below
        return isNarrow(range) ? QCPAxisTicker::getTickStep(range) : QCPAxisTickerLog::getTickStep(range);
    }
    QVector<double> createTickVector(double step, const QCPRange& range) override {
        constexpr double wide = 1000.0;
        // Even ticks, past the class that this one derives from. NOLINTNEXTLINE(bugprone-parent-virtual-call)
        if (isNarrow(range)) return QCPAxisTicker::createTickVector(step, range);
        setLogBase(range.upper < wide * range.lower ? 2.0 : 10.0);
        return QCPAxisTickerLog::createTickVector(step, range);
    }

private:
    static bool isNarrow(const QCPRange& range) { return range.upper < 12.0 * range.lower; }
};

/// The bounds of a group that has exactly one of each.
struct Band {
    const ChartSeries* lower = nullptr;
    const ChartSeries* upper = nullptr;
};

std::map<int, Band> bandsOf(const ozm::CChartInfo& info) {
    std::map<int, Band> bands;
    std::set<int> others;
    for (const ChartSeries& series : info.series) {
        if (!isBound(series) || !isPath(series)) continue;
        Band& band = bands[series.group];
        auto& bound = series.role == ChartSeries::Role::LowerBound ? band.lower : band.upper;
        if (bound != nullptr) others.insert(series.group);
        bound = &series;
    }
    std::erase_if(bands, [&others](const auto& one) {
        return one.second.lower == nullptr || one.second.upper == nullptr || others.contains(one.first);
    });
    return bands;
}

class Painter {
public:
    Painter(QCustomPlot& plot, const ozm::CChartInfo& info, const PlotOptions& options)
        : plot_(plot), info_(info), options_(options), tones_(chartTones(options.dark)),
          style_(info, options.dark), ranges_(rangesOf(info)), bands_(bandsOf(info)),
          atRisk_(numbersAtRisk()) {}

    void paint() {
        styleAxes();
        paintBands();
        for (const ChartSeries& series : info_.series)
            paintSeries(series);
        addTitle();
        addAtRiskRows(plot_, atRisk_, font(13), tones_.ink);
        addLegend(plot_, std::move(legend_), style_.groupCount(), options_.width, font(13), tones_.ink);
        addNotes();
    }

private:
    [[nodiscard]] QFont font(int pixels, bool bold = false) const {
        return chartFont(std::max(1, static_cast<int>(std::lround(pixels * options_.textScale))), bold);
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

    /// Names in place of numbers, in letters small enough for all of them to stand one above the other.
    void nameTicks(QCPAxis& axis, const std::vector<std::string>& names, int length) {
        constexpr int smallest = 7;
        const int each = length / static_cast<int>(names.size());
        axis.setTickLabelFont(font(std::clamp(each * 5 / 6, smallest, 13)));
        const QSharedPointer<QCPAxisTickerText> ticker(new QCPAxisTickerText);
        for (std::size_t k = 0; k < names.size(); ++k)
            ticker->addTick(static_cast<double>(k + 1),
                            elidedLine(names[k], axis.tickLabelFont(), options_.width / 4));
        axis.setTicker(ticker);
        axis.setSubTicks(false);
    }

    void styleAxes() {
        plot_.setLocale(plainLocale());
        plot_.setBackground(QBrush(tones_.ground));
        plot_.setAutoAddPlottableToLegend(false);
        plot_.axisRect()->setMinimumMargins(QMargins(20, 12, 24, 10));
        styleAxis(*plot_.xAxis, ranges_.x, info_.xAxis.title, options_.width - 120);
        // What the numbers at risk take is lost to the axis.
        const double table = static_cast<double>(atRisk_.size()) * atRiskLine();
        styleAxis(*plot_.yAxis, ranges_.y, info_.yAxis.title,
                  std::min(options_.height - 240, options_.height - 170 - static_cast<int>(table)));
        for (const auto& [axis, of] : {std::pair{plot_.xAxis, &info_.xAxis}, {plot_.yAxis, &info_.yAxis}}) {
            if (!of->logarithmic) continue;
            axis->setScaleType(QCPAxis::stLogarithmic);
            axis->setTicker(QSharedPointer<QCPAxisTicker>(new LogarithmicTicks));
        }
        if (!info_.xAxis.names.empty()) nameTicks(*plot_.xAxis, info_.xAxis.names, options_.width - 120);
        if (!info_.yAxis.names.empty()) nameTicks(*plot_.yAxis, info_.yAxis.names, options_.height - 190);
        if (info_.kind != ozm::CChartInfo::Kind::Histogram) return;
        const QSharedPointer<QCPAxisTickerFixed> whole(new QCPAxisTickerFixed); // counts are whole numbers
        whole->setTickStep(1.0);
        whole->setScaleStrategy(QCPAxisTickerFixed::ssMultiples);
        whole->setTickCount(6);
        plot_.yAxis->setTicker(whole);
        plot_.yAxis->setSubTicks(false);
    }

    ChartCurve* addCurve(const ChartPath& path) { return new ChartCurve(plot_, path); } // the plot owns it

    /// Thinning counts on the pixels' being equally wide in the axes' numbers.
    [[nodiscard]] bool thins() const {
        return options_.thin && !info_.xAxis.logarithmic && !info_.yAxis.logarithmic;
    }

    [[nodiscard]] ChartPath visible(ChartPath path) const {
        if (!thins()) return path;
        return thinned(clipped(path, ranges_.x, ranges_.y), ranges_.x, 2 * options_.width);
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
        ChartCurve* curve = addCurve(inPieces(path));
        QPen line = style_.pen(series);
        if (reversals(path) > mostReversals) line.setWidthF(1.0);
        curve->setPen(line);
        if (!hasMarkers(series)) return addLegendEntry(series, curve);
        paintMarkers(series);
        ChartCurve* icon = addCurve({}); // line and marker in one
        icon->setPen(line);
        icon->setScatterStyle(style_.scatter(series));
        addLegendEntry(series, icon);
    }

    ChartCurve* paintMarkers(const ChartSeries& series) {
        ChartCurve* curve =
            addCurve(thins() ? markersOf(series, ranges_.x, ranges_.y, options_.width, options_.height)
                             : pathOf(series));
        curve->setLineStyle(QCPCurve::lsNone);
        curve->setPen(style_.pen(series)); // the legend's icon
        curve->setScatterStyle(style_.scatter(series));
        if (series.role == ChartSeries::Role::Censored) curve->keepMarkersApart(marksApart);
        return curve;
    }

    void paintHistogram(const ChartSeries& series) {
        auto* bars = new QCPBars(plot_.xAxis, plot_.yAxis);
        const HistogramClasses& classes = ranges_.classes;
        const std::vector<double> counts = countInto(classes, series.y);
        // Bars of a few groups stand side by side in their class; those of many are outlines, so that none
        // hides another.
        const std::size_t groups = style_.groupCount();
        const bool sideBySide = groups > 1 && groups <= mostSideBySide;
        const double width = sideBySide ? 0.9 * classes.width / static_cast<double>(groups) : classes.width;
        const double offset =
            sideBySide ? 0.05 * classes.width + width * static_cast<double>(style_.place(series)) : 0.0;
        QVector<QCPBarsData> data;
        for (std::size_t k = 0; k < counts.size(); ++k) {
            const double left = classes.start + classes.width * static_cast<double>(k);
            if (left + classes.width <= ranges_.x.low || left >= ranges_.x.high) continue;
            data.append(QCPBarsData(left + offset + width / 2, std::min(counts[k], ranges_.y.high)));
        }
        bars->data()->set(data, true);
        bars->setWidth(width);
        const bool filled = groups == 1 || sideBySide;
        bars->setBrush(filled ? QBrush(style_.tint(series, barTint)) : QBrush(Qt::NoBrush));
        bars->setPen(filled ? QPen(style_.colour(series).darker(130), 1) : style_.pen(series));
        addLegendEntry(series, bars);
    }

    /// A light fill between the bounds of a band, below the grid.
    void paintBands() {
        if (bands_.empty() || bands_.size() > mostBands) return;
        plot_.addLayer("bands", plot_.layer("grid"), QCustomPlot::limBelow);
        for (const auto& [group, band] : bands_) {
            ChartPath outline = inside(*band.lower);
            ChartPath back = inside(*band.upper);
            if (outline.size() < 2 || back.size() < 2) continue;
            outline.insert(outline.end(), back.rbegin(), back.rend());
            outline.push_back(outline.front());
            ChartCurve* fill = addCurve(outline);
            fill->setLayer("bands");
            fill->setPen(Qt::NoPen);
            fill->setBrush(style_.tint(*band.lower, bandTint));
        }
    }

    /// A bound's path limited to the axes' ranges; empty when it has gaps, where a fill would mislead, or
    /// goes up and down so often that filling would take minutes.
    [[nodiscard]] ChartPath inside(const ChartSeries& series) const {
        ChartPath path = pathOf(series);
        for (ChartPoint& point : path) {
            if (!isDrawable(point)) return {};
            point = {std::clamp(point.x, ranges_.x.low, ranges_.x.high),
                     std::clamp(point.y, ranges_.y.low, ranges_.y.high)};
        }
        path = thinned(path, ranges_.x, options_.width);
        return reversals(path) <= mostReversals ? path : ChartPath{};
    }

    void addTitle() {
        if (shownLine(info_.title).empty()) return;
        const QFont bold = font(18, true);
        const QString text = wrappedLines(info_.title, bold, options_.width - 60, 2).join('\n');
        plot_.plotLayout()->insertRow(0);
        auto* title = new QCPTextElement(&plot_, text, bold);
        title->setTextColor(tones_.ink);
        title->setMargins(QMargins(10, 12, 10, 2));
        plot_.plotLayout()->addElement(0, 0, title);
    }

    /// A table of many groups would leave no room for their curves: it ends with how many more there are.
    [[nodiscard]] std::size_t mostAtRiskRows() const {
        return static_cast<std::size_t>(std::max(2.0, 0.35 * options_.height / atRiskLine()));
    }
    [[nodiscard]] double atRiskLine() const { return QFontMetricsF(font(13)).height() * 1.15; }

    [[nodiscard]] std::vector<AtRiskRow> numbersAtRisk() const {
        std::vector<AtRiskRow> rows;
        if (!info_.numbersAtRisk) return rows;
        for (const ChartSeries& series : info_.series)
            if (tellsNumbersAtRisk(series))
                rows.push_back({elidedLine(series.legend, font(13), options_.width / 4),
                                style_.colour(series), series.x.empty() ? 0.0 : series.x.front(),
                                Leaving::of(series)});
        if (rows.size() == 1) rows[0].label.clear(); // a single row needs no label: the axes keep the room
        const std::size_t most = mostAtRiskRows();
        if (rows.size() > most) {
            const QString more = QStringLiteral("and %1 more").arg(rows.size() - most + 1);
            rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(most) - 1, rows.end());
            rows.push_back({more, tones_.ink, std::numeric_limits<double>::infinity(), {}});
        }
        return rows;
    }

    /// The chart's notes, in full width below everything else.
    void addNotes() {
        QStringList lines;
        for (const std::string& note : info_.notes)
            lines += wrappedLines(note, font(12), options_.width - 60, mostNoteLines);
        if (lines.isEmpty()) return;
        auto* notes = new QCPTextElement(&plot_, lines.join('\n'), font(12));
        notes->setTextFlags(Qt::AlignLeft | Qt::AlignVCenter);
        notes->setTextColor(tones_.ink);
        notes->setMargins(QMargins(30, 0, 30, 12));
        plot_.plotLayout()->addElement(plot_.plotLayout()->rowCount(), 0, notes);
        plot_.plotLayout()->setRowStretchFactor(plot_.plotLayout()->rowCount() - 1, 0.001);
    }

    /// Series with the same text in the same group share one entry, and so do the bounds of a band.
    void addLegendEntry(const ChartSeries& series, QCPAbstractPlottable* plottable) {
        std::string text = shownLine(series.legend);
        if (const auto band = bands_.find(series.group); isBound(series) && band != bands_.end()) {
            text = bandText(shownLine(band->second.lower->legend), shownLine(band->second.upper->legend));
            if (bands_.size() <= mostBands) {
                ChartCurve* icon = addCurve({}); // line and fill in one
                icon->setPen(style_.pen(series));
                icon->setBrush(style_.tint(series, bandTint));
                plottable = icon;
            }
        }
        if (text.empty() || !named_.insert({series.group, text}).second) return;
        legend_.push_back({elidedLine(text, font(13), options_.width / 2), plottable});
    }

    QCustomPlot& plot_;
    const ozm::CChartInfo& info_;
    const PlotOptions& options_;
    const ChartTones& tones_;
    ChartStyle style_;
    ChartRanges ranges_;
    std::map<int, Band> bands_; // by group
    std::vector<AtRiskRow> atRisk_;
    std::set<std::pair<int, std::string>> named_;
    std::vector<LegendEntry> legend_;
    HistogramClasses classes_;
    Extent x_;
    Extent y_;
};

} // namespace

int tickPrecision(double low, double high) {
    const double magnitude = std::max(std::fabs(low), std::fabs(high));
    constexpr double exponentFrom = 1e8; // the last of wider labels would not fit beside the axis
    const int needed = static_cast<int>(std::log10(magnitude / (high - low))) + 4;
    const int whole =
        magnitude < exponentFrom ? static_cast<int>(std::log10(std::max(magnitude, 1.0))) + 1 : 0;
    return std::clamp(std::max(needed, whole), 6, 15);
}

void fillPlot(QCustomPlot& plot, const ozm::CChartInfo& info, const PlotOptions& options) {
    Painter(plot, info, options).paint();
}

} // namespace korvana
