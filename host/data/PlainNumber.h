#pragma once

#include "host/data/DecimalDigits.h"
#include "host/data/DelimitedCell.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace korvana {

struct PlainNumber {
    const char* next = nullptr; ///< at the separator or line feed; none: not a plain number
    double value = 0;
    const char* begin = nullptr;
    const char* end = nullptr;
    const char* mark = nullptr; ///< the decimal mark
    std::ptrdiff_t decimals = 0;

    std::string_view text() const { return {begin, static_cast<std::size_t>(end - begin)}; }

    /// Whether the mark cannot separate thousands.
    bool sure() const {
        const char* const digits = begin + (*begin == '-' ? 1 : 0);
        return mark - digits < 1 || mark - digits > 3 || decimals != 3 || *digits == '0';
    }
};

/// Reads a number that fills its cell, or the quotation marks around it, without blanks. The text must be
/// followed by a line feed and further bytes, as that of a chunk is.
class PlainNumberReader {
public:
    /// @param end  of the text
    PlainNumberReader(const Dialect& dialect, const char* end)
        : end_(end), separator_(dialect.separator), point_(dialect.point ? '.' : ','),
          comma_(dialect.comma ? ',' : '.') {}

    PlainNumber read(const char* p) const { return *p == '"' ? readIn<true>(p + 1) : readIn<false>(p); }

private:
    template <bool quoted>
    PlainNumber readIn(const char* p) const {
        PlainNumber number;
        number.begin = p;
        const bool negative = *p == '-';
        if (negative) ++p;
        const char* const digits = p;
        std::uint64_t mantissa = 0;
        p = readDigits(p, mantissa);
        std::ptrdiff_t length = p - digits;
        if ((*p == point_ || *p == comma_) && *p != separator_) {
            number.mark = p;
            p = readDigits(p + 1, mantissa);
            number.decimals = p - number.mark - 1;
            length += number.decimals;
        }
        if (length == 0) return number;
        constexpr std::ptrdiff_t longest = 19; // that cannot overflow the mantissa
        if (length <= longest && endsCell<quoted>(p)) {
            number.value = quotient(mantissa, static_cast<std::size_t>(number.decimals));
        } else if ((number.mark == nullptr || *number.mark != ',') && point_ == '.') {
            const Long read = readLong(digits);
            p = read.end;
            if (p == nullptr || !endsCell<quoted>(p)) return number;
            number.value = read.value;
        } else {
            return number;
        }
        if (negative) number.value = -number.value;
        number.end = p;
        if (quoted) ++p;
        number.next = *p == '\r' ? p + 1 : p;
        return number;
    }

    struct Long {
        const char* end; ///< none: not a number, or out of range
        double value;
    };

    /// With an exponent, or with more digits than an integer holds.
    [[gnu::noinline]] Long readLong(const char* digits) const {
        Long read{nullptr, 0};
        const auto [end, error] = std::from_chars(digits, end_, read.value);
        if (error == std::errc()) read.end = end;
        return read;
    }

    static double quotient(std::uint64_t mantissa, std::size_t decimals) {
        // Integers up to 2^53 and powers of ten up to 22 are exact, so that one division rounds correctly
        // (Clinger, How to read floating point numbers accurately, 1990).
        constexpr std::uint64_t exact = std::uint64_t{1} << 53U;
        return mantissa <= exact
                   ? static_cast<double>(static_cast<std::int64_t>(mantissa)) / powersOfTen[decimals]
                   : decimalQuotient(mantissa, decimals);
    }

    template <bool quoted>
    bool endsCell(const char* p) const {
        if (quoted && *p++ != '"') return false;
        return *p == separator_ || *p == '\n' || (*p == '\r' && p[1] == '\n');
    }

    const char* end_;
    char separator_;
    char point_;
    char comma_;
};

} // namespace korvana
