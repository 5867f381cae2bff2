#include "host/data/ColumnKinds.h"

#include "host/data/DateOrders.h"
#include "host/data/DateText.h"
#include "host/data/Thousands.h"

#include <cstdint>
#include <string_view>
#include <utility>

namespace korvana {
namespace {

using Sort = ColumnTally::Sort;

std::string cellsAre(std::int64_t count, const char* what) {
    return std::to_string(count) + (count == 1 ? " cell is " : " cells are ") + what;
}

class Kinds {
public:
    Kinds(const DelimitedTable& table, std::span<const ColumnTally> tallies, std::size_t first,
          std::vector<std::string>& notes)
        : table_(table), tallies_(tallies), first_(first), notes_(notes), kinds_(tallies.size()) {}

    std::vector<ColumnKind> decide() {
        for (std::size_t i = first_; i < tallies_.size(); ++i)
            kinds_[i].kind = kindOf(i);
        decideMark();
        decideOrders(table_, tallies_, first_, kinds_);
        for (std::size_t i = first_; i < tallies_.size(); ++i)
            note(i);
        noteTwoOrders(table_, kinds_, notes_);
        return std::move(kinds_);
    }

private:
    [[noreturn]] void fail(std::size_t column, const CellPlace& place, const std::string& what) const {
        throw table_.cellError(place.line, column, what);
    }

    VariableKind kindOf(std::size_t column) const {
        const auto& count = tallies_[column].count;
        const auto& first = tallies_[column].first;
        if (count[Sort::Text] > 0) {
            refuseGarbled(column);
            return VariableKind::Text;
        }
        const bool numbers = count[Sort::Number] + count[Sort::TooBig] + count[Sort::Thousands] > 0;
        const bool dates = tallies_[column].dates() > 0;
        if (dates || count[Sort::BadDate] > 0) {
            if (numbers || !dates) return VariableKind::Text;
            if (count[Sort::BadDate] > 0) failBadDate(column);
            return VariableKind::Date;
        }
        if (count[Sort::Number] == 0 && count[Sort::TooBig] > 0) return VariableKind::Text;
        if (count[Sort::TooBig] > 0) {
            fail(column, first[Sort::TooBig],
                 quoted(first[Sort::TooBig]) +
                     " is infinite or above the greatest number (about 1.8e308); correct it or leave the "
                     "cell empty");
        }
        if (count[Sort::Thousands] > 0) {
            const CellPlace& place = first[Sort::Thousands];
            const bool certain = thousandsOf(place.text) == Thousands::Certain;
            if (count[Sort::Number] == 0 && !certain) return VariableKind::Text;
            if (table_.format.dialect.markTold && hasOtherMark(place.text)) return VariableKind::Text;
            fail(column, place,
                 quoted(place) + " has separated thousands; write " + withoutThousands(place.text) +
                     ", and so in the whole file");
        }
        return VariableKind::Number;
    }

    /// Without this one typing error would turn a whole column of numbers into texts.
    void refuseGarbled(std::size_t column) const {
        const ColumnTally& tally = tallies_[column];
        const CellPlace& place = tally.first[Sort::Garbled];
        const std::int64_t garbled = tally.count[Sort::Garbled];
        if (garbled == 0 || garbled < tally.count[Sort::Text] || garbled > tally.count[Sort::Number] ||
            tally.dates() + tally.count[Sort::BadDate] > 0)
            return;
        const bool point = place.text.find('.') != std::string::npos;
        const bool comma = place.text.find(',') != std::string::npos;
        if (table_.format.dialect.markTold && point != comma && hasOtherMark(place.text)) return;
        fail(column, place,
             quoted(place) + " is no number, as the other cells of the column are: it has " +
                 (point && comma   ? "points and commas that separate no thousands"
                  : point || comma ? "a sign or mark too many"
                                   : "several signs") +
                 "; correct it, or leave the cell empty");
    }

    bool hasOtherMark(std::string_view text) const {
        return text.find(table_.format.dialect.comma ? '.' : ',') != std::string_view::npos;
    }

