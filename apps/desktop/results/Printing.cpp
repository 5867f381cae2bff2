#include "apps/desktop/results/Printing.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPrinter>
#include <algorithm>
#include <cmath>
#include <qcustomplot.h>

#include "apps/desktop/results/OutputText.h"
#include "apps/desktop/text/FixedFont.h"
#include "host/charts/ChartPlot.h"
#include "host/results/Utf8.h"

namespace korvana::desktop {
namespace {

constexpr double letters = 9.0; // points
constexpr double smallestSize = 5.0;
constexpr int chartWidth = 960;
constexpr int chartHeight = 640;

class Pages {
public:
    Pages(QPrinter& printer, QString title) : printer_(printer), title_(std::move(title)) {}

    bool begin() {
        if (!painter_.begin(&printer_)) return false;
        painter_.setMode(QCPPainter::pmVectorized);
        painter_.setMode(QCPPainter::pmNoCaching);
        const QRectF page = printer_.pageLayout().paintRectPixels(printer_.resolution());
        foot_ = 2.0 * metrics(fixedFont(letters)).height();
        area_ = QRectF(0, 0, page.width(), page.height() - foot_);
        drawFoot();
        return area_.width() > 1.0 && area_.height() > 1.0;
    }

    bool end() { return painter_.end(); }

    void add(const std::vector<std::string>& lines) {
        gap();
        std::size_t columns = 1;
        for (const std::string& line : lines)
            columns = std::max(columns, textWidth(line));
        double size = letters;
        QFontMetricsF measure = metrics(fixedFont(size));
        // Character widths grow in steps with the size, so the size that fits is searched for, not computed.
        while (size > smallestSize &&
               measure.horizontalAdvance('m') * static_cast<double>(columns) > area_.width())
            measure = metrics(fixedFont(size = std::max(smallestSize, 0.98 * size)));
        const QFont font = fixedFont(size);
        const auto most =
            static_cast<qsizetype>(std::max(1.0, area_.width() / measure.horizontalAdvance('m') + 1e-9));
        for (const std::string& line : lines) {
            const QString text = QString::fromStdString(oneLine(line));
            for (qsizetype from = 0; from == 0 || from < text.size(); from += most) {
                if (y_ + measure.height() > area_.height()) newPage();
                painter_.setFont(font);
                painter_.setPen(Qt::black);
                painter_.drawText(QPointF(0.0, y_ + measure.ascent()), text.mid(from, most));
                y_ += measure.height();
            }
        }
    }

    void add(const Chart& chart) {
        gap();
        const double scale = std::min(area_.width() / chartWidth, area_.height() / chartHeight);
        const double height = scale * chartHeight;
        if (y_ + height > area_.height()) newPage();
        QCustomPlot plot;
        fillPlot(plot, chart.info, {chartWidth, chartHeight});
        painter_.save();
        painter_.translate((area_.width() - scale * chartWidth) / 2, y_);
        painter_.scale(scale, scale);
        plot.toPainter(&painter_, chartWidth, chartHeight);
        painter_.restore();
        y_ += height;
    }

private:
    [[nodiscard]] static QFont fixedFont(double points) {
        QFont font = desktop::fixedFont();
        font.setPointSizeF(points);
        return font;
    }

    [[nodiscard]] QFontMetricsF metrics(const QFont& font) const { return {font, &printer_}; }

    void gap() {
        if (y_ > 0.0) y_ += metrics(fixedFont(letters)).height();
    }

    void newPage() {
        printer_.newPage();
        ++page_;
        y_ = 0.0;
        drawFoot();
    }

    void drawFoot() {
        painter_.setFont(fixedFont(letters));
        painter_.setPen(Qt::black);
        const QRectF foot(0, area_.height(), area_.width(), foot_);
        const QString number = QCoreApplication::translate("Printing", "Page %1").arg(page_);
        const QFontMetricsF measure = metrics(painter_.font());
        const double room = area_.width() - 2 * measure.horizontalAdvance(number);
        painter_.drawText(foot, Qt::AlignLeft | Qt::AlignBottom,
                          measure.elidedText(title_, Qt::ElideRight, room));
        painter_.drawText(foot, Qt::AlignRight | Qt::AlignBottom, number);
    }

    QPrinter& printer_;
    QString title_;
    QCPPainter painter_;
    QRectF area_;
    double foot_ = 0.0;
    double y_ = 0.0;
    int page_ = 1;
};

} // namespace

PrintItem printItem(const ResultsBook::Output& output) {
    if (const auto* chart = std::get_if<Chart>(&output)) return *chart;
    if (const auto* sheet = std::get_if<Spreadsheet>(&output)) return sheetLines(*sheet, mostPrintedRows);
    const auto& report = std::get<Report>(output);
    std::vector<std::string> lines;
    if (!report.title.empty()) lines = {report.title, ""};
    lines.insert(lines.end(), report.lines.begin(), report.lines.end());
    return lines;
}

bool print(QPrinter& printer, const std::vector<PrintItem>& items, const QString& title) {
    Pages pages(printer, title);
    if (!pages.begin()) return false;
    for (const PrintItem& item : items)
        std::visit([&pages](const auto& one) { pages.add(one); }, item);
    return pages.end();
}

} // namespace korvana::desktop
