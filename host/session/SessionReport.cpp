#include "host/session/SessionReport.h"

#include "host/results/Utf8.h"

#include <algorithm>

namespace korvana {
namespace {

std::u32string characters(std::string_view text) {
    std::u32string decoded;
    while (!text.empty())
        decoded += takeCodePoint(text);
    return decoded;
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (; !text.empty(); ++count)
        static_cast<void>(takeCodePoint(text));
    return count;
}

/// The first `length` characters.
std::string_view front(std::string_view text, std::size_t length) {
    if (text.size() <= length) return text;
    std::string_view rest = text;
    while (length-- > 0 && !rest.empty())
        static_cast<void>(takeCodePoint(rest));
    return text.substr(0, text.size() - rest.size());
}

bool isBlank(const std::string& line) {
    return line.find_first_not_of(' ') == std::string::npos;
}

} // namespace

void SessionReport::open() {
    if (open_) return;
    open_ = true;
    origin_ = parts_.origins.current();
    lines_.assign(1, {});
    row_ = column_ = 0;
    atEnd_ = true;
}

void SessionReport::prttop() {
    type();
    open();
}

void SessionReport::writst(int length, std::string_view text) {
    if (length > 0) write(front(text, static_cast<std::size_t>(length)));
}

void SessionReport::write(std::string_view text) {
    open();
    if (atEnd_) {
        line() += text;
        column_ += characterCount(text);
        return;
    }
    std::u32string whole = characters(line());
    const std::u32string written = characters(text);
    whole.resize(std::max(whole.size(), column_ + written.size()), U' ');
    whole.replace(column_, written.size(), written);
    column_ += written.size();
    atEnd_ = column_ == whole.size();
    line().clear();
    for (const char32_t each : whole)
        appendCodePoint(line(), each);
}

void SessionReport::newline(int count) {
    if (count < 1) return;
    open();
    const std::size_t wanted = row_ + static_cast<std::size_t>(count);
    if (wanted >= mostRows) return;
    row_ = wanted;
    if (row_ >= lines_.size()) lines_.resize(row_ + 1);
    column_ = 0;
    atEnd_ = line().empty();
}

void SessionReport::cup(int row, int column) {
    if (row < 1 || column < 1 || row > mostRows || column > mostColumns) return;
    open();
    row_ = static_cast<std::size_t>(row - 1);
    column_ = static_cast<std::size_t>(column - 1);
    if (row_ >= lines_.size()) lines_.resize(row_ + 1);
    const std::size_t length = characterCount(line());
    if (length < column_) line().append(column_ - length, ' ');
    atEnd_ = length <= column_;
}

void SessionReport::cupst(int row, int column, int /*attribute*/, std::string_view text) {
    cup(row, column);
    write(text);
}

void SessionReport::type() {
    if (!open_) return;
    open_ = false;
    while (!lines_.empty() && isBlank(lines_.back()))
        lines_.pop_back();
    const auto title =
        std::find_if(lines_.begin(), lines_.end(), [](const std::string& each) { return !isBlank(each); });
    if (title == lines_.end()) return;
    Report report;
    report.title = std::move(*title);
    report.title.erase(0, report.title.find_first_not_of(' '));
    report.title.erase(report.title.find_last_not_of(' ') + 1);
    lines_.erase(lines_.begin(), title + 1);
    for (std::string& each : lines_)
        each.erase(each.find_last_not_of(' ') + 1);
    report.lines = std::move(lines_);
    lines_ = {};
    report.origin = std::move(origin_);
    parts_.addOutput(std::move(report));
}

} // namespace korvana
