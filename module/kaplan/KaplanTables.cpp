#include "module/kaplan/KaplanTables.h"

#include "module/resources/Kaplan.h"
#include "module/resources/Shared.h"
#include "module/kaplan/ConfidenceLimits.h"
#include "module/kaplan/KaplanOutput.h"
#include "module/kaplan/RunProductLimit.h"
#include "module/resources/Resources.h"
#include "module/survdata/HostArray.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/NumberTable.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/StopTest.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {
namespace {

constexpr double empty = std::numeric_limits<double>::quiet_NaN();

std::string CasesLine(int cases) {
    // "Cases       to     ": the blanks are where the numbers go.
    const std::string_view text = Text(StrKmCases);
    const auto firstBlank = text.find(' ');
    const auto to = text.find_first_not_of(' ', firstBlank);
    const auto afterTo = text.find(' ', to);
    return std::string{text.substr(0, firstBlank)} + " 1 " + std::string{text.substr(to, afterTo - to)} +
           " " + FormatCount(cases);
}

/// The counts stand in the report's summary as lines; here as cells.
short WriteCounts(CAnalysisSupport& host, const KaplanResults& results) {
    const std::array<std::int32_t, 3> counts{results.Valid(), results.uncensored, results.censored};
    SheetSpec sheet;
    sheet.title = Text(StrKmResultsTitle);
    sheet.repeatsReport = true;
    for (const int id : {StrKmValid, StrKmUncensored, StrKmCensored})
        sheet.rowHeadings.emplace_back(Text(id));
    sheet.columns.push_back(HeadedColumn("number", StrKmColCount, 0, CellFormat::integer()));
    sheet.columns.back().cells = std::span<const std::int32_t>{counts};
    return host.looka4(sheet);
}

/// The columns of the product-limit table before the host copies them.
struct TableColumns {
    HostArray<double> time;
    HostArray<double> survival;
    HostArray<double> standardError;
    HostArray<std::int32_t> caseNumber;
    HostArray<std::uint8_t> mark;
    std::vector<std::string> caseName; ///< empty when the data name no cases

    bool Allocate(CAnalysisSupport& host, std::size_t rows) {
        return time.Allocate(host, rows) && survival.Allocate(host, rows) &&
               standardError.Allocate(host, rows) && caseNumber.Allocate(host, rows) &&
               mark.Allocate(host, rows);
    }
};

/// False when the user stopped it.
bool FillColumns(CAnalysisSupport& host, const KaplanResults& results, TableColumns& columns) {
    constexpr std::size_t rowsPerPoll = std::size_t{1} << 14;
    const auto rows = static_cast<std::size_t>(results.Valid());
    const bool named = !host.CaseName(results.UncensoredCases().front()).empty();
    if (named) columns.caseName.reserve(rows);
    std::size_t i = 0;
    bool stopped = false;
    ForEachObservation(results, rows, [&](const KaplanRow& row) {
        if (i % rowsPerPoll == 0 && StopRequested(host)) stopped = true;
        columns.time.Span()[i] = row.time;
        columns.mark.Span()[i] = row.censored ? 1 : 0;
        columns.survival.Span()[i] = row.censored ? empty : row.survival;
        columns.standardError.Span()[i] = row.censored ? empty : row.standardError;
        columns.caseNumber.Span()[i] = row.caseNumber;
        if (named) columns.caseName.push_back(host.CaseName(row.caseNumber));
        ++i;
    });
    return !stopped;
}

int WriteTable(CAnalysisSupport& host, KaplanResults& results) {
    if (const Status status = MakeTieOrderExact(host, results); status != Status::Success)
        return KaplanMessage(status);
    const auto rows = static_cast<std::size_t>(results.Valid());
    TableColumns columns;
    if (!columns.Allocate(host, rows)) return StrKaplanNoMemory;
    if (!FillColumns(host, results, columns)) return 0;

    static constexpr std::array<std::string_view, 2> marks{"", "+"};
    SheetSpec sheet;
    sheet.title = Text(StrKmTableTitle);
    sheet.notes = {std::string{Text(StrKmCensoredNote)}, CasesLine(host.ss_nb())};
    auto& list = sheet.columns;
    list.push_back(HeadedColumn("time", StrKmColTime, 0, CellFormat::general(8)));
    list.back().cells = std::span<const double>{columns.time.Span()};
    list.push_back(HeadedColumn("censored", StrKmColMark, 0, CellFormat::general()));
    list.back().cells = DictionaryCells{columns.mark.Span(), marks};
    list.push_back(HeadedColumn("survival", StrKmColCumulative1, StrKmColCumulative2, CellFormat::fixed(6)));
    list.back().cells = std::span<const double>{columns.survival.Span()};
    list.push_back(HeadedColumn("standardError", StrKmColError1, StrKmColError2, CellFormat::fixed(6)));
    list.back().cells = std::span<const double>{columns.standardError.Span()};
    list.push_back(HeadedColumn("caseNumber", StrKmColCase1, StrKmColNumber, CellFormat::integer()));
    list.back().cells = std::span<const std::int32_t>{columns.caseNumber.Span()};
    if (!columns.caseName.empty()) {
        list.push_back(HeadedColumn("caseName", StrKmColCase1, StrKmColName, CellFormat::general()));
        list.back().cells = std::span<const std::string>{columns.caseName};
    }
    return host.looka4(sheet) == 0 ? 0 : StrSpreadsheetFailed;
}

std::array<double, 3> Located(const Percentiles& percentiles) {
    std::array<double, 3> cells{};
    for (std::size_t i = 0; i < cells.size(); ++i)
        cells[i] = percentiles.located[i] ? percentiles.times[i] : empty;
    return cells;
}

} // namespace

