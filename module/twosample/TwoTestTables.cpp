#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/resources/TwoSamples.h"
#include "module/survdata/NumberTable.h"
#include "module/survdata/ReportLines.h"
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

void AddObservationColumns(NumberTable& table) {
    table.AddColumn("time", StrTwoColTime1, StrTwoColTime2, single);
    table.AddColumn("status", StrTwoColStatus, 0, whole);
    table.AddColumn("group", StrTwoColGroup, 0, whole);
}

void FillObservation(NumberTable& table, std::size_t row, const PooledObservation& o) {
    table.Cell(row, 0) = Stored(o.time);
    table.Cell(row, 1) = o.status;
    table.Cell(row, 2) = o.group;
}

/// One row per observation: Gehan's counts and scores, or the scores alone.
int WriteScores(CAnalysisSupport& host, const PooledSample& sample, const TestResult& result) {
    NumberTable table(TitleOf(result.test) + std::string{Text(StrTwoScores)});
    table.AddNote(std::string{Text(StrTwoNoteStatus)});
    AddObservationColumns(table);
    std::size_t score = 3;
    if (result.ByGehan()) {
        table.AddColumn("r1", StrTwoColR1, 0, whole);
        table.AddColumn("r2", StrTwoColR2, 0, whole);
        score = 5;
    }
    table.AddColumn("score", StrTwoColScore, 0, result.ByGehan() ? whole : single);
    if (!table.AddRows(host, sample.observations.size())) return StrTwoNoMemory;
    for (std::size_t i = 0; i < sample.observations.size(); ++i) {
        FillObservation(table, i, sample.observations[i]);
        if (result.ByGehan()) {
            table.Cell(i, 3) = result.ranks.Span()[i].r1;
            table.Cell(i, 4) = result.ranks.Span()[i].r2;
        }
        table.Cell(i, score) = Stored(result.scores.Span()[i]);
    }
    return table.Write(host);
}

/// One row per distinct failure time, and a last one for the estimate after all of them; for the Cox-Mantel
/// test with group 2 at these times.
int WriteFailures(CAnalysisSupport& host, const TestResult& result) {
    const bool group2 = result.test == TwoTest::CoxMantel;
    NumberTable table(TitleOf(result.test) + std::string{Text(StrTwoFailures)});
    table.AddColumn("time", StrTwoColTime1, StrTwoColTime2, single);
    table.AddColumn("atRisk", StrTwoColAtRisk, 0, whole);
    table.AddColumn("failures", StrTwoColFailures, 0, whole);
    table.AddColumn("hazard", StrTwoColHazard, 0, single);
    table.AddColumn("survival", StrTwoColCumulative1, StrTwoColCumulative2, single);
    if (group2) {
        table.AddColumn("atRiskGroup2", StrTwoColAtRisk2, StrTwoColAtRisk, whole);
        table.AddColumn("shareGroup2", StrTwoColAtRisk2, StrTwoColShare, single);
    }
    const auto times = result.failures.times;
    if (!table.AddRows(host, times.size() + 1)) return StrTwoNoMemory;
    for (std::size_t j = 0; j < times.size(); ++j) {
        table.Cell(j, 0) = Stored(times[j].time);
        table.Cell(j, 1) = times[j].atRisk;
        table.Cell(j, 2) = times[j].failures;
        table.Cell(j, 3) = Stored(times[j].hazard);
        table.Cell(j, 4) = Stored(times[j].survival);
        if (!group2) continue;
        table.Cell(j, 5) = result.group2.Span()[j].atRisk;
        table.Cell(j, 6) = Stored(result.group2.Span()[j].share);
    }
    table.Cell(times.size(), 4) = Stored(result.failures.survivalAfter);
    return table.Write(host);
}

