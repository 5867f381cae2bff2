#pragma once

#include "host/data/DataSet.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace korvana {

struct DistinctValue {
    double value = 0;
    int count = 0;
    std::string label; ///< value label, or the date of a date variable; may be empty
};

/// The distinct values of a variable in ascending order.
struct DistinctValues {
    std::vector<DistinctValue> values; ///< empty when there are more than the limit
    bool moreThanLimit = false;
};

/// A summary of a variable; missing cells count only in missingCount.
struct VariableSummary {
    int validCount = 0;
    int missingCount = 0;
    double min = std::numeric_limits<double>::quiet_NaN(); ///< NaN without valid cells
    double max = std::numeric_limits<double>::quiet_NaN();
    DistinctValues distinct;
};

inline constexpr int defaultDistinctLimit = 50;

/// Describes a variable over the cases of a mask (1 = taken; an empty mask = all cases).
VariableSummary describeVariable(const DataSet& data, int variable, std::span<const std::uint8_t> mask = {},
                                 int limit = defaultDistinctLimit);

/// Describes a variable piece by piece, for callers that must not block for all cases at once.
class VariableDescriber {
public:
    /// The data and the mask must outlive this; arguments as for describeVariable.
    VariableDescriber(const DataSet& data, int variable, std::span<const std::uint8_t> mask = {},
                      int limit = defaultDistinctLimit);
    VariableDescriber(VariableDescriber&&) noexcept;
    VariableDescriber& operator=(VariableDescriber&&) noexcept;
    VariableDescriber(const VariableDescriber&) = delete;
    VariableDescriber& operator=(const VariableDescriber&) = delete;
    ~VariableDescriber();

    /// Takes up to the given number of further cases; false when there are no more.
    bool advance(std::size_t cases);

    /// What was found in the cases taken; to be called once.
    VariableSummary take();

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The distinct values alone.
DistinctValues distinctCodes(const DataSet& data, int variable, std::span<const std::uint8_t> mask = {},
                             int limit = defaultDistinctLimit);

/// The values as a phrase for messages: "0 'alive' (40 cases), 1 'dead' (12 cases)" or "more than 50 values".
std::string codesText(const DistinctValues& codes, int limit = defaultDistinctLimit);

/// A handful of the values for messages, whether or not there are more.
std::string fewCodesText(const DataSet& data, int variable);

} // namespace korvana