int WriteKaplanTables(CAnalysisSupport& host, KaplanResults& results) {
    if (WriteCounts(host, results) != 0) return StrSpreadsheetFailed;
    return WriteTable(host, results);
}

int WritePercentiles(CAnalysisSupport& host, const KaplanResults& results, double level) {
    host.d_stat(Text(StrPrinting));
    const PercentileLimits limits = ComputePercentileLimits(results.UncensoredTimes(), results.Survival(),
                                                            results.StandardError(), ConfidenceZ(level));
    const std::array<std::array<double, 3>, 3> cells{Located(results.percentiles), Located(limits.lower),
                                                     Located(limits.upper)};
    SheetSpec sheet;
    sheet.title = std::string{Text(StrKmPercentiles1)};
    sheet.title.erase(sheet.title.find_last_not_of(' ') + 1);
    sheet.title.append(" ").append(Text(StrKmPercentiles2));
    for (const int id : {StrKmLowerQuartile, StrKmMedian, StrKmUpperQuartile})
        sheet.rowHeadings.emplace_back(Text(id));
    sheet.columns.push_back(
        HeadedColumn("time", StrKmColSurvival, StrKmColSurvivalTime, CellFormat::general(8)));
    sheet.columns.push_back(HeadedColumn("lowerLimit", StrKmColPercentile, 0, CellFormat::general(8)));
    sheet.columns.push_back(HeadedColumn("upperLimit", StrKmColPercentile, 0, CellFormat::general(8)));
    for (std::size_t k = 0; k < cells.size(); ++k)
        sheet.columns[k].cells = std::span<const double>{cells[k]};
    const short outcome = host.looka4(sheet);
    host.d_stat({});
    return outcome == 0 ? 0 : StrSpreadsheetFailed;
}

void NameLimitColumns(CAnalysisSupport& host, double level) {
    const std::string percent = LevelInPercent(level);
    host.RenameColumn(1, percent + std::string{Text(StrKmLevelLower)}, {});
    host.RenameColumn(2, percent + std::string{Text(StrKmLevelUpper)}, {});
}

} // namespace ozm::survival
