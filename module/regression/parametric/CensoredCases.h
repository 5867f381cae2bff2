#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

namespace ozm::survival {

/// What a parametric model is fitted to, in any order of the cases.
struct CensoredCases {
    /// How a case's response is known.
    static constexpr std::uint8_t censored = 0; ///< to be larger than y
    static constexpr std::uint8_t complete = 1;
    static constexpr std::uint8_t confined =
        2; ///< to be between y and `upper`; survival data have no such case

    std::span<const double> y;            ///< responses, one per case; of the exponential model the times
    std::span<const std::uint8_t> status; ///< one per case
    std::size_t covariates = 0;           ///< 0 to 40
    std::size_t stride = 0;               ///< from a covariate's column to the next, at least the cases
    std::span<const double> x;            ///< covariates, column by column
    std::span<const double> upper;        ///< empty where no case is confined

    [[nodiscard]] std::size_t Cases() const { return y.size(); }
    [[nodiscard]] std::span<const double> Column(std::size_t k) const {
        return x.subspan(k * stride, y.size());
    }
    /// A confined case whose bounds hardly differ counts as complete.
    [[nodiscard]] bool IsComplete(std::size_t i) const {
        constexpr double narrow = 1e-5;
        return status[i] == complete ||
               (status[i] == confined && std::abs(upper[i] - y[i]) <= narrow * std::abs(y[i]));
    }
    /// The same cases for a null model.
    [[nodiscard]] CensoredCases WithoutCovariates() const {
        CensoredCases bare = *this;
        bare.covariates = 0;
        return bare;
    }
};

} // namespace ozm::survival
