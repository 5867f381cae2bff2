#include "host/data/FrameData.h"

#include "host/data/CellTally.h"
#include "host/data/ColumnKinds.h"
#include "host/data/DataError.h"
#include "host/data/DateText.h"
#include "host/data/DayNumber.h"
#include "host/data/DelimitedTable.h"
#include "host/data/NumberText.h"
#include "host/data/TextCodes.h"
#include "host/data/VariableNames.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

namespace korvana {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t noTime = std::numeric_limits<std::int64_t>::min();
constexpr double dayOfEpoch = 2440588; // 1970-01-01
constexpr double firstDay = 1721060;   // 0000-01-01
constexpr double lastDay = 5373484;    // 9999-12-31

/// Calls take(row, cell) for every cell, which may stand at any address.
template <class T, class Take>
void walk(const CellBlock& cells, std::size_t rows, const Take& take) {
    const char* const first = static_cast<const char*>(cells.first);
    T cell{};
    if (cells.stride == sizeof(T)) { // known when compiled, it is much faster
        for (std::size_t row = 0; row < rows; ++row) {
            std::memcpy(&cell, first + row * sizeof(T), sizeof(T));
            take(row, cell);
        }
        return;
    }
    for (std::size_t row = 0; row < rows; ++row) {
        std::memcpy(&cell, first + static_cast<std::ptrdiff_t>(row) * cells.stride, sizeof(T));
        take(row, cell);
    }
}

template <class T>
Column numbersOf(const CellBlock& cells, std::size_t rows) {
    Column column(rows);
    double* const to = column.data();
    walk<T>(cells, rows, [to](std::size_t row, T cell) { to[row] = static_cast<double>(cell); });
    return column;
}

/// Whole numbers beyond 2^53 are rounded, as those of a file are.
Column numbersOf(const CellBlock& cells, std::size_t rows) {
    switch (cells.type) {
    case CellType::Int8:
        return numbersOf<std::int8_t>(cells, rows);
    case CellType::Int16:
        return numbersOf<std::int16_t>(cells, rows);
    case CellType::Int32:
        return numbersOf<std::int32_t>(cells, rows);
    case CellType::Int64:
        return numbersOf<std::int64_t>(cells, rows);
    case CellType::UInt8:
        return numbersOf<std::uint8_t>(cells, rows);
    case CellType::UInt16:
        return numbersOf<std::uint16_t>(cells, rows);
    case CellType::UInt32:
        return numbersOf<std::uint32_t>(cells, rows);
    case CellType::UInt64:
        return numbersOf<std::uint64_t>(cells, rows);
    case CellType::Float32:
        return numbersOf<float>(cells, rows);
    case CellType::Float64:
        break;
    }
    return numbersOf<double>(cells, rows);
}

bool canBorrow(const CellBlock& cells) {
    return cells.type == CellType::Float64 && cells.stride == sizeof(double) && cells.owner != nullptr &&
           reinterpret_cast<std::uintptr_t>(cells.first) % alignof(double) == 0; // NOLINT: an alignment
}

bool hasInfinite(std::span<const double> cells) {
    constexpr double greatest = std::numeric_limits<double>::max();
    std::uint64_t infinite = 0;
    for (const double cell : cells) // without a way out, so that it can be done for several at once
        infinite += std::fabs(cell) > greatest ? 1 : 0;
    return infinite > 0;
}

/// The time of day of a date, " 14:30:00".
std::string timeText(std::int64_t rest, std::int64_t timesPerDay) {
    const auto seconds =
        static_cast<std::int64_t>(static_cast<double>(rest) / static_cast<double>(timesPerDay) * 86400.0);
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), " %02d:%02d:%02d", static_cast<int>(seconds / 3600 % 24),
                  static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
    return text.data();
}

/// A text as a cell of a file would have it.
std::string cellText(std::string_view text) {
    std::string cell;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != '\r')
            cell += text[i];
        else if (i + 1 == text.size() || text[i + 1] != '\n')
            cell += '\n';
    return std::string{trimmed(cell)};
}

