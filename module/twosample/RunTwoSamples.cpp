#include "module/twosample/RunTwoSamples.h"

#include "module/resources/Groups.h"
#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/resources/TwoSamples.h"
#include "module/survdata/AnalysisRun.h"
#include "module/survdata/ReadingNotes.h"
#include "module/survdata/ReportLines.h"

#include <limits>
#include <string>

namespace ozm::survival {
namespace {

/// What a run keeps for its messages.
struct Run {
    std::int32_t capacity = 0; ///< of each list
    Observation refused;       ///< the one that did not fit into its list
    ReadingCounts reading;
    std::array<GroupCount, 2> groups;
};

Status Read(CAnalysisSupport& host, SharedSettings& shared, GroupLists& lists, Run& run) {
    CaseReader reader(host, shared, CaseReader::Groups::ByCodes);
    // Each list fills up by itself: no common limit.
    constexpr auto anyNumber = std::numeric_limits<std::int32_t>::max();
    const Status status = reader.Read(anyNumber, [&](const Observation& o) {
        if (lists.Append(o)) return Taken::Yes;
        run.refused = o;
        return Taken::NoRoom;
    });
    run.reading = reader.Counts();
    run.groups = lists.Counts();
    return status;
}

Status Compute(CAnalysisSupport& host, SharedSettings& shared, TwoResults& results, Run& run,
               StatusLine& line) {
    results.Release();
    run.capacity = GroupLists::CapacityFor(host.ss_nb(), host.WeightVariable() != 0);
    GroupLists lists;
    if (!lists.Obtain(host, run.capacity)) return Status::NoMemory;
    if (const Status status = Read(host, shared, lists, run); status != Status::Success) return status;
    if (const Status status = CheckGroups(run.groups); status != Status::Success) return status;

    line.Show(StrPreparingData);
    const auto observations = static_cast<std::size_t>(PooledSample::TotalOf(run.groups).All());
    if (!results.observations.Obtain(host, observations)) return Status::NoMemory;
    lists.Pool(results.observations.Span());
    SortPooled(results.observations.Span());
    results.groups = run.groups;
    TellReading(host, shared, run.reading);
    return Status::Success;
}

std::string GroupLine(std::string_view title, const GroupCount& group) {
    return std::string{title} + " " +
           Filled(StrTwoGroupCounts, {FormatCount(group.uncensored), FormatCount(group.censored)});
}

/// Which list was full, and what to do.
std::string DescribeFull(const Run& run) {
    const std::string capacity = FormatCount(run.capacity);
    return Filled(run.refused.complete ? StrTwoUncensoredFull : StrTwoCensoredFull,
                  {FormatCount(run.refused.group), capacity}) +
           " " + Filled(StrTwoCapacity, {capacity});
}

/// The details of this run for the message of a status: its counts.
std::string Describe(CAnalysisSupport& host, const SharedSettings& shared, const Run& run, Status status) {
    switch (status) {
    case Status::TooFewValid:
    case Status::NoUncensored:
        return std::string{Text(status == Status::TooFewValid ? StrNeedThreeValid : StrTwoNeeded)} + "\n" +
               GroupLine(Text(StrTwoGroup1), run.groups[0]) + " " +
               GroupLine(Text(StrTwoGroup2), run.groups[1]) + "\n" +
               DescribeReading(host, shared, run.reading);
    case Status::TooManyCases:
        return DescribeFull(run);
    default:
        return {};
    }
}

} // namespace

Status CheckGroups(std::span<const GroupCount, 2> groups) {
    const bool comparable =
        PooledSample::TotalOf(groups).uncensored >= 2 && groups[0].All() > 0 && groups[1].All() > 0;
    return comparable ? Status::Success : Status::NoUncensored;
}

int TwoMessage(Status status) {
    static constexpr StatusMessage<Status> messages[] = {
        {Status::NoMemory, StrTwoNoMemory},
        {Status::TooManyCases, StrTwoTooManyCases},
        {Status::TooFewUncensored, StrTwoTooFewUncensored},
        {Status::TooFewValid, StrTwoTooFewValid},
        {Status::NoUncensored, StrTwoEmptyGroup},
    };
    return MessageOf(status, messages);
}

bool RunTwoSamples(CAnalysisSupport& host, SharedSettings& shared, TwoState& state, CAnalysisDialog* window) {
    Run run;
    return RunAnalysis(
        host, window, StrReadingDataFile,
        [&](StatusLine& line) { return Compute(host, shared, state.results, run, line); },
        [&] { state.results.Release(); }, TwoMessage,
        [&](Status status) { return Describe(host, shared, run, status); });
}

} // namespace ozm::survival
