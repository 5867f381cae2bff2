#include "module/survdata/CaseReader.h"

#include "module/survdata/DayNumber.h"
#include "support/CodeComparison.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <vector>

namespace ozm::survival {
namespace {

/// Times of larger magnitude are left out.
constexpr double largestValue = 1e15;

std::span<const int> TimesOf(const SharedSettings& settings) {
    return settings.Times().first(std::min<std::size_t>(settings.Times().size(), 6));
}

/// The variables of a pass in their order: censoring, times, group, weight, further ones.
std::vector<int> VariablesOf(CAnalysisSupport& host, const SharedSettings& settings, bool groups,
                             std::span<const int> further) {
    std::vector<int> variables{settings.First(ListCensoring)};
    const auto times = TimesOf(settings);
    variables.insert(variables.end(), times.begin(), times.end());
    if (groups) variables.push_back(settings.First(ListGrouping));
    if (const int weight = host.WeightVariable(); weight != 0) variables.push_back(weight);
    variables.insert(variables.end(), further.begin(), further.end());
    return variables;
}

bool IsDatePart(double value) {
    return value > 0.0 && value < 32000.0;
}

/// A part of a date: values strictly between 0 and 32000 are truncated, any other leaves the part 0.
int DatePart(double value) {
    return IsDatePart(value) ? static_cast<int>(value) : 0;
}

/// Two-digit years mean 1900 to 1999; a part left 0 stays an invalid year.
int Year(double value) {
    const int year = DatePart(value);
    return year > 0 && year < 100 ? year + 1900 : year;
}

} // namespace

ReadingProgress::~ReadingProgress() {
    try {
        host_.dstop();
    } catch (...) { // NOLINT(bugprone-empty-catch): a display that cannot be closed
    }
}

CaseReader::CaseReader(CAnalysisSupport& host, SharedSettings& settings, Groups groups,
                       std::span<const int> further)
    : host_(host), settings_(settings), groups_(settings.groupCodes), cases_(host.ss_nb()),
      times_(static_cast<int>(TimesOf(settings).size())), stopRequested_(host),
      buffer_(host, settings.work, VariablesOf(host, settings, groups != Groups::None, further)),
      block_(buffer_.Variables().size()), values_(buffer_.Values()), variables_(buffer_.Variables()),
      missing_(buffer_.Missing()), further_(values_.last(further.size())),
      furtherPlace_(values_.size() - further.size()) {
    int place = 1 + times_;
    if (groups != Groups::None) groupPlace_ = place++;
    if (static_cast<std::size_t>(place) < furtherPlace_) weightPlace_ = place;
}

bool CaseReader::IsMissing(std::size_t place, double value) const {
    return std::isnan(value) || value == missing_[place];
}

void CaseReader::TakeValues(std::size_t i) {
    for (std::size_t place = 0; place < values_.size(); ++place) {
        const double value = block_.Column(place)[i];
        values_[place] = place >= furtherPlace_ && IsMissing(place, value) ? unsetCode : value;
    }
}

double CaseReader::CopiesByWeight(std::size_t i) const {
    const auto place = static_cast<std::size_t>(weightPlace_);
    const double weight = block_.Column(place)[i];
    return weight >= 2.0 && !IsMissing(place, weight) ? std::ceil(weight) : 1.0;
}

void CaseReader::CountWeight(std::size_t i) {
    const auto place = static_cast<std::size_t>(weightPlace_);
    const double weight = block_.Column(place)[i];
    if (IsMissing(place, weight)) {
        ++counts_.missingWeight;
    } else if (weight <= 0.0) {
        ++counts_.zeroWeight;
    } else if (weight < 2.0) {
        counts_.smallWeight += weight == 1.0 ? 0 : 1;
    } else if (weight != std::trunc(weight)) {
        ++counts_.roundedWeight;
    }
}

void CaseReader::ShareCounts() {
    settings_.work.counts = {counts_.casesRead,    counts_.valid,         counts_.missingCode,
                             counts_.otherCode,    counts_.missingGroup,  counts_.otherGroup,
                             counts_.missingTime,  counts_.tooLarge,      counts_.invalidDate,
                             counts_.negativeTime, counts_.missingWeight, counts_.zeroWeight,
                             counts_.smallWeight,  counts_.roundedWeight};
}

void CaseReader::CountLeftOut(Fate why) {
    static constexpr std::int32_t ReadingCounts::*counters[] = {
        nullptr,
        &ReadingCounts::missingCode,
        &ReadingCounts::otherCode,
        &ReadingCounts::missingGroup,
        &ReadingCounts::otherGroup,
        &ReadingCounts::missingTime,
        &ReadingCounts::tooLarge,
        &ReadingCounts::invalidDate,
        &ReadingCounts::negativeTime,
    };
    ++(counts_.*counters[static_cast<std::size_t>(why)]);
}

void CaseReader::CountLeftOut(Taken why) {
    if (why == Taken::MissingCovariate)
        ++counts_.missingCovariate;
    else if (why == Taken::MissingStratum)
        ++counts_.missingStratum;
    else
        ++counts_.otherStratum;
}

void CaseReader::Examine() {
    ExamineCodes();
    if (groupPlace_ >= 0) ExamineGroups();
    ExamineTimes();
    MakeTimes();
}

void CaseReader::ExamineCodes() {
    const CodeRange complete(settings_.completeCode);
    const CodeRange censored(settings_.censoredCode);
    const auto codes = block_.Column(0);
    // Without branches on the code, which is as good as random.
    for (std::size_t i = 0; i < codes.size(); ++i)
        block_.complete[i] = complete.Contains(codes[i]) ? 1 : 0;
    for (std::size_t i = 0; i < codes.size(); ++i) {
        const unsigned known = block_.complete[i] | (censored.Contains(codes[i]) ? 1U : 0U);
        block_.fate[i] = known != 0 ? Fate::Valid : Fate::MissingCode;
    }
    for (std::size_t i = 0; i < codes.size(); ++i)
        if (block_.fate[i] == Fate::MissingCode && !IsMissing(0, codes[i])) block_.fate[i] = Fate::OtherCode;
}

void CaseReader::ExamineGroups() {
    const auto place = static_cast<std::size_t>(groupPlace_);
    const auto values = block_.Column(place);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (block_.fate[i] != Fate::Valid) continue;
        block_.group[i] = groups_.Find(values[i]);
        if (block_.group[i] == 0)
            block_.fate[i] = IsMissing(place, values[i]) ? Fate::MissingGroup : Fate::OtherGroup;
    }
}

