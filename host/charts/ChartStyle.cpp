#include "host/charts/ChartStyle.h"

#include <array>
#include <cmath>

namespace korvana {
namespace {

using ozm::ChartSeries;

/// Okabe and Ito (2008), distinct with any colour vision; without its yellow, which is lost on white. Then
/// five darker hues between these, for charts of more groups.
constexpr std::array<QRgb, 12> groupColours{0xFF0072B2, 0xFFD55E00, 0xFF009E73, 0xFFCC79A7,
                                            0xFFE69F00, 0xFF56B4E9, 0xFF000000, 0xFF7B1F4B,
                                            0xFF8A8A1C, 0xFF5B3FA8, 0xFF1B5E3A, 0xFF9C5B2E};
/// The same hues, lightened to stand out from a dark ground; white instead of black.
constexpr std::array<QRgb, 12> darkPalette{0xFF5AB0F0, 0xFFF28446, 0xFF2EC79B, 0xFFE59CC8,
                                           0xFFFFC247, 0xFFA6DEFF, 0xFFFFFFFF, 0xFFD96FA0,
                                           0xFFD2D25C, 0xFFA893F0, 0xFF7FC79B, 0xFFD9A27C};

/// How lines are broken where the colours have been used up: another way each time round.
QList<qreal> dashOf(std::size_t round) {
    if (round % 3 == 1) return {8.0, 3.0, 2.0, 3.0};
    if (round % 3 == 2) return {2.0, 3.0};
    return {8.0, 3.0, 2.0, 3.0, 2.0, 3.0};
}

constexpr double markerFill = 0.43;

int mixed(int colour, int ground, double share) {
    return static_cast<int>(std::lround(ground + share * (colour - ground)));
}

} // namespace

const ChartTones& chartTones(bool dark) {
    static const ChartTones onLight{{0x22, 0x22, 0x22}, {0xE4, 0xE4, 0xE4}, Qt::white};
    static const ChartTones onDark{{0xE6, 0xE6, 0xE6}, {0x46, 0x46, 0x46}, {0x1C, 0x1C, 0x1C}};
    return dark ? onDark : onLight;
}

bool isBound(const ChartSeries& series) {
    return series.role == ChartSeries::Role::LowerBound || series.role == ChartSeries::Role::UpperBound;
}

bool isPath(const ChartSeries& series) {
    return series.style == ChartSeries::Style::Line || series.style == ChartSeries::Style::Step;
}

bool hasMarkers(const ChartSeries& series) {
    return series.marker != ChartSeries::Marker::None || series.style == ChartSeries::Style::Markers;
}

ChartStyle::ChartStyle(const ozm::CChartInfo& info, bool dark) : dark_(dark) {
    for (const ChartSeries& series : info.series)
        if (series.group != ChartSeries::allGroups) groups_.try_emplace(series.group, groups_.size());
}

QColor ChartStyle::colour(const ChartSeries& series) const {
    if (series.group == ChartSeries::allGroups) return chartTones(dark_).ink;
    const auto& palette = dark_ ? darkPalette : groupColours;
    return QColor::fromRgb(palette[place(series) % palette.size()]);
}

QColor ChartStyle::tint(const ChartSeries& series, double share) const {
    const QColor full = colour(series);
    const QColor& ground = chartTones(dark_).ground;
    return {mixed(full.red(), ground.red(), share), mixed(full.green(), ground.green(), share),
            mixed(full.blue(), ground.blue(), share)};
}

QPen ChartStyle::pen(const ChartSeries& series) const {
    QPen pen(colour(series), isBound(series) ? 1.0 : 2.0);
    pen.setCapStyle(isBound(series) ? Qt::FlatCap : Qt::SquareCap);
    pen.setJoinStyle(Qt::MiterJoin);
    if (isBound(series)) {
        pen.setDashPattern({5.0, 3.0});
    } else if (series.group != ChartSeries::allGroups && place(series) >= groupColours.size()) {
        pen.setCapStyle(Qt::FlatCap);
        pen.setDashPattern(dashOf(place(series) / groupColours.size()));
    }
    return pen;
}

QCPScatterStyle ChartStyle::scatter(const ChartSeries& series) const {
    using Marker = ChartSeries::Marker;
    Marker marker = series.marker;
    if (marker == Marker::None)
        marker = series.role == ChartSeries::Role::Censored ? Marker::Plus : Marker::Circle;
    const QColor fill = tint(series, markerFill);
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

} // namespace korvana
