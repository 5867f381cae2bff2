#pragma once

#include "host/data/DataError.h"
#include "host/data/DataSet.h"
#include "host/data/ReadSettings.h"

#include <exception>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace korvana {

/// How to read a file; what is not given is detected.
struct ReadOptions {
    HeaderLine header = HeaderLine::Automatic;
    std::optional<char> separator;    ///< between cells: , ; tab | or another sign
    std::optional<char> decimalMark;  ///< . or ,
    std::optional<DateOrder> dates{}; ///< of 01/02/1995; a year of four digits in front needs none
    std::stop_token stop{};           ///< lets another thread stop it
};

/// Dates that fit several orders, with nothing in the file to decide: `ReadOptions::dates` must be given.
class AmbiguousDates : public DataError {
public:
    AmbiguousDates(const DataError& error, std::vector<DateOrder> orders)
        : DataError(error), orders_(std::move(orders)) {}

    /// The orders that fit, two or more.
    const std::vector<DateOrder>& orders() const { return orders_; }

private:
    std::vector<DateOrder> orders_;
};

/// Thrown by a reader that was asked to stop.
struct ReadingStopped : std::exception {
    const char* what() const noexcept override { return "reading was stopped"; }
};

/// Reads a data file, a pipe, or standard input for "-", also packed by gzip; the format is chosen from its
/// content and ending. Throws DataError (also when memory does not suffice) or ReadingStopped, nothing else.
DataSet readData(const std::filesystem::path& path, const ReadOptions& options = {});

} // namespace korvana
