#pragma once
// A reader of CSV as RFC 4180 has it, that shares nothing with the program's own.

#include <string>
#include <string_view>
#include <vector>

namespace korvana::test {

/// Records of fields; the first holds the headings.
using CsvGrid = std::vector<std::vector<std::string>>;

inline CsvGrid readCsvGrid(std::string_view text) {
    CsvGrid grid;
    std::vector<std::string> record(1);
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quoted && c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
            record.back() += text[i++];
        } else if (c == '"') {
            quoted = !quoted;
        } else if (!quoted && c == ',') {
            record.emplace_back();
        } else if (!quoted && c == '\n') {
            if (record.back().ends_with('\r')) record.back().pop_back();
            grid.push_back(std::move(record));
            record.assign(1, {});
        } else {
            record.back() += c;
        }
    }
    return grid;
}

} // namespace korvana::test
