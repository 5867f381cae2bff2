#include "host/results/FormatNumber.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "host/results/DecimalText.h"

namespace korvana {
namespace {

// 15 digits before the point, up to 17 after it, sign and point; an exponent form is shorter.
using Buffer = std::array<char, 48>;

bool appendNonFinite(std::string& out, double value) {
    if (std::isfinite(value)) return false;
    out += std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf";
    return true;
}

bool isPlainWhole(double value) {
    return std::fabs(value) < exponentFrom && value == std::trunc(value);
}

} // namespace

void appendNumber(std::string& out, double value) {
    if (appendNonFinite(out, value)) return;
    const bool plain = isPlainWhole(value);
    if (plain && value != 0 && appendFixed(out, value, 0)) return; // not -0
    Buffer buffer;
    char* const end = buffer.data() + buffer.size();
    const auto result = plain ? std::to_chars(buffer.data(), end, value, std::chars_format::fixed)
                              : std::to_chars(buffer.data(), end, value);
    out.append(buffer.data(), result.ptr);
}

void appendNumber(std::string& out, std::int32_t value) {
    Buffer buffer;
    out.append(buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr);
}

void appendNumber(std::string& out, double value, ozm::CellFormat format) {
    if (appendNonFinite(out, value)) return;
    const bool probability = format.kind == ozm::CellFormat::Kind::Probability;
    if (probability && value < ozm::CellFormat::leastProbability) {
        out += "< 1e-30";
        return;
    }
    const bool whole = isPlainWhole(value);
    const bool general = probability || format.kind == ozm::CellFormat::Kind::General;
    const bool fixed = general ? whole : std::fabs(value) < exponentFrom;
    int digits = std::min<int>(format.digits, 17);
    if (format.kind == ozm::CellFormat::Kind::Integer || (general && whole)) digits = 0;
    if (!fixed) digits = general ? std::max(digits, 1) : 6;
    if (fixed ? appendFixed(out, value, digits) : appendGeneral(out, value, digits)) return;

    Buffer buffer;
    const auto shape = fixed ? std::chars_format::fixed : std::chars_format::general;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, shape, digits);
    std::string_view text(buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data()));
    if (text.starts_with('-') && text.find_first_of("123456789") == std::string_view::npos)
        text.remove_prefix(1);
    out += text;
}

std::string formatNumber(double value) {
    std::string out;
    appendNumber(out, value);
    return out;
}

std::string formatNumber(double value, ozm::CellFormat format) {
    std::string out;
    appendNumber(out, value, format);
    return out;
}

} // namespace korvana
