#include "module/regression/data/RegressionSample.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <tuple>
#include <utility>

namespace ozm::survival {
namespace {

bool HasValue(double x) {
    return !std::isnan(x);
}

/// The sum of a function of the values that there are, by eight sums that do not wait for each other.
template <class Function>
double SumOverValues(std::span<const double> column, Function function) {
    constexpr std::size_t lanes = 8;
    std::array<double, lanes> sums{};
    const std::size_t whole = column.size() / lanes * lanes;
    for (std::size_t i = 0; i < whole; i += lanes)
        for (std::size_t l = 0; l < lanes; ++l)
            sums[l] += HasValue(column[i + l]) ? function(column[i + l]) : 0.0;
    for (std::size_t i = whole; i < column.size(); ++i)
        sums[i - whole] += HasValue(column[i]) ? function(column[i]) : 0.0;
    return std::accumulate(sums.begin(), sums.end(), 0.0);
}

} // namespace

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
        const auto first = std::ranges::find_if(column, HasValue);
        summary.values = static_cast<std::int32_t>(std::ranges::count_if(column, HasValue));
        summary.missing = static_cast<std::int32_t>(column.size()) - summary.values;
        if (summary.values == 0) continue;
        const double origin = *first;
        const double offset =
            SumOverValues(column, [origin](double value) { return value - origin; }) / summary.values;
        summary.mean = origin + offset;
        if (summary.values < 2) continue;
        const auto deviation = [origin, offset](double value) { return (value - origin) - offset; };
        const double rest = SumOverValues(column, deviation); // what rounding leaves of it
        const double squares =
            SumOverValues(column, [&](double value) { return deviation(value) * deviation(value); });
        summary.deviation =
            std::sqrt(std::max(squares - rest * rest / summary.values, 0.0) / (summary.values - 1));
    }
}

void RegressionSample::SubstituteMeans() {
    for (std::size_t k = 0; k < summaries_.size(); ++k)
        if (summaries_[k].missing > 0)
            for (double& value : Column(k))
                if (std::isnan(value)) value = summaries_[k].mean;
}

template <class T>
bool RegressionSample::Rearrange(CAnalysisSupport& host, HostArray<T>& values, std::span<const Place> order,
                                 std::size_t columns) const {
    HostArray<T> scratch;
    if (!scratch.Allocate(host, cases_)) return false;
    for (std::size_t k = 0; k < columns; ++k) {
        const std::span<T> column = values.Span().subspan(k * capacity_, cases_);
        for (std::size_t i = 0; i < cases_; ++i)
            scratch[i] = column[order[i].place];
        std::ranges::copy(scratch.Span(), column.begin());
    }
    return true;
}

bool RegressionSample::Order(CAnalysisSupport& host, std::size_t strata) {
    HostArray<Place> places;
    if (!places.Allocate(host, cases_)) return false;
    for (std::size_t i = 0; i < cases_; ++i)
        places[i] = {times_[i], static_cast<std::uint32_t>(i), strata_[i], complete_[i]};
    const std::span<Place> order = places.Span();
    std::ranges::sort(
        order, {}, [](const Place& of) { return std::tuple(-of.stratum, -of.time, of.complete, of.place); });
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
