#include "apps/desktop/results/ChartView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QImage>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <qcustomplot.h>

#include "host/charts/AtRisk.h"
#include "host/charts/ChartPlot.h"
#include "host/charts/ChartRenderer.h"
#include "host/results/Utf8.h"

namespace korvana::desktop {
namespace {

constexpr int lettersAtScaleOne = 13;

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Base).lightness() < 128;
}

bool same(const Extent& a, const Extent& b) {
    return a.low == b.low && a.high == b.high;
}

/// The range as the user knows it: as set for the axis, without the margins for markers at its ends.
Extent namedRange(const ozm::ChartAxis& axis, const Extent& shown, const Extent& home) {
    return axis.hasRange() && same(shown, home) ? Extent{axis.min, axis.max} : shown;
}

} // namespace

ChartView::ChartView(const ozm::CChartInfo& info, QWidget* parent)
    : OutputView(parent), info_(info), column_(new QVBoxLayout(this)), redraw_(new QTimer(this)),
      settings_(new QAction(tr("&Titles and Ranges..."), this)), reset_(new QAction(tr("Reset &Zoom"), this)),
      atRisk_(new QAction(tr("&Numbers at Risk"), this)) {
    settings_->setShortcut(Qt::Key_F2);
    settings_->setShortcutContext(Qt::ApplicationShortcut); // like exporting and printing
    atRisk_->setCheckable(true);
    atRisk_->setVisible(tellsNumbersAtRisk(info));
    atRisk_->setChecked(info.numbersAtRisk);
    connect(settings_, &QAction::triggered, this, [this] { editSettings(); });
    connect(reset_, &QAction::triggered, this, &ChartView::resetZoom);
    connect(atRisk_, &QAction::toggled, this, [this](bool on) {
        if (drawn_.numbersAtRisk == on) return;
        edits_.numbersAtRisk = on == info_.numbersAtRisk ? std::nullopt : std::optional{on};
        draw();
    });

    column_->setContentsMargins({});
    column_->setSpacing(0);
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(8, 4, 8, 4);
    bar->addStretch(1);
    for (QAction* action : {atRisk_, settings_, reset_}) {
        auto* button = new QToolButton;
        button->setDefaultAction(action);
        button->setVisible(action->isVisible());
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        bar->addWidget(button);
    }
    column_->addLayout(bar);

    // Titles and legend are wrapped to the width; while a window is being resized they need not follow at
    // once.
    redraw_->setSingleShot(true);
    redraw_->setInterval(50);
    connect(redraw_, &QTimer::timeout, this, &ChartView::draw);
    draw();
}

ChartView::~ChartView() = default;

Extent ChartView::extentOf(const QCPRange& range) {
    return {range.lower, range.upper};
}

void ChartView::draw() {
    std::optional<std::pair<Extent, Extent>> zoomed;
    bool focused = false;
    if (plot_ != nullptr) {
        const Extent x = extentOf(plot_->xAxis->range());
        const Extent y = extentOf(plot_->yAxis->range());
        if (!same(x, homeX_) || !same(y, homeY_)) zoomed.emplace(x, y);
        focused = plot_->hasFocus();
        plot_->removeEventFilter(this);
        plot_->disconnect(this);
        plot_->hide();
        readout_.reset();
        plot_->deleteLater(); // it may be in the middle of one of its events
    }
    const QSize size = plot_ == nullptr ? this->size() : plot_->size();
    drawn_ = edited(info_, edits_);
    plot_ = new QCustomPlot;
    PlotOptions options;
    options.width = std::max(size.width(), 200);
    options.height = std::max(size.height(), 150);
    options.thin = false;
    drawnWidth_ = size.width();
    options.dark = isDark(palette());
    options.textScale = std::max(1.0, static_cast<double>(QFontInfo(font()).pixelSize()) / lettersAtScaleOne);
    fillPlot(*plot_, drawn_, options);
    plot_->setBackground(QBrush(palette().color(QPalette::Base)));
    readout_ = std::make_unique<ChartReadout>(
        *plot_, drawn_, options.textScale, palette().color(QPalette::Text), palette().color(QPalette::Base));
    place_.reset();
    homeX_ = extentOf(plot_->xAxis->range());
    homeY_ = extentOf(plot_->yAxis->range());
    if (zoomed) {
        plot_->xAxis->setRange(zoomed->first.low, zoomed->first.high);
        plot_->yAxis->setRange(zoomed->second.low, zoomed->second.high);
    }
    connectPlot();
    column_->insertWidget(0, plot_, 1);
    if (focused) plot_->setFocus();
}

void ChartView::changeEvent(QEvent* event) {
    OutputView::changeEvent(event);
    const QEvent::Type type = event->type();
    if (type == QEvent::PaletteChange || type == QEvent::FontChange) draw();
}

void ChartView::refresh() {
    atRisk_->setVisible(tellsNumbersAtRisk(info_));
    draw();
}

void ChartView::setEdits(const ChartEdits& edits) {
    edits_ = edits;
    resetZoom(); // show the range that was asked for
    draw();
    atRisk_->setChecked(drawn_.numbersAtRisk);
}

ozm::CChartInfo ChartView::shownChart() const {
    ChartEdits shown = edits_;
    shown.x = extentOf(plot_->xAxis->range());
    shown.y = extentOf(plot_->yAxis->range());
    return edited(info_, shown);
}

void ChartView::editSettings(ChartSettingsDialog::Field field) {
    ChartSettingsDialog dialog(
        info_, edits_, namedRange(drawn_.xAxis, extentOf(plot_->xAxis->range()), homeX_),
        namedRange(drawn_.yAxis, extentOf(plot_->yAxis->range()), homeY_), field, this);
    // OK without a change keeps the zoom too.
    if (dialog.exec() == QDialog::Accepted && dialog.edits() != edits_) setEdits(dialog.edits());
}

void ChartView::copy() {
    const Picture picture = renderChart(shownChart(), PictureFormat::Png);
    QImage image;
    if (picture.drawn()) image.loadFromData(QByteArray::fromStdString(picture.bytes), "PNG");
    if (image.isNull()) {
        emit statusText(tr("The chart could not be copied: %1").arg(QString::fromStdString(picture.error)));
        return;
    }
    QApplication::clipboard()->setImage(image);
    emit statusText(tr("A picture of the chart was copied."));
}

QWidget* ChartView::content() {
    return plot_;
}

QList<QAction*> ChartView::viewActions() {
    return {settings_, atRisk_, reset_};
}

} // namespace korvana::desktop
