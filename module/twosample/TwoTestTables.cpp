#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/resources/TwoSamples.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"
#include "module/twosample/RunTwoSamples.h"
#include "module/twosample/TestTexts.h"
#include "module/twosample/TwoOutput.h"

#include <array>
#include <string>
#include <utility>

namespace ozm::survival {
namespace {

constexpr CellFormat single = CellFormat::general(7); // as many digits as a single-precision number has
constexpr CellFormat whole = CellFormat::integer();

/// Intermediate values are kept in single precision.
double Stored(double value) {
    return static_cast<double>(static_cast<float>(value));
}

/// One row per observation: Gehan's counts and scores, or the scores alone.
OutputResult WriteScores(CAnalysisSupport& host, const PooledSample& sample, const TestResult& result) {
    ResultTable table(TitleOf(result.test) + std::string{Text(StrTwoScores)});
    table.AddNote(std::string{Text(StrTwoNoteStatus)});
    const auto time = table.AddNumbers({"time", StrTwoColTime1, StrTwoColTime2}, single);
    const auto status = table.AddNumbers({"status", StrTwoColStatus}, whole);
    const auto group = table.AddNumbers({"group", StrTwoColGroup}, whole);
    ResultTable::Numbers r1{};
    ResultTable::Numbers r2{};
    if (result.ByGehan()) {
        r1 = table.AddNumbers({"r1", StrTwoColR1}, whole);
        r2 = table.AddNumbers({"r2", StrTwoColR2}, whole);
    }
    const auto score = table.AddNumbers({"score", StrTwoColScore}, result.ByGehan() ? whole : single);
    if (!table.AddRows(host, sample.observations.size())) return OutputResult::Failed(StrTwoNoMemory);
    for (std::size_t i = 0; i < sample.observations.size(); ++i) {
        if (ResultTable::StopsAt(host, i)) return OutputResult::NotMade();
        table[time][i] = Stored(sample.observations[i].time);
        table[status][i] = sample.observations[i].status;
        table[group][i] = sample.observations[i].group;
        if (result.ByGehan()) {
            table[r1][i] = result.ranks.Span()[i].r1;
            table[r2][i] = result.ranks.Span()[i].r2;
        }
        table[score][i] = Stored(result.scores.Span()[i]);
    }
    return table.Write(host);
}

/// One row per distinct failure time, and a last one for the estimate after all of them; for the Cox-Mantel
/// test with group 2 at these times.
OutputResult WriteFailures(CAnalysisSupport& host, const TestResult& result) {
    const bool group2 = result.test == TwoTest::CoxMantel;
    ResultTable table(TitleOf(result.test) + std::string{Text(StrTwoFailures)});
    const auto time = table.AddNumbers({"time", StrTwoColTime1, StrTwoColTime2}, single);
    const auto atRisk = table.AddNumbers({"atRisk", StrTwoColAtRisk}, whole);
    const auto failures = table.AddNumbers({"failures", StrTwoColFailures}, whole);
    const auto hazard = table.AddNumbers({"hazard", StrTwoColHazard}, single);
    const auto survival = table.AddNumbers(
        {"survival", StrTwoColCumulative1, StrTwoColCumulative2, std::string{Text(StrTwoSurvivalInFull)}},
        single);
    ResultTable::Numbers atRisk2{};
    ResultTable::Numbers share2{};
    if (group2) {
        atRisk2 = table.AddNumbers({"atRiskGroup2", StrTwoColAtRisk2, StrTwoColAtRisk}, whole);
        share2 = table.AddNumbers({"shareGroup2", StrTwoColAtRisk2, StrTwoColShare}, single);
    }
    const auto times = result.failures.times;
    if (!table.AddRows(host, times.size() + 1)) return OutputResult::Failed(StrTwoNoMemory);
    for (std::size_t j = 0; j < times.size(); ++j) {
        if (ResultTable::StopsAt(host, j)) return OutputResult::NotMade();
        table[time][j] = Stored(times[j].time);
        table[atRisk][j] = times[j].atRisk;
        table[failures][j] = times[j].failures;
        table[hazard][j] = Stored(times[j].hazard);
        table[survival][j] = Stored(times[j].survival);
        if (!group2) continue;
        table[atRisk2][j] = result.group2.Span()[j].atRisk;
        table[share2][j] = Stored(result.group2.Span()[j].share);
    }
    table[survival][times.size()] = Stored(result.failures.survivalAfter);
    return table.Write(host);
}

OutputResult WriteStatistics(CAnalysisSupport& host, const PooledSample& sample, const TestResult& result) {
    ResultTable table(TitleOf(result.test) + std::string{Text(StrTwoStatistics)});
    table.RepeatsReport();
    for (std::string& note : NotesOf(result, sample))
        table.AddNote(std::move(note));
    const std::vector<Statistic> statistics = StatisticsOf(result);
    std::vector<ResultTable::Numbers> columns;
    for (const Statistic& s : statistics)
        columns.push_back(table.AddNumbers({s.id, s.heading1, s.heading2},
                                           s.heading1 == StrTwoColP ? CellFormat::probability() : single));
    if (!table.AddRows(host, 1)) return OutputResult::Failed(StrTwoNoMemory);
    for (std::size_t k = 0; k < statistics.size(); ++k)
        table[columns[k]][0] = statistics[k].value;
    return table.Write(host);
}

void WriteTestReport(CAnalysisSupport& host, const PooledSample& sample, const TestResult& result) {
    host.prttop();
    WriteLine(host, TitleOf(result.test));
    std::string line;
    for (const Statistic& s : StatisticsOf(result))
        line += (line.empty() ? "" : "   ") + s.InReport();
    if (!line.empty()) WriteLine(host, line);
    for (const std::string& note : NotesOf(result, sample))
        WriteLine(host, note);
    host.type();
}

OutputResult WriteIntermediate(CAnalysisSupport& host, const PooledSample& sample, const TestResult& result) {
    const bool byScores = result.test != TwoTest::CoxF && result.test != TwoTest::CoxMantel;
    return byScores ? WriteScores(host, sample, result) : WriteFailures(host, result);
}

} // namespace

OutputResult WriteTest(CAnalysisSupport& host, const PooledSample& sample, TwoTest test) {
    const StatusLine line(host, StrPrinting);
    TestResult result;
    if (const Status status = ComputeTest(host, sample, test, result); status != Status::Success)
        return {false, TwoMessage(status)};
    OutputResult outcome;
    if (result.Computed()) outcome = WriteIntermediate(host, sample, result);
    // Last, after the spreadsheet it is computed from, which may be long: readers look at the end.
    WriteTestReport(host, sample, result);
    if (result.Computed() && outcome.made) outcome = WriteStatistics(host, sample, result);
    return outcome;
}

OutputResult WriteTestSummary(CAnalysisSupport& host, const PooledSample& sample) {
    const StatusLine line(host, StrPrinting);
    ResultTable table{std::string{Text(StrTwoSummary)}};
    const std::array numbers{
        table.AddNumbers({"statistic", StrTwoColStatistic1, StrTwoColStatistic2}, single),
        table.AddNumbers({"df1", StrTwoColDf1}, whole),
        table.AddNumbers({"df2", StrTwoColDf2}, whole),
        table.AddNumbers({"p", StrTwoColP}, CellFormat::probability()),
        table.AddNumbers({"sum", StrTwoColScoreSum1, StrTwoColScoreSum2}, single),
        table.AddNumbers({"variance", StrTwoColVariance}, single),
    };
    const auto form = table.AddTexts({"varianceForm", StrTwoColVariance, StrTwoColForm});
    for (const int note : {StrTwoNoteSigns, StrTwoNoteSums, StrTwoNoteCoxFOrder, StrTwoNoteOneSided})
        table.AddNote(std::string{Text(note)});
    if (!table.AddRows(host, twoTests.size())) return OutputResult::Failed(StrTwoNoMemory);
    for (std::size_t row = 0; row < twoTests.size(); ++row) {
        TestResult result;
        if (const Status status = ComputeTest(host, sample, twoTests[row], result); status != Status::Success)
            return {false, TwoMessage(status)};
        SummaryRow cells = SummaryOf(result);
        std::size_t column = 0;
        for (const double cell :
             {cells.statistic, cells.df1, cells.df2, cells.p, cells.scoreSum, cells.variance})
            table[numbers[column++]][row] = cell;
        table[form][row] = std::move(cells.varianceForm);
        table.NameRow(TitleOf(result.test));
        if (!result.Computed())
            table.AddNote(TitleOf(result.test) + ":" + std::string{Text(StrTwoNotComputed)});
        if (result.test == TwoTest::PetoPeto && result.ByGehan())
            table.AddNote(std::string{Text(StrTwoNoteGehanInstead)});
    }
    return table.Write(host);
}

} // namespace ozm::survival
