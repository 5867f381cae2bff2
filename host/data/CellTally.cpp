#include "host/data/CellTally.h"

#include "host/data/Thousands.h"

#include <limits>

namespace korvana {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

ColumnTally::Sort sortOf(CellKind kind) {
    switch (kind) {
    case CellKind::Number:
        return ColumnTally::Number;
    case CellKind::Date:
        return ColumnTally::Date;
    case CellKind::BadDate:
        return ColumnTally::BadDate;
    case CellKind::OpenDate:
        return ColumnTally::OpenDate;
    case CellKind::TooBig:
        return ColumnTally::TooBig;
    case CellKind::Thousands:
        return ColumnTally::Thousands;
    default:
        return ColumnTally::Text;
    }
}

void tallyOrders(const DateText& date, std::int64_t line, std::string_view text, ColumnTally& tally) {
    const auto dayFirst = dayNumberOf(date, DateOrder::DayMonthYear);
    const auto monthFirst = dayNumberOf(date, DateOrder::MonthDayYear);
    const auto yearFirst = dayNumberOf(date, DateOrder::YearMonthDay);
    if (!dayFirst) tally.add(ColumnTally::NotDayFirst, line, text);
    if (!monthFirst) tally.add(ColumnTally::NotMonthFirst, line, text);
    if (!yearFirst) tally.add(ColumnTally::NotYearFirst, line, text);
    const auto any = dayFirst ? dayFirst : monthFirst ? monthFirst : yearFirst;
    if ((dayFirst && dayFirst != any) || (monthFirst && monthFirst != any) || (yearFirst && yearFirst != any))
        tally.add(ColumnTally::Ambiguous, line, text);
    if (date.shortYear) tally.add(ColumnTally::ShortYear, line, text);
}

} // namespace

double tallyCell(std::string_view text, std::int64_t line, const Dialect& dialect, ColumnTally& tally) {
    const CellValue cell = classifyCell(text, dialect);
    if (cell.kind == CellKind::Missing) return notANumber;
    tally.add(sortOf(cell.kind), line, text);
    switch (cell.kind) {
    case CellKind::Number:
        if (cell.mark != 0 && dialect.comma)
            tallyMark(cell.mark, thousandsOf(text) == Thousands::None, line, text, tally);
        return cell.value;
    case CellKind::Text:
        if (cell.mark != 0) tally.add(ColumnTally::CommaText, line, text);
        if (isGarbledNumber(text)) tally.add(ColumnTally::Garbled, line, text);
        return notANumber;
    case CellKind::OpenDate:
        tallyOrders(cell.date, line, text, tally);
        [[fallthrough]];
    case CellKind::Date:
        if (cell.date.timeOfDay) tally.add(ColumnTally::TimeOfDay, line, text);
        return cell.value;
    default:
        return notANumber;
    }
}

void tallyMark(char mark, bool sure, std::int64_t line, std::string_view text, ColumnTally& tally) {
    tally.add(mark == ',' ? ColumnTally::Comma : ColumnTally::Point, line, text);
    if (sure) tally.add(mark == ',' ? ColumnTally::SureComma : ColumnTally::SurePoint, line, text);
}

} // namespace korvana
