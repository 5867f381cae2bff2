#include "module/resources/Resources.h"
#include "module/resources/Groups.h"
#include "module/resources/Shared.h"
#include "module/resources/TwoSamples.h"
#include "module/survdata/NumberTable.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/StatusMessages.h"
#include "module/twosample/GroupLifeTables.h"
#include "module/twosample/TwoOutput.h"

#include <string>
#include <utility>

namespace ozm::survival {
namespace {

constexpr std::size_t groups = 2;

/// Computes the tables of both groups; answers the string number of a message, 0 when all went well.
int Compute(CAnalysisSupport& host, const PooledSample& sample, int statusText, GroupLifeTables& result) {
    host.d_stat(Text(statusText));
    static constexpr StatusMessage messages[] = {{Status::TooFewValid, StrLtFewerThan3Cases},
                                                 {Status::NoWidth, StrLtNoWidth}};
    return MessageOf(ComputeGroupLifeTables(sample, result), messages);
}

std::string GroupCode(CAnalysisSupport& host, const SharedSettings& shared, std::size_t group) {
    return CodeWithLabel(host, shared.First(ListGrouping), shared.groupCodes[group]);
}

/// "Group  1 (treatment = placebo)": the code, and in the data's own words what it stands for.
std::string Legend(CAnalysisSupport& host, const SharedSettings& shared, std::size_t group) {
    const double code = shared.groupCodes[group];
    return std::string{Text(StrLtLegendGroup)} + FormatNumber(code) + " (" +
           MeaningOfCode(host, shared.First(ListGrouping), code) + ")";
}

/// "Group 1: Code         Group 2: Code      " with the codes where the blanks are.
std::string CodesLine(CAnalysisSupport& host, const SharedSettings& shared) {
    const std::string line = Trimmed(StrTwoLifeTableCodes);
    const std::string_view code = "Code";
    const std::size_t first = line.find(code) + code.size();
    const std::size_t second = line.find_first_not_of(' ', first);
    return line.substr(0, first) + " " + GroupCode(host, shared, 0) + "    " + line.substr(second) + " " +
           GroupCode(host, shared, 1);
}

struct Measure {
    const char* id;
    int heading;
    CellFormat format;
    double factor;
    IntervalColumn LifeTable::*column;
};

constexpr Measure measures[] = {
    {"entering", StrLtEntering, CellFormat::integer(), 1.0, &LifeTable::entering},
    {"censored", StrLtCensored, CellFormat::integer(), 1.0, &LifeTable::withdrawn},
    {"dying", StrLtDying, CellFormat::integer(), 1.0, &LifeTable::dying},
    {"percentSurviving", StrLtSurviving, CellFormat::fixed(4), 100.0, &LifeTable::proportionSurviving},
    {"cumulativePercentSurviving", StrLtCumulative, CellFormat::fixed(4), 100.0,
     &LifeTable::cumulativeSurviving},
};

int WriteTable(CAnalysisSupport& host, const SharedSettings& shared, const GroupLifeTables& result) {
    NumberTable sheet{std::string{Text(StrTwoLifeTable)}};
    sheet.AddNote(CodesLine(host, shared));
    sheet.AddNote(std::string{Text(StrLtNoteCorrected)});
    for (std::size_t g = 0; g < groups; ++g)
        if (result.tables[g].rows == 0)
            sheet.AddNote(std::string{Text(g == 0 ? StrTwoGroup1 : StrTwoGroup2)} +
                          std::string{Text(StrLtFewerThan3Cases)});
    sheet.AddColumn("lowerLimit", StrLtLower1, StrLtLower2, CellFormat::general(7));
    for (const Measure& measure : measures)
        for (const auto& [suffix, group] :
             {std::pair{"Group1", StrTwoGroup1}, std::pair{"Group2", StrTwoGroup2}})
            sheet.AddColumn(std::string{measure.id} + suffix, group, measure.heading, measure.format);
    if (!sheet.AddRows(host, static_cast<std::size_t>(result.Rows()))) return StrTwoNoMemory;
    for (std::size_t g = 0; g < groups; ++g) {
        const LifeTable& table = result.tables[g];
        for (std::size_t row = 0; row < static_cast<std::size_t>(table.rows); ++row) {
            sheet.Cell(row, 0) = table.lower[row];
            std::size_t column = 1 + g;
            for (const Measure& measure : measures) {
                sheet.Cell(row, column) = measure.factor * (table.*measure.column)[row];
                column += groups;
            }
        }
    }
    return sheet.Write(host);
}

ChartSeries Series(std::string legend, std::size_t group, const LifeTable& table, SurvivalPlot plot) {
    ChartSeries series;
    series.legend = std::move(legend);
    series.group = static_cast<int>(group);
    series.marker = group == 0 ? ChartSeries::Marker::Circle : ChartSeries::Marker::Square;
    const bool cumulative = plot == SurvivalPlot::Cumulative;
    const IntervalColumn& column = cumulative ? table.cumulativeSurviving : table.proportionSurviving;
    for (std::size_t row = 0; row < static_cast<std::size_t>(table.rows); ++row) {
        // Where nobody enters an interval there is no proportion that survives it.
        if (!cumulative && table.entering[row] == 0.0) continue;
        series.x.push_back(table.lower[row]);
        series.y.push_back(column[row]);
    }
    return series;
}

/// When the observations of a group leave: for the numbers at risk below the curve.
void AddLeaving(ChartSeries& series, const PooledSample& sample) {
    for (const PooledObservation& o : sample.observations)
        if (o.group == series.group + 1) series.leaving.push_back(o.time);
}

} // namespace

int WriteGroupLifeTables(CAnalysisSupport& host, const SharedSettings& shared, const PooledSample& sample) {
    GroupLifeTables result;
    int message = Compute(host, sample, StrComputingSurvival, result);
    if (message == 0) message = WriteTable(host, shared, result);
    host.d_stat({});
    return message;
}

int PlotGroupSurvival(CAnalysisSupport& host, const SharedSettings& shared, const PooledSample& sample,
                      SurvivalPlot plot) {
    const bool cumulative = plot == SurvivalPlot::Cumulative;
    GroupLifeTables result;
    int message = Compute(host, sample, cumulative ? StrComputingCumulative : StrComputingSurvival, result);
    if (message == 0) {
        CChartInfo chart;
        chart.kind = CChartInfo::Kind::Line;
        chart.xAxis.title = Text(StrLtAxisStart);
        chart.yAxis.title = Text(cumulative ? StrLtAxisCumulative : StrLtAxisSurviving);
        chart.yAxis.min = 0.0;
        chart.yAxis.max = 1.0;
        chart.title = std::string{Text(StrLtSurvivorship)} + ": " + chart.yAxis.title;
        for (std::size_t g = 0; g < groups; ++g) {
            if (result.tables[g].rows == 0) continue;
            chart.series.push_back(Series(Legend(host, shared, g), g, result.tables[g], plot));
            if (cumulative) AddLeaving(chart.series.back(), sample);
        }
        message = host.NewGeneralMultipleChartLongEx(chart) == 0 ? 0 : StrGraphicsError;
        host.c_gr0(chart);
    }
    host.d_stat({});
    return message;
}

std::string GroupLifeTablesReason(CAnalysisSupport& host, const SharedSettings& shared,
                                  const PooledSample& sample, int message) {
    if (message == StrLtFewerThan3Cases)
        return "\n" + Filled(StrLtCasesOfGroups, {FormatCount(sample.counts.N1()), GroupCode(host, shared, 0),
                                                  FormatCount(sample.counts.N2()), GroupCode(host, shared, 1),
                                                  QuotedName(host, shared.First(ListGrouping))});
    if (message == StrLtNoWidth)
        return "\n" + Filled(StrLtLargestTime, {FormatNumber(sample.observations.back().time),
                                                QuotedNames(host, shared.Times(), " and ")});
    return {};
}

} // namespace ozm::survival
