#pragma once

#include "module/regression/cox/OrderedSample.h"
#include "module/regression/data/CovariateSummary.h"
#include "module/survdata/HostArray.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ozm::survival {

/// The cases of a regression: times, events, case numbers, strata, and one copy of the covariates. They come
/// in as they are read; `Order` puts them into the order of the partial likelihood.
class RegressionSample {
public:
    static constexpr std::int32_t mostCases = 32000;

    /// Room for so many cases. False when the host refused it; the sample is then empty.
    [[nodiscard]] bool Obtain(CAnalysisSupport& host, std::size_t capacity, std::size_t covariates);
    void Release() noexcept;

    /// Adds a case; there is room for it. A covariate without a value is NaN. `stratum` from 0.
    void Add(double time, bool complete, std::int32_t caseNumber, std::int16_t stratum,
             std::span<const double> covariates);

    /// Stratum g becomes `places[g]`.
    void RenumberStrata(std::span<const std::int16_t> places);

    void Summarise();
    /// Puts a covariate's mean into the places without a value.
    void SubstituteMeans();
    /// Blocks by stratum, the last one first; within a block times descending, and of equal times censored
    /// cases first; else as they came. False when the host refused memory for it.
    [[nodiscard]] bool Order(CAnalysisSupport& host, std::size_t strata);

    [[nodiscard]] std::size_t Cases() const { return cases_; }
    [[nodiscard]] std::size_t Covariates() const { return summaries_.size(); }
    [[nodiscard]] std::span<const double> Times() const { return times_.First(cases_); }
    [[nodiscard]] std::span<const std::uint8_t> Complete() const { return complete_.First(cases_); }
    [[nodiscard]] std::span<const std::int32_t> CaseNumbers() const { return caseNumbers_.First(cases_); }
    [[nodiscard]] std::span<double> Column(std::size_t covariate) {
        return x_.Span().subspan(covariate * capacity_, cases_);
    }
    [[nodiscard]] std::span<const double> Column(std::size_t covariate) const {
        return x_.Span().subspan(covariate * capacity_, cases_);
    }
    [[nodiscard]] const CovariateSummary& Summary(std::size_t covariate) const {
        return summaries_[covariate];
    }
    [[nodiscard]] std::int32_t Events() const;
    /// As the partial likelihood takes it; refers to this sample.
    [[nodiscard]] OrderedSample Ordered() const {
        return {cases_, Covariates(), capacity_, Times(), Complete(), x_.Span(), blocks_};
    }

private:
    /// What the order of a case depends on, and where it stands.
    struct Place {
        double time;
        std::uint32_t place;
        std::int16_t stratum;
        std::uint8_t complete;
    };

    /// Puts every column into an order. False without memory.
    template <class T>
    [[nodiscard]] bool Rearrange(CAnalysisSupport& host, HostArray<T>& values, std::span<const Place> order,
                                 std::size_t columns = 1) const;

    std::size_t cases_ = 0;
    std::size_t capacity_ = 0;
    HostArray<double> times_;
    HostArray<double> x_; ///< column by column, `capacity_` apart
    HostArray<std::uint8_t> complete_;
    HostArray<std::int32_t> caseNumbers_;
    HostArray<std::int16_t> strata_;
    std::vector<CovariateSummary> summaries_;
    std::vector<std::int32_t> blocks_;
};

} // namespace ozm::survival
