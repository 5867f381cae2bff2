#include <gtest/gtest.h>
#include <qcustomplot.h>

#include "apps/desktop/results/ChartSettingsDialog.h"
#include "apps/desktop/results/ChartView.h"
#include "tests/apps/desktop/Labels.h"
#include "tests/host/results/Books.h"

namespace korvana::desktop {
namespace {

class ChartViewTest : public testing::Test {
protected:
    ChartViewTest() {
        info_.series[0].leaving = {2, 3, 5, 6, 9};
        view_ = std::make_unique<ChartView>(info_);
        view_->resize(800, 600);
        view_->show();
        settle();
    }

    /// The plot is redrawn shortly after its width has changed.
    void settle() {
        QTest::qWait(100);
        plot().replot();
    }

    QCustomPlot& plot() { return view_->plot(); }
    QPoint pixel(double x, double y) {
        return {static_cast<int>(plot().xAxis->coordToPixel(x)),
                static_cast<int>(plot().yAxis->coordToPixel(y))};
    }
    void point(const QPoint& place) { QTest::mouseMove(&plot(), place); }
    void wheel(const QPoint& place) {
        QWheelEvent event(place, plot().mapToGlobal(place), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&plot(), &event);
    }
    QString title() {
        const auto* text = qobject_cast<QCPTextElement*>(plot().plotLayout()->element(0, 0));
        return text == nullptr ? QString() : text->text();
    }

