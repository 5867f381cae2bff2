// Mouse and keyboard in a chart: reading points, moving and zooming the axes.
#include "apps/desktop/results/ChartView.h"

#include <QAction>
#include <QKeyEvent>
#include <QTimer>
#include <cmath>
#include <qcustomplot.h>

#include "host/charts/ChartPlot.h"
#include "host/results/Utf8.h"

namespace korvana::desktop {
namespace {

constexpr double reach = 24.0; // largest distance from the pointer to a point, in pixels

} // namespace

void ChartView::connectPlot() {
    const QString title = QString::fromStdString(oneLine(drawn_.title));
    plot_->setAccessibleName(title.isEmpty() ? tr("Chart") : tr("Chart: %1").arg(title));
    plot_->setFocusPolicy(Qt::StrongFocus);
    plot_->setMouseTracking(true);
    plot_->setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    plot_->setMinimumSize(fontMetrics().height() * 12, fontMetrics().height() * 9);
    plot_->setContextMenuPolicy(Qt::CustomContextMenu);
    plot_->installEventFilter(this);
    QCustomPlot* plot = plot_;
    connect(plot, &QWidget::customContextMenuRequested, this,
            [this, plot](const QPoint& place) { emit menuWanted(plot->mapToGlobal(place)); });
    connect(plot, &QCustomPlot::mouseMove, this, [this](QMouseEvent* event) {
        if (event->buttons() == Qt::NoButton) {
            followPointer(event->position());
        } else {
            readout_->hide(); // the axes are being dragged
        }
    });
    connect(plot, &QCustomPlot::mouseWheel, this, [this](QWheelEvent* event) {
        const QPoint place = event->position().toPoint();
        const bool onX = plot_->xAxis->selectTest(place, false) >= 0;
        const bool onY = plot_->yAxis->selectTest(place, false) >= 0;
        plot_->axisRect()->setRangeZoom(onX   ? Qt::Orientations(Qt::Horizontal)
                                        : onY ? Qt::Orientations(Qt::Vertical)
                                              : Qt::Horizontal | Qt::Vertical);
        readout_->hide();
    });
    connect(plot, &QCustomPlot::mouseDoubleClick, this, [this](QMouseEvent* event) {
        using Field = ChartSettingsDialog::Field;
        const QPoint place = event->position().toPoint();
        auto* heading = qobject_cast<QCPTextElement*>(plot_->plotLayout()->element(0, 0));
        // The dialog redraws the plot, which must have finished handling this event by then.
        const auto edit = [this](Field field) {
            QTimer::singleShot(0, this, [this, field] { editSettings(field); });
        };
        if (heading != nullptr && heading->outerRect().contains(place)) {
            edit(Field::Title);
        } else if (plot_->axisRect()->rect().contains(place)) {
            resetZoom();
        } else if (plot_->xAxis->selectTest(place, false) >= 0) {
            edit(Field::XAxis);
        } else if (plot_->yAxis->selectTest(place, false) >= 0) {
            edit(Field::YAxis);
        }
    });
    for (QCPAxis* axis : {plot->xAxis, plot->yAxis}) {
        connect(axis, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this,
                [axis](const QCPRange& range) {
                    axis->setNumberPrecision(tickPrecision(range.lower, range.upper));
                });
    }
}

void ChartView::followPointer(const QPointF& pixel) {
    if (const auto place = nearestPoint(drawn_, *plot_, pixel, reach)) {
        showPlace(place);
        return;
    }
    place_.reset();
    if (!readout_->showClass(pixel)) readout_->hide();
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ChartView::showPlace(const std::optional<ChartPlace>& place) {
    place_ = place;
    if (place) {
        readout_->show(*place);
        plot_->setAccessibleDescription(readout_->text());
    } else {
        readout_->hide();
    }
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ChartView::zoom(double factor) {
    // Around the point that is being read, if there is one, else around the middle.
    QPointF centre(plot_->xAxis->range().center(), plot_->yAxis->range().center());
    if (place_) {
        const ozm::ChartSeries& series = drawn_.series[place_->series];
        centre = {series.x[place_->point], series.y[place_->point]};
    }
    plot_->xAxis->scaleRange(factor, centre.x());
    plot_->yAxis->scaleRange(factor, centre.y());
    readout_->hide();
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ChartView::move(double right, double up) {
    const auto by = [](QCPAxis& axis, double share) {
        const QCPRange range = axis.range();
        if (axis.scaleType() == QCPAxis::stLogarithmic)
            axis.moveRange(std::pow(range.upper / range.lower, share));
        else
            axis.moveRange(share * range.size());
    };
    by(*plot_->xAxis, right);
    by(*plot_->yAxis, up);
    readout_->hide();
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

bool ChartView::pressKey(int key, Qt::KeyboardModifiers modifiers) {
    constexpr double zoomFactor = 0.8;
    constexpr double moveShare = 0.1;
    const bool shift = modifiers.testFlag(Qt::ShiftModifier);
    switch (key) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoom(zoomFactor);
        return true;
    case Qt::Key_Minus:
        zoom(1 / zoomFactor);
        return true;
    case Qt::Key_Home:
        resetZoom();
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const int by = key == Qt::Key_Right ? 1 : -1;
        shift ? move(by * moveShare, 0.0) : showPlace(neighbour(drawn_, place_, by, false));
        return true;
    }
    case Qt::Key_Up:
    case Qt::Key_Down: {
        const int by = key == Qt::Key_Down ? 1 : -1;
        shift ? move(0.0, -by * moveShare) : showPlace(neighbour(drawn_, place_, by, true));
        return true;
    }
    case Qt::Key_Escape:
        if (readout_->text().isEmpty()) return false;
        showPlace(std::nullopt);
        return true;
    default:
        return false;
    }
}

bool ChartView::eventFilter(QObject* watched, QEvent* event) {
    if (watched != plot_) return OutputView::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        return pressKey(key->key(), key->modifiers());
    }
    case QEvent::Leave:
        showPlace(std::nullopt);
        return false;
    case QEvent::Resize:
        if (plot_->width() != drawnWidth_) redraw_->start();
        return false;
    default:
        return false;
    }
}

void ChartView::resetZoom() {
    plot_->xAxis->setRange(homeX_.low, homeX_.high);
    plot_->yAxis->setRange(homeY_.low, homeY_.high);
    readout_->hide();
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

} // namespace korvana::desktop
