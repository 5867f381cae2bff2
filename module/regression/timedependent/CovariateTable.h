#pragma once

#include "module/regression/timedependent/RiskSetPass.h"
#include "module/regression/timedependent/RiskTimes.h"
#include "module/regression/timedependent/TimeCovariates.h"

#include <cstddef>
#include <span>
#include <vector>

namespace ozm::survival {

/// The values of covariates for those at risk at each time: computed once as far as there is room for them,
/// else anew whenever they are asked for, with the same result. A covariate that does not depend on the time
/// has one column of values. Of times without events only the largest magnitudes are kept, which is enough
/// for nearly every test of a bound.
class CovariateTable {
public:
    /// The numbers that there must be room for, so that none is computed twice but at times without events.
    static std::size_t WholeRoom(const OrderedSample& sample, const TimeCovariates& covariates);

    /// Computes the fixed covariates. Sample, covariates and room must outlive it; what fits into the room is
    /// kept. Beyond that it takes 8 bytes per case and covariate, twice for a changing one.
    CovariateTable(const OrderedSample& sample, TimeCovariates& covariates, std::span<double> room);

    [[nodiscard]] std::span<const RiskTime> Times() const { return times_; }
    /// Which covariates are in the columns of fixed ones, and in those of changing ones.
    [[nodiscard]] std::span<const std::size_t> Fixed() const { return fixed_; }
    [[nodiscard]] std::span<const std::size_t> Changing() const { return changing_; }

    /// The columns of the fixed covariates, from a case on. 0 stands for what has no value.
    [[nodiscard]] CaseColumns FixedFrom(std::size_t first) const {
        return {fixedValues_.data() + first, stride_, fixed_.size()};
    }
    /// The first case of which a fixed covariate has no value; the number of cases where there is none.
    [[nodiscard]] std::size_t FirstWithout() const { return firstWithout_; }

    /// The changing covariates of those at risk at a time, by its place; valid until the next call. Those of
    /// times before it were asked for already.
    [[nodiscard]] CaseColumns ChangingAt(std::size_t time);
    /// Whether the values of a time were asked for before, and all of them are finite.
    [[nodiscard]] bool Known(std::size_t time) const { return time < known_; }
    /// Then: the largest magnitude of each changing covariate.
    [[nodiscard]] std::span<const double> LargestAt(std::size_t time) const {
        return std::span{largest_}.subspan(time * changing_.size(), changing_.size());
    }

private:
    void ComputeFixed(std::size_t cases);
    /// Whether all of them are finite; then it knows the largest ones.
    bool Survey(std::size_t time, const CaseColumns& columns);

    TimeCovariates& covariates_;
    std::vector<RiskTime> times_;
    std::vector<std::size_t> fixed_;
    std::vector<std::size_t> changing_;
    std::size_t stride_;
    std::vector<double> fixedValues_;
    std::size_t firstWithout_;
    std::span<double> room_;
    std::vector<std::size_t> places_; ///< in the room, of each time; beyond it: computed anew
    std::vector<double> computed_;    ///< of a time that has no place there
    std::vector<double> largest_;
    std::size_t known_ = 0; ///< times
};

} // namespace ozm::survival