void CaseReader::ExamineTimes() {
    for (std::size_t place = 1; place <= static_cast<std::size_t>(times_); ++place) {
        const auto values = block_.Column(place);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const Fate fate = IsMissing(place, values[i])          ? Fate::MissingTime
                              : std::abs(values[i]) > largestValue ? Fate::TooLarge
                                                                   : Fate::Valid;
            block_.fate[i] = block_.fate[i] == Fate::Valid ? fate : block_.fate[i];
        }
    }
}

void CaseReader::MakeTimes() {
    const std::size_t size = block_.Size();
    if (times_ == 1) {
        std::ranges::copy(block_.Column(1), block_.time.begin());
    } else if (times_ == 2) {
        std::ranges::transform(block_.Column(2), block_.Column(1), block_.time.begin(), std::minus{});
    } else if (times_ == 6) {
        MakeTimesOfDates();
    }
    for (std::size_t i = 0; i < size; ++i) {
        const Fate fate = times_ != 1 && times_ != 2 && times_ != 6 ? Fate::MissingTime
                          : block_.time[i] < 0.0                    ? Fate::NegativeTime
                                                                    : Fate::Valid;
        block_.fate[i] = block_.fate[i] == Fate::Valid ? fate : block_.fate[i];
    }
}

void CaseReader::MakeTimesOfDates() {
    for (std::size_t i = 0; i < block_.Size(); ++i) {
        if (block_.fate[i] != Fate::Valid) continue;
        std::array<double, 6> parts{};
        for (std::size_t k = 0; k < parts.size(); ++k)
            parts[k] = block_.Column(1 + k)[i];
        const double start = DayNumber(DatePart(parts[0]), DatePart(parts[1]), Year(parts[2]));
        const double end = DayNumber(DatePart(parts[3]), DatePart(parts[4]), Year(parts[5]));
        const bool valid = (!requiresDateParts_ || std::ranges::all_of(parts, IsDatePart)) &&
                           start != invalidDay && end != invalidDay;
        if (!valid) block_.fate[i] = Fate::InvalidDate;
        block_.time[i] = end - start;
    }
}

} // namespace ozm::survival
