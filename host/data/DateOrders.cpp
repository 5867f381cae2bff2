#include "host/data/DateOrders.h"

#include "host/data/DateText.h"
#include "host/data/DayNumber.h"
#include "host/data/ReadData.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace korvana {
namespace {

using Sort = ColumnTally::Sort;

/// An order of dates, and the first date that contradicts it.
struct Order {
    DateOrder order;
    Sort against;
    const char* option;
    const char* name;
};

constexpr std::array<Order, 3> orders{{
    {DateOrder::DayMonthYear, ColumnTally::NotDayFirst, "dmy", "day, month, year"},
    {DateOrder::MonthDayYear, ColumnTally::NotMonthFirst, "mdy", "month, day, year"},
    {DateOrder::YearMonthDay, ColumnTally::NotYearFirst, "ymd", "year, month, day"},
}};

std::vector<const Order*> fitting(const ColumnTally& tally) {
    std::vector<const Order*> fit;
    for (const Order& each : orders)
        if (tally.count[each.against] == 0) fit.push_back(&each);
    return fit;
}

/// No order fits all dates. Short numbers may be something other than dates.
void contradict(const DelimitedTable& table, std::size_t column, const ColumnTally& tally, ColumnKind& kind) {
    if (tally.count[Sort::ShortYear] > 0) {
        kind.kind = VariableKind::Text;
        return;
    }
    const CellPlace& day = tally.first[Sort::NotMonthFirst];
    const CellPlace& month = tally.first[Sort::NotDayFirst];
    const bool dayLater = day.line > month.line;
    throw table.cellError((dayLater ? day : month).line, column,
                          quoted(dayLater ? day : month) + " can only be read as " +
                              orders[dayLater ? 0 : 1].name + ", but " + inLine(dayLater ? month : day) +
                              " only as " + orders[dayLater ? 1 : 0].name +
                              "; write the dates alike, best as year-month-day (1995-06-05)");
}

[[noreturn]] void failAmbiguous(const DelimitedTable& table, std::size_t column, const ColumnTally& tally,
                                const std::vector<const Order*>& fit) {
    const CellPlace& place = tally.first[Sort::Ambiguous];
    const DateText date = readDateText(place.text).value_or(DateText{});
    std::string readings;
    std::string options;
    std::vector<DateOrder> choices;
    for (std::size_t i = 0; i < fit.size(); ++i) {
        const char* const link = i == 0 ? "" : i + 1 < fit.size() ? ", " : " or ";
        const auto day = dayNumberOf(date, fit[i]->order);
        readings.append(link).append(isoDateText(day.value_or(0)));
        readings.append(" (").append(fit[i]->name).append(")");
        options.append(link).append("--dates ").append(fit[i]->option);
        choices.push_back(fit[i]->order);
    }
    throw AmbiguousDates(table.cellError(place.line, column,
                                         quoted(place) + " may be " + readings +
                                             ", and no other date decides; say which (" + options +
                                             "), or write dates as year-month-day"),
                         std::move(choices));
}

const Order& orderOf(DateOrder order) {
    return *std::find_if(orders.begin(), orders.end(),
                         [&](const Order& each) { return each.order == order; });
}

} // namespace

std::string_view nameOf(DateOrder order) {
    return orderOf(order).name;
}

std::string_view optionOf(DateOrder order) {
    return orderOf(order).option;
}

void decideOrders(const DelimitedTable& table, std::span<const ColumnTally> tallies, std::size_t first,
                  std::span<ColumnKind> kinds) {
    std::vector<std::size_t> open;
    std::vector<DateOrder> decided;
    for (std::size_t i = first; i < tallies.size(); ++i) {
        const ColumnTally& tally = tallies[i];
        if (kinds[i].kind != VariableKind::Date || tally.count[Sort::OpenDate] == 0) continue;
        const auto fit = fitting(tally);
        if (fit.empty()) {
            contradict(table, i, tally, kinds[i]);
        } else if (fit.size() == 1 || tally.count[Sort::Ambiguous] == 0) {
            kinds[i].order = fit.front()->order;
            if (fit.size() == 1) decided.push_back(fit.front()->order);
        } else {
            open.push_back(i);
        }
    }
    const bool agreed = !decided.empty() && std::count(decided.begin(), decided.end(), decided.front()) ==
                                                static_cast<std::ptrdiff_t>(decided.size());
    for (const std::size_t column : open) {
        const auto fit = fitting(tallies[column]);
        const bool follows = agreed && std::any_of(fit.begin(), fit.end(), [&](const Order* each) {
                                 return each->order == decided.front();
                             });
        if (!follows) failAmbiguous(table, column, tallies[column], fit);
        kinds[column].order = decided.front();
    }
}

void noteTwoOrders(const DelimitedTable& table, std::span<const ColumnKind> kinds,
                   std::vector<std::string>& notes) {
    std::string text;
    std::set<DateOrder> seen;
    for (std::size_t i = 0; i < kinds.size(); ++i)
        for (const Order& each : orders)
            if (kinds[i].order == each.order && seen.insert(each.order).second)
                text.append(text.empty() ? "" : ", ")
                    .append("those of '" + table.names[i] + "' as ")
                    .append(each.name);
    if (seen.size() > 1) notes.push_back("dates are read in different orders: " + text);
}

} // namespace korvana