    /// What is wrong with a date: its time of day, or else there is no such day.
    std::string wrongIn(const CellPlace& place) const {
        const auto& asked = table_.format.dialect.dates;
        if (auto date = readDateText(place.text); date && date->noSuchTime) {
            date->noSuchTime = false;
            for (const DateOrder order :
                 {DateOrder::DayMonthYear, DateOrder::MonthDayYear, DateOrder::YearMonthDay})
                if (dayNumberOf(*date, asked.value_or(order)))
                    return "has no possible time of day (00:00 to 23:59, or 1:00 to 12:59 with AM or PM)";
        }
        std::string what = "is no day of the calendar";
        if (asked) what.append(" when read as ").append(nameOf(*asked));
        return what;
    }

    [[noreturn]] void failBadDate(std::size_t column) const {
        const CellPlace& place = tallies_[column].first[Sort::BadDate];
        fail(column, place, quoted(place) + " " + wrongIn(place) + "; correct it or leave the cell empty");
    }

    struct Found {
        std::size_t column = 0;
        const CellPlace* place = nullptr;
        std::int64_t count = 0;
        std::int64_t sure = 0;

        void add(std::size_t at, const ColumnTally& tally, Sort mark, Sort sureMark) {
            count += tally.count[mark];
            sure += tally.count[sureMark];
            if (tally.count[mark] == 0 || (place != nullptr && place->line <= tally.first[mark].line)) return;
            column = at;
            place = &tally.first[mark];
        }
    };

    /// One mark for the file: the one that cannot mean anything else, or else the one of more cells.
    void decideMark() {
        if (!table_.format.dialect.comma) return;
        Found comma;
        Found point;
        for (std::size_t i = first_; i < tallies_.size(); ++i) {
            if (kinds_[i].kind != VariableKind::Number) continue;
            comma.add(i, tallies_[i], Sort::Comma, Sort::SureComma);
            point.add(i, tallies_[i], Sort::Point, Sort::SurePoint);
        }
        if (table_.format.dialect.separator == ',' && comma.count == 0) {
            throw DataError(table_.file, 0, 0,
                            "the comma separates the cells; it can be the decimal mark in quoted cells only, "
                            "and there are none with one: separate the cells with semicolons");
        }
        if (comma.count == 0 || point.count == 0) {
            if (table_.format.dialect.point) noteLikelyThousands(comma.sure + point.sure);
            return;
        }
        const bool commas =
            (comma.sure > 0) != (point.sure > 0) ? comma.sure > 0 : comma.count >= point.count;
        const Found& other = commas ? point : comma;
        const Found& usual = commas ? comma : point;
        const std::string sign = commas ? "point" : "comma";
        const bool thousands = other.sure == 0;
        fail(other.column, *other.place,
             quoted(*other.place) + " has a decimal " + sign + ", but the file has decimal " +
                 (commas ? "commas" : "points") + " (" + inLine(*usual.place) + ", variable '" +
                 table_.names[usual.column] + "'); " +
                 (thousands ? "if the " + sign + " separates thousands, leave it out; " : "") +
                 "use one mark in the whole file, or say which it is (--decimal comma or --decimal point): "
                 "numbers with the other are texts then");
    }

    /// 850 and 1.200 in a file without other decimals: whole numbers or not?
    void noteLikelyThousands(std::int64_t sure) {
        for (std::size_t i = first_; i < tallies_.size() && sure == 0; ++i) {
            const ColumnTally& tally = tallies_[i];
            const std::int64_t marked = tally.count[Sort::Comma] + tally.count[Sort::Point];
            if (kinds_[i].kind != VariableKind::Number || marked == 0 || marked == tally.count[Sort::Number])
                continue;
            const bool comma = tally.count[Sort::Comma] > 0;
            const CellPlace& place = tally.first[comma ? Sort::Comma : Sort::Point];
            notes_.push_back("variable '" + table_.names[i] + "': " + inLine(place) +
                             " is read with a decimal " + (comma ? "comma" : "point") + "; if the " +
                             (comma ? "comma" : "point") + " separates thousands, write " +
                             withoutThousands(place.text));
        }
    }

