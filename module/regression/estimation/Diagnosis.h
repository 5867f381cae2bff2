#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace ozm::survival {

/// What the data say about an estimation beyond its status.
struct Diagnosis {
    /// A covariate that depends linearly on those before it, and these.
    struct Dependence {
        std::size_t covariate = 0;
        std::vector<std::size_t> on;
        std::vector<double> weights{}; ///< of these, on the scale of the matrix that shows it
    };
    /// A covariate whose coefficient has no finite maximum.
    struct Unbounded {
        std::size_t covariate = 0;
        bool upwards = true;
    };
    std::optional<Dependence> dependence;
    std::vector<Unbounded> unbounded;
    std::vector<std::size_t> unboundedTogether; ///< only in combination
    /// A covariate whose values are of a magnitude that products of them cannot stand for, and that
    /// magnitude.
    struct Scale {
        std::size_t covariate = 0;
        double magnitude = 0.0;
    };
    std::vector<Scale> scales;
    bool stopped = false; ///< before the end, by the user: it says nothing
};

} // namespace ozm::survival
