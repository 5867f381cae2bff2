#include "module/twosample/RunTwoSamples.h"

#include "module/resources/Groups.h"
#include "module/resources/Shared.h"
#include "module/resources/TwoSamples.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReadingNotes.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/StatusMessages.h"

#include <limits>
#include <new>
#include <string>

namespace ozm::survival {
namespace {

struct Run {
    Status status = Status::Success;
    std::int32_t capacity = 0; ///< of each list
    Observation refused;       ///< the one that its list had no room for
    ReadingCounts reading;
    GroupCounts groups;
};

Status Read(CAnalysisSupport& host, SharedSettings& shared, GroupLists& lists, Run& run) {
    CaseReader reader(host, shared, CaseReader::Groups::TwoCodes);
    // The lists are full one by one, not all together.
    constexpr auto anyNumber = std::numeric_limits<std::int32_t>::max();
    const Status status = reader.Read(anyNumber, [&](const Observation& o) {
        if (lists.Append(o)) return true;
        run.refused = o;
        return false;
    });
    run.reading = reader.Counts();
    run.groups = lists.Counts();
    return status;
}

Status Prepare(CAnalysisSupport& host, const GroupLists& lists, TwoResults& results) {
    host.d_stat(Text(StrPreparingData));
    if (!results.Obtain(host, lists.Size())) return Status::NoMemory;
    lists.Pool(results.Observations());
    SortPooled(results.Observations());
    results.counts = lists.Counts();
    return Status::Success;
}

void Compute(CAnalysisSupport& host, SharedSettings& shared, TwoState& state, Run& run) {
    try {
        host.d_stat(Text(StrReadingDataFile));
        const bool obtained = state.lists.Obtain(host, host.ss_nb(), host.WeightVariable() != 0);
        run.capacity = state.lists.Capacity();
        run.status = obtained ? Read(host, shared, state.lists, run) : Status::NoMemory;
        if (run.status == Status::Success) run.status = CheckGroups(run.groups);
        if (run.status == Status::Success) run.status = Prepare(host, state.lists, state.results);
        if (run.status == Status::Success) TellReading(host, shared, run.reading);
    } catch (const std::bad_alloc&) {
        run.status = Status::NoMemory;
    } catch (...) {
        state.lists.Release();
        state.results.Release();
        throw;
    }
    state.lists.Release();
    if (run.status != Status::Success) state.results.Release();
}

std::string GroupLine(std::string_view title, int uncensored, int censored) {
    return std::string{title} + " " + FormatCount(uncensored) + " uncensored, " + FormatCount(censored) +
           " censored.";
}

/// The list that had no room for one more, and what to do.
std::string DescribeFull(const Run& run) {
    const std::string capacity = FormatCount(run.capacity);
    return Filled(StrTwoListFull, {FormatCount(run.refused.group), capacity,
                                   run.refused.complete ? "uncensored" : "censored"}) +
           " " + Filled(StrTwoCapacity, {capacity});
}

/// What the message of a status does not know: the counts of this run.
std::string Describe(CAnalysisSupport& host, const SharedSettings& shared, const Run& run) {
    const GroupCounts& n = run.groups;
    switch (run.status) {
    case Status::TooFewValid:
    case Status::NoUncensored:
        return std::string{Text(run.status == Status::TooFewValid ? StrNeedThreeValid : StrTwoNeeded)} +
               "\n" + GroupLine(Text(StrTwoGroup1), n.uncensored1, n.censored1) + " " +
               GroupLine(Text(StrTwoGroup2), n.uncensored2, n.censored2) + "\n" +
               DescribeReading(host, shared, run.reading);
    case Status::TooManyCases:
        return DescribeFull(run);
    default:
        return {};
    }
}

} // namespace

Status CheckGroups(const GroupCounts& counts) {
    const bool comparable = counts.Uncensored() >= 2 && counts.N1() > 0 && counts.N2() > 0;
    return comparable ? Status::Success : Status::NoUncensored;
}

int TwoMessage(Status status) {
    static constexpr StatusMessage messages[] = {
        {Status::NoMemory, StrTwoNoMemory},
        {Status::TooManyCases, StrTwoTooManyCases},
        {Status::TooFewUncensored, StrTwoTooFewUncensored},
        {Status::TooFewValid, StrTwoTooFewValid},
        {Status::NoUncensored, StrTwoEmptyGroup},
    };
    return MessageOf(status, messages);
}

int RunTwoSamples(CAnalysisSupport& host, SharedSettings& shared, TwoState& state, CAnalysisDialog* window) {
    state.results.Release();
    Run run;
    Compute(host, shared, state, run);
    host.d_stat({});
    if (const int message = TwoMessage(run.status); message != 0)
        host.DspMessageBox(MessageStyle::Refusal, window, message, Describe(host, shared, run));
    return run.status == Status::Success ? 0 : 1;
}

} // namespace ozm::survival