    ozm::CChartInfo info_ = test::stepChart();
    std::unique_ptr<ChartView> view_;
};

TEST_F(ChartViewTest, ThePointUnderThePointerIsReadOut) {
    point(pixel(5, 0.5) + QPoint(3, -3));
    EXPECT_EQ(view_->readout().toStdString(), "Estimate\nSurvival time: 5\nProportion surviving: 0.5");
    point(pixel(3, 0.8)); // a censored observation lies on the estimate's step
    EXPECT_EQ(view_->readout().toStdString(), "Censored\nSurvival time: 3\nProportion surviving: 0.8");
    point(pixel(7.5, 0.3) + QPoint(0, 4)); // on a level, away from any point
    EXPECT_EQ(view_->readout().toStdString(), "Bounds\nSurvival time: 5\nProportion surviving: 0.3");
    point(pixel(8.5, 0.95));
    EXPECT_EQ(view_->readout().toStdString(), "");
}

TEST_F(ChartViewTest, NumbersAtRiskAreShownUntilTheyAreSwitchedOff) {
    QAction* shown = view_->viewActions().at(1);
    const int rows = plot().plotLayout()->rowCount();
    EXPECT_TRUE(shown->isChecked());
    shown->trigger();
    EXPECT_EQ(plot().plotLayout()->rowCount(), rows - 1);
    EXPECT_FALSE(view_->shownChart().numbersAtRisk) << "nor are they in what is exported";
    EXPECT_TRUE(view_->edits().changesChart());
    view_->setEdits(ChartEdits(view_->edits()));
    EXPECT_FALSE(shown->isChecked());
    shown->trigger();
    EXPECT_EQ(view_->edits(), ChartEdits{}) << "as the analysis made it";
    EXPECT_EQ(plot().plotLayout()->rowCount(), rows);
    // When the analysis does not ask for them: shown on request.
    info_.numbersAtRisk = false;
    ChartView without(info_);
    EXPECT_FALSE(without.viewActions().at(1)->isChecked());
    without.viewActions().at(1)->trigger();
    EXPECT_TRUE(without.shownChart().numbersAtRisk);
}

TEST_F(ChartViewTest, KeysMoveFromPointToPoint) {
    const std::string first = "Estimate\nSurvival time: 0\nProportion surviving: 1";
    QTest::keyClick(&plot(), Qt::Key_Right);
    QTest::keyClick(&plot(), Qt::Key_Left);
    EXPECT_EQ(view_->readout().toStdString(), first);
    QTest::keyClick(&plot(), Qt::Key_Right);
    QTest::keyClick(&plot(), Qt::Key_Down);
    EXPECT_EQ(view_->readout().toStdString(), "Bounds\nSurvival time: 2\nProportion surviving: 0.6");
    EXPECT_EQ(plot().accessibleDescription(), view_->readout());
    QTest::keyClick(&plot(), Qt::Key_Escape);
    EXPECT_EQ(view_->readout().toStdString(), "");
}

TEST_F(ChartViewTest, WheelAndKeysZoomAndADoubleClickResets) {
    const QCPRange x = plot().xAxis->range();
    const QCPRange y = plot().yAxis->range();
    wheel(pixel(5, 0.5));
    EXPECT_LT(plot().yAxis->range().size(), y.size());
    QTest::mouseDClick(&plot(), Qt::LeftButton, {}, plot().axisRect()->rect().center());
    EXPECT_EQ(plot().xAxis->range(), x);
    EXPECT_EQ(plot().yAxis->range(), y);

    wheel({plot().axisRect()->rect().center().x(), plot().axisRect()->rect().bottom() + 12});
    EXPECT_LT(plot().xAxis->range().size(), x.size());
    EXPECT_EQ(plot().yAxis->range(), y); // over an axis: that axis alone
    QTest::keyClick(&plot(), Qt::Key_Home);
    EXPECT_EQ(plot().xAxis->range(), x);
    QTest::keyClick(&plot(), Qt::Key_Plus);
    QTest::keyClick(&plot(), Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_NEAR(plot().xAxis->range().size(), 0.8 * x.size(), 1e-9);
    EXPECT_GT(plot().xAxis->range().center(), x.center());
    EXPECT_EQ(view_->shownChart().xAxis.min, plot().xAxis->range().lower);
}

TEST_F(ChartViewTest, ALogarithmicAxisWithNamesBesideIt) {
    ozm::CChartInfo info;
    info.xAxis.title = "Ratio";
    info.xAxis.logarithmic = true;
    info.yAxis.names = {"age", "arm"};
    info.yAxis.min = 0.5;
    info.yAxis.max = 2.5;
    ozm::ChartSeries points = test::series("Estimate", {0.25, 4}, {1, 2}, ozm::ChartSeries::Style::Markers);
    info.series = {points};
    info_ = info;
    view_ = std::make_unique<ChartView>(info_);
    view_->resize(800, 600);
    view_->show();
    settle();
    for (int times = 0; times < 2; ++times)
        QTest::keyClick(&plot(), Qt::Key_Right);
    EXPECT_EQ(view_->readout().toStdString(), "Estimate\nRatio: 4\narm");
    // A shift by keys is by a factor, and undone by the one back.
    const QCPRange range = plot().xAxis->range();
    QTest::keyClick(&plot(), Qt::Key_Right, Qt::ShiftModifier);
    const double factor = plot().xAxis->range().lower / range.lower;
    EXPECT_GT(factor, 1.0);
    EXPECT_NEAR(plot().xAxis->range().upper / range.upper, factor, 1e-9);
    QTest::keyClick(&plot(), Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_NEAR(plot().xAxis->range().lower, range.lower, 1e-9);
}

TEST_F(ChartViewTest, EditsAndZoomAreKeptWhenTheChartIsRedrawnAlsoOnADarkBackground) {
    ChartEdits edits;
    edits.title = "Another title";
    edits.yTitle = "S(t)";
    edits.x = Extent{1, 7};
    view_->setEdits(edits);
    QTest::keyClick(&plot(), Qt::Key_Plus);
    const QCPRange zoomed = plot().xAxis->range();
    const QCustomPlot* before = &plot();

    view_->resize(500, 400);
    settle();
    QPalette dark = view_->palette();
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    view_->setPalette(dark);
    settle();
    EXPECT_NE(&plot(), before);
    EXPECT_EQ(title(), "Another title");
    EXPECT_EQ(plot().yAxis->label(), "S(t)");
    EXPECT_EQ(plot().xAxis->range(), zoomed);
    view_->resetZoom();
    EXPECT_EQ(plot().xAxis->range(), QCPRange(1, 7));

    // On a dark background lines and curves are light; for paper and other programs the background is light.
    EXPECT_GT(plot().xAxis->labelColor().lightness(), 180);
    EXPECT_GT(plot().xAxis->tickLabelColor().lightness(), 180);
    for (int i = 0; i < plot().plottableCount(); ++i) {
        const QPen pen = plot().plottable(i)->pen();
        EXPECT_TRUE(pen.style() == Qt::NoPen || pen.color().lightness() > 120) << i;
    }
    EXPECT_EQ(view_->grab().toImage().pixelColor(5, 5), QColor(30, 30, 30));
    view_->copy();
    EXPECT_EQ(QApplication::clipboard()->image().pixelColor(5, 5), QColor(Qt::white));
}

TEST_F(ChartViewTest, ChartsWithoutAnythingToDraw) {
    ozm::CChartInfo odd;
    odd.series.push_back(
        test::series("", {test::notANumber, test::infinite}, {1, 2}, ozm::ChartSeries::Style::Step));
    odd.series.push_back(test::series("torn", {1, 2, 3}, {1}));
    odd.series.push_back(test::series("", {}, {}, ozm::ChartSeries::Style::Histogram));
    ChartView view(odd);
    view.resize(300, 200);
    view.show();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Up, Qt::Key_Plus, Qt::Key_Escape})
        QTest::keyClick(&view.plot(), key);
    QTest::mouseMove(&view.plot(), view.plot().rect().center());
    view.grab();
    EXPECT_EQ(view.readout(), "");
}

class SettingsTest : public testing::Test {
protected:
    QLineEdit* field(const char* name) {
        for (QLineEdit* edit : dialog_.findChildren<QLineEdit*>())
            if (edit->accessibleName() == name) return edit;
        return nullptr;
    }
    void chooseRange(const char* low, const char* high) {
        for (QCheckBox* box : dialog_.findChildren<QCheckBox*>())
            if (box->accessibleName().contains("horizontal")) box->setChecked(false);
        field("The horizontal axis begins at")->setText(low);
        field("The horizontal axis ends at")->setText(high);
        dialog_.accept();
    }
    bool says(const QString& text) { return desktop::says(dialog_, text); }

