#include "module/survdata/CaseReader.h"

#include "module/survdata/DayNumber.h"
#include "support/CodeComparison.h"

#include <algorithm>
#include <cmath>
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
      times_(static_cast<int>(TimesOf(settings).size())),
      buffer_(host, settings.work, VariablesOf(host, settings, groups != Groups::None, further)),
      values_(buffer_.Values()), variables_(buffer_.Variables()), missing_(buffer_.Missing()),
      further_(values_.last(further.size())), furtherPlace_(values_.size() - further.size()) {
    int place = 1 + times_;
    if (groups != Groups::None) groupPlace_ = place++;
    if (static_cast<std::size_t>(place) < furtherPlace_) weightPlace_ = place;
}

void CaseReader::MarkMissing() {
    for (std::size_t k = 0; k < further_.size(); ++k)
        if (IsMissing(furtherPlace_ + k)) further_[k] = unsetCode;
}

bool CaseReader::IsMissing(std::size_t place) const {
    return std::isnan(values_[place]) || values_[place] == missing_[place];
}

double CaseReader::Copies() const {
    if (weightPlace_ < 0) return 1.0;
    const auto place = static_cast<std::size_t>(weightPlace_);
    const double weight = values_[place];
    return weight >= 2.0 && !IsMissing(place) ? std::ceil(weight) : 1.0;
}

void CaseReader::CountWeight() {
    const auto place = static_cast<std::size_t>(weightPlace_);
    const double weight = values_[place];
    if (IsMissing(place)) {
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

void CaseReader::CountLeftOut(Taken why) {
    if (why == Taken::MissingCovariate)
        ++counts_.missingCovariate;
    else if (why == Taken::MissingStratum)
        ++counts_.missingStratum;
    else
        ++counts_.otherStratum;
}

bool CaseReader::Examine(Observation& observation) {
    const double censoring = values_[0];
    observation.complete = CodesEqual(censoring, settings_.completeCode);
    if (!observation.complete && !CodesEqual(censoring, settings_.censoredCode)) {
        ++(IsMissing(0) ? counts_.missingCode : counts_.otherCode);
        return false;
    }
    (observation.complete ? counts_.hasComplete : counts_.hasCensored) = true;
    if (!observation.complete) counts_.censoredCodes += Copies();
    if (groupPlace_ >= 0) {
        const auto place = static_cast<std::size_t>(groupPlace_);
        observation.group = groups_.Find(values_[place]);
        if (observation.group == 0) {
            ++(IsMissing(place) ? counts_.missingGroup : counts_.otherGroup);
            return false;
        }
    }
    return SurvivalTime(observation.time);
}

bool CaseReader::SurvivalTime(double& time) {
    const auto times = values_.subspan(1, static_cast<std::size_t>(times_));
    for (std::size_t k = 0; k < times.size(); ++k) {
        if (!IsMissing(1 + k) && std::abs(times[k]) <= largestValue) continue;
        ++(IsMissing(1 + k) ? counts_.missingTime : counts_.tooLarge);
        return false;
    }
    switch (times_) {
    case 1:
        time = times[0];
        break;
    case 2:
        time = times[1] - times[0];
        break;
    case 6:
        if (!DateTime(time)) return false;
        break;
    default:
        ++counts_.missingTime;
        return false;
    }
    if (time < 0.0) {
        ++counts_.negativeTime;
        return false;
    }
    return true;
}

bool CaseReader::DateTime(double& time) {
    const auto times = values_.subspan(1, 6);
    if (requiresDateParts_ && !std::ranges::all_of(times, IsDatePart)) {
        ++counts_.invalidDate;
        return false;
    }
    const double start = DayNumber(DatePart(times[0]), DatePart(times[1]), Year(times[2]));
    const double end = DayNumber(DatePart(times[3]), DatePart(times[4]), Year(times[5]));
    if (start == invalidDay || end == invalidDay) {
        ++counts_.invalidDate;
        return false;
    }
    time = end - start;
    return true;
}

} // namespace ozm::survival
