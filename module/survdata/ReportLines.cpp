#include "module/survdata/ReportLines.h"

#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "support/dialogs/DialogTemplate.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

namespace ozm::survival {

void WriteLine(CAnalysisSupport& host, std::string_view line) {
    host.writst(static_cast<int>(line.size()), line);
    host.newline(1);
}

std::string FormatCount(long long count) {
    return std::to_string(count);
}

std::string FormatNumber(double value, int digits) {
    std::array<char, 64> buffer{};
    const double unsignedZero = value + 0.0; // -0 is written 0
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), unsignedZero,
                                   std::chars_format::general, digits);
    return {buffer.data(), end.ptr};
}

std::string FormatFixed(double value, int decimals) {
    std::array<char, 400> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed, decimals);
    return {buffer.data(), end.ptr};
}

std::string FormatProbability(double p) {
    return p < CellFormat::leastProbability ? "< 1e-30" : FormatNumber(p, 5);
}

std::string LevelInPercent(double level) {
    std::array<char, 400> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), level * 100.0,
                                   std::chars_format::fixed, 2);
    std::string text{buffer.data(), end.ptr};
    while (text.ends_with('0'))
        text.pop_back();
    while (text.ends_with('.') || text.ends_with(','))
        text.pop_back();
    return text;
}

std::string InOneLine(std::string_view label) {
    constexpr std::size_t most = 100;
    std::string text;
    for (const char c : label) {
        const bool startsCharacter = (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
        if (text.size() >= most && startsCharacter) return text + "...";
        if (c == '\n' || c == '\r' || c == '\t')
            text.append(c == '\n' ? "\\n" : c == '\r' ? "\\r" : "\\t");
        else
            text += c;
    }
    return text;
}

std::optional<std::string> LabelOfCode(CAnalysisSupport& host, int variable, double code) {
    std::string label;
    double value = code;
    if (variable == 0 || host.vvlcod8(variable, LabelLookup::TextOfCode, label, value) == 0)
        return std::nullopt;
    return label;
}

std::string CodeWithLabel(CAnalysisSupport& host, int variable, double code) {
    const std::optional<std::string> label = LabelOfCode(host, variable, code);
    return FormatExact(code) + (label ? " (" + InOneLine(*label) + ")" : std::string());
}

std::string MeaningOfCode(CAnalysisSupport& host, int variable, double code) {
    return VariableName(host, variable) + " = " +
           InOneLine(LabelOfCode(host, variable, code).value_or(FormatExact(code)));
}

std::string Filled(int id, std::initializer_list<std::string> values) {
    std::string text;
    const std::string_view pattern = Text(id);
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool place = pattern[i] == '%' && i + 1 < pattern.size() && pattern[i + 1] >= '1' &&
                           pattern[i + 1] < '1' + static_cast<int>(values.size());
        if (place)
            text += std::data(values)[pattern[++i] - '1'];
        else
            text += pattern[i];
    }
    return text;
}

std::string Whole(int id) {
    return std::string{Text(id)};
}

std::string Trimmed(int id) {
    std::string text{Text(id)};
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

std::string FormatExact(double value) {
    return NumberInWords(value + 0.0);
}

std::string FormatInWidth(double value, std::size_t width) {
    std::string text = FormatExact(value);
    for (int digits = static_cast<int>(width); text.size() > width && digits > 0; --digits)
        text = FormatNumber(value, digits);
    return text;
}

std::string FormatCode(double code) {
    const double magnitude = std::abs(code);
    const std::size_t width = magnitude >= 0.001 && magnitude < 1.0 ? 9 : 10;
    std::string text{Text(StrUnsetCode)};
    if (std::isfinite(code)) text = FormatInWidth(code, width);
    if (text.size() < width) text.insert(0, width - text.size(), ' ');
    return text;
}

std::string VariableName(CAnalysisSupport& host, int variable) {
    std::string name;
    if (variable == 0 || host.getvn5(variable, name) != 0) return std::string{Text(StrUnsetCode)};
    return name;
}

std::string QuotedName(CAnalysisSupport& host, int variable) {
    return "'" + VariableName(host, variable) + "'";
}

std::string Listed(std::span<const std::string> items, int conjunction, int ofMore, std::size_t more) {
    std::string text;
    for (std::size_t k = 0; k < items.size(); ++k) {
        const bool last = k + 1 == items.size() && more == 0;
        if (k > 0) text += last && conjunction != 0 ? Text(conjunction) : std::string_view{", "};
        text += items[k];
    }
    return more == 0 ? text : text + Filled(ofMore, {FormatCount(static_cast<long long>(more))});
}

std::string QuotedNames(CAnalysisSupport& host, std::span<const int> variables, int conjunction) {
    std::vector<std::string> names;
    for (const int variable : variables)
        names.push_back(QuotedName(host, variable));
    return Listed(names, conjunction);
}

} // namespace ozm::survival
