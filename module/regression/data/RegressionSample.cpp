#include "module/regression/data/RegressionSample.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>
#include <utility>

namespace ozm::survival {

bool RegressionSample::Obtain(CAnalysisSupport& host, std::size_t capacity, std::size_t covariates) {
    Release();
    if (!times_.Allocate(host, capacity) || !x_.Allocate(host, capacity * covariates) ||
        !complete_.Allocate(host, capacity) || !caseNumbers_.Allocate(host, capacity) ||
        !strata_.Allocate(host, capacity)) {
        Release();
        return false;
    }
    capacity_ = capacity;
    summaries_.assign(covariates, {});
    return true;
}

void RegressionSample::Release() noexcept {
    times_.Release();
    x_.Release();
    complete_.Release();
    caseNumbers_.Release();
    strata_.Release();
    summaries_.clear();
    blocks_.clear();
    cases_ = capacity_ = 0;
}

void RegressionSample::Add(double time, bool complete, std::int32_t caseNumber, std::int16_t stratum,
                           std::span<const double> covariates) {
    times_[cases_] = time;
    complete_[cases_] = complete ? 1 : 0;
    caseNumbers_[cases_] = caseNumber;
    strata_[cases_] = stratum;
    for (std::size_t k = 0; k < covariates.size(); ++k)
        x_[k * capacity_ + cases_] = covariates[k];
    ++cases_;
}

void RegressionSample::RenumberStrata(std::span<const std::int16_t> places) {
    for (std::int16_t& stratum : strata_.First(cases_))
        stratum = places[static_cast<std::size_t>(stratum)];
}

void RegressionSample::Summarise() {
    for (std::size_t k = 0; k < summaries_.size(); ++k) {
        const std::span<const double> column = std::as_const(*this).Column(k);
        CovariateSummary& summary = summaries_[k];
        summary = {};
        double first = 0.0;
        double sum = 0.0;
        for (const double value : column) {
            if (std::isnan(value)) continue;
            if (summary.values++ == 0) first = value;
            sum += value - first;
        }
        summary.missing = static_cast<std::int32_t>(column.size()) - summary.values;
        if (summary.values == 0) continue;
        const double offset = sum / summary.values;
        summary.mean = first + offset;
        double squares = 0.0;
        double rest = 0.0; // what rounding leaves of the sum of deviations
        for (const double value : column) {
            if (std::isnan(value)) continue;
            const double deviation = (value - first) - offset;
            squares += deviation * deviation;
            rest += deviation;
        }
        if (summary.values < 2) continue;
        squares -= rest * rest / summary.values;
        summary.deviation = std::sqrt(std::max(squares, 0.0) / (summary.values - 1));
    }
}

void RegressionSample::SubstituteMeans() {
    for (std::size_t k = 0; k < summaries_.size(); ++k)
        if (summaries_[k].missing > 0)
            for (double& value : Column(k))
                if (std::isnan(value)) value = summaries_[k].mean;
}

template <class T>
bool RegressionSample::Rearrange(CAnalysisSupport& host, HostArray<T>& values,
                                 std::span<const std::int32_t> places, std::size_t columns) const {
    HostArray<T> scratch;
    if (!scratch.Allocate(host, cases_)) return false;
    for (std::size_t k = 0; k < columns; ++k) {
        const std::span<T> column = values.Span().subspan(k * capacity_, cases_);
        for (std::size_t i = 0; i < cases_; ++i)
            scratch[i] = column[static_cast<std::size_t>(places[i])];
        std::ranges::copy(scratch.Span(), column.begin());
    }
    return true;
}

bool RegressionSample::Order(CAnalysisSupport& host, std::size_t strata) {
    HostArray<std::int32_t> places;
    if (!places.Allocate(host, cases_)) return false;
    const std::span<std::int32_t> order = places.Span();
    std::iota(order.begin(), order.end(), 0);
    std::ranges::sort(order, [this](std::int32_t one, std::int32_t other) {
        const auto key = [this](std::int32_t place) {
            const auto i = static_cast<std::size_t>(place);
            return std::tuple(-strata_[i], -times_[i], complete_[i], place);
        };
        return key(one) < key(other);
    });
    if (!Rearrange(host, times_, order) || !Rearrange(host, x_, order, Covariates()) ||
        !Rearrange(host, complete_, order) || !Rearrange(host, caseNumbers_, order) ||
        !Rearrange(host, strata_, order))
        return false;
    blocks_.assign(strata, 0);
    for (std::size_t i = 0; i < cases_; ++i)
        ++blocks_[strata - 1 - static_cast<std::size_t>(strata_[i])];
    return true;
}

std::int32_t RegressionSample::Events() const {
    return static_cast<std::int32_t>(std::ranges::count(Complete(), std::uint8_t{1}));
}

} // namespace ozm::survival
