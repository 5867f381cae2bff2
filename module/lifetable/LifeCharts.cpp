#include "module/lifetable/FitTexts.h"
#include "module/lifetable/FunctionTexts.h"
#include "module/lifetable/LifeOutput.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"

#include <cstddef>
#include <string>
#include <utility>

namespace ozm::survival {
namespace {

ChartSeries Series(std::string legend, int group, const LifeTable& table, const IntervalColumn& values,
                   std::size_t count) {
    ChartSeries series;
    series.legend = std::move(legend);
    series.group = group;
    series.x.assign(table.lower.begin(), table.lower.begin() + static_cast<std::ptrdiff_t>(count));
    series.y.assign(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(count));
    return series;
}

/// The series and notes of a chart of fitted functions.
class FunctionChart {
public:
    FunctionChart(const LifeReportOf& of, LifeFunction function, std::string title,
                  const std::string& observed)
        : of_(of), texts_(TextsOf(function)) {
        const LifeTable& table = of.results.table;
        chart_.title = std::move(title);
        chart_.xAxis.title = Text(StrLifeAxisStart);
        chart_.yAxis.title = Trimmed(texts_.axisTitle);
        ChartSeries series = Series(observed, 0, table, table.*texts_.observed, texts_.Values(table));
        series.role = ChartSeries::Role::Observed;
        series.marker = ChartSeries::Marker::Circle;
        if (function == LifeFunction::Survival) {
            series.atRisk.assign(table.entering.begin(), table.entering.begin() + table.rows);
            chart_.yAxis.min = 0.0;
            chart_.yAxis.max = 1.0;
        } else {
            chart_.notes.emplace_back(Text(StrLifeMidpointNote));
        }
        chart_.series.push_back(std::move(series));
    }

    void Add(Distribution family, std::size_t weighting, std::string legend) {
        const LifeTable& table = of_.results.table;
        const DistributionFit& fit = of_.results.fits.Of(family, weighting);
        ++group_;
        if (texts_.IsShown(fit, table)) {
            chart_.series.push_back(
                Series(std::move(legend), group_, table, fit.*texts_.fitted, texts_.Values(table)));
            return;
        }
        leftOut_ += (leftOut_.empty() ? "" : "; ") + FitName(family, weighting) + ": " +
                    WhyInadequate(of_.results.fits, family, weighting, table);
    }

    OutputResult Show() {
        if (chart_.series.size() == 1) return OutputResult::Failed(StrLifeNoFits);
        if (chart_.series.front().x.size() < 3) return OutputResult::Failed(StrLifeFewerThan3Values);
        if (!leftOut_.empty()) chart_.notes.push_back(Filled(StrLifeLeftOutNote, {leftOut_}));
        return ShowChart(of_.host, chart_);
    }

private:
    const LifeReportOf& of_;
    const FunctionTexts& texts_;
    CChartInfo chart_;
    std::string leftOut_;
    int group_ = 0;
};

} // namespace

OutputResult PlotFittedFunction(const LifeReportOf& of, LifeFunction function, Distribution family) {
    const StatusLine line(of.host, StrLifePreparing);
    const FunctionTexts& texts = TextsOf(function);
    FunctionChart chart(of, function,
                        Trimmed(texts.plotTitle) + " " + Trimmed(StrLifePlotModel) + " " +
                            DistributionName(family),
                        Trimmed(texts.legend));
    for (std::size_t w = 0; w < weightings; ++w)
        chart.Add(family, w, std::string{Text(StrLifeWeight1 + static_cast<int>(w))});
    return chart.Show();
}

OutputResult PlotAllModels(const LifeReportOf& of, std::size_t weighting) {
    const StatusLine line(of.host, StrLifePreparing);
    FunctionChart chart(of, LifeFunction::Survival,
                        Filled(StrLifeAllModels, {FormatCount(static_cast<long long>(weighting) + 1)}),
                        std::string{Text(StrLifeObserved)});
    for (const Distribution family : allDistributions)
        chart.Add(family, weighting, DistributionName(family));
    return chart.Show();
}

} // namespace ozm::survival
