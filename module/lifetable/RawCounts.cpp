#include "module/lifetable/RawCounts.h"

#include "module/lifetable/RunLifeTable.h"
#include "module/resources/LifeTables.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/WorkArray.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace ozm::survival {

std::int32_t LifeArrays::CapacityFor(std::int32_t cases, bool weighted) {
    if (cases <= fixedCapacity) return fixedCapacity;
    return weighted ? weightedCapacity : cases;
}

namespace {

/// Times, and whether each is of a complete observation (1) or a censored one (0).
struct Observations {
    WorkArray<double, LifeArrays::fixedCapacity> times;
    WorkArray<double, LifeArrays::fixedCapacity> complete;
    std::size_t count = 0;
};

LifeStatus ReadObservations(CAnalysisSupport& host, SharedSettings& shared, Observations& observations,
                            RawInput& input) {
    input.capacity = LifeArrays::CapacityFor(host.ss_nb(), host.WeightVariable() != 0);
    const auto room = static_cast<std::size_t>(input.capacity);
    if (!observations.times.Obtain(host, room) || !observations.complete.Obtain(host, room))
        return LifeStatus::NoMemory;
    CaseReader reader(host, shared);
    reader.RequireDateParts();
    const Status status = reader.Read(input.capacity, [&](const Observation& o) {
        observations.times[observations.count] = o.time;
        observations.complete[observations.count] = o.complete ? 1.0 : 0.0;
        ++observations.count;
        if (!o.complete) ++input.censored;
        input.largestTime = std::max(input.largestTime, o.time);
    });
    input.reading = reader.Counts();
    if (status != Status::Success) return static_cast<LifeStatus>(status);
    // Every case with the code of censored observations counts here, also one without a time.
    return input.reading.censoredCodes > static_cast<double>(input.reading.valid) ? LifeStatus::ManyCensored
                                                                                  : LifeStatus::Success;
}

Intervals ChooseIntervals(CAnalysisSupport& host, LifeSettings& settings, CAnalysisDialog* window,
                          double largestTime) {
    if (settings.byStep) {
        if (const std::optional<Intervals> intervals = IntervalsByStep(largestTime, settings.step))
            return *intervals;
        settings.byStep = false;
        host.DspMessageBox(
            MessageStyle::Warning, window, StrLifeStepAdjusted,
            Filled(StrLifeStepDetail, {FormatNumber(largestTime), FormatNumber(largestTime / settings.step),
                                       FormatNumber(settings.step), FormatCount(settings.intervals)}));
    }
    return IntervalsByNumber(largestTime, settings.intervals);
}

} // namespace

LifeStatus CountRawData(CAnalysisSupport& host, SharedSettings& shared, LifeSettings& settings,
                        CAnalysisDialog* window, StatusLine& line, IntervalCounts& counts, RawInput& input) {
    Observations observations;
    const LifeStatus status = ReadObservations(host, shared, observations, input);
    if (status != LifeStatus::Success) return status;
    // Nothing needs to be sorted, as the interval of a time does not depend on the other times.
    line.Show(StrLifeSorting);
    Tabulation tabulation(ChooseIntervals(host, settings, window, input.largestTime));
    for (std::size_t i = 0; i < observations.count; ++i)
        tabulation.Add(observations.times[i], observations.complete[i] != 0.0);
    counts = tabulation.Counts();
    counts.DropEmptyEnd();
    return counts.intervals < Intervals::fewest ? LifeStatus::Tabulation : LifeStatus::Success;
}

} // namespace ozm::survival
