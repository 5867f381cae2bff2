#pragma once

#include "module/survdata/CaseBlock.h"
#include "module/survdata/CaseBuffer.h"
#include "module/survdata/CodeIndex.h"
#include "module/survdata/SharedSettings.h"
#include "module/survdata/Status.h"
#include "module/survdata/StopTest.h"
#include "support/CAnalysisSupport.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>

namespace ozm::survival {

/// Counts of a reading pass. Counts of weighted copies stop at the largest 32-bit number.
struct ReadingCounts {
    std::int32_t casesRead = 0;     ///< selected cases, every weighted copy
    double distinctCasesRead = 0.0; ///< selected cases, each once
    std::int32_t valid = 0;         ///< valid observations, every weighted copy
    double distinctValid = 0.0;     ///< valid cases, each once
    bool hasComplete = false;       ///< whether any case has the code of complete observations
    bool hasCensored = false;       ///< and that of censored ones
    double censoredCodes = 0.0;     ///< cases with that code, valid or not, every weighted copy
    // Why selected cases were left out: each counts once, under the first reason that holds, in this order.
    std::int32_t missingCode = 0;  ///< no value of the censoring variable
    std::int32_t otherCode = 0;    ///< neither of the censoring codes
    std::int32_t missingGroup = 0; ///< no value of the grouping variable
    std::int32_t otherGroup = 0;   ///< neither of the group codes
    std::int32_t missingTime = 0;  ///< no value of a time variable
    std::int32_t tooLarge = 0;     ///< a time variable beyond 1e15
    std::int32_t invalidDate = 0;
    std::int32_t negativeTime = 0;
    // What the analysis itself leaves out; see `Taken`.
    std::int32_t missingCovariate = 0;
    std::int32_t missingStratum = 0;
    std::int32_t otherStratum = 0; ///< none of the strata's codes
    // Valid cases whose weight has an effect that may surprise, each case once.
    std::int32_t missingWeight = 0; ///< counts once, like any weight below 2
    std::int32_t zeroWeight = 0;    ///< 0 or less: counts once
    std::int32_t smallWeight = 0;   ///< between 0 and 2 but not 1: counts once
    std::int32_t roundedWeight = 0; ///< above 2 and not a whole number: rounded up

    [[nodiscard]] std::int64_t LeftOut() const {
        return std::int64_t{missingCode} + otherCode + missingGroup + otherGroup + missingTime + tooLarge +
               invalidDate + negativeTime + missingCovariate + missingStratum + otherStratum;
    }
};

/// What an analysis does with an observation that the reader gives to it: takes it, has no room for it, or
/// leaves its case out for a reason that is counted.
enum class Taken : std::uint8_t { Yes, NoRoom, MissingCovariate, MissingStratum, OtherStratum };

/// One observation, as a reading pass gives it to its analysis.
struct Observation {
    double time = 0.0;
    bool complete = false;
    std::int16_t group = 0;      ///< from 1 for a pass with group codes, else 0
    std::int32_t caseNumber = 0; ///< from 1
};

/// Shows the host's progress display for the duration of a reading pass.
class ReadingProgress {
public:
    ReadingProgress(CAnalysisSupport& host, std::int32_t cases) : host_(host) {
        host_.dstart(static_cast<unsigned>(std::max(cases, 0)));
    }
    ~ReadingProgress();
    ReadingProgress(const ReadingProgress&) = delete;
    ReadingProgress& operator=(const ReadingProgress&) = delete;

private:
    CAnalysisSupport& host_;
};

/// The rules by which every analysis reads its cases: which variables and codes, how a survival time is made,
/// which cases count. Made from the shared settings before a pass; knows the place of every variable in the
/// values of a case. With `Groups::ByCodes` a case belongs to the first of the shared group codes that its
/// value of the grouping variable equals.
class CaseReader {
public:
    enum class Groups : std::uint8_t { None, ByCodes };

    /// Any number of `further` variables are read as well; see `Further`.
    CaseReader(CAnalysisSupport& host, SharedSettings& settings, Groups groups = Groups::None,
               std::span<const int> further = {});

    /// From now on a case whose date has a part that is not strictly between 0 and 32000 is left out; else
    /// such a part counts as 0.
    void RequireDateParts() { requiresDateParts_ = true; }

    /// Reads all cases and calls `append(const Observation&)` for each valid one, a weighted case once per
    /// copy. Ends with Stopped on a stop request or when the host cannot go on, TooManyCases when a further
    /// case would be examined after `capacity` observations, TooFewValid when two or fewer are valid.
    /// `append` returns nothing, or `Taken`: NoRoom means TooManyCases; a case that is left out was not
    /// valid.
    template <class Append>
    Status Read(std::int32_t capacity, Append&& append);

    [[nodiscard]] const ReadingCounts& Counts() const { return counts_; }

