#pragma once

#include "module/regression/parametric/CensoredCases.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace ozm::survival {

/// Eight neighbouring cases, or sums over every eighth case: sums over cases are made of eight that do not
/// wait for each other, on every machine.
struct alignas(64) Eight {
    std::array<double, 8> values;

    [[nodiscard]] double Sum() const {
        return ((values[0] + values[1]) + (values[2] + values[3])) +
               ((values[4] + values[5]) + (values[6] + values[7]));
    }
};

/// What covariates are less, and over what: their means and standard deviations (1 where it is 0), so that
/// least squares do not suffer from common parts and units; or nothing.
struct CovariateScales {
    std::vector<double> centre;
    std::vector<double> scale;

    static CovariateScales Standard(const CensoredCases& cases);
    static CovariateScales None(std::size_t covariates) {
        return {std::vector<double>(covariates, 0.0), std::vector<double>(covariates, 1.0)};
    }
    /// Coefficients and constant for covariates on these scales from those for the covariates, and back.
    [[nodiscard]] std::vector<double> Inwards(std::span<const double> coefficients) const;
    void Outwards(std::span<const double> inside, std::span<double> coefficients) const;
};

/// Covariates of some cases, and a column of ones for the constant, in blocks of eight cases: block by block,
/// in it column by column. Places of the last block without a case hold zeros.
class CaseBlocks {
public:
    CaseBlocks(const CensoredCases& cases, std::span<const std::uint32_t> places,
               const CovariateScales& scales);

    [[nodiscard]] std::size_t Cases() const { return cases_; }
    [[nodiscard]] std::size_t Columns() const { return columns_; }
    [[nodiscard]] std::size_t Blocks() const { return (cases_ + 7) / 8; }
    /// The columns of a block.
    [[nodiscard]] const Eight* Block(std::size_t block) const { return cells_.get() + block * columns_; }

private:
    std::size_t cases_;
    std::size_t columns_;
    std::unique_ptr<Eight[]> cells_;
};

/// A number for each case, in blocks; 0 where there is no case.
std::vector<Eight> InBlocks(std::span<const double> values, std::span<const std::uint32_t> places);

/// The places of cases with a status.
std::vector<std::uint32_t> PlacesOf(std::span<const std::uint8_t> status, std::uint8_t which);
std::vector<std::uint32_t> AllPlaces(std::size_t cases);

} // namespace ozm::survival
