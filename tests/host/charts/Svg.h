#pragma once

#include <QPointF>
#include <QXmlStreamReader>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>

namespace korvana::test {

struct Svg {
    QStringList texts;
    std::set<std::string> strokes; // colours of lines
    std::set<std::string> fonts;
    int dashed = 0;
    int shapes = 0;
    int circles = 0;
    double farthest = 0.0; // largest coordinate, for what lies outside the picture
    QString viewBox;
    std::map<int, std::map<std::string, double>> lines; // x of each text, line by line from the top
};

/// Whatever it holds, it is well formed and opaque.
inline Svg readSvg(const std::string& bytes) {
    Svg svg;
    QPointF origin; // of the group that is open
    QXmlStreamReader reader(QByteArray::fromStdString(bytes));
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement()) continue;
        const auto attributes = reader.attributes();
        if (attributes.hasAttribute("stroke"))
            svg.strokes.insert(attributes.value("stroke").toString().toStdString());
        if (attributes.hasAttribute("font-size") && reader.name() == QStringLiteral("text"))
            svg.fonts.insert(attributes.value("font-size").toString().toStdString());
        if (attributes.hasAttribute("stroke-dasharray")) ++svg.dashed;
        if (attributes.hasAttribute("viewBox")) svg.viewBox = attributes.value("viewBox").toString();
        if (attributes.hasAttribute("points")) {
            ++svg.shapes;
            for (const QString& coordinate :
                 attributes.value("points").toString().replace(',', ' ').split(' ', Qt::SkipEmptyParts)) {
                EXPECT_TRUE(std::isfinite(coordinate.toDouble()));
                svg.farthest = std::max(svg.farthest, std::fabs(coordinate.toDouble()));
            }
        }
        // Translucent colours are mixed in threads, of which there may be none.
        for (const char* opacity : {"fill-opacity", "stroke-opacity", "opacity"})
            if (attributes.hasAttribute(opacity)) {
                EXPECT_EQ(attributes.value(opacity), QStringLiteral("1"));
            }
        if (reader.name() == QStringLiteral("circle")) ++svg.circles;
        if (const QString transform = attributes.value("transform").toString();
            transform.startsWith("matrix(")) {
            const QStringList parts = transform.mid(7, transform.size() - 8).split(',');
            origin = {parts.value(4).toDouble(), parts.value(5).toDouble()};
        }
        if (reader.name() != QStringLiteral("text")) continue;
        const QPointF place(attributes.value("x").toDouble(), attributes.value("y").toDouble());
        svg.texts += reader.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        svg.lines[qRound((origin + place).y())][svg.texts.back().toStdString()] = (origin + place).x();
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return svg;
}

} // namespace korvana::test
