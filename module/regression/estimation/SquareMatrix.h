#pragma once

#include <array>
#include <cstddef>

namespace ozm::survival {

/// Room for the parameters of every model, in whole vectors: 40 covariates, a constant, a scale.
inline constexpr std::size_t mostParameters = 48;
using ParameterVector = std::array<double, mostParameters>;

/// A matrix of up to 48 by 48, row by row.
class SquareMatrix {
public:
    double& operator()(std::size_t row, std::size_t column) { return cells_[row * mostParameters + column]; }
    double operator()(std::size_t row, std::size_t column) const {
        return cells_[row * mostParameters + column];
    }

private:
    std::array<double, mostParameters * mostParameters> cells_{};
};

} // namespace ozm::survival
