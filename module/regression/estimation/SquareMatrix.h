#pragma once

#include <array>
#include <cstddef>

namespace ozm::survival {

/// The most parameters that a model has.
inline constexpr std::size_t mostParameters = 40;
using ParameterVector = std::array<double, mostParameters>;

/// A matrix of up to 40 by 40, row by row.
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
