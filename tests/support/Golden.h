#pragma once
// Golden files (tests/golden) as tests read them: lines starting with # name the source, then one line of
// headings, then comma-separated cells without quotes.

#include <cstddef>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace korvana::golden {

class Table {
public:
    // The file of that name in tests/golden. Throws std::runtime_error, which fails the test, when the file
    // is missing, has no rows, or has a row whose cells are more or fewer than the headings.
    static Table read(const std::string& name) {
        const std::string path = std::string(KORVANA_SOURCE_DIR) + "/tests/golden/" + name;
        std::ifstream in(path);
        if (!in) throw std::runtime_error("cannot read " + path);
        Table table;
        table.name_ = name;
        for (std::string line; std::getline(in, line);) {
            if (line.empty() || line.front() == '#') continue;
            auto cells = split(line);
            if (table.headings_.empty()) {
                table.headings_ = std::move(cells);
            } else {
                if (cells.size() != table.headings_.size())
                    throw std::runtime_error(path + ": odd row: " + line);
                table.rows_.push_back(std::move(cells));
            }
        }
        if (table.rows_.empty()) throw std::runtime_error(path + " holds no rows");
        return table;
    }

    // The rows whose cell in `column` is exactly `text`; throws when there is none.
    Table where(std::string_view column, std::string_view text) const {
        const std::size_t at = find(column);
        Table part;
        part.name_ = name_;
        part.headings_ = headings_;
        for (const auto& row : rows_)
            if (row[at] == text) part.rows_.push_back(row);
        if (part.rows_.empty())
            throw std::runtime_error(name_ + ": no " + std::string(column) + " is " + std::string(text));
        return part;
    }

    std::size_t size() const { return rows_.size(); }

    // A column as numbers, NaN for NA. Throws when the column is unknown or a cell is neither.
    std::vector<double> numbers(std::string_view column) const {
        std::vector<double> values;
        for (const std::string& cell : texts(column))
            values.push_back(number(cell));
        return values;
    }

    std::vector<std::string> texts(std::string_view column) const {
        const std::size_t at = find(column);
        std::vector<std::string> values;
        for (const auto& row : rows_)
            values.push_back(row[at]);
        return values;
    }

private:
    static std::vector<std::string> split(const std::string& line) {
        std::vector<std::string> cells;
        std::istringstream in(line);
        for (std::string cell; std::getline(in, cell, ',');)
            cells.push_back(cell);
        return cells;
    }

    double number(const std::string& cell) const {
        if (cell == "NA") return std::numeric_limits<double>::quiet_NaN();
        std::size_t digits = 0;
        const double value = std::stod(cell, &digits);
        if (digits != cell.size()) throw std::runtime_error(name_ + ": not a number: " + cell);
        return value;
    }

    std::size_t find(std::string_view column) const {
        for (std::size_t i = 0; i < headings_.size(); ++i)
            if (headings_[i] == column) return i;
        throw std::runtime_error(name_ + ": no column " + std::string(column));
    }

    std::string name_;
    std::vector<std::string> headings_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace korvana::golden
