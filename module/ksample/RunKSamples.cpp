#include "module/ksample/RunKSamples.h"

#include "module/groups/GehanRanks.h"
#include "module/resources/Groups.h"
#include "module/resources/KSamples.h"
#include "module/resources/Resources.h"
#include "module/survdata/AnalysisRun.h"
#include "module/survdata/CaseReader.h"
#include "module/survdata/ReadingNotes.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <string>

namespace ozm::survival {

std::int32_t KsArrays::CapacityFor(std::int32_t cases, bool weighted) {
    if (cases <= fixedCapacity && !weighted) return fixedCapacity;
    return weighted ? largestCapacity : std::min(cases, largestCapacity);
}

namespace {

/// What a run learns on its way, for its messages.
struct Run {
    ReadingCounts reading;
    bool weighted = false;
    std::vector<GroupCount> groups;
};

/// Reads into memory of the run, sorts, and leaves as many observations as there are.
KsStatus ReadSample(CAnalysisSupport& host, SharedSettings& shared, KsResults& results, Run& run,
                    StatusLine& line) {
    KsArrays::Array<PooledObservation> room;
    const std::int32_t capacity = KsArrays::CapacityFor(host.ss_nb(), run.weighted);
    if (!room.Obtain(host, static_cast<std::size_t>(capacity))) return KsStatus::NoMemory;
    run.groups.assign(shared.groupCodes.size(), {});
    std::size_t count = 0;
    CaseReader reader(host, shared, CaseReader::Groups::ByCodes);
    const Status status = reader.Read(std::min(capacity, KsArrays::mostCases), [&](const Observation& o) {
        room[count++] = {o.time, static_cast<std::int16_t>(o.complete ? 1 : 0), o.group};
        GroupCount& group = run.groups[static_cast<std::size_t>(o.group) - 1];
        ++(o.complete ? group.uncensored : group.censored);
    });
    run.reading = reader.Counts();
    if (status != Status::Success) return static_cast<KsStatus>(status);
    line.Show(StrPreparingData);
    SortPooled(room.First(count));
    if (!results.observations.Obtain(host, count)) return KsStatus::NoMemory;
    std::ranges::copy(room.First(count), results.observations.Span().begin());
    return KsStatus::Success;
}

KsStatus CheckGroups(const std::vector<GroupCount>& groups) {
    if (PooledSample::TotalOf(groups).uncensored < 3) return KsStatus::FewerThan3Uncensored;
    const bool allFail =
        std::ranges::all_of(groups, [](const GroupCount& group) { return group.uncensored > 0; });
    return allFail ? KsStatus::Success : KsStatus::GroupWithoutUncensored;
}

KsStatus Compute(CAnalysisSupport& host, SharedSettings& shared, KsResults& results, Run& run,
                 StatusLine& line) {
    results.Release();
    run.weighted = host.WeightVariable() != 0;
    if (const KsStatus status = ReadSample(host, shared, results, run, line); status != KsStatus::Success)
        return status;
    if (const KsStatus status = CheckGroups(run.groups); status != KsStatus::Success) return status;
    results.groups = run.groups;
    results.sums.resize(run.groups.size());
    const std::size_t count = results.observations.Size();
    KsArrays::Array<GehanRanks> ranks;
    if (!results.scores.Obtain(host, count) || !ranks.Obtain(host, count)) return KsStatus::NoMemory;
    const PooledSample sample = results.Sample();
    ComputeGehanScores(sample.observations, ranks.Span(), results.scores.Span());
    AddUpScores(sample, results.scores.Span(), results.sums);
    results.test = ComputeKSampleTest(sample, results.scores.Span(), results.sums);
    TellReading(host, shared, run.reading);
    return KsStatus::Success;
}

std::string NameEmptyGroups(CAnalysisSupport& host, const SharedSettings& shared, const Run& run) {
    std::vector<std::string> names;
    for (std::size_t g = 0; g < run.groups.size(); ++g)
        if (run.groups[g].uncensored == 0)
            names.push_back(Filled(StrKsCensoredCases,
                                   {CodeWithLabel(host, shared.First(ListGrouping), shared.groupCodes[g]),
                                    FormatCount(run.groups[g].censored)}));
    return Filled(StrKsWithoutUncensored, {Listed(names, StrAnd)});
}

/// What the message of a status does not know of this run.
std::string Describe(CAnalysisSupport& host, const SharedSettings& shared, const Run& run, KsStatus status) {
    switch (status) {
    case KsStatus::TooManyCases:
        return std::string{Text(run.weighted ? StrKsCapacityOfCopies : StrKsCapacity)};
    case KsStatus::TooFewValid:
        return std::string{Text(StrNeedThreeValid)} + "\n" + DescribeReading(host, shared, run.reading);
    case KsStatus::FewerThan3Uncensored:
        return DescribeReading(host, shared, run.reading);
    case KsStatus::GroupWithoutUncensored:
        return NameEmptyGroups(host, shared, run) + "\n" + DescribeReading(host, shared, run.reading);
    default:
        return {};
    }
}

} // namespace

int KsMessage(KsStatus status) {
    static constexpr StatusMessage<KsStatus> messages[] = {
        {KsStatus::NoMemory, StrKsNoMemory},
        {KsStatus::TooManyCases, StrKsTooManyCases},
        {KsStatus::TooFewUncensored, StrKsTooFewUncensored},
        {KsStatus::TooFewValid, StrKsTooFewValid},
        {KsStatus::FewerThan3Uncensored, StrKsFewerThan3Uncensored},
        {KsStatus::GroupWithoutUncensored, StrKsGroupWithoutUncensored},
    };
    return MessageOf(status, messages);
}

bool RunKSamples(CAnalysisSupport& host, SharedSettings& shared, KsState& state, CAnalysisDialog* window) {
    Run run;
    return RunAnalysis(
        host, window, StrReadingDataFile,
        [&](StatusLine& line) { return Compute(host, shared, state.results, run, line); },
        [&] { state.results.Release(); }, KsMessage,
        [&](KsStatus status) { return Describe(host, shared, run, status); });
}

} // namespace ozm::survival
