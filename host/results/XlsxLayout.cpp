#include "host/results/XlsxLayout.h"

#include <algorithm>

#include "host/results/Utf8.h"

namespace korvana {
namespace {

constexpr std::size_t lookedAt = 500; // rows
constexpr std::size_t narrowest = 8;
constexpr std::size_t widestColumn = 60;
constexpr std::size_t headingLine = 14; // longer headings are broken, where their words allow

std::string_view takeWord(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(word.size());
    return word;
}

std::size_t longestWord(std::string_view text) {
    std::size_t longest = 0;
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text))
        longest = std::max(longest, textWidth(word));
    return longest;
}

} // namespace

std::size_t columnWidth(const Spreadsheet& sheet, std::size_t column, std::size_t firstRow) {
    const Spreadsheet::Column& one = sheet.columns[column];
    const std::string heading = one.readableHeading();
    std::size_t widest =
        std::max({narrowest, std::min(headingLine, textWidth(heading)), longestWord(heading)});
    for (std::size_t row = firstRow; row < std::min(firstRow + lookedAt, one.size()); ++row)
        widest = std::max(widest, textWidth(sheet.cellText(row, column)));
    return std::min(widest, widestColumn);
}

std::size_t rowHeadingWidth(const Spreadsheet& sheet, std::size_t firstRow) {
    std::size_t widest = narrowest;
    for (std::size_t row = firstRow; row < std::min(firstRow + lookedAt, sheet.rowHeadings.size()); ++row)
        widest = std::max(widest, textWidth(sheet.rowHeadings[row]));
    return std::min(widest, widestColumn);
}

std::size_t brokenLines(std::string_view text, std::size_t width) {
    std::size_t lines = 1;
    std::size_t used = 0;
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
        const std::size_t wanted = textWidth(word) + (used > 0 ? 1 : 0);
        if (used > 0 && used + wanted > width) {
            ++lines;
            used = textWidth(word);
        } else {
            used += wanted;
        }
    }
    return lines;
}

} // namespace korvana
