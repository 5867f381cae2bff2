#include "module/regression/data/RegressionSample.h"

#include <algorithm>
#include <cmath>
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
    for (std::size_t k = 0; k < summaries_.size(); ++k)
        summaries_[k] = SummaryOf(std::as_const(*this).Column(k));
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
