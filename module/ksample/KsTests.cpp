#include "module/groups/GroupEstimates.h"
#include "module/ksample/GroupColumns.h"
#include "module/ksample/KsOutput.h"
#include "module/ksample/WeightedLogRank.h"
#include "module/resources/KSamples.h"
#include "module/resources/Resources.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <array>
#include <numeric>
#include <string>
#include <vector>

namespace ozm::survival {
namespace {

constexpr CellFormat general = CellFormat::general(8);
constexpr std::array testNames{StrKsLogRank, StrKsTaroneWare, StrKsPetoPeto};

std::string Noted(int id) {
    return std::string{Text(id)};
}

using Sums = std::array<WeightedLogRank, logRankWeights.size()>;

/// One row per test: the overall test and the tests for trend.
OutputResult WriteTests(const KsReportOf& of, const Sums& sums) {
    ResultTable table{Noted(StrKsLogRankTests)};
    table.AddNote(Noted(StrKsNoteHypergeometric));
    table.AddNote(Noted(StrKsNoteWeights));
    struct Columns {
        ResultTable::Numbers chiSquare;
        ResultTable::Numbers p;
    };
    const auto chiSquare =
        table.AddNumbers({"chiSquare", StrKsColChiSquare, 0, Noted(StrKsChiSquareInFull)}, general);
    const auto df = table.AddNumbers({"df", StrKsColDf}, CellFormat::integer());
    const auto p = table.AddNumbers({"p", StrKsColP}, CellFormat::probability());
    const std::array trends{
        Columns{table.AddNumbers({"trendByOrderChiSquare", StrKsColTrendOrder, StrKsColChiSquare,
                                  Noted(StrKsTrendOrderChiSquare)},
                                 general),
                table.AddNumbers({"trendByOrderP", StrKsColTrendOrder, StrKsColP, Noted(StrKsTrendOrderP)},
                                 CellFormat::probability())},
        Columns{table.AddNumbers({"trendByCodeChiSquare", StrKsColTrendCodes, StrKsColChiSquare,
                                  Noted(StrKsTrendCodesChiSquare)},
                                 general),
                table.AddNumbers({"trendByCodeP", StrKsColTrendCodes, StrKsColP, Noted(StrKsTrendCodesP)},
                                 CellFormat::probability())}};
    if (!table.AddRows(of.host, sums.size())) return OutputResult::Failed(StrKsNoMemory);
    std::vector<double> order(of.results.groups.size());
    std::iota(order.begin(), order.end(), 1.0);
    const std::vector<double> codes(of.groups.codes.begin(), of.groups.codes.end());
    bool allComputed = true;
    for (std::size_t row = 0; row < sums.size(); ++row) {
        table.NameRow(Noted(testNames[row]));
        const ChiSquareTest test = TestOfDifferences(sums[row]);
        table[chiSquare][row] = test.chiSquare;
        table[p][row] = test.p;
        table[df][row] = test.df;
        allComputed = allComputed && test.df > 0;
        const std::array<const std::vector<double>*, 2> scores{&order, &codes};
        for (std::size_t t = 0; t < trends.size(); ++t) {
            const ChiSquareTest trend = TestOfTrend(sums[row], *scores[t]);
            table[trends[t].chiSquare][row] = trend.chiSquare;
            table[trends[t].p][row] = trend.p;
        }
    }
    if (!allComputed) table.AddNote(Noted(StrKsNoteNotComparable));
    return table.Write(of.host);
}

/// One row per group: observed and expected failures of each test, the median with its limits.
OutputResult WriteExpected(const KsReportOf& of, const Sums& sums) {
    static constexpr std::array ids{
        std::array{"observed", "expected"},
        std::array{"observedTaroneWare", "expectedTaroneWare"},
        std::array{"observedPetoPeto", "expectedPetoPeto"},
    };
    const PooledSample sample = of.results.Sample();
    ResultTable table{Noted(StrKsExpected)};
    for (const int note : {StrKsNoteWeighted, StrKsNoteMedian})
        table.AddNote(Noted(note));
    GroupColumns groups(of, table, {"code", "label", StrKsColCode1, StrKsColGroup});
    const auto total = table.AddIntegers({"total", StrKsColTotal});
    std::vector<std::array<ResultTable::Numbers, 2>> columns;
    for (std::size_t t = 0; t < sums.size(); ++t) {
        const std::string name = Noted(testNames[t]);
        columns.push_back(
            {table.AddNumbers(
                 {ids[t][0], testNames[t], StrKsColObserved, Filled(StrKsObservedInFull, {name})}, general),
             table.AddNumbers(
                 {ids[t][1], testNames[t], StrKsColExpected, Filled(StrKsExpectedInFull, {name})}, general)});
    }
    const auto median = table.AddNumbers({"median", StrKsColMedian1, StrKsColTime2}, general);
    const auto lower = table.AddNumbers({"medianLower", StrKsColLower, StrKsColMedian1}, general);
    const auto upper = table.AddNumbers({"medianUpper", StrKsColUpper, StrKsColMedian1}, general);
    if (!table.AddRows(of.host, of.results.groups.size())) return OutputResult::Failed(StrKsNoMemory);
    const std::vector<GroupEstimate> estimates = EstimateGroups(sample);
    const double z = ConfidenceZ(0.95);
    for (std::size_t g = 0; g < of.results.groups.size(); ++g) {
        groups.Name(g, g);
        table[total][g] = of.results.groups[g].All();
        for (std::size_t t = 0; t < sums.size(); ++t) {
            table[columns[t][0]][g] = sums[t].observed[g];
            table[columns[t][1]][g] = sums[t].expected[g];
        }
        const MedianSurvival middle = MedianOf(estimates[g], z);
        table[median][g] = middle.median;
        table[lower][g] = middle.lower;
        table[upper][g] = middle.upper;
    }
    return table.Write(of.host);
}

} // namespace

OutputResult WriteLogRankTests(const KsReportOf& of) {
    const StatusLine line(of.host, StrKsComputing);
    Sums sums;
    for (std::size_t t = 0; t < sums.size(); ++t)
        sums[t] = ComputeWeightedLogRank(of.results.Sample(), logRankWeights[t]);
    if (const OutputResult written = WriteTests(of, sums); !written.made) return written;
    return WriteExpected(of, sums);
}

OutputResult WritePairTests(const KsReportOf& of) {
    const StatusLine line(of.host, StrKsComputing);
    const std::vector<PairTest> pairs = ComparePairs(of.results.Sample());
    ResultTable table{Noted(StrKsPairs)};
    GroupColumns first(of, table, {"code1", "label1", StrKsColGroup1, StrKsColCode1});
    GroupColumns second(of, table, {"code2", "label2", StrKsColGroup2, StrKsColCode1});
    const auto chiSquare =
        table.AddNumbers({"chiSquare", StrKsColChiSquare, 0, Noted(StrKsChiSquareInFull)}, general);
    const auto p = table.AddNumbers({"p", StrKsColP}, CellFormat::probability());
    const auto holm = table.AddNumbers({"pHolm", StrKsColHolm1, StrKsColHolm2, Noted(StrKsHolmInFull)},
                                       CellFormat::probability());
    if (!table.AddRows(of.host, pairs.size())) return OutputResult::Failed(StrKsNoMemory);
    long long comparisons = 0;
    for (std::size_t row = 0; row < pairs.size(); ++row) {
        if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
        first.Name(row, static_cast<std::size_t>(pairs[row].first));
        second.Name(row, static_cast<std::size_t>(pairs[row].second));
        table[chiSquare][row] = pairs[row].test.chiSquare;
        table[p][row] = pairs[row].test.p;
        table[holm][row] = pairs[row].adjusted;
        comparisons += pairs[row].test.df > 0 ? 1 : 0;
    }
    if (comparisons > 1) table.AddNote(Filled(StrKsNoteHolm, {FormatCount(comparisons)}));
    if (comparisons < static_cast<long long>(pairs.size())) table.AddNote(Noted(StrKsNoteNotComparable));
    return table.Write(of.host);
}

} // namespace ozm::survival
