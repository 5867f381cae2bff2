#pragma once

#include "host/data/DelimitedCell.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

namespace korvana {

inline constexpr std::array<double, 23> powersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                    1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                    1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

struct PlainNumber {
    const char* next = nullptr; ///< at the separator, line feed or end; none: not a plain number
    double value = 0;
    char mark = 0;
    bool sure = true; ///< the mark cannot separate thousands
};

/// Reads a number that fills its cell without quotes or blanks.
class PlainNumberReader {
public:
    PlainNumberReader(const Dialect& dialect, const char* end)
        : end_(end), separator_(dialect.separator), point_(dialect.point ? '.' : ','),
          comma_(dialect.comma ? ',' : '.') {}

    PlainNumber read(const char* p) const {
        PlainNumber number;
        const bool negative = p < end_ && *p == '-';
        if (negative) ++p;
        const char* const digits = p;
        std::uint64_t mantissa = 0;
        for (; p < end_ && digit(*p); ++p)
            mantissa = 10 * mantissa + static_cast<unsigned>(*p - '0');
        std::ptrdiff_t length = p - digits;
        std::ptrdiff_t decimals = 0;
        if (p < end_ && (*p == point_ || *p == comma_) && *p != separator_) {
            number.mark = *p++;
            const char* const after = p;
            for (; p < end_ && digit(*p); ++p)
                mantissa = 10 * mantissa + static_cast<unsigned>(*p - '0');
            decimals = p - after;
            sure(number, *digits, after - 1 - digits, decimals);
            length += decimals;
        }
        if (length == 0) return number;
        // Integers up to 2^53 and powers of ten up to 22 are exact, so that one division rounds correctly
        // (Clinger, How to read floating point numbers accurately, 1990).
        constexpr std::uint64_t exact = std::uint64_t{1} << 53U;
        if (length <= 19 && mantissa <= exact && decimals <= 22 && endsCell(p)) {
            number.value = static_cast<double>(mantissa) / powersOfTen[static_cast<std::size_t>(decimals)];
            number.next = p;
        } else if (number.mark != ',' && point_ == '.') {
            const auto read = std::from_chars(digits, end_, number.value);
            if (read.ec == std::errc() && endsCell(read.ptr)) number.next = read.ptr;
        }
        if (negative) number.value = -number.value;
        if (number.next != nullptr && number.next < end_ && *number.next == '\r') ++number.next;
        return number;
    }

private:
    static void sure(PlainNumber& number, char first, std::ptrdiff_t before, std::ptrdiff_t behind) {
        number.sure = before < 1 || before > 3 || behind != 3 || first == '0';
    }
    static bool digit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

    bool endsCell(const char* p) const {
        if (p == end_ || *p == separator_ || *p == '\n') return true;
        return *p == '\r' && (p + 1 == end_ || p[1] == '\n');
    }

    const char* end_;
    char separator_;
    char point_;
    char comma_;
};

} // namespace korvana
