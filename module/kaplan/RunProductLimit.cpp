#include "module/kaplan/RunProductLimit.h"

#include "module/resources/Kaplan.h"
#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/survdata/AnalysisRun.h"
#include "module/survdata/ReadingNotes.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace ozm::survival {

std::int32_t KaplanArrays::CapacityFor(std::int32_t cases, bool weighted) {
    if (cases <= fixedCapacity && !weighted) return fixedCapacity;
    return weighted || cases > largestCapacity / 2 ? largestCapacity : 2 * cases;
}

bool KaplanArrays::Obtain(CAnalysisSupport& host, std::int32_t capacity) {
    const auto obtain = [&](auto&... arrays) {
        return (arrays.Obtain(host, static_cast<std::size_t>(capacity)) && ...);
    };
    return obtain(uncensoredTimes, censoredTimes, survival, standardError, uncensoredCases, censoredCases,
                  ranks);
}

void KaplanArrays::Release() {
    const auto release = [](auto&... arrays) { (arrays.Release(), ...); };
    release(uncensoredTimes, censoredTimes, survival, standardError, uncensoredCases, censoredCases, ranks);
}

Status ReadKaplanMeierData(CAnalysisSupport& host, SharedSettings& shared, KaplanResults& results) {
    CaseReader reader(host, shared);
    KaplanArrays& arrays = results.arrays;
    // Chosen by an index instead of a branch, which would be as good as random.
    const std::span<double> times[]{arrays.censoredTimes.Span(), arrays.uncensoredTimes.Span()};
    const std::span<std::int32_t> cases[]{arrays.censoredCases.Span(), arrays.uncensoredCases.Span()};
    std::size_t counts[]{0, 0};
    const Status status = reader.Read(arrays.Capacity(), [&](const Observation& observation) {
        const std::size_t list = observation.complete ? 1 : 0;
        const std::size_t place = counts[list]++;
        times[list][place] = observation.time;
        cases[list][place] = observation.caseNumber;
    });
    results.censored = static_cast<std::int32_t>(counts[0]);
    results.uncensored = static_cast<std::int32_t>(counts[1]);
    results.counts = reader.Counts();
    return status;
}

namespace {

std::int32_t CapacityOf(CAnalysisSupport& host) {
    return KaplanArrays::CapacityFor(host.ss_nb(), host.WeightVariable() != 0);
}

/// Sorts one list with its case numbers. The arrays of the estimate serve as scratch: they are written
/// afterwards.
SortOutcome SortList(KaplanArrays& arrays, std::span<double> times, std::span<std::int32_t> cases,
                     StopPoll stop) {
    return SortTimes(times, cases, arrays.survival.First(times.size()), arrays.ranks.First(times.size()),
                     stop);
}

Status SortObservations(CAnalysisSupport& host, KaplanResults& results) {
    KaplanArrays& arrays = results.arrays;
    const auto uncensored = static_cast<std::size_t>(results.uncensored);
    const auto censored = static_cast<std::size_t>(results.censored);
    const SortOutcome first = SortList(arrays, arrays.uncensoredTimes.First(uncensored),
                                       arrays.uncensoredCases.First(uncensored), PollOf(host));
    results.uncensoredOrder = first.tieOrder;
    if (first.status != Status::Success || censored <= 1) return first.status;
    const SortOutcome second = SortList(arrays, arrays.censoredTimes.First(censored),
                                        arrays.censoredCases.First(censored), PollOf(host));
    results.censoredOrder = second.tieOrder;
    return second.status;
}

Status ComputeRun(CAnalysisSupport& host, SharedSettings& shared, KaplanResults& results, StatusLine& line) {
    results.Release();
    results.uncensoredOrder = results.censoredOrder = TieOrder::Exact;
    if (!results.arrays.Obtain(host, CapacityOf(host))) return Status::NoMemory;
    Status status = ReadKaplanMeierData(host, shared, results);
    if (status != Status::Success) return status;
    if (results.censored == results.Valid()) return Status::NoUncensored;
    line.Show(StrSorting);
    status = SortObservations(host, results);
    if (status != Status::Success) return status;

    line.Show(StrComputingProductLimit);
    const auto uncensored = static_cast<std::size_t>(results.uncensored);
    ComputeProductLimit(results.UncensoredTimes(), results.CensoredTimes(),
                        results.arrays.ranks.First(uncensored), results.arrays.survival.First(uncensored),
                        results.arrays.standardError.First(uncensored));
    results.percentiles = ComputeSurvivalPercentiles(results.UncensoredTimes(), results.Survival());
    std::copy(results.percentiles.times.begin(), results.percentiles.times.end(),
              shared.work.statistics.begin());
    TellReading(host, shared, results.counts);
    return Status::Success;
}

/// The details of this run for the message of a status.
std::string Describe(CAnalysisSupport& host, const SharedSettings& shared, const ReadingCounts& counts,
                     Status status) {
    const std::int32_t capacity = CapacityOf(host);
    switch (status) {
    case Status::TooFewValid:
        return std::string{Text(StrNeedThreeValid)} + "\n" + DescribeReading(host, shared, counts);
    case Status::NoUncensored:
        return std::string{Text(StrAllCensored)} + "\n" + DescribeReading(host, shared, counts);
    case Status::TooManyCases:
        return Filled(StrKmCapacity, {FormatCount(capacity)});
    case Status::NoMemory:
        if (capacity <= KaplanArrays::fixedCapacity) return {};
        return Filled(StrKmMemory, {FormatCount(capacity),
                                    FormatNumber(std::ceil(static_cast<double>(capacity) *
                                                           KaplanArrays::bytesPerObservation / 1e6)),
                                    FormatCount(KaplanArrays::largestCapacity)});
    default:
        return {};
    }
}

} // namespace

