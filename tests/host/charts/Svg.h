#pragma once

#include <QPointF>
#include <QSet>
#include <QXmlStreamReader>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <string>

namespace korvana::test {

/// What tests look for in a picture.
struct Svg {
    QStringList texts;
    std::map<int, std::map<std::string, double>> lines; ///< x of each text, line by line from the top
    QSet<QString> strokes;                              ///< colours of lines
    QSet<QString> fonts;                                ///< sizes
    int dashed = 0;
    int circles = 0;
    double farthest = 0.0; ///< largest coordinate, for what lies outside the picture
    QString viewBox;
};

/// Also checks that it is well formed and opaque.
inline Svg readSvg(const std::string& bytes) {
    Svg svg;
    QPointF origin; // of the group that is open
    QXmlStreamReader reader(QByteArray::fromStdString(bytes));
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) continue;
        const auto attributes = reader.attributes();
        const auto value = [&](const char* name) { return attributes.value(name).toString(); };
        // Translucent colours would be blended in threads, which may not be available.
        for (const char* opacity : {"fill-opacity", "stroke-opacity", "opacity"})
            EXPECT_TRUE(value(opacity).isEmpty() || value(opacity) == "1") << opacity;
        svg.strokes.insert(value("stroke"));
        if (attributes.hasAttribute("stroke-dasharray")) ++svg.dashed;
        if (reader.name() == QStringLiteral("svg")) svg.viewBox = value("viewBox");
        if (reader.name() == QStringLiteral("circle")) ++svg.circles;
        for (const QString& coordinate : value("points").replace(',', ' ').split(' ', Qt::SkipEmptyParts)) {
            EXPECT_TRUE(std::isfinite(coordinate.toDouble()));
            svg.farthest = std::max(svg.farthest, std::fabs(coordinate.toDouble()));
        }
        if (const QString transform = value("transform"); transform.startsWith("matrix(")) {
            const QStringList parts = transform.chopped(1).split(',');
            origin = {parts.value(4).toDouble(), parts.value(5).toDouble()};
        }
        if (reader.name() != QStringLiteral("text")) continue;
        svg.fonts.insert(value("font-size"));
        const QPointF place = origin + QPointF(value("x").toDouble(), value("y").toDouble());
        svg.texts += reader.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        svg.lines[qRound(place.y())][svg.texts.back().toStdString()] = place.x();
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return svg;
}

} // namespace korvana::test
