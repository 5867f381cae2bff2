#pragma once

#include "module/survdata/SharedSettings.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ozm::survival {

/// Room for the values of a case: in the work areas shared with the host if they suffice, else in memory of
/// its own.
class CaseBuffer {
public:
    /// Takes the variables' numbers and gets their missing-data codes.
    CaseBuffer(CAnalysisSupport& host, WorkAreas& work, std::span<const int> variables);
    CaseBuffer(const CaseBuffer&) = delete;
    CaseBuffer& operator=(const CaseBuffer&) = delete;

    // All equally long.
    [[nodiscard]] std::span<double> Values() const { return values_; }
    [[nodiscard]] std::span<const int> Variables() const { return variables_; }
    /// NaN where a variable has no missing-data code.
    [[nodiscard]] std::span<const double> Missing() const { return missing_; }

private:
    std::vector<double> own_; ///< values, then codes
    std::vector<std::int32_t> ownVariables_;
    std::span<double> values_;
    std::span<std::int32_t> variables_;
    std::span<double> missing_;
};

} // namespace ozm::survival
