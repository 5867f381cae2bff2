#pragma once

#include <memory>
#include <optional>

#include "apps/desktop/results/ChartEdits.h"
#include "apps/desktop/results/ChartReadout.h"
#include "apps/desktop/results/ChartSettingsDialog.h"
#include "apps/desktop/results/OutputView.h"

class QCPRange;
class QCustomPlot;
class QTimer;
class QToolButton;
class QVBoxLayout;

namespace korvana::desktop {

/// A chart on the screen. Dragging moves it, the wheel zooms (over an axis, that axis alone), a double click
/// resets. It shows the values of the point under the pointer; titles and ranges can be edited. Keys: + and -
/// zoom, Shift with arrows moves, Home resets, arrows go from point to point and from series to series.
class ChartView : public OutputView {
    Q_OBJECT

public:
    explicit ChartView(const ozm::CChartInfo& info, QWidget* parent = nullptr);
    ~ChartView() override;

    void refresh() override;
    /// A picture of the chart as it is on the screen, on a light background.
    void copy() override;
    [[nodiscard]] QWidget* content() override;
    [[nodiscard]] QList<QAction*> viewActions() override;

    [[nodiscard]] const ChartEdits& edits() const { return edits_; }
    void setEdits(const ChartEdits& edits);
    /// The chart as it is on the screen: edited, with the ranges that are zoomed to.
    [[nodiscard]] ozm::CChartInfo shownChart() const;

    [[nodiscard]] QCustomPlot& plot() const { return *plot_; }
    [[nodiscard]] QString readout() const { return readout_->text(); }

    void editSettings(ChartSettingsDialog::Field field = ChartSettingsDialog::Field::Title);
    void resetZoom();

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] static Extent extentOf(const QCPRange& range);
    void draw();
    void connectPlot();
    void followPointer(const QPointF& pixel);
    void showPlace(const std::optional<ChartPlace>& place);
    bool pressKey(int key, Qt::KeyboardModifiers modifiers);
    void zoom(double factor);
    void move(double right, double up);

    const ozm::CChartInfo& info_;
    ChartEdits edits_;
    ozm::CChartInfo drawn_;
    int drawnWidth_ = 0; ///< titles and legend are wrapped to fit it
    Extent homeX_;
    Extent homeY_;
    QVBoxLayout* column_;
    QCustomPlot* plot_ = nullptr;
    std::unique_ptr<ChartReadout> readout_;
    std::optional<ChartPlace> place_;
    QTimer* redraw_;
    QAction* settings_;
    QAction* reset_;
    QAction* atRisk_;
};

} // namespace korvana::desktop
