#include "module/kaplan/RunProductLimit.h"

#include "module/resources/Kaplan.h"
#include "module/resources/Shared.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReadingNotes.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/StatusMessages.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <string>

namespace ozm::survival {

bool KaplanArrays::ObtainFromHost(CAnalysisSupport& host, std::size_t capacity) {
    return std::all_of(hostDoubles_.begin(), hostDoubles_.end(),
                       [&](auto& array) { return array.Allocate(host, capacity); }) &&
           std::all_of(hostIntegers_.begin(), hostIntegers_.end(),
                       [&](auto& array) { return array.Allocate(host, capacity); });
}

bool KaplanArrays::Obtain(CAnalysisSupport& host, std::int32_t cases, bool weighted) {
    Release();
    const auto use = [this](auto& doubles, auto& integers) {
        uncensoredTimes = doubles(0);
        censoredTimes = doubles(1);
        survival = doubles(2);
        standardError = doubles(3);
        uncensoredCases = integers(0);
        censoredCases = integers(1);
        ranks = integers(2);
    };
    const std::int32_t capacity = CapacityFor(cases, weighted);
    if (FitsFixed(cases, weighted)) {
        capacity_ = capacity;
        const auto doubles = [this](std::size_t k) { return std::span<double>{fixedDoubles_[k]}; };
        const auto integers = [this](std::size_t k) { return std::span<std::int32_t>{fixedIntegers_[k]}; };
        use(doubles, integers);
        return true;
    }
    if (!ObtainFromHost(host, static_cast<std::size_t>(capacity))) {
        Release();
        return false;
    }
    capacity_ = capacity;
    const auto doubles = [this](std::size_t k) { return hostDoubles_[k].Span(); };
    const auto integers = [this](std::size_t k) { return hostIntegers_[k].Span(); };
    use(doubles, integers);
    return true;
}

std::int32_t KaplanArrays::CapacityFor(std::int32_t cases, bool weighted) {
    if (FitsFixed(cases, weighted)) return fixedCapacity;
    return weighted || cases > largestCapacity / 2 ? largestCapacity : 2 * cases;
}

void KaplanArrays::Release() {
    for (auto& array : hostDoubles_)
        array.Release();
    for (auto& array : hostIntegers_)
        array.Release();
    uncensoredTimes = censoredTimes = survival = standardError = {};
    uncensoredCases = censoredCases = ranks = {};
    capacity_ = 0;
}

Status ReadKaplanMeierData(CAnalysisSupport& host, SharedSettings& shared, KaplanResults& results) {
    host.d_stat(Text(StrReadingDataFile));
    CaseReader reader(host, shared);
    const KaplanArrays& arrays = results.arrays;
    std::size_t uncensored = 0;
    std::size_t censored = 0;
    const Status status = reader.Read(arrays.Capacity(), [&](const Observation& observation) {
        if (observation.complete) {
            arrays.uncensoredTimes[uncensored] = observation.time;
            arrays.uncensoredCases[uncensored++] = observation.caseNumber;
        } else {
            arrays.censoredTimes[censored] = observation.time;
            arrays.censoredCases[censored++] = observation.caseNumber;
        }
    });
    results.uncensored = static_cast<std::int32_t>(uncensored);
    results.censored = static_cast<std::int32_t>(censored);
    results.counts = reader.Counts();
    return status;
}

namespace {

/// Sorts one list with its case numbers. The arrays of the estimate serve as scratch: they are written
/// afterwards.
SortOutcome SortList(KaplanArrays& arrays, std::span<double> times, std::span<std::int32_t> cases,
                     StopPoll stop) {
    return SortTimes(times, cases, arrays.survival.first(times.size()), arrays.ranks.first(times.size()),
                     stop);
}

Status SortObservations(CAnalysisSupport& host, KaplanResults& results) {
    host.d_stat(Text(StrSorting));
    KaplanArrays& arrays = results.arrays;
    const auto uncensored = static_cast<std::size_t>(results.uncensored);
    const auto censored = static_cast<std::size_t>(results.censored);
    const SortOutcome first = SortList(arrays, arrays.uncensoredTimes.first(uncensored),
                                       arrays.uncensoredCases.first(uncensored), PollOf(host));
    results.uncensoredOrder = first.tieOrder;
    if (first.status != Status::Success || censored <= 1) return first.status;
    const SortOutcome second = SortList(arrays, arrays.censoredTimes.first(censored),
                                        arrays.censoredCases.first(censored), PollOf(host));
    results.censoredOrder = second.tieOrder;
    return second.status;
}

Status ComputeRun(CAnalysisSupport& host, SharedSettings& shared, KaplanResults& results) {
    results.uncensoredOrder = results.censoredOrder = TieOrder::Exact;
    if (!results.arrays.Obtain(host, host.ss_nb(), host.WeightVariable() != 0)) return Status::NoMemory;
    Status status = ReadKaplanMeierData(host, shared, results);
    if (status != Status::Success) return status;
    if (results.censored == results.Valid()) return Status::NoUncensored;
    status = SortObservations(host, results);
    if (status != Status::Success) return status;

    host.d_stat(Text(StrComputingProductLimit));
    const auto uncensored = static_cast<std::size_t>(results.uncensored);
    ComputeProductLimit(results.UncensoredTimes(), results.CensoredTimes(),
                        results.arrays.ranks.first(uncensored), results.arrays.survival.first(uncensored),
                        results.arrays.standardError.first(uncensored));
    results.percentiles = ComputeSurvivalPercentiles(results.UncensoredTimes(), results.Survival());
    std::copy(results.percentiles.times.begin(), results.percentiles.times.end(),
              shared.work.statistics.begin());
    TellReading(host, shared, results.counts);
    return Status::Success;
}

/// What the message of a status does not know.
std::string Describe(CAnalysisSupport& host, const SharedSettings& shared, const ReadingCounts& counts,
                     Status status) {
    const std::int32_t capacity = KaplanArrays::CapacityFor(host.ss_nb(), host.WeightVariable() != 0);
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
    static constexpr StatusMessage messages[] = {
        {Status::NoMemory, StrKaplanNoMemory},           {Status::TooManyCases, StrTooManyCasesKaplan},
        {Status::TooFewUncensored, StrTooFewUncensored}, {Status::TooFewValid, StrTooFewValid},
        {Status::NoUncensored, StrNoUncensored},
    };
    return MessageOf(status, messages);
}

int RunProductLimit(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state,
                    CAnalysisDialog* window) {
    KaplanResults& results = state.results;
    Status status = Status::Success;
    try {
        status = ComputeRun(host, shared, results);
    } catch (const std::bad_alloc&) {
        status = Status::NoMemory;
    } catch (...) {
        results.Release();
        throw;
    }
    host.d_stat({});
    if (status == Status::Success) return 0;

    results.Release();
    if (const int message = KaplanMessage(status); message != 0)
        host.DspMessageBox(MessageStyle::Refusal, window, message,
                           Describe(host, shared, results.counts, status));
    return 1;
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
        results.UncensoredTimes(), results.arrays.uncensoredCases.first(uncensored), results.uncensoredOrder);
    if (status != Status::Success) return status;
    return makeExact(results.CensoredTimes(), results.arrays.censoredCases.first(censored),
                     results.censoredOrder);
}

} // namespace ozm::survival
