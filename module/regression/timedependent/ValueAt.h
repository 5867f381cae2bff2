#pragma once

#include <cstddef>

namespace ozm::survival {

/// The value of a covariate: of which case (by its place in the order, from 0) and at which time. One that is
/// missing ends an evaluation, and so does one that takes a predictor too far.
struct ValueAt {
    std::size_t covariate = 0;
    std::size_t place = 0;
    double time = 0.0;
};

} // namespace ozm::survival
