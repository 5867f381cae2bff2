#include "module/ksample/GroupColumns.h"
#include "module/ksample/KsOutput.h"
#include "module/resources/KSamples.h"
#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace ozm::survival {
namespace {

constexpr CellFormat whole = CellFormat::integer();
constexpr GroupColumnNames groupOfRow{"group", "groupLabel", StrKsColGroup, 0};
constexpr GroupColumnNames codeOfRow{"code", "label", StrKsColCode1, StrKsColGroup};
constexpr double none = std::numeric_limits<double>::quiet_NaN();

/// What the test found, with all its probabilities.
OutputResult WriteTestTable(const KsReportOf& of) {
    const KSampleStatistic& test = of.results.test;
    ResultTable table{std::string{Text(StrKsTest)}};
    table.AddNote(std::string{Text(StrKsNoteFloors)});
    const auto statistic =
        table.AddNumbers({"statistic", StrKsColStatistic1, StrKsColStatistic2}, CellFormat::general(7));
    const auto df = table.AddNumbers({"df", StrKsColDf}, whole);
    const auto p = table.AddNumbers({"p", StrKsColP}, CellFormat::probability());
    const auto oneTailed =
        table.AddNumbers({"pOneTailed", StrKsColOneTailed1, StrKsColP}, CellFormat::probability());
    const auto exact =
        table.AddNumbers({"pExact", StrKsColExact1, StrKsColExact2, std::string{Text(StrKsExactInFull)}},
                         CellFormat::probability());
    const auto deviation = table.AddNumbers(
        {"standardDeviation", StrKsColDeviationOfSum1, StrKsColDeviationOfSum2}, CellFormat::general(7));
    if (!table.AddRows(of.host, 1)) return OutputResult::Failed(StrKsNoMemory);
    table[statistic][0] = test.statistic;
    table[p][0] = test.Printed();
    table[exact][0] = test.exactProbability;
    if (test.TwoGroups()) {
        table[oneTailed][0] = test.oneTailed;
        table[deviation][0] = test.standardDeviation;
        table.AddNote(std::string{Text(StrKsNoteTwoTailed)});
    } else {
        table[df][0] = test.df;
    }
    return table.Write(of.host);
}

OutputResult WriteSummaryStatistics(const KsReportOf& of) {
    ResultTable table{std::string{Text(StrKsSummaryStatistics)}};
    table.AddNote(std::string{Text(StrKsNoteScores)});
    GroupColumns groups(of, table, codeOfRow);
    const auto sum = table.AddNumbers({"sumOfScores", StrKsColSum1, StrKsColSum2}, CellFormat::general(10));
    const auto uncensored = table.AddIntegers({"uncensored", StrKsColUncensored});
    const auto percentUncensored = table.AddNumbers(
        {"percentUncensored", StrKsColPercent, StrKsColPercentUncensored2}, CellFormat::fixed(4));
    const auto censored = table.AddIntegers({"censored", StrKsColCensored});
    const auto percentCensored = table.AddNumbers(
        {"percentCensored", StrKsColPercent, StrKsColPercentCensored2}, CellFormat::fixed(4));
    const auto total = table.AddIntegers({"total", StrKsColTotal});
    if (!table.AddRows(of.host, of.results.groups.size())) return OutputResult::Failed(StrKsNoMemory);
    for (std::size_t g = 0; g < of.results.groups.size(); ++g) {
        const GroupCount& group = of.results.groups[g];
        groups.Name(g, g);
        table[sum][g] = of.results.sums[g];
        table[uncensored][g] = group.uncensored;
        table[percentUncensored][g] = 100.0 * group.uncensored / group.All();
        table[censored][g] = group.censored;
        table[percentCensored][g] = 100.0 * group.censored / group.All();
        table[total][g] = group.All();
    }
    return table.Write(of.host);
}

/// Median, mean and standard deviation of times, which are ascending.
struct Moments {
    double median = none;
    double mean = none;
    double deviation = none;

