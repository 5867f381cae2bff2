#pragma once

#include "host/data/DataSet.h"
#include "host/data/Expression.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace korvana {

/// Which cases satisfy a condition.
struct CaseSelection {
    std::vector<std::uint8_t> mask; ///< one per case, 1 = selected
    int selectedCount = 0;
    int missingCount = 0; ///< cases left out because a value that the condition needs is missing
};

/// Evaluates a condition piece by piece, for callers that must not block for all cases at once.
class SelectionPass {
public:
    /// Throws ExpressionError for a condition that cannot be understood. The data must outlive this.
    SelectionPass(const DataSet& data, std::string_view condition);
    SelectionPass(const SelectionPass&) = delete;
    SelectionPass& operator=(const SelectionPass&) = delete;
    ~SelectionPass() = default;

    /// Evaluates up to the given number of further cases; false when there are no more. Throws DataError as
    /// selectCases does.
    bool advance(std::size_t cases);

    bool atEnd() const { return next_ == selection_.mask.size(); }
    std::size_t casesDone() const { return next_; }
    /// What was found so far; the remaining cases count as not selected.
    const CaseSelection& selection() const { return selection_; }
    CaseSelection take() { return std::move(selection_); }

private:
    void note(double value); ///< the result for the next case

    const DataSet& data_;
    Expression expression_;
    CaseInputs values_;
    std::vector<double> results_; ///< of the cases being looked at
    CaseSelection selection_;
    std::size_t next_ = 0;
};

/// Evaluates a condition (see Expression for the syntax) for every case and selects the cases for which it is
/// not zero. A case with a missing value in a variable that the condition refers to is not selected, unless
/// the condition tests that variable by missing(x). Throws ExpressionError for a condition that cannot be
/// understood and DataError, naming the case, when it has no finite value for a case without missing values.
CaseSelection selectCases(const DataSet& data, std::string_view condition);

} // namespace korvana
