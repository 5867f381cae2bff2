#include "host/data/DelimitedCell.h"

#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"
#include "host/data/Thousands.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace korvana {
namespace {

std::string_view between(const char* begin, const char* end) {
    return {begin, static_cast<std::size_t>(end - begin)};
}

const char* endOfUnquoted(const char* p, const char* end, char separator) {
    while (p < end && *p != separator && *p != '\n')
        ++p;
    return p;
}

RawCell readQuoted(const char* p, const char* end, char separator, std::string& scratch) {
    RawCell cell;
    cell.quoted = true;
    const char* const begin = p;
    bool doubled = false;
    for (;;) {
        p = p < end ? static_cast<const char*>(std::memchr(p, '"', static_cast<std::size_t>(end - p)))
                    : nullptr;
        if (p == nullptr) {
            cell.fault = CellFault::OpenQuote;
            cell.text = between(begin, end);
            cell.next = end;
            return cell;
        }
        if (p + 1 == end || p[1] != '"') break;
        doubled = true;
        p += 2;
    }
    cell.text = between(begin, p);
    if (doubled || cell.text.find('\r') != std::string_view::npos) {
        scratch.clear();
        for (const char* from = begin; from < p; ++from) {
            const bool feeds = *from == '\r' && from + 1 < p && from[1] == '\n';
            if (!feeds) scratch += *from == '\r' ? '\n' : *from;
            if (*from == '"') ++from;
        }
        cell.text = scratch;
    }
    cell.text = trimmed(cell.text);
    cell.next = endOfUnquoted(p + 1, end, separator);
    for (const char* after = p + 1; after < cell.next; ++after)
        if (*after != ' ' && *after != '\t' && *after != '\r') cell.fault = CellFault::TextAfterQuote;
    return cell;
}

} // namespace

RawCell readCell(const char* p, const char* end, char separator, std::string& scratch) {
    const char* first = p;
    while (first < end && (*first == ' ' || *first == '\t') && *first != separator)
        ++first;
    if (first < end && *first == '"') return readQuoted(first + 1, end, separator, scratch);
    RawCell cell;
    cell.next = endOfUnquoted(first, end, separator);
    const char* last = cell.next;
    if (last > first && last[-1] == '\r' && (last == end || *last == '\n')) --last;
    cell.text = trimmed(between(first, last));
    return cell;
}

bool isMissingText(std::string_view text) {
    return text.empty() || text == "NA" || text == "." ||
           (text.size() == 3 && equalIgnoringCase(text, "nan"));
}

namespace {

constexpr std::array<DateOrder, 3> orders{DateOrder::DayMonthYear, DateOrder::MonthDayYear,
                                          DateOrder::YearMonthDay};

/// Classifies a text in the form of a date. Three short numbers that are no valid date may mean something
/// else.
void classifyDate(CellValue& cell, const Dialect& dialect) {
    const DateText& date = cell.date;
    cell.kind = date.shortYear ? CellKind::Text : CellKind::BadDate;
    if (date.yearFirst || dialect.dates) {
        const auto day = dayNumberOf(date, dialect.dates.value_or(DateOrder::YearMonthDay));
        if (!day) return;
        cell.kind = CellKind::Date;
        cell.value = *day;
        return;
    }
    const bool fits = std::any_of(orders.begin(), orders.end(),
                                  [&](DateOrder order) { return dayNumberOf(date, order).has_value(); });
    if (!fits) return;
    cell.kind = CellKind::OpenDate;
    cell.value = packedDate(date);
}

} // namespace

bool isGarbledNumber(std::string_view text) {
    const std::size_t front = std::min(text.find_first_not_of("+-"), text.size());
    const std::string_view rest = text.substr(front);
    if (rest.find_first_not_of("0123456789.,") != std::string_view::npos ||
        rest.find_first_of("0123456789") == std::string_view::npos)
        return false;
    return readNumber(text, '.').form == NumberForm::None && readNumber(text, ',').form == NumberForm::None &&
           thousandsOf(text) == Thousands::None && !readDateText(text);
}

CellValue classifyCell(std::string_view text, const Dialect& dialect) {
    CellValue cell;
    if (isMissingText(text)) return cell;
    const bool comma = text.find(',') != std::string_view::npos;
    const bool hasComma = dialect.comma && comma;
    const bool hasPoint = !hasComma && text.find('.') != std::string_view::npos;
    NumberText number;
    if (!hasPoint || dialect.point) number = readNumber(text, hasComma ? ',' : '.');
    if (number.form != NumberForm::None) {
        cell.kind = number.form == NumberForm::Finite ? CellKind::Number : CellKind::TooBig;
        cell.value = number.value;
        cell.mark = hasComma ? ',' : hasPoint ? '.' : '\0';
        return cell;
    }
    cell.kind = CellKind::Text;
    const char front = text.front();
    if ((front < '0' || front > '9') && front != '-' && front != '+' && front != ',') return cell;
    if (const auto date = readDateText(text)) {
        cell.date = *date;
        classifyDate(cell, dialect);
    } else if (thousandsOf(text) != Thousands::None) {
        cell.kind = CellKind::Thousands;
    } else if (comma && readNumber(text, ',').form == NumberForm::Finite) {
        cell.mark = ',';
    }
    return cell;
}

} // namespace korvana