DelimitedTable tableOf(const std::string& name, const ReadSettings& reading, std::vector<std::string> names) {
    DelimitedTable table;
    table.file = name;
    table.format.columns = names.size();
    Dialect& dialect = table.format.dialect;
    dialect.point = reading.decimalMark != ',';
    dialect.comma = reading.decimalMark == ',';
    dialect.markTold = reading.decimalMark.has_value();
    dialect.dates = reading.dates;
    table.names = std::move(names);
    return table;
}

} // namespace

FrameData::FrameData(std::string name, std::int64_t cases, const ReadSettings& reading)
    : name_(std::move(name)), cases_(cases), reading_(reading) {
    if (cases <= 0) throw DataError(name_, 0, 0, "there are no cases; give columns with at least one value");
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    if (cases > most)
        throw DataError(name_, 0, 0,
                        "there are more than " + std::to_string(most) +
                            " cases, which is the limit; take a part of them");
}

FrameData::Part& FrameData::add(std::string name) {
    if (parts_.size() == static_cast<std::size_t>(maxVariables))
        throw DataError(name_, 0, 0,
                        "there are more than " + std::to_string(maxVariables) +
                            " variables, which is the limit; leave out those that are not needed");
    name = cellText(name); // as the header of a file
    names_.push_back(std::move(name));
    return parts_.emplace_back();
}

void FrameData::addNumbers(std::string name, const CellBlock& cells) {
    Part& part = add(std::move(name));
    part.column = canBorrow(cells) ? Column::borrowed(static_cast<const double*>(cells.first), cells.owner)
                                   : numbersOf(cells, rows());
    if (cells.type != CellType::Float64 && cells.type != CellType::Float32) return;
    const std::span<const double> numbers = part.column.cells(rows());
    if (!hasInfinite(numbers)) return;
    std::size_t row = 0;
    while (row + 1 < rows() && !std::isinf(numbers[row]))
        ++row;
    throw DataError(name_, static_cast<std::int64_t>(row) + 1, static_cast<std::int64_t>(names_.size()),
                    "variable '" + names_.back() +
                        "': a number is infinite; correct it, or make it missing (NaN)");
}

void FrameData::addTruths(std::string name, const CellBlock& cells) {
    Part& part = add(std::move(name));
    part.column = numbersOf(cells, rows());
    part.isTruth = true;
}

void FrameData::addDates(std::string name, const CellBlock& times, std::int64_t timesPerDay) {
    Part& part = add(std::move(name));
    part.column = Column(rows());
    double* const to = part.column.data();
    ColumnTally& tally = part.tally;
    walk<std::int64_t>(times, rows(), [&](std::size_t row, std::int64_t time) {
        to[row] = notANumber;
        if (time == noTime) return;
        std::int64_t days = time / timesPerDay;
        std::int64_t rest = time - days * timesPerDay;
        if (rest < 0) {
            rest += timesPerDay;
            --days;
        }
        const double day = static_cast<double>(days) + dayOfEpoch;
        const auto line = static_cast<std::int64_t>(row) + 1;
        if (day < firstDay || day > lastDay)
            throw DataError(name_, line, static_cast<std::int64_t>(names_.size()),
                            "variable '" + names_.back() +
                                "': a date is beyond the years 0 to 9999; correct it, or make it missing");
        to[row] = day;
        ++tally.count[ColumnTally::Date];
        if (rest == 0) return;
        if (tally.count[ColumnTally::TimeOfDay]++ == 0)
            tally.first[ColumnTally::TimeOfDay] = {line, isoDateText(day) + timeText(rest, timesPerDay)};
    });
}

void FrameData::addDurations(std::string name, const CellBlock& times, std::int64_t timesPerDay) {
    Part& part = add(std::move(name));
    part.column = Column(rows());
    double* const to = part.column.data();
    walk<std::int64_t>(times, rows(), [&](std::size_t row, std::int64_t time) {
        to[row] = time == noTime ? notANumber : static_cast<double>(time) / static_cast<double>(timesPerDay);
    });
}

void FrameData::addTexts(std::string name, FrameTexts texts) {
    if (texts.places.size() != rows())
        throw std::invalid_argument("a column of texts needs a place for each case");
    Part& part = add(std::move(name));
    part.isText = true;
    part.texts = std::move(texts);
    for (std::string& text : part.texts.texts)
        text = cellText(text);
}

