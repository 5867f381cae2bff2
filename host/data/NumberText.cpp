#include "host/data/NumberText.h"

#include "host/data/NameMatch.h"
#include "host/data/TextEncoding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <system_error>

namespace korvana {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Whether a number out of range (digits . digits e exponent, already known to be well formed) lies below 1.
bool isTiny(std::string_view digits) {
    const std::size_t e = digits.find_first_of("eE");
    const std::string_view mantissa = digits.substr(0, e);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = mantissa.find_first_of("123456789");
    if (first == std::string_view::npos) return true; // zero with any exponent
    long long power =
        first < point ? static_cast<long long>(point - first) : -static_cast<long long>(first - point);
    if (e != std::string_view::npos) {
        const bool negative = digits.substr(e).find('-') != std::string_view::npos;
        const std::string_view exponent = digits.substr(digits.find_first_of("0123456789", e + 1));
        long long value = 0;
        const auto read = std::from_chars(exponent.data(), exponent.data() + exponent.size(), value);
        constexpr long long huge = 1'000'000'000'000'000;
        if (read.ec != std::errc() || value > huge) value = huge;
        power += negative ? -value : value;
    }
    return power <= 0;
}

NumberText readPlain(std::string_view text) {
    NumberText number;
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    if (text.empty()) return {};
    if (!isDigit(text.front()) && !(text.front() == '.' && text.size() > 1 && isDigit(text[1]))) {
        if (equalIgnoringCase(text, "inf") || equalIgnoringCase(text, "infinity"))
            number.form = NumberForm::TooBig;
        return number;
    }
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number.value);
    if (read.ptr != end) return {};
    number.form = NumberForm::Finite;
    if (read.ec == std::errc::result_out_of_range) {
        number.value = 0;
        if (!isTiny(text)) number.form = NumberForm::TooBig;
    }
    if (negative) number.value = -number.value;
    return number;
}

} // namespace

NumberText readNumber(std::string_view text, char decimalMark) {
    if (text.empty()) return {};
    if (decimalMark == '.') return readPlain(text);
    const std::size_t mark = text.find(decimalMark);
    if (mark == std::string_view::npos)
        return text.find('.') == std::string_view::npos ? readPlain(text) : NumberText{};
    if (text.find('.') != std::string_view::npos) return {}; // 1.234,5: a thousands separator
    std::array<char, 64> brief;                              // NOLINT: filled below
    if (text.size() <= brief.size()) {
        std::copy(text.begin(), text.end(), brief.begin());
        brief[mark] = '.';
        return readPlain({brief.data(), text.size()});
    }
    std::string copy(text);
    copy[mark] = '.';
    return readPlain(copy);
}

std::string numberText(double value) {
    constexpr double exponentFrom = 1e15;
    std::array<char, 40> text{};
    char* const last = text.data() + text.size();
    const bool whole = std::fabs(value) < exponentFrom && value == std::trunc(value);
    const auto end =
        whole ? std::to_chars(text.data(), last, value == 0 ? 0.0 : value, std::chars_format::fixed)
              : std::to_chars(text.data(), last, value);
    return {text.data(), end.ptr};
}

namespace {

/// The bytes of the blank with which a text begins or ends; 0 = none.
std::size_t blankAtBegin(std::string_view text) {
    if (text.front() == ' ' || text.front() == '\t') return 1;
    if (static_cast<unsigned char>(text.front()) < 0x80) return 0;
    if (text.front() == '\xA0') return 1; // in Windows-1252; no UTF-8 character begins with it
    const std::size_t length = characterLength(text);
    return isForeignBlank(text.substr(0, length)) ? length : 0;
}

std::size_t blankAtEnd(std::string_view text) {
    if (text.back() == ' ' || text.back() == '\t') return 1;
    if (static_cast<unsigned char>(text.back()) < 0x80) return 0;
    for (const std::size_t length : {std::size_t{2}, std::size_t{3}})
        if (text.size() >= length && isForeignBlank(text.substr(text.size() - length))) return length;
    const bool alone = text.size() < 2 || static_cast<unsigned char>(text[text.size() - 2]) < 0x80;
    return alone && text.back() == '\xA0' ? 1 : 0;
}

} // namespace

std::string_view trimmed(std::string_view text) {
    for (std::size_t blank = 1; blank > 0 && !text.empty(); text.remove_prefix(blank))
        blank = blankAtBegin(text);
    for (std::size_t blank = 1; blank > 0 && !text.empty(); text.remove_suffix(blank))
        blank = blankAtEnd(text);
    return text;
}

} // namespace korvana
