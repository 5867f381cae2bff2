#include "host/charts/ChartRenderer.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <exception>
#include <new>
#include <qcustomplot.h>

#include "host/charts/ChartApplication.h"
#include "host/charts/ChartPlot.h"
#include "host/charts/SvgFont.h"
#include "host/results/Utf8.h"

namespace korvana {
namespace {

constexpr int pictureWidth = 960;
constexpr int pictureHeight = 640;
constexpr int pixelsPerInch = 96;
constexpr int pngScale = 2;
constexpr int pdfScale = 10; // finer than a pixel, so that glyphs are not pushed onto whole pixels

QString titleOf(const ozm::CChartInfo& info) {
    return QString::fromStdString(shownLine(info.title));
}

/// Paints onto a device that has `scale` units to a pixel.
bool paintOn(QCustomPlot& plot, QPaintDevice& device, double scale, bool vectors) {
    QCPPainter painter;
    if (!painter.begin(&device)) return false;
    painter.setMode(QCPPainter::pmNoCaching);
    painter.setMode(QCPPainter::pmVectorized, vectors);
    painter.scale(scale, scale);
    plot.toPainter(&painter, pictureWidth, pictureHeight);
    return painter.end();
}

bool drawSvg(QCustomPlot& plot, const ozm::CChartInfo& info, QBuffer& out) {
    QSvgGenerator generator;
    generator.setOutputDevice(&out);
    generator.setResolution(pixelsPerInch);
    generator.setSize(QSize(pictureWidth, pictureHeight));
    generator.setViewBox(QRect(0, 0, pictureWidth, pictureHeight));
    generator.setTitle(QString::fromStdString(escaped(shownLine(info.title)))); // Qt does not escape it
    return paintOn(plot, generator, 1.0, true);
}

bool drawPng(QCustomPlot& plot, QBuffer& out) {
    QImage image(pictureWidth * pngScale, pictureHeight * pngScale, QImage::Format_RGB32);
    if (image.isNull()) return false;
    image.fill(Qt::white);
    const int dotsPerMetre = static_cast<int>(pixelsPerInch * pngScale / 0.0254);
    if (!paintOn(plot, image, pngScale, false)) return false;
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    return image.save(&out, "PNG");
}

bool drawPdf(QCustomPlot& plot, const ozm::CChartInfo& info, QBuffer& out) {
    QPdfWriter writer(&out);
    writer.setTitle(titleOf(info));
    writer.setResolution(pixelsPerInch * pdfScale);
    const QSizeF inches(double{pictureWidth} / pixelsPerInch, double{pictureHeight} / pixelsPerInch);
    writer.setPageSize(QPageSize(inches, QPageSize::Inch, {}, QPageSize::ExactMatch));
    writer.setPageMargins({});
    return paintOn(plot, writer, pdfScale, true);
}

/// The SVG in the form for an HTML page.
QByteArray svgForPage(const QByteArray& svg, std::string_view prefix, const ozm::CChartInfo& info) {
    const QString scope = QString::fromUtf8(prefix.data(), static_cast<qsizetype>(prefix.size()));
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    QXmlStreamReader reader(svg);
    reader.setNamespaceProcessing(false);
    bool root = true;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement()) writer.writeEndElement();
        if (reader.isCharacters() && !reader.isWhitespace()) writer.writeCharacters(reader.text().toString());
        if (!reader.isStartElement()) continue;
        writer.writeStartElement(reader.qualifiedName().toString());
        for (const QXmlStreamAttribute& attribute : reader.attributes()) {
            const QString key = attribute.qualifiedName().toString();
            QString value = attribute.value().toString();
            if (root && (key == "width" || key == "height")) continue;
            if (key == "id") value.prepend(scope);
            if (key.endsWith("href") && value.startsWith('#')) value.insert(1, scope);
            value.replace("url(#", "url(#" + scope);
            writer.writeAttribute(key, value);
        }
        if (root) {
            writer.writeAttribute("role", "img");
            writer.writeAttribute("aria-label", titleOf(info));
        }
        root = false;
    }
    return bytes;
}

} // namespace

Picture renderChart(const ozm::CChartInfo& info, PictureFormat format, const PictureOptions& options) {
    Picture picture;
    try {
        picture.error = ensureChartApplication();
        if (!picture.drawn()) return picture;
        const QuietQt quiet;
        QByteArray bytes;
        QBuffer out(&bytes);
        out.open(QIODevice::WriteOnly);
        QCustomPlot plot;
        fillPlot(plot, info, {pictureWidth, pictureHeight});
        const bool drawn = format == PictureFormat::Svg   ? drawSvg(plot, info, out)
                           : format == PictureFormat::Png ? drawPng(plot, out)
                                                          : drawPdf(plot, info, out);
        if (drawn && format == PictureFormat::Svg) {
            bytes = withItsFont(bytes);
            if (!options.pagePrefix.empty()) bytes = svgForPage(bytes, options.pagePrefix, info);
        }
        if (drawn && !bytes.isEmpty()) {
            picture.bytes = bytes.toStdString();
        } else {
            picture.error = noMemoryToDraw; // the only possible reason
        }
    } catch (const std::bad_alloc&) {
        picture.error = noMemoryToDraw;
    } catch (const std::exception& problem) {
        picture.error = problem.what();
    }
    return picture;
}

} // namespace korvana
