#include "module/survdata/CaseReader.h"

#include "module/survdata/CodeComparison.h"
#include "module/survdata/DayNumber.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ozm::survival {
namespace {

/// Values of larger magnitude are taken for missing.
constexpr double largestValue = 1e15;

/// Missing-data codes are compared as single-precision numbers; one beyond their range equals no value.
double SinglePrecision(double code) {
    return std::abs(code) <= std::numeric_limits<float>::max() ? static_cast<double>(static_cast<float>(code))
                                                               : unsetCode;
}

/// A part of a date: values strictly between 0 and 32000 are truncated, any other leaves the part 0.
int DatePart(double value) {
    return value > 0.0 && value < 32000.0 ? static_cast<int>(value) : 0;
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
    } catch (...) { // NOLINT(bugprone-empty-catch): a display that cannot be taken away
    }
}

CaseReader::CaseReader(CAnalysisSupport& host, SharedSettings& settings, Groups groups)
    : host_(host), settings_(settings), groups_(groups), cases_(host.ss_nb()) {
    WorkAreas& work = settings_.work;
    std::size_t count = 0;
    const auto add = [&](int variable) {
        work.variables[count] = variable;
        double code = unsetCode;
        host_.getmd5(variable, code);
        work.missing[count] = SinglePrecision(code);
        return static_cast<int>(count++);
    };
    add(settings_.First(ListCensoring));
    for (const int variable : settings_.Times().first(std::min<std::size_t>(settings_.Times().size(), 6))) {
        add(variable);
        ++times_;
    }
    if (groups_ != Groups::None) groupPlace_ = add(settings_.First(ListGrouping));
    if (const int weight = host_.WeightVariable(); weight != 0) weightPlace_ = add(weight);
    values_ = std::span{work.values}.first(count);
    variables_ = std::span<const int>{work.variables}.first(count);
    missing_ = std::span<const double>{work.missing}.first(count);
}

double CaseReader::Copies() {
    if (weightPlace_ < 0) return 1.0;
    const auto place = static_cast<std::size_t>(weightPlace_);
    const double weight = values_[place];
    if (std::isnan(weight) || weight == missing_[place]) {
        ++counts_.missingWeight;
        return 1.0;
    }
    return weight >= 2.0 ? std::ceil(weight) : 1.0;
}

void CaseReader::ShareCounts() {
    settings_.work.counts = {
        counts_.casesRead,    counts_.valid,       counts_.otherCode + counts_.otherGroup,
        counts_.missing,      counts_.invalidDate, counts_.negativeTime,
        counts_.missingWeight};
}

bool CaseReader::Examine(Observation& observation) {
    const double censoring = values_[0];
    observation.complete = CodesEqual(censoring, settings_.completeCode);
    if (!observation.complete && !CodesEqual(censoring, settings_.censoredCode)) {
        ++counts_.otherCode;
        return false;
    }
    if (groupPlace_ >= 0) {
        const double group = values_[static_cast<std::size_t>(groupPlace_)];
        if (CodesEqual(group, settings_.groupCodes[0])) {
            observation.group = 1;
        } else if (CodesEqual(group, settings_.groupCodes[1])) {
            observation.group = 2;
        } else {
            ++counts_.otherGroup;
            return false;
        }
    }
    return SurvivalTime(observation.time);
}

bool CaseReader::SurvivalTime(double& time) {
    const auto times = values_.subspan(1, static_cast<std::size_t>(times_));
    const auto codes = missing_.subspan(1, static_cast<std::size_t>(times_));
    for (std::size_t k = 0; k < times.size(); ++k) {
        // Written so that a NaN fails it.
        if (times[k] == codes[k] || !(std::abs(times[k]) <= largestValue)) {
            ++counts_.missing;
            return false;
        }
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
        ++counts_.missing;
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
