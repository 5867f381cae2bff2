#include "host/data/LayoutNotes.h"

#include "host/data/TextEncoding.h"

#include <algorithm>
#include <cstdint>
#include <set>

namespace korvana {

std::string layoutText(const DelimitedTable& table, std::span<const ColumnTally> tallies,
                       std::span<const ColumnKind> kinds, std::size_t first, unsigned threads) {
    const DelimitedFormat& format = table.format;
    std::int64_t commas = 0;
    std::int64_t points = 0;
    std::set<DateOrder> orders;
    for (std::size_t i = first; i < kinds.size(); ++i) {
        if (kinds[i].kind == VariableKind::Number) {
            commas += tallies[i].count[ColumnTally::Comma];
            points += tallies[i].count[ColumnTally::Point];
        }
        if (kinds[i].order) orders.insert(*kinds[i].order);
    }
    std::string text = std::to_string(format.columns) + (format.columns == 1 ? " column" : " columns");
    if (format.columns > 1) {
        const char separator = format.dialect.separator;
        text += " separated by ";
        text += separator == '\t' ? "tabs" : std::string{'\'', separator, '\''};
    }
    text += format.header.empty() ? ", no line of names" : ", a line of names";
    if (commas > 0) text += ", decimal commas";
    if (points > 0) text += ", decimal points";
    for (const DateOrder order : orders)
        text += order == DateOrder::DayMonthYear   ? ", dates as day, month, year"
                : order == DateOrder::MonthDayYear ? ", dates as month, day, year"
                                                   : ", dates as year, month, day";
    return text + "; read by " + std::to_string(threads) + (threads == 1 ? " thread" : " threads");
}

void noteFirstCase(const DelimitedFormat& format, std::vector<std::string>& notes) {
    if (format.textInFirstRow.empty()) return;
    notes.push_back("the first line is taken for a case, as '" + brief(format.valueInFirstRow) +
                    "' in it is a value; if it holds the names, as '" + brief(format.textInFirstRow) +
                    "' may be one, say so (--header)");
}

void noteHeader(const DelimitedFormat& format, std::span<const TextColumn> texts,
                std::vector<std::string>& notes) {
    for (const TextColumn& text : texts) {
        const std::string name = toUtf8(format.header[text.column0]);
        if (std::none_of(text.labels.begin(), text.labels.end(),
                         [&name](const ValueLabel& label) { return label.text == name; }))
            continue;
        notes.push_back("the first line is taken for the names, though '" + brief(name) +
                        "' is also a value of that column; if the line is a case, say so (--no-header)");
        return;
    }
}

void noteEncoding(const DelimitedTable& table, ByteSource& source, std::vector<std::string>& notes) {
    source.rewind();
    std::int64_t line = 1;
    std::string text;
    std::string block(std::size_t{1} << 20, ' ');
    for (std::size_t count = 1; count > 0;) {
        table.checkStop();
        count = source.readFully(block);
        text.append(block, 0, count);
        std::size_t begin = 0;
        for (std::size_t end = 0;
             (end = text.find('\n', begin)) != std::string::npos || (count == 0 && begin < text.size());
             begin = std::min(end, text.size() - 1) + 1, ++line) {
            if (isUtf8(std::string_view(text).substr(begin, end - begin))) continue;
            notes.push_back("line " + std::to_string(line) +
                            " of the file is not valid UTF-8; such texts are read as Windows-1252 "
                            "(Western European): save the file as UTF-8 if they look wrong");
            return;
        }
        text.erase(0, begin);
    }
}

void noteSingleColumn(const DelimitedTable& table, const ColumnTally& tally,
                      std::vector<std::string>& notes) {
    if (table.format.columns > 1 || table.format.header.empty()) return;
    // 5,1 is a number where the comma does not separate cells.
    const auto sort = tally.count[ColumnTally::Comma] > 0 ? ColumnTally::Comma : ColumnTally::Text;
    if (tally.count[sort] < table.rowCount()) return;
    const std::string& header = table.format.header.front();
    const std::string& cell = tally.first[sort].text;
    for (const char c : {';', '|', '\t', ',', ':', '^', '~', '!', '#', '/', '\\', '&', '*', ' '}) {
        const auto count = std::count(header.begin(), header.end(), c);
        if (count == 0 || (c != ' ' && std::count(cell.begin(), cell.end(), c) != count)) continue;
        const std::string sign = c == '\t' ? "tab" : std::string(1, c);
        std::string note = "the file has a single column, '";
        note.append(table.names[0]).append("'; if ");
        if (c == ' ')
            note += "blanks separate its cells,";
        else
            note.append("'")
                .append(sign)
                .append("' separates its cells, say so (--separator '")
                .append(sign)
                .append("'), or");
        notes.push_back(note.append(" save it with commas, semicolons or tabs"));
        return;
    }
}

} // namespace korvana
