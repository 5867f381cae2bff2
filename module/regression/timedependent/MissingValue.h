#pragma once

#include <cstddef>

namespace ozm::survival {

/// A covariate that has no value: of which case (by its place in the order, from 0) and at which time.
struct MissingValue {
    std::size_t covariate = 0;
    std::size_t place = 0;
    double time = 0.0;
};

} // namespace ozm::survival
