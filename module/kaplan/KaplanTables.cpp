#include "module/kaplan/KaplanTables.h"

#include "module/kaplan/ConfidenceLimits.h"
#include "module/kaplan/KaplanOutput.h"
#include "module/kaplan/RunProductLimit.h"
#include "module/resources/Kaplan.h"
#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace ozm::survival {
namespace {

std::string CasesLine(int cases) {
    // "Cases       to     ": the blanks are where the numbers go.
    const std::string_view text = Text(StrKmCases);
    const auto firstBlank = text.find(' ');
    const auto to = text.find_first_not_of(' ', firstBlank);
    const auto afterTo = text.find(' ', to);
    return std::string{text.substr(0, firstBlank)} + " 1 " + std::string{text.substr(to, afterTo - to)} +
           " " + FormatCount(cases);
}

/// The counts that the report's summary has as lines, as cells.
OutputResult WriteCounts(CAnalysisSupport& host, const KaplanResults& results) {
    ResultTable table{std::string{Text(StrKmResultsTitle)}};
    table.RepeatsReport();
    const auto number = table.AddIntegers({"number", StrKmColCount});
    for (const int id : {StrKmValid, StrKmUncensored, StrKmCensored})
        table.NameRow(std::string{Text(id)});
    if (!table.AddRows(host, 3)) return OutputResult::Failed(StrKaplanNoMemory);
    std::ranges::copy(std::array{results.Valid(), results.uncensored, results.censored},
                      table[number].begin());
    return table.Write(host);
}

OutputResult WriteTable(CAnalysisSupport& host, KaplanResults& results) {
    if (const Status status = MakeTieOrderExact(host, results); status != Status::Success)
        return {false, KaplanMessage(status)};
    static constexpr std::array<std::string_view, 2> marks{"", "+"};
    ResultTable table{std::string{Text(StrKmTableTitle)}};
    table.AddNote(std::string{Text(StrKmCensoredNote)});
    table.AddNote(CasesLine(host.ss_nb()));
    const auto time = table.AddNumbers({"time", StrKmColTime}, CellFormat::general(8));
    const auto mark = table.AddMarks({"censored", StrKmColMark}, marks);
    const auto survival = table.AddNumbers(
        {"survival", StrKmColCumulative1, StrKmColCumulative2, std::string{Text(StrKmSurvivalInFull)}},
        CellFormat::fixed(6));
    const auto error =
        table.AddNumbers({"standardError", StrKmColError1, StrKmColError2}, CellFormat::fixed(6));
    const auto caseNumber = table.AddIntegers({"caseNumber", StrKmColCase1, StrKmColNumber});
    std::optional<ResultTable::Texts> caseName;
    if (!host.CaseName(results.UncensoredCases().front()).empty())
        caseName = table.AddTexts({"caseName", StrKmColCase1, StrKmColName});
    const auto rows = static_cast<std::size_t>(results.Valid());
    if (!table.AddRows(host, rows)) return OutputResult::Failed(StrKaplanNoMemory);

    std::size_t i = 0;
    const bool filled = ForEachObservation(results, rows, [&](const KaplanRow& row) {
        if (ResultTable::StopsAt(host, i)) return false;
        table[time][i] = row.time;
        table[mark][i] = row.censored ? 1 : 0;
        if (!row.censored) {
            table[survival][i] = row.survival;
            table[error][i] = row.standardError;
        }
        table[caseNumber][i] = row.caseNumber;
        if (caseName) table[*caseName][i] = host.CaseName(row.caseNumber);
        ++i;
        return true;
    });
    return filled ? table.Write(host) : OutputResult::NotMade();
}

} // namespace

OutputResult WriteKaplanTables(CAnalysisSupport& host, KaplanResults& results) {
    if (const OutputResult counts = WriteCounts(host, results); !counts.made) return counts;
    return WriteTable(host, results);
}

OutputResult WritePercentiles(CAnalysisSupport& host, const KaplanResults& results, double level) {
    const StatusLine line(host, StrPrinting);
    const PercentileLimits limits = ComputePercentileLimits(results.UncensoredTimes(), results.Survival(),
                                                            results.StandardError(), ConfidenceZ(level));
    ResultTable table{Trimmed(StrKmPercentiles1) + " " + std::string{Text(StrKmPercentiles2)}};
    for (const int id : {StrKmLowerQuartile, StrKmMedian, StrKmUpperQuartile})
        table.NameRow(std::string{Text(id)});
    const auto time =
        table.AddNumbers({"time", StrKmColSurvival, StrKmColSurvivalTime}, CellFormat::general(8));
    const auto lower = table.AddNumbers({"lowerLimit", StrKmColPercentile}, CellFormat::general(8));
    const auto upper = table.AddNumbers({"upperLimit", StrKmColPercentile}, CellFormat::general(8));
    if (!table.AddRows(host, Percentiles::targets.size())) return OutputResult::Failed(StrKaplanNoMemory);
    const auto fill = [&table](ResultTable::Numbers column, const Percentiles& percentiles) {
        for (std::size_t i = 0; i < percentiles.times.size(); ++i)
            if (percentiles.located[i]) table[column][i] = percentiles.times[i];
    };
    fill(time, results.percentiles);
    fill(lower, limits.lower);
    fill(upper, limits.upper);
    return table.Write(host);
}

void NameLimitColumns(CAnalysisSupport& host, double level) {
    const std::string percent = LevelInPercent(level);
    host.RenameColumn(1, percent + std::string{Text(StrKmLevelLower)}, {});
    host.RenameColumn(2, percent + std::string{Text(StrKmLevelUpper)}, {});
}

} // namespace ozm::survival
