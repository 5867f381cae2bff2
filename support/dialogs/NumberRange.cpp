#include "support/CodeComparison.h"
#include "support/dialogs/DialogTemplate.h"

#include <array>
#include <charconv>
#include <cmath>

namespace ozm {

bool Contains(const NumberRange& range, double number) {
    if (!range.IsLimited()) return true;
    if (std::isnan(number)) return false;
    const auto within = [](double low, double high, bool withEnd) {
        return withEnd ? !GreaterThan(low, high) : GreaterThan(high, low);
    };
    return within(range.least, number, range.withLeast) && within(number, range.greatest, range.withGreatest);
}

std::string NumberInWords(double number) {
    std::array<char, 40> text{};
    const double size = std::abs(number);
    const bool plain = number == 0.0 || (size >= 1e-4 && size < 1e15);
    const auto end =
        plain ? std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed)
              : std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), end.ptr};
}

std::string RangeInWords(const NumberRange& range) {
    const bool below = std::isinf(range.least);
    const bool above = std::isinf(range.greatest);
    if (!below && !above && range.withLeast && range.withGreatest)
        return "from " + NumberInWords(range.least) + " to " + NumberInWords(range.greatest);
    std::string words;
    if (!below) words = (range.withLeast ? "of at least " : "above ") + NumberInWords(range.least);
    if (!below && !above) words += " and ";
    if (!above) words += (range.withGreatest ? "at most " : "below ") + NumberInWords(range.greatest);
    return words;
}

} // namespace ozm