    void note(std::size_t column) {
        const ColumnTally& tally = tallies_[column];
        const std::string begin = "variable '" + table_.names[column] + "': ";
        if (kinds_[column].kind == VariableKind::Date && tally.count[Sort::TimeOfDay] > 0) {
            notes_.push_back(begin + "dates count whole days; the time of day is left out of " +
                             std::to_string(tally.count[Sort::TimeOfDay]) +
                             (tally.count[Sort::TimeOfDay] == 1 ? " cell" : " cells") +
                             " (first: " + inLine(tally.first[Sort::TimeOfDay]) + ")");
        }
        if (kinds_[column].kind != VariableKind::Text) return;
        const std::int64_t commas = tally.count[Sort::CommaText];
        const bool likelyMark =
            commas > 0 && commas == tally.count[Sort::Text] && table_.format.dialect.separator == ',';
        const std::string mark =
            likelyMark ? "; if the comma is the decimal mark, say so (--decimal comma)" : "";
        if (!noteMixture(column, mark) && likelyMark) noteTexts(begin, tally, Sort::CommaText, mark);
        noteOtherOrder(column, begin);
        if (tally.filled() == 0) return;
        if (tally.count[Sort::Thousands] == tally.filled())
            noteTexts(begin, tally, Sort::Thousands, "; numbers have no separated thousands");
        if (tally.count[Sort::BadDate] == tally.filled())
            noteTexts(begin, tally, Sort::BadDate, ", which " + wrongIn(tally.first[Sort::BadDate]));
        if (tally.count[Sort::TooBig] == tally.filled())
            noteTexts(begin, tally, Sort::TooBig, ", which is no finite number");
    }

    /// Cells of one sort that look like numbers or dates, but are not.
    void noteTexts(const std::string& begin, const ColumnTally& tally, Sort sort, const std::string& why) {
        notes_.push_back(begin + cellsAre(tally.count[sort], "read as text") + ", such as " +
                         inLine(tally.first[sort]) + why);
    }

    /// Texts the first of which would be a date in an order other than the one asked for.
    void noteOtherOrder(std::size_t column, const std::string& begin) {
        const CellPlace& place = tallies_[column].first[Sort::Text];
        const auto& asked = table_.format.dialect.dates;
        if (!asked || tallies_[column].count[Sort::Text] == 0) return;
        const auto date = readDateText(place.text);
        if (!date || date->yearFirst) return;
        notes_.push_back((begin + "read as text, as " + inLine(place) + " is no date in the order ")
                             .append(nameOf(*asked))
                             .append(" (--dates ")
                             .append(optionOf(*asked))
                             .append(")"));
    }

    /// Returns whether there was something to note.
    bool noteMixture(std::size_t column, const std::string& advice) {
        const ColumnTally& tally = tallies_[column];
        const bool numbers = tally.count[Sort::Number] > 0;
        const std::int64_t regular = numbers ? tally.count[Sort::Number] : tally.dates();
        const std::int64_t other = tally.filled() - regular;
        if (regular == 0 || other == 0) return false;
        if (!numbers && other > regular) return false; // texts, some of which look like dates
        const CellPlace* first = nullptr;
        for (const auto sort :
             {Sort::Text, Sort::TooBig, Sort::Thousands, Sort::BadDate, Sort::Date, Sort::OpenDate}) {
            const CellPlace& place = tally.first[sort];
            if (!numbers && (sort == Sort::Date || sort == Sort::OpenDate)) continue;
            if (first == nullptr || place.line < first->line) first = &place;
        }
        notes_.push_back(
            "variable '" + table_.names[column] + "': " + std::to_string(other) + " of " +
            std::to_string(tally.filled()) + (other == 1 ? " cells is not a " : " cells are not ") +
            (numbers ? "number" : "date") + (other == 1 ? "" : "s") + " (first: " + quoted(*first) +
            ", line " + std::to_string(first->line) + "); read as text codes" + advice);
        return true;
    }

    const DelimitedTable& table_;
    std::span<const ColumnTally> tallies_;
    std::size_t first_;
    std::vector<std::string>& notes_;
    std::vector<ColumnKind> kinds_;
};

} // namespace

std::vector<ColumnKind> decideKinds(const DelimitedTable& table, std::span<const ColumnTally> tallies,
                                    std::size_t first, std::vector<std::string>& notes) {
    return Kinds(table, tallies, first, notes).decide();
}

} // namespace korvana