int WriteStatistics(CAnalysisSupport& host, const PooledSample& sample, const TestResult& result) {
    const std::vector<Statistic> statistics = StatisticsOf(result);
    NumberTable table(TitleOf(result.test) + std::string{Text(StrTwoStatistics)});
    table.RepeatsReport();
    for (std::string& note : NotesOf(result, sample.counts))
        table.AddNote(std::move(note));
    for (const Statistic& s : statistics)
        table.AddColumn(s.id, s.heading1, s.heading2,
                        s.heading1 == StrTwoColP ? CellFormat::probability() : single);
    if (!table.AddRows(host, 1)) return StrTwoNoMemory;
    for (std::size_t k = 0; k < statistics.size(); ++k)
        table.Cell(0, k) = statistics[k].value;
    return table.Write(host);
}

void WriteTestReport(CAnalysisSupport& host, const PooledSample& sample, const TestResult& result) {
    host.prttop();
    WriteLine(host, TitleOf(result.test));
    std::string line;
    for (const Statistic& s : StatisticsOf(result))
        line += (line.empty() ? "" : "   ") + s.InReport();
    if (!line.empty()) WriteLine(host, line);
    for (const std::string& note : NotesOf(result, sample.counts))
        WriteLine(host, note);
    host.type();
}

int WriteIntermediate(CAnalysisSupport& host, const PooledSample& sample, const TestResult& result) {
    const bool byScores = result.test != TwoTest::CoxF && result.test != TwoTest::CoxMantel;
    return byScores ? WriteScores(host, sample, result) : WriteFailures(host, result);
}

int WriteSummaryTable(CAnalysisSupport& host, const PooledSample& sample) {
    NumberTable table{std::string{Text(StrTwoSummary)}};
    table.AddColumn("statistic", StrTwoColStatistic1, StrTwoColStatistic2, single);
    table.AddColumn("df1", StrTwoColDf1, 0, whole);
    table.AddColumn("df2", StrTwoColDf2, 0, whole);
    table.AddColumn("p", StrTwoColP, 0, CellFormat::probability());
    table.AddColumn("sum", StrTwoColScoreSum1, StrTwoColScoreSum2, single);
    table.AddColumn("variance", StrTwoColVariance, 0, single);
    for (const int note : {StrTwoNoteSigns, StrTwoNoteSums, StrTwoNoteCoxFOrder, StrTwoNoteOneSided})
        table.AddNote(std::string{Text(note)});
    if (!table.AddRows(host, twoTests.size())) return StrTwoNoMemory;

    std::array<std::string, twoTests.size()> varianceForms;
    for (std::size_t row = 0; row < twoTests.size(); ++row) {
        TestResult result;
        if (const Status status = ComputeTest(host, sample, twoTests[row], result); status != Status::Success)
            return TwoMessage(status);
        SummaryRow cells = SummaryOf(result);
        std::size_t column = 0;
        for (const double cell :
             {cells.statistic, cells.df1, cells.df2, cells.p, cells.scoreSum, cells.variance})
            table.Cell(row, column++) = cell;
        varianceForms[row] = std::move(cells.varianceForm);
        table.NameRow(TitleOf(result.test));
        if (!result.Computed())
            table.AddNote(TitleOf(result.test) + ":" + std::string{Text(StrTwoNotComputed)});
        if (result.test == TwoTest::PetoPeto && result.ByGehan())
            table.AddNote(std::string{Text(StrTwoNoteGehanInstead)});
    }
    table.AddTexts("varianceForm", StrTwoColVariance, StrTwoColForm, varianceForms);
    return table.Write(host);
}

} // namespace

int WriteTest(CAnalysisSupport& host, const PooledSample& sample, TwoTest test) {
    host.d_stat(Text(StrPrinting));
    TestResult result;
    int message = TwoMessage(ComputeTest(host, sample, test, result));
    if (message == 0) {
        if (result.Computed()) message = WriteIntermediate(host, sample, result);
        // After what it rests on, which may be long: a reader's eye is at the end.
        WriteTestReport(host, sample, result);
        if (result.Computed() && message == 0) message = WriteStatistics(host, sample, result);
    }
    host.d_stat({});
    return message;
}

int WriteTestSummary(CAnalysisSupport& host, const PooledSample& sample) {
    host.d_stat(Text(StrPrinting));
    const int message = WriteSummaryTable(host, sample);
    host.d_stat({});
    return message;
}

} // namespace ozm::survival
