#include "module/lifetable/RunLifeTable.h"

#include "module/lifetable/FitTexts.h"
#include "module/lifetable/RawCounts.h"
#include "module/lifetable/TableReader.h"
#include "module/resources/LifeTables.h"
#include "module/survdata/AnalysisRun.h"
#include "module/survdata/ReadingNotes.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/SelectionChecks.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace ozm::survival {
namespace {

/// What a run learns on its way, for its messages.
struct Run {
    CAnalysisSupport& host;
    SharedSettings& shared;
    LifeState& state;
    CAnalysisDialog* window;
    IntervalCounts counts;
    RawInput raw;
    TableRows rows;

    [[nodiscard]] bool FromTable() const { return shared.inputDataType == InputDataType::Table; }
    void Note(int id, std::initializer_list<std::string> values) const {
        host.DspMessageBox(MessageStyle::Note, nullptr, 0, Filled(id, values), {});
    }
};

LifeStatus CountIntervals(Run& run, StatusLine& line) {
    if (!run.FromTable())
        return CountRawData(run.host, run.shared, run.state.settings, run.window, line, run.counts, run.raw);
    const LifeStatus status = ReadTable(run.host, run.shared, run.counts, run.rows);
    if (run.state.settings.enteringGiven)
        run.counts.entering = run.state.settings.entering;
    else
        run.counts.entering = EnteringFromData(run.counts);
    return status;
}

void CountObservations(const Run& run, LifeResults& results) {
    results.fromTable = run.FromTable();
    results.corrected = run.state.settings.correct;
    results.valid = run.counts.entering;
    for (std::size_t i = 0; i < results.table.Rows(); ++i) {
        results.uncensored += results.table.dying[i];
        results.censored += results.table.withdrawn[i];
    }
}

/// The number entering that the data have; where it is not a whole one in range, also that.
std::string DescribeNumberEntering(const Run& run) {
    double leaving = 0.0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(run.counts.intervals); ++i)
        leaving += run.counts.withdrawn[i] + run.counts.dying[i];
    if (leaving == run.counts.entering)
        return Filled(StrLifeEnteringFromData, {FormatExact(run.counts.entering)});
    return Filled(StrLifeEnteringRounded, {FormatExact(run.counts.entering), FormatExact(leaving)});
}

void TellTable(const Run& run, const LifeTable& table) {
    if (run.rows.LeftOut() > 0)
        run.Note(StrLifeRowsLeftOut, {FormatCount(run.rows.LeftOut()), FormatCount(run.rows.selected),
                                      DescribeRowsLeftOut(run.host, run.shared, run.rows)});
    if (!run.state.settings.enteringGiven)
        run.host.DspMessageBox(MessageStyle::Note, nullptr, 0, DescribeNumberEntering(run), {});
    if (table.lower[0] != 0.0) run.Note(StrLifeNotFromZero, {FormatExact(table.lower[0])});
    const std::size_t last = table.Closed();
    if (table.rows < run.counts.intervals) run.Note(StrLifeRowsUnused, {FormatExact(table.lower[last])});
    if (const double leaving = table.withdrawn[last] + table.dying[last]; leaving > table.entering[last])
        run.Note(StrLifeEnteringTooFew,
                 {FormatExact(table.lower[last]), FormatExact(leaving), FormatExact(table.entering[last])});
}

/// What the user should know about a run that succeeded.
void Tell(const Run& run) {
    const LifeResults& results = run.state.results;
    if (run.FromTable())
        TellTable(run, results.table);
    else
        TellReading(run.host, run.shared, run.raw.reading);
    if (results.uncensored == 0.0) run.Note(StrLifeNobodyDied, {FormatExact(results.valid)});
    if (results.fits.stop != FitStop::None)
        run.host.DspMessageBox(MessageStyle::Warning, run.window, StrLifeInadequate,
                               DescribeStop(results.fits));
}

LifeStatus Compute(Run& run, StatusLine& line) {
    LifeResults& results = run.state.results;
    results.Release();
    LifeStatus status = CountIntervals(run, line);
    if (status != LifeStatus::Success) return status;
    line.Show(StrLifeComputing);
    status = static_cast<LifeStatus>(ComputeLifeTable(
        run.counts, run.state.settings.correct ? Correction::On : Correction::Off, results.table));
    if (status != LifeStatus::Success) return status;
    results.medians = ComputeMedianLives(results.table);
    results.fits = FitDistributions(results.table);
    results.logLikelihood = LogLikelihood(results.table);
    CountObservations(run, results);
    results.held = true;
    Tell(run);
    return LifeStatus::Success;
}