void FrameData::addUnread(std::string name) {
    Part& part = add(std::move(name));
    if (zeros_ == nullptr) {
        // Pages of it exist once they are looked at, which nobody does.
        auto* const zeros = static_cast<double*>(std::calloc(rows(), sizeof(double)));
        if (zeros == nullptr) throw std::bad_alloc();
        zeros_ = std::shared_ptr<const double>(zeros, [](const double* cells) {
            std::free(const_cast<double*>(cells)); // NOLINT: it was taken by calloc
        });
    }
    part.column = Column::borrowed(zeros_.get(), zeros_);
}

void FrameData::tallyTexts(Part& part) const {
    const std::size_t count = part.texts.texts.size();
    std::vector<std::int64_t> cases(count, 0);
    std::vector<std::int64_t>& first = part.first;
    first.assign(count, 0);
    std::int64_t line = 0;
    for (const std::int32_t place : part.texts.places) {
        ++line;
        if (place >= 0 && cases.at(static_cast<std::size_t>(place))++ == 0)
            first[static_cast<std::size_t>(place)] = line;
    }
    const Dialect dialect = tableOf(name_, reading_, {}).format.dialect;
    part.values.assign(count, notANumber);
    for (std::size_t i = 0; i < count; ++i) {
        if (cases[i] == 0) {
            part.texts.texts[i].clear(); // no case has it
            continue;
        }
        ColumnTally one;
        part.values[i] = tallyCell(part.texts.texts[i], first[i], dialect, one);
        for (std::int64_t& each : one.count)
            each *= cases[i];
        part.tally.merge(one);
    }
}

/// Gives the texts their codes and labels.
void FrameData::code(Part& part, Variable& variable) const {
    std::vector<SeenText> known;
    for (std::size_t i = 0; i < part.texts.texts.size(); ++i)
        if (const std::string& text = part.texts.texts[i]; !isMissingText(text))
            known.push_back({text, part.first[i]});
    TextCodes all = codesOf(known);
    variable.valueLabels = std::move(all.labels);
    if (all.areTruths) variable.kind = VariableKind::Number;
    auto code = all.codes.begin();
    for (std::size_t i = 0; i < part.values.size(); ++i)
        part.values[i] = isMissingText(part.texts.texts[i]) ? notANumber : *code++;
}

DataSet FrameData::finish() {
    if (parts_.empty())
        throw DataError(name_, 0, 0, "there are no variables; give at least one column with a name");
    for (Part& part : parts_)
        if (part.isText) tallyTexts(part);
    std::vector<std::string> nameNotes;
    std::vector<std::string> notes;
    const DelimitedTable table = tableOf(name_, reading_, variableNames(names_, names_.size(), 0, nameNotes));
    std::vector<ColumnTally> tallies;
    for (const Part& part : parts_)
        tallies.push_back(part.tally);
    const std::vector<ColumnKind> kinds = decideKinds(table, tallies, 0, notes);
    DataSet data(name_, static_cast<int>(cases_));
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        Part& part = parts_[i];
        Variable variable;
        variable.name = table.names[i];
        variable.kind = kinds[i].kind;
        if (part.isTruth) variable.valueLabels = {{0, "False"}, {1, "True"}};
        if (part.isText) {
            if (variable.kind == VariableKind::Text) code(part, variable);
            for (double& value : part.values)
                if (kinds[i].order && value < 0)
                    value = dayNumberOf(unpackedDate(value), *kinds[i].order).value_or(0);
            part.column = Column(rows());
            double* const to = part.column.data();
            for (std::size_t row = 0; row < rows(); ++row) {
                const std::int32_t place = part.texts.places[row];
                to[row] = place < 0 ? notANumber : part.values[static_cast<std::size_t>(place)];
            }
            part.texts = {};
        }
        data.addVariable(std::move(variable), std::move(part.column));
    }
    for (std::string& note : nameNotes)
        data.addNote(std::move(note), true);
    for (std::string& note : notes)
        data.addNote(std::move(note));
    data.setReadSettings(reading_);
    return data;
}

} // namespace korvana
