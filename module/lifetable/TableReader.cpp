#include "module/lifetable/TableReader.h"

#include "module/lifetable/LifeState.h"
#include "module/resources/LifeTables.h"
#include "module/survdata/CaseBuffer.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/StopTest.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace ozm::survival {
namespace {

struct Row {
    double lower;
    double withdrawn;
    double dying;
};

/// Checks the values of the current case and counts why it is left out.
bool Take(const CaseBuffer& buffer, TableRows& rows) {
    const auto missing = [&buffer](std::size_t place) {
        const double value = buffer.Values()[place];
        return !std::isfinite(value) || value == buffer.Missing()[place];
    };
    const auto outside = [&buffer](std::size_t place, double most) {
        const double value = buffer.Values()[place];
        return value < 0.0 || value > most;
    };
    std::int32_t* reason = nullptr;
    if (missing(0))
        reason = &rows.noLower;
    else if (missing(1))
        reason = &rows.noWithdrawn;
    else if (outside(1, TableRows::mostWithdrawn))
        reason = &rows.badWithdrawn;
    else if (missing(2))
        reason = &rows.noDying;
    else if (outside(2, TableRows::mostDying))
        reason = &rows.badDying;
    if (reason == nullptr) return true;
    ++*reason;
    return false;
}

/// By repeated passes of exchanges, so that rows with equal limits keep their order.
void SortRows(IntervalCounts& counts) {
    bool exchanged = true;
    while (exchanged) {
        exchanged = false;
        for (std::size_t i = 1; i < static_cast<std::size_t>(counts.intervals); ++i) {
            if (!(counts.lower[i] < counts.lower[i - 1])) continue;
            std::swap(counts.lower[i], counts.lower[i - 1]);
            std::swap(counts.withdrawn[i], counts.withdrawn[i - 1]);
            std::swap(counts.dying[i], counts.dying[i - 1]);
            exchanged = true;
        }
    }
}

LifeStatus ReadRows(CAnalysisSupport& host, const CaseBuffer& buffer, IntervalCounts& counts,
                    TableRows& rows) {
    double withdrawn = 0.0;
    const int cases = host.ss_nb();
    for (int n = 1; n <= cases; ++n) {
        if (StopRequested(host)) return LifeStatus::Stopped;
        const short answer = host.cstart(n, buffer.Values(), buffer.Variables());
        if (answer == SkipCase) continue;
        if (answer != UseCase) return LifeStatus::Stopped;
        ++rows.selected;
        if (!Take(buffer, rows)) continue;
        const Row row{buffer.Values()[0], buffer.Values()[1], buffer.Values()[2]};
        if (rows.taken == Intervals::most) return LifeStatus::TooManyIntervals;
        if (withdrawn + row.withdrawn > TableRows::mostWithdrawn) return LifeStatus::TooManyObservations;
        withdrawn += row.withdrawn;
        const auto place = static_cast<std::size_t>(rows.taken);
        counts.lower[place] = row.lower;
        counts.withdrawn[place] = row.withdrawn;
        counts.dying[place] = row.dying;
        counts.entering += row.withdrawn + row.dying;
        counts.intervals = ++rows.taken;
    }
    return rows.taken < Intervals::fewest ? LifeStatus::TooFewIntervals : LifeStatus::Success;
}

} // namespace

LifeStatus ReadTable(CAnalysisSupport& host, SharedSettings& shared, IntervalCounts& counts,
                     TableRows& rows) {
    counts = {};
    rows = {};
    const std::array variables{shared.First(ListIntervalLimits), shared.First(ListWithdrawn),
                               shared.First(ListDying)};
    const CaseBuffer buffer(host, shared.work, variables);
    const LifeStatus status = ReadRows(host, buffer, counts, rows);
    SortRows(counts);
    return status;
}

double EnteringFromData(const IntervalCounts& counts) {
    return std::clamp(std::ceil(counts.entering), static_cast<double>(LifeSettings::leastEntering),
                      static_cast<double>(LifeSettings::mostEntering));
}

std::string DescribeRowsLeftOut(CAnalysisSupport& host, const SharedSettings& shared, const TableRows& rows) {
    std::string text;
    const auto add = [&](std::int32_t count, int id, SelectionListId list, const std::string& most) {
        if (count == 0) return;
        text += (text.empty() ? "" : ", ") +
                Filled(id, {FormatCount(count), QuotedName(host, shared.First(list)), most});
    };
    add(rows.noLower, StrLifeRowNoValue, ListIntervalLimits, {});
    add(rows.noWithdrawn, StrLifeRowNoValue, ListWithdrawn, {});
    add(rows.badWithdrawn, StrLifeRowOutOfRange, ListWithdrawn, FormatExact(TableRows::mostWithdrawn));
    add(rows.noDying, StrLifeRowNoValue, ListDying, {});
    add(rows.badDying, StrLifeRowOutOfRange, ListDying, FormatExact(TableRows::mostDying));
    return text;
}

} // namespace ozm::survival
