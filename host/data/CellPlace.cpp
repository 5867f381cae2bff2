#include "host/data/CellPlace.h"

#include <array>
#include <string_view>
#include <utility>

namespace korvana {

std::string quoted(const CellPlace& place) {
    constexpr std::array<std::pair<std::string_view, const char*>, 3> blanks{
        {{"\xC2\xA0", "no-break space, U+00A0"},
         {"\xE2\x80\xAF", "narrow no-break space, U+202F"},
         {"\xE2\x80\x89", "thin space, U+2009"}}};
    std::string text = "'" + place.text + "'";
    for (const auto& [blank, name] : blanks)
        if (place.text.find(blank) != std::string::npos) text.append(" (with a ").append(name).append(")");
    return text;
}

std::string inLine(const CellPlace& place) {
    return quoted(place) + " in line " + std::to_string(place.line);
}

} // namespace korvana
