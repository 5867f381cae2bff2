#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "host/results/TextPieces.h"

namespace korvana {

/// Builds JSON.
class JsonText {
public:
    explicit JsonText(std::ostream& out) : pieces_(out) {}

    JsonText& raw(std::string_view text) {
        pieces_.text() += text;
        pieces_.passOn();
        return *this;
    }

    /// A text in quotes.
    JsonText& string(std::string_view text);

    /// At full precision; null when it is not finite.
    JsonText& number(double value);
    JsonText& number(std::int32_t value);

    /// [one, two, ...] with `write` called for each.
    template <class List, class Write>
    JsonText& array(const List& list, std::string_view separator, Write write) {
        raw("[");
        bool first = true;
        for (const auto& one : list) {
            if (!first) raw(separator);
            first = false;
            write(one);
        }
        return raw("]");
    }

    JsonText& strings(const std::vector<std::string>& list) {
        return array(list, ", ", [this](const std::string& one) { string(one); });
    }

    void flush() { pieces_.flush(); }

private:
    void appendCharacter(char32_t code);

    TextPieces pieces_;
};

} // namespace korvana
