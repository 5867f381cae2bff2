#include "support/CAnalysisSupport.h"

#include <cctype>

namespace ozm {
namespace {

/// The length of the formatting code that a text begins with, 0 when it begins with none.
std::size_t CodeLength(std::string_view text) {
    if (text.size() < 4 || text[0] != '@' || text[2] != '[') return 0;
    if (std::isalpha(static_cast<unsigned char>(text[1])) == 0) return 0;
    const auto end = text.find(']');
    return end == std::string_view::npos ? 0 : end + 1;
}

} // namespace

void CAnalysisSupport::Replace8CharGrow(std::string& text, char what, std::string_view by) {
    std::string grown;
    for (const char each : text)
        if (each == what)
            grown += by;
        else
            grown += each;
    text = std::move(grown);
}

void CAnalysisSupport::StripFormatting(std::string& text) {
    std::string plain;
    for (std::size_t place = 0; place < text.size();) {
        if (const std::size_t code = CodeLength(std::string_view{text}.substr(place)); code != 0) {
            place += code;
            continue;
        }
        const char each = text[place++];
        const auto byte = static_cast<unsigned char>(each);
        if (byte >= 0x20 && byte != 0x7F)
            plain += each;
        else if (std::isspace(byte) != 0)
            plain += ' ';
    }
    text = std::move(plain);
}

} // namespace ozm
