#include "host/results/DecimalText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

namespace korvana {
namespace {

__extension__ using Wide = unsigned __int128;

constexpr int mostDecimals = 19; // 10 to this power has 64 bits

constexpr auto powersOfTen = [] {
    std::array<std::uint64_t, mostDecimals + 1> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i)
        powers[i] = 10 * powers[i - 1];
    return powers;
}();

/// |value| x 10^decimals as a whole number, rounded from the exact product, to an even number from halfway.
/// Nothing where that takes more than 63 bits.
std::optional<std::uint64_t> rounded(double value, int decimals) {
    if (decimals > mostDecimals) return std::nullopt;
    // |value| is mantissa / 2^shift.
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const std::uint64_t fraction = bits & 0xF'FFFF'FFFF'FFFFU;
    const int exponent = static_cast<int>(bits >> 52U & 0x7FFU);
    const std::uint64_t mantissa = exponent == 0 ? fraction : fraction | std::uint64_t{1} << 52U;
    const int shift = 1075 - std::max(exponent, 1);
    if (shift < 1) return std::nullopt;
    if (shift >= 128) return 0; // the product, below 2^117, is less than half of 2^shift
    const Wide product = Wide{mantissa} * powersOfTen[static_cast<std::size_t>(decimals)];
    const Wide whole = product >> shift;
    if (whole >> 63U != 0) return std::nullopt;
    const Wide rest = product - (whole << shift);
    const Wide half = Wide{1} << (shift - 1);
    const auto digits = static_cast<std::uint64_t>(whole);
    return digits + (rest > half || (rest == half && digits % 2 == 1) ? 1 : 0);
}

void appendDigits(std::string& out, bool negative, std::uint64_t digits, int decimals) {
    std::array<char, 24> text; // 20 digits, sign and point
    char* const end = text.data() + text.size();
    char* begin = end;
    for (int place = 0; place <= decimals || digits > 0; ++place, digits /= 10) {
        if (place == decimals && decimals > 0) *--begin = '.';
        *--begin = static_cast<char>('0' + digits % 10);
    }
    if (negative) *--begin = '-';
    out.append(begin, end);
}

} // namespace

bool appendFixed(std::string& out, double value, int decimals) {
    const std::optional<std::uint64_t> digits = rounded(value, decimals);
    if (!digits) return false;
    appendDigits(out, value < 0 && *digits > 0, *digits, decimals);
    return true;
}

bool appendGeneral(std::string& out, double value, int digits) {
    const double size = std::fabs(value);
    // Comparing with the nearest doubles is exact: none of the four below 1 is less than its power of ten.
    static constexpr std::array powers{1e-4, 1e-3, 1e-2, 1e-1, 1e0,  1e1,  1e2,  1e3,  1e4, 1e5,
                                       1e6,  1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14};
    const auto above =
        std::find_if(powers.begin(), powers.end(), [size](double power) { return size < power; });
    if (above == powers.begin() || above == powers.end()) return false;
    const auto exponent = static_cast<int>(above - powers.begin()) - 5;
    if (digits < 1 || exponent >= digits) return false;
    int decimals = digits - 1 - exponent;
    std::optional<std::uint64_t> all = rounded(value, decimals);
    // Rounded up to the next power of ten, which may need an exponent.
    if (!all || digits > mostDecimals || *all >= powersOfTen[static_cast<std::size_t>(digits)]) return false;
    for (; decimals > 0 && *all % 10 == 0; --decimals)
        *all /= 10;
    appendDigits(out, value < 0, *all, decimals);
    return true;
}

} // namespace korvana
