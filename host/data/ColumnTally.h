#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace korvana {

/** Counts of the cells of one column by what they hold, with the offset of the first cell of each sort. */
struct ColumnTally {
    enum Sort { Number, Date, BadDate, TooBig, Text, Comma, Point, sortCount };
    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    std::array<std::int64_t, sortCount> count{};
    std::array<std::size_t, sortCount> first;

    ColumnTally() { first.fill(nowhere); }

    void add(Sort sort, std::size_t offset) {
        if (count[sort]++ == 0) first[sort] = offset;
    }

    /** Adds the counts of a later piece of the column. */
    void append(const ColumnTally& later) {
        for (std::size_t sort = 0; sort < sortCount; ++sort) {
            if (count[sort] == 0) first[sort] = later.first[sort];
            count[sort] += later.count[sort];
        }
    }

    std::int64_t filled() const {
        return count[Number] + count[Date] + count[BadDate] + count[TooBig] + count[Text];
    }
};

} // namespace korvana
