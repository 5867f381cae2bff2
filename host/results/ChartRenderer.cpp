#include "host/results/ChartRenderer.h"

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
#include <optional>
#include <qcustomplot.h>
#include <utility>

#include "host/results/ChartApplication.h"
#include "host/results/ChartPlot.h"
#include "host/results/DrawingProcess.h"
#include "host/results/SvgFont.h"
#include "host/results/Utf8.h"

namespace korvana {
namespace {

constexpr int kWidth = 960;
constexpr int kHeight = 640;
constexpr int kPixelsPerInch = 96;
constexpr int kPngScale = 2;
constexpr int kPdfScale = 10; // finer than a pixel, so that glyphs are not pushed onto whole pixels

QString titleOf(const ozm::CChartInfo& info) {
    return QString::fromStdString(oneLine(info.title));
}

/// Paints onto a device whose unit is 1/scale of a pixel.
bool paintOn(QCustomPlot& plot, QPaintDevice& device, double scale, bool vectors) {
    QCPPainter painter;
    if (!painter.begin(&device)) return false;
    painter.setMode(QCPPainter::pmNoCaching);
    painter.setMode(QCPPainter::pmVectorized, vectors);
    painter.scale(scale, scale);
    plot.toPainter(&painter, kWidth, kHeight);
    return painter.end();
}

bool drawSvg(QCustomPlot& plot, const ozm::CChartInfo& info, QBuffer& out) {
    QSvgGenerator generator;
    generator.setOutputDevice(&out);
    generator.setResolution(kPixelsPerInch);
    generator.setSize(QSize(kWidth, kHeight));
    generator.setViewBox(QRect(0, 0, kWidth, kHeight));
    generator.setTitle(QString::fromStdString(escaped(oneLine(info.title)))); // Qt writes it as it is
    return paintOn(plot, generator, 1.0, true);
}

bool drawPng(QCustomPlot& plot, QBuffer& out) {
    QImage image(kWidth * kPngScale, kHeight * kPngScale, QImage::Format_RGB32);
    if (image.isNull()) return false;
    image.fill(Qt::white);
    const int dotsPerMetre = static_cast<int>(kPixelsPerInch * kPngScale / 0.0254);
    if (!paintOn(plot, image, kPngScale, false)) return false;
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    return image.save(&out, "PNG");
}

bool drawPdf(QCustomPlot& plot, const ozm::CChartInfo& info, QBuffer& out) {
    QPdfWriter writer(&out);
    writer.setTitle(titleOf(info));
    writer.setResolution(kPixelsPerInch * kPdfScale);
    const QSizeF inches(double{kWidth} / kPixelsPerInch, double{kHeight} / kPixelsPerInch);
    writer.setPageSize(QPageSize(inches, QPageSize::Inch, {}, QPageSize::ExactMatch));
    writer.setPageMargins({});
    return paintOn(plot, writer, kPdfScale, true);
}

Picture drawHere(const ozm::CChartInfo& info, PictureFormat format, bool numbersAtRisk) {
    Picture picture;
    try {
        picture.error = ensureChartApplication();
        if (!picture.drawn()) return picture;
        const QuietQt quiet;
        QByteArray bytes;
        QBuffer out(&bytes);
        out.open(QIODevice::WriteOnly);
        QCustomPlot plot;
        PlotOptions options{kWidth, kHeight};
        options.numbersAtRisk = numbersAtRisk;
        fillPlot(plot, info, options);
        const bool drawn = format == PictureFormat::Svg   ? drawSvg(plot, info, out)
                           : format == PictureFormat::Png ? drawPng(plot, out)
                                                          : drawPdf(plot, info, out);
        if (drawn && format == PictureFormat::Svg) bytes = withItsFont(bytes);
        if (drawn && !bytes.isEmpty()) {
            picture.bytes = bytes.toStdString();
        } else {
            picture.error = kNoMemoryToDraw; // there is no other reason
        }
    } catch (const std::bad_alloc&) {
        picture.error = kNoMemoryToDraw;
    } catch (const std::exception& problem) {
        picture.error = problem.what();
    }
    return picture;
}

} // namespace

Picture drawChart(const ozm::CChartInfo& info, PictureFormat format, bool numbersAtRisk) {
    const auto draw = [&] { return drawHere(info, format, numbersAtRisk); };
    if (QCoreApplication::instance() == nullptr)
        if (std::optional<Picture> picture = drawApart(draw)) return std::move(*picture);
    return draw();
}

std::string svgForPage(std::string_view svg, std::string_view prefix, std::string_view name) {
    const QString scope = QString::fromUtf8(prefix.data(), static_cast<qsizetype>(prefix.size()));
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    QXmlStreamReader reader(QByteArray(svg.data(), static_cast<qsizetype>(svg.size())));
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
            writer.writeAttribute("aria-label", QString::fromStdString(oneLine(name)));
        }
        root = false;
    }
    return bytes.toStdString();
}

} // namespace korvana