std::string DescribeTable(const Run& run) {
    std::string text = Filled(StrLifeRowsRead, {FormatCount(run.rows.taken), FormatCount(run.rows.selected)});
    if (run.rows.LeftOut() > 0)
        if (const std::string why = DescribeRowsLeftOut(run.host, run.shared, run.rows); !why.empty())
            text += "\n" + Filled(StrLifeRowsLeftOut,
                                  {FormatCount(run.rows.LeftOut()), FormatCount(run.rows.selected), why});
    return text;
}

/// Which interval begins with fewer than nobody.
std::string DescribeEntering(const IntervalCounts& counts) {
    double entering = counts.entering;
    for (std::size_t i = 1; i < static_cast<std::size_t>(counts.intervals); ++i) {
        entering = entering - counts.withdrawn[i - 1] - counts.dying[i - 1];
        if (entering < 0.0)
            return Filled(StrLifeCasesAlive,
                          {FormatCount(static_cast<long long>(i) + 1), FormatExact(counts.lower[i]),
                           FormatExact(entering), FormatExact(counts.entering)});
    }
    return {};
}

std::string DescribeWidth(const Run& run) {
    if (!run.FromTable()) return std::string{Text(StrLifeAllTimesZero)};
    const IntervalCounts& counts = run.counts;
    for (std::size_t i = 1; i < static_cast<std::size_t>(counts.intervals); ++i)
        if (!(counts.lower[i] > counts.lower[i - 1]))
            return Filled(StrLifeWidthDetail,
                          {FormatCount(static_cast<long long>(i)), FormatCount(static_cast<long long>(i) + 1),
                           FormatExact(counts.lower[i])});
    return {};
}

/// What the message of a status does not know of this run.
std::string Describe(const Run& run, LifeStatus status) {
    switch (status) {
    case LifeStatus::TooManyCases:
        return Filled(StrLifeCapacity, {FormatCount(run.raw.capacity)});
    case LifeStatus::TooFewValid:
        return std::string{Text(StrNeedThreeValid)} + "\n" +
               DescribeReading(run.host, run.shared, run.raw.reading);
    case LifeStatus::ManyCensored:
        return Filled(StrLifeManyCensoredCases,
                      {FormatNumber(run.raw.reading.censoredCodes, 10), FormatCount(run.raw.reading.valid)}) +
               "\n" + DescribeReading(run.host, run.shared, run.raw.reading);
    case LifeStatus::TooManyIntervals:
    case LifeStatus::TooManyObservations:
    case LifeStatus::TooFewIntervals:
        return DescribeTable(run);
    case LifeStatus::NegativeEntering:
        return DescribeEntering(run.counts) +
               (run.state.settings.enteringGiven ? "" : "\n" + DescribeNumberEntering(run));
    case LifeStatus::NoWidth:
        return DescribeWidth(run);
    default:
        return {};
    }
}

} // namespace

int LifeMessage(LifeStatus status) {
    static constexpr StatusMessage<LifeStatus> messages[] = {
        {LifeStatus::NoMemory, StrLifeNoMemory},
        {LifeStatus::TooManyCases, StrLifeTooManyCases},
        {LifeStatus::TooFewUncensored, StrLifeTooFewUncensored},
        {LifeStatus::TooFewValid, StrLifeTooFewValid},
        {LifeStatus::ManyCensored, StrLifeManyCensored},
        {LifeStatus::Tabulation, StrLifeTabulation},
        {LifeStatus::TooManyIntervals, StrLifeTooManyIntervals},
        {LifeStatus::TooManyObservations, StrLifeTooManyObservations},
        {LifeStatus::NegativeDying, StrLifeNegativeDying},
        {LifeStatus::TooFewIntervals, StrLifeTooFewIntervals},
        {LifeStatus::NoIntervals, StrLifeNoIntervals},
        {LifeStatus::NegativeEntering, StrLifeNegativeEntering},
        {LifeStatus::NobodyEnters, StrLifeNobodyEnters},
        {LifeStatus::NoWidth, StrLifeNoWidth},
    };
    return MessageOf(status, messages);
}

bool RunLifeTable(CAnalysisSupport& host, SharedSettings& shared, LifeState& state, CAnalysisDialog* window) {
    Run run{host, shared, state, window, {}, {}, {}};
    return RunAnalysis(
        host, window, run.FromTable() ? StrLifeComputing : StrReadingDataFile,
        [&](StatusLine& line) { return Compute(run, line); }, [&] { state.results.Release(); }, LifeMessage,
        [&](LifeStatus status) { return Describe(run, status); });
}

} // namespace ozm::survival