    ozm::CChartInfo info_ = test::stepChart();
    ChartSettingsDialog dialog_{info_, {}, {0, 9}, {0, 1}, ChartSettingsDialog::Field::Title};
};

TEST_F(SettingsTest, AnInvalidRangeIsRefusedWithTheReason) {
    chooseRange("5", "2");
    EXPECT_TRUE(says("from 5 to 2"));
    for (const char* text : {"", "1,5", "nan", "1e300"}) {
        chooseRange("0", text);
        EXPECT_TRUE(says(QString("'%1' is not a number").arg(text))) << text;
    }
    EXPECT_NE(dialog_.result(), QDialog::Accepted);
    chooseRange("0.5", "12");
    EXPECT_EQ(dialog_.result(), QDialog::Accepted);
    EXPECT_EQ(dialog_.edits().x->high, 12.0);
}

TEST_F(SettingsTest, WhatWasNotTouchedIsNoChange) {
    dialog_.accept();
    EXPECT_FALSE(dialog_.edits().changesChart());
    field("Title of the vertical axis")->setText("S(t)");
    dialog_.accept();
    EXPECT_EQ(dialog_.edits().yTitle, "S(t)");
    EXPECT_FALSE(dialog_.edits().title.has_value());

    ChartEdits all{
        .title = "T", .xTitle = "", .yTitle = "S", .x = Extent{1.0 / 3, 2.0 / 3}, .y = Extent{0, 1e-9 / 7}};
    all.numbersAtRisk = false;
    ChartSettingsDialog again(info_, all, {0, 9}, {0, 1}, ChartSettingsDialog::Field::Title);
    again.accept();
    EXPECT_EQ(again.edits(), all) << "an OK alone is no edit";
}

} // namespace
} // namespace korvana::desktop