    /// The values of the further variables for the current case, NaN where it has none.
    [[nodiscard]] std::span<const double> Further() const { return further_; }

private:
    /// The pass over one case of the block, which goes on after a Success.
    template <class Append>
    Status ReadCase(std::size_t i, std::int32_t caseNumber, std::int32_t capacity, Append& append);
    /// Examines the cases of the block: finds out which are valid, their times and groups.
    void Examine();
    void ExamineCodes();
    void ExamineGroups();
    void ExamineTimes();
    void MakeTimes();
    void MakeTimesOfDates();
    template <class Append>
    static Taken Give(Append& append, const Observation& observation) {
        if constexpr (std::is_void_v<decltype(append(observation))>) {
            append(observation);
            return Taken::Yes;
        } else {
            return append(observation);
        }
    }
    void CountLeftOut(Fate why);
    void CountLeftOut(Taken why);
    /// Whether a value of the variable at this place is none.
    [[nodiscard]] bool IsMissing(std::size_t place, double value) const;
    /// Puts the values of a case of the block where the analysis finds the further ones.
    void TakeValues(std::size_t i);
    /// How many times a case of the block counts.
    [[nodiscard]] double Copies(std::size_t i) const { return weightPlace_ < 0 ? 1.0 : CopiesByWeight(i); }
    [[nodiscard]] double CopiesByWeight(std::size_t i) const;
    void CountWeight(std::size_t i);
    /// Puts the counts into the work area shared with the host.
    void ShareCounts();

    CAnalysisSupport& host_;
    SharedSettings& settings_;
    CodeIndex groups_;
    std::int32_t cases_ = 0;
    int times_ = 0;        ///< number of time variables; they follow the censoring variable
    int groupPlace_ = -1;  ///< place of the grouping variable, -1: none
    int weightPlace_ = -1; ///< place of the weight variable, -1: none
    bool requiresDateParts_ = false;
    StopTestPerCase stopRequested_;
    CaseBuffer buffer_;
    CaseBlock block_;
    std::span<double> values_;
    std::span<const int> variables_;
    std::span<const double> missing_;
    std::span<double> further_; ///< the last of the values
    std::size_t furtherPlace_ = 0;
    ReadingCounts counts_;
};

template <class Append>
Status CaseReader::Read(std::int32_t capacity, Append&& append) {
    constexpr std::int32_t casesPerTick = 1 << 16;
    counts_ = {};
    const ReadingProgress progress(host_, cases_);
    for (std::int32_t done = 0; done < cases_; done += static_cast<std::int32_t>(block_.Size())) {
        if (done != 0 && done % casesPerTick == 0) host_.termom(casesPerTick);
        block_.Fetch(host_, done + 1, cases_, variables_);
        Examine();
        for (std::size_t i = 0; i < block_.Size(); ++i) {
            const Status status = ReadCase(i, done + 1 + static_cast<std::int32_t>(i), capacity, append);
            if (status != Status::Success) return status;
        }
    }
    ShareCounts();
    return counts_.valid <= 2 ? Status::TooFewValid : Status::Success;
}

template <class Append>
Status CaseReader::ReadCase(std::size_t i, std::int32_t caseNumber, std::int32_t capacity, Append& append) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    if (stopRequested_()) return Status::Stopped;
    const short answer = block_.Answer(i);
    if (answer == SkipCase) return Status::Success;
    if (answer != UseCase) return Status::Stopped;
    if (counts_.valid >= capacity) return Status::TooManyCases;

    const double copies = Copies(i);
    counts_.distinctCasesRead += 1.0;
    const double read = static_cast<double>(counts_.casesRead) + copies;
    const Fate fate = block_.fate[i];
    if (fate != Fate::MissingCode && fate != Fate::OtherCode) {
        // Without branches on the code, which is as good as random.
        const std::uint8_t complete = block_.complete[i];
        counts_.hasComplete |= complete != 0;
        counts_.hasCensored |= complete == 0;
        counts_.censoredCodes += (1.0 - complete) * copies;
    }
    const Observation observation{block_.time[i], block_.complete[i] != 0, block_.group[i], caseNumber};
    Taken taken = Taken::Yes;
    if (fate == Fate::Valid) {
        if (!further_.empty()) TakeValues(i);
        taken = Give(append, observation);
        if (taken == Taken::NoRoom) return Status::TooManyCases;
    }
    if (fate != Fate::Valid || taken != Taken::Yes) {
        if (fate != Fate::Valid)
            CountLeftOut(fate);
        else
            CountLeftOut(taken);
        // All copies of a case count, or none.
        counts_.casesRead = read < most ? static_cast<std::int32_t>(read) : most;
        return Status::Success;
    }
    counts_.distinctValid += 1.0;
    if (weightPlace_ >= 0) CountWeight(i);
    ++counts_.valid;
    if (counts_.casesRead < most) ++counts_.casesRead;
    if (copies <= 1.0) return Status::Success;
    // Capped: more copies than any capacity make no difference.
    const auto further = static_cast<std::int64_t>(std::min(copies, 1e10)) - 1;
    for (std::int64_t copy = 0; copy < further; ++copy) {
        if (stopRequested_()) return Status::Stopped;
        if (counts_.valid >= capacity) return Status::TooManyCases;
        if (Give(append, observation) != Taken::Yes) return Status::TooManyCases;
        ++counts_.valid;
        if (counts_.casesRead < most) ++counts_.casesRead;
    }
    return Status::Success;
}

} // namespace ozm::survival
