#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace korvana {

/// Data that cannot be read or used. what() is one complete message: where, what is wrong, what to do,
/// for example "trial.csv:17:3: 4 cells where the header has 5; ...".
class DataError : public std::runtime_error {
public:
    /// @param file    the file as the user named it, or empty
    /// @param line    1-based line of the file, 0 = unknown
    /// @param column  1-based number of the cell in its row, 0 = unknown
    /// @param text    what is wrong and what to do, without the place
    DataError(std::string file, std::int64_t line, std::int64_t column, std::string_view text);

    /// An error about no particular file.
    explicit DataError(std::string_view text) : DataError({}, 0, 0, text) {}

    const std::string& file() const { return file_; }
    std::int64_t line() const { return line_; }
    std::int64_t column() const { return column_; }

private:
    std::string file_;
    std::int64_t line_;
    std::int64_t column_;
};

} // namespace korvana
