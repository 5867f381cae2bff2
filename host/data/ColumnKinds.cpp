#include "host/data/ColumnKinds.h"

namespace korvana {

VariableKind decideKind(const DelimitedTable& table, std::size_t column0, const ColumnTally& tally) {
    const auto& count = tally.count;
    const auto& first = tally.first;
    const auto cell = [](const CellPlace& place) { return "'" + place.text + "'"; };
    if (count[ColumnTally::Text] > 0) return VariableKind::Text;
    if (count[ColumnTally::Number] == 0) {
        if (count[ColumnTally::TooBig] > 0) return VariableKind::Text;
        if (count[ColumnTally::Date] == 0)
            return count[ColumnTally::BadDate] > 0 ? VariableKind::Text : VariableKind::Number;
        if (count[ColumnTally::BadDate] > 0) {
            throw table.cellError(first[ColumnTally::BadDate].line, column0,
                                  cell(first[ColumnTally::BadDate]) +
                                      " is no day of the calendar; correct the date or leave the cell empty");
        }
        return VariableKind::Date;
    }
    if (count[ColumnTally::Date] + count[ColumnTally::BadDate] > 0) return VariableKind::Text;
    if (count[ColumnTally::TooBig] > 0) {
        throw table.cellError(
            first[ColumnTally::TooBig].line, column0,
            cell(first[ColumnTally::TooBig]) +
                " is infinite or above the greatest number (about 1.8e308); correct it or leave the "
                "cell empty");
    }
    if (count[ColumnTally::Comma] > 0 && count[ColumnTally::Point] > 0) {
        const bool pointLater = first[ColumnTally::Point].line > first[ColumnTally::Comma].line;
        const CellPlace& later = first[pointLater ? ColumnTally::Point : ColumnTally::Comma];
        const CellPlace& earlier = first[pointLater ? ColumnTally::Comma : ColumnTally::Point];
        throw table.cellError(later.line, column0,
                              cell(later) + " has another decimal mark than " + cell(earlier) + " in line " +
                                  std::to_string(earlier.line) +
                                  "; use the same mark in the whole column and no thousands separators");
    }
    return VariableKind::Number;
}

} // namespace korvana
