#pragma once

#include "host/data/CaseSelection.h"
#include "host/data/ComputedVariable.h"
#include "host/data/DataSet.h"
#include "host/results/OutputOrigin.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// The data that an analysis works on: a data set, which of its cases take part, and what weights them.
/// Without a data set it is an empty table.
class ActiveData {
public:
    ActiveData() = default;
    ~ActiveData() = default;
    ActiveData(const ActiveData&) = delete;
    ActiveData& operator=(const ActiveData&) = delete;

    /// Takes over a data set; selection and weights of the previous one are dropped.
    void open(DataSet data);
    [[nodiscard]] const DataSet& dataSet() const { return data_; }

    /// Changes what is known about a variable (counted from 0) except its name, kind and cells, and repeats
    /// the selection. Throws what `select` throws when the condition is no longer valid (it refers to a label
    /// that is gone); nothing is changed then.
    void describe(int variable0, std::string label, double missingCode, std::vector<ValueLabel> valueLabels);

    /// What `describe` changed since the data set was opened, in order.
    [[nodiscard]] const std::vector<Description>& changes() const { return changes_; }
    /// The missing codes when it was opened.
    [[nodiscard]] const std::vector<MissingCode>& missingAtFirst() const { return missingAtFirst_; }

    /// Appends a variable computed from others (see `computeVariable`, whose errors it throws), with its
    /// note. Selection and weights stay.
    void define(const Definition& definition);
    /// Appends a variable that was already computed over this data set.
    void define(ComputedVariable computed);
    /// Removes a computed variable (counted from 0), with its note; those after it are renumbered. Throws
    /// DataError for one that was read, and for one that selection, weights or another computed variable use;
    /// nothing is changed then.
    void undefine(int variable0);

    /// Counts the data sets opened, to tell whether something derived from one still belongs to it.
    [[nodiscard]] int generation() const { return generation_; }

    /// Takes the cases that satisfy a condition (see `selectCases`, whose errors it throws; the selection
    /// before then stays). An empty condition takes all cases.
    void select(std::string_view condition);
    /// Takes a selection that was already made over this data set by a condition.
    void select(std::string condition, CaseSelection selection);
    [[nodiscard]] const std::string& condition() const { return condition_; }
    /// One byte per case, 1 = selected; empty when all cases take part.
    [[nodiscard]] std::span<const std::uint8_t> mask() const { return selection_.mask; }
    [[nodiscard]] int selectedCount() const;

    /// Weights the cases by a variable, given by name or number (see `resolveWeights`, whose errors it
    /// throws). Empty: weighting off.
    void weightBy(std::string_view nameOrNumber1);
    /// The number of the weight variable from 1, 0 while weighting is off.
    [[nodiscard]] int weightVariable() const { return weightVariable_; }

    /// The state that results of these data belong to: kept with them and compared with the later state.
    [[nodiscard]] DataState state() const;

    /// What a reader of results should know about the data: the reader's notes, the selection, the weights.
    [[nodiscard]] std::vector<std::string> notes() const;

    /// A variable's cells, for reading passes; a cell that equals the missing code has no value.
    struct Cells {
        const double* first = nullptr;
        double missingCode = 0.0; ///< NaN, which equals nothing, when there is none
        /// The value of a case (from 0), NaN for a missing one.
        [[nodiscard]] double value(std::size_t place) const {
            const double cell = first[place];
            return cell == missingCode ? std::numeric_limits<double>::quiet_NaN() : cell;
        }
    };
    /// The cells of each variable.
    [[nodiscard]] std::span<const Cells> columns() const { return columns_; }

private:
    /// How many variables before this place were computed.
    [[nodiscard]] int computedBefore(int variable0) const;
    void keepChange(Description change);

    DataSet data_{std::string{}, 0};
    std::string place_; ///< of the file when it was opened
    std::vector<Cells> columns_;
    CaseSelection selection_;
    std::string condition_;
    int weightVariable_ = 0;
    int generation_ = 0;
    int descriptions_ = 0;
    std::vector<Description> changes_;
    std::vector<MissingCode> missingAtFirst_;
};

} // namespace korvana
