#include "apps/cli/ProgressLine.h"

#include "host/data/NumberText.h"
#include "host/results/Utf8.h"

#include <algorithm>
#include <cstdint>

namespace korvana::cli {
namespace {

constexpr std::size_t lineWidth = 78;
constexpr const char* startOfLine = "\r\x1b[K"; // back to the first column, and erase the line

std::string cut(std::string_view text) {
    std::string line;
    for (std::size_t width = 0; !text.empty() && width < lineWidth; ++width)
        appendCodePoint(line, takeCodePoint(text));
    return line;
}

} // namespace

void ProgressLine::status(std::string_view text) {
    text_ = oneLine(trimmed(text));
    percent_ = 0;
    show();
}

void ProgressLine::progress(unsigned done, unsigned units) {
    if (units == 0) return;
    const auto percent = static_cast<unsigned>(std::uint64_t{100} * done / units);
    if (percent == percent_) return;
    percent_ = percent;
    show();
}

void ProgressLine::show() {
    if (!shows_) return;
    const std::string share = percent_ > 0 ? " " + std::to_string(percent_) + " %" : std::string{};
    console_.err << startOfLine << cut(text_ + share) << std::flush;
    visible_ = true;
}

void ProgressLine::clear() {
    if (visible_) console_.err << startOfLine << std::flush;
    visible_ = false;
}

void ProgressLine::message(const ResultMessage& message) {
    ++messages_;
    if (quiet_ && message.severity == ResultMessage::Severity::Note) return;
    clear();
    // Of many outputs with the same message it is said once, then only what differs.
    const bool again = message.id != 0 && message.id == last_.id && message.text == last_.text;
    const bool repeated = again && message.detail == last_.detail;
    last_ = message;
    if (repeated) return;
    std::string text = message.id != 0 ? "message " + std::to_string(message.id) + ": " : std::string{};
    text += trimmed(message.text);
    // A detail may have lines of its own.
    std::string details;
    std::string_view detail = trimmed(message.detail);
    while (!detail.empty()) {
        const std::size_t end = std::min(detail.find('\n'), detail.size());
        details.append(details.empty() ? "  " : "\n  ").append(detail.substr(0, end));
        detail.remove_prefix(std::min(end + 1, detail.size()));
    }
    if (again)
        console_.sayMore(details);
    else
        console_.say(details.empty() ? text : text + "\n" + details);
}

} // namespace korvana::cli