    explicit Moments(const std::vector<double>& times) {
        const std::size_t n = times.size();
        if (n == 0) return;
        median = n % 2 == 1 ? times[n / 2] : times[n / 2 - 1] + (times[n / 2] - times[n / 2 - 1]) / 2.0;
        const auto count = static_cast<double>(n);
        double sum = 0.0;
        for (const double time : times)
            sum += time;
        mean = sum / count;
        if (n < 2) return;
        double squares = 0.0;
        for (const double time : times)
            squares += (time - mean) * (time - mean);
        deviation = std::sqrt(squares / (count - 1.0));
    }
};

/// "Survival times by arm (3 groups)", and how the rows are to be read.
void AddScoreNotes(const KsReportOf& of, ResultTable& table) {
    const SharedSettings& shared = of.groups.shared;
    table.AddNote(std::string{Text(StrKsScoresVariables)} + std::string{Text(StrKsScoresBy)} +
                  VariableName(of.host, shared.First(ListGrouping)) + " (" +
                  FormatCount(static_cast<long long>(of.results.groups.size())) +
                  std::string{Text(StrKsScoresGroups)});
    std::string censoring{Text(StrKsScoresCensoring)};
    const std::size_t blanks = censoring.find(':') + 1;
    censoring.replace(blanks, censoring.find('(') - blanks,
                      " " + VariableName(of.host, shared.First(ListCensoring)) + "  ");
    table.AddNote(std::move(censoring));
    table.AddNote(KsTestLine(of.results.test, StrKsTestTwoShort, StrKsTestMoreShort));
}

} // namespace

OutputResult WriteKsSummary(const KsReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    WriteKsHeader(of);
    if (const OutputResult written = WriteSummaryStatistics(of); !written.made) return written;
    return WriteTestTable(of);
}

OutputResult WriteKsScores(const KsReportOf& of) {
    static constexpr std::array<std::string_view, 2> marks{"", "+"};
    const StatusLine line(of.host, StrKsComputing);
    ResultTable table{std::string{Text(StrKsScores)}};
    AddScoreNotes(of, table);
    GroupColumns groups(of, table, groupOfRow);
    const auto score = table.AddNumbers({"score", StrKsColScore}, whole);
    const auto time = table.AddNumbers({"time", StrKsColTime1, StrKsColTime2}, CellFormat::general(8));
    const auto mark = table.AddMarks({"censored", StrKsColMark}, marks);
    const PooledSample sample = of.results.Sample();
    if (!table.AddRows(of.host, sample.observations.size())) return OutputResult::Failed(StrKsNoMemory);
    for (std::size_t i = 0; i < sample.observations.size(); ++i) {
        if (ResultTable::StopsAt(of.host, i)) return OutputResult::NotMade();
        const PooledObservation& o = sample.observations[i];
        groups.Name(i, static_cast<std::size_t>(o.group) - 1);
        table[score][i] = of.results.scores[i];
        table[time][i] = o.time;
        table[mark][i] = o.Failed() ? 0 : 1;
    }
    return table.Write(of.host);
}

OutputResult WriteKsDescriptive(const KsReportOf& of) {
    const StatusLine line(of.host, StrKsComputing);
    const std::size_t k = of.results.groups.size();
    const PooledSample sample = of.results.Sample();
    std::vector<std::vector<double>> times(k + 1); // of the groups, and of all
    for (const PooledObservation& o : sample.observations) {
        times[static_cast<std::size_t>(o.group) - 1].push_back(o.time);
        times[k].push_back(o.time);
    }
    ResultTable table{std::string{Text(StrKsDescriptive)}};
    const auto median = table.AddNumbers({"median", StrKsColMedian}, CellFormat::general(8));
    const auto mean = table.AddNumbers({"mean", StrKsColMean}, CellFormat::general(8));
    const auto deviation = table.AddNumbers({"standardDeviation", StrKsColDeviation}, CellFormat::general(8));
    const auto uncensored = table.AddIntegers({"uncensored", StrKsColUncensored2});
    const auto censored = table.AddIntegers({"censored", StrKsColCensored});
    const auto total = table.AddIntegers({"total", StrKsColTotal});
    if (!table.AddRows(of.host, k + 1)) return OutputResult::Failed(StrKsNoMemory);
    for (std::size_t row = 0; row <= k; ++row) {
        const GroupCount count = row < k ? of.results.groups[row] : sample.Total();
        const Moments moments(times[row]);
        table.NameRow(row < k ? of.groups.Code(of.host, row) : std::string{Text(StrKsTotalRow)});
        table[median][row] = moments.median;
        table[mean][row] = moments.mean;
        table[deviation][row] = moments.deviation;
        table[uncensored][row] = count.uncensored;
        table[censored][row] = count.censored;
        table[total][row] = count.All();
    }
    return table.Write(of.host);
}

} // namespace ozm::survival
