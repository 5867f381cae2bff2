#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace korvana {

/// Powers of ten that a 64-bit integer can hold.
inline constexpr auto wholePowersOfTen = [] {
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i)
        powers[i] = 10 * powers[i - 1];
    return powers;
}();

/// The same, which a double holds exactly.
inline constexpr auto powersOfTen = [] {
    std::array<double, wholePowersOfTen.size()> powers{};
    for (std::size_t i = 0; i < powers.size(); ++i)
        powers[i] = static_cast<double>(wholePowersOfTen[i]);
    return powers;
}();

inline bool isDecimalDigit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}

/// The bytes that readDigits may look at behind a text, the first of which is no digit.
inline constexpr std::size_t digitsMargin = 8;

/// Appends the digits at the beginning of a text to a number, modulo 2^64; returns where they end.
inline const char* readDigits(const char* p, std::uint64_t& number) {
    if (isDecimalDigit(*p) && !isDecimalDigit(p[1])) { // frequent: a code
        number = 10 * number + static_cast<unsigned>(*p - '0');
        return p + 1;
    }
    if constexpr (std::endian::native == std::endian::little) {
        for (;;) {
            std::uint64_t bytes = 0; // the digits as 0 to 9, the first one lowest
            std::memcpy(&bytes, p, sizeof bytes);
            bytes ^= 0x3030303030303030U;
            // Each byte that is no digit gets its top bit; a carry out of it can only change later ones.
            const std::uint64_t others = (bytes | (bytes + 0x7676767676767676U)) & 0x8080808080808080U;
            const int digits = std::countr_zero(others) / 8;
            if (digits == 0) return p;
            bytes <<= 64 - 8 * digits; // leading zeros
            // Neighbours are joined: to numbers of two digits, of four, of eight.
            bytes = (bytes * 10 + (bytes >> 8U)) & 0x00FF00FF00FF00FFU;
            bytes = (bytes * 100 + (bytes >> 16U)) & 0x0000FFFF0000FFFFU;
            bytes = (bytes * 10000 + (bytes >> 32U)) & 0xFFFFFFFFU;
            number = number * wholePowersOfTen[static_cast<std::size_t>(digits)] + bytes;
            p += digits;
            if (digits < 8) return p;
        }
    }
    for (; isDecimalDigit(*p); ++p)
        number = 10 * number + static_cast<unsigned>(*p - '0');
    return p;
}

/// A whole number above 0 divided by 10 to the power of 0 to 19, rounded to nearest, ties to even.
inline double decimalQuotient(std::uint64_t number, std::size_t decimals) {
    __extension__ using Wide = unsigned __int128;
    const std::uint64_t power = wholePowersOfTen[decimals];
    const int numberShift = std::countl_zero(number);
    const int powerShift = std::countl_zero(power);
    // With both shifted up to their top bits, the quotient has 62 or 63 bits: more than a double. Where a
    // remainder is left, a last bit of 1 keeps it from passing for a tie.
    const std::uint64_t divisor = power << static_cast<unsigned>(powerShift);
    const Wide dividend = static_cast<Wide>(number << static_cast<unsigned>(numberShift)) << 62U;
    const auto quotient = static_cast<std::uint64_t>(dividend / divisor);
    const bool exact = quotient * divisor == static_cast<std::uint64_t>(dividend);
    const auto rounded = static_cast<double>(static_cast<std::int64_t>(quotient | (exact ? 0U : 1U)));
    const int exponent = powerShift - numberShift - 62;
    return rounded * std::bit_cast<double>(static_cast<std::uint64_t>(1023 + exponent) << 52U);
}

} // namespace korvana
