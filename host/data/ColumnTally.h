#pragma once

#include "host/data/CellPlace.h"
#include "host/data/TextEncoding.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace korvana {

/// Counts of the cells of one column by what they hold, with the first cell of each sort.
struct ColumnTally {
    enum Sort {
        Number,
        TooBig,
        Thousands,
        Date,
        OpenDate,
        BadDate,
        Text,
        // Of the numbers:
        Comma,     ///< with a decimal comma
        Point,     ///< with a decimal point
        SureComma, ///< with a comma that cannot separate thousands
        SurePoint,
        // Of the texts:
        CommaText, ///< 1,5 although the comma separates the cells
        Garbled,   ///< 1.2,3: a number with a typing error
        // Of the dates:
        NotDayFirst, ///< no valid date when read as day, month, year
        NotMonthFirst,
        NotYearFirst,
        Ambiguous, ///< valid in several orders, as different days
        ShortYear,
        TimeOfDay,
        sortCount
    };

    std::array<std::int64_t, sortCount> count{};
    std::array<CellPlace, sortCount> first;

    /// Cells must be added in the order of their lines.
    void add(Sort sort, std::int64_t line, std::string_view text) {
        if (count[sort]++ == 0) first[sort] = {line, brief(text)};
    }

    /// The first number is not asked for.
    void addNumber() { ++count[Number]; }

    /// Adds the counts of other cells of the column.
    void merge(const ColumnTally& other) {
        for (std::size_t sort = 0; sort < sortCount; ++sort) {
            count[sort] += other.count[sort];
            if (other.first[sort].line < first[sort].line) first[sort] = other.first[sort];
        }
    }

    std::int64_t dates() const { return count[Date] + count[OpenDate]; }

    std::int64_t filled() const {
        return count[Number] + count[TooBig] + count[Thousands] + dates() + count[BadDate] + count[Text];
    }
};

} // namespace korvana