int KaplanMessage(Status status) {
    static constexpr StatusMessage<Status> messages[] = {
        {Status::NoMemory, StrKaplanNoMemory},           {Status::TooManyCases, StrTooManyCasesKaplan},
        {Status::TooFewUncensored, StrTooFewUncensored}, {Status::TooFewValid, StrTooFewValid},
        {Status::NoUncensored, StrNoUncensored},
    };
    return MessageOf(status, messages);
}

bool RunProductLimit(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state,
                     CAnalysisDialog* window) {
    KaplanResults& results = state.results;
    return RunAnalysis(
        host, window, StrReadingDataFile,
        [&](StatusLine& line) { return ComputeRun(host, shared, results, line); }, [&] { results.Release(); },
        KaplanMessage, [&](Status status) { return Describe(host, shared, results.counts, status); });
}

Status MakeTieOrderExact(CAnalysisSupport& host, KaplanResults& results) {
    const auto makeExact = [&host](std::span<const double> times, std::span<std::int32_t> cases,
                                   TieOrder& order) {
        if (order == TieOrder::Exact) return Status::Success;
        const std::size_t n = times.size();
        HostArray<double> keys;
        HostArray<double> scratchKeys;
        HostArray<std::int32_t> companions;
        HostArray<std::int32_t> scratchCompanions;
        if (!keys.Allocate(host, n) || !scratchKeys.Allocate(host, n) || !companions.Allocate(host, n) ||
            !scratchCompanions.Allocate(host, n))
            return Status::NoMemory;
        std::copy(times.begin(), times.end(), keys.Span().begin());
        std::copy(cases.begin(), cases.end(), companions.Span().begin());
        const Status status = RestoreHeapOrder(keys.Span(), companions.Span(), scratchKeys.Span(),
                                               scratchCompanions.Span(), PollOf(host));
        if (status != Status::Success) return status;
        std::copy(companions.Span().begin(), companions.Span().end(), cases.begin());
        order = TieOrder::Exact;
        return Status::Success;
    };
    const auto uncensored = static_cast<std::size_t>(results.uncensored);
    const auto censored = static_cast<std::size_t>(results.censored);
    const Status status = makeExact(
        results.UncensoredTimes(), results.arrays.uncensoredCases.First(uncensored), results.uncensoredOrder);
    if (status != Status::Success) return status;
    return makeExact(results.CensoredTimes(), results.arrays.censoredCases.First(censored),
                     results.censoredOrder);
}

} // namespace ozm::survival
