#include "host/data/DataError.h"

#include <utility>

namespace korvana {
namespace {

std::string placed(const std::string& file, std::int64_t line, std::int64_t column, std::string_view text) {
    std::string message = file;
    if (line > 0) message.append(file.empty() ? "line " : ":").append(std::to_string(line));
    if (line > 0 && column > 0) message.append(":").append(std::to_string(column));
    if (!message.empty()) message.append(": ");
    return message.append(text);
}

} // namespace

DataError::DataError(std::string file, std::int64_t line, std::int64_t column, std::string_view text)
    : std::runtime_error(placed(file, line, column, text)), file_(std::move(file)), line_(line),
      column_(column) {}

} // namespace korvana
