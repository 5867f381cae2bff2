#include "apps/cli/ProgressLine.h"

#include "host/data/NumberText.h"
#include "host/results/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace korvana::cli {
namespace {

constexpr std::size_t lineWidth = 78;
constexpr const char* startOfLine = "\r\x1b[K"; // back to the first column, and erase the line

/// As much of a text as a width has room for, with dots where something is missing.
std::string cut(std::string_view text, std::size_t width) {
    constexpr std::string_view dots = " ...";
    std::string line;
    std::string shorter;
    for (std::size_t used = 0; !text.empty(); ++used) {
        if (used == width) return std::string(trimmed(shorter)).append(dots);
        appendCodePoint(line, takeCodePoint(text));
        if (used + 1 == width - dots.size()) shorter = line;
    }
    return line;
}

/// A detail may have lines of its own.
std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    for (text = trimmed(text); !text.empty();) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

} // namespace

void ProgressLine::status(std::string_view text) {
    text_ = oneLine(trimmed(text));
    caption_.clear();
    percent_ = 0;
    show();
}

void ProgressLine::progressCaption(std::string_view text) {
    caption_ = oneLine(trimmed(text));
    show();
}

void ProgressLine::computationStarted(unsigned /*units*/) {
    caption_.clear();
    percent_ = 0;
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
    // How far it is must be seen, whatever else has no room.
    std::string end = caption_.empty() ? caption_ : "  " + caption_;
    if (percent_ > 0) end += " " + std::to_string(percent_) + " %";
    end = cut(end, lineWidth / 2);
    console_.err << startOfLine << cut(text_, lineWidth - end.size()) << end << std::flush;
    visible_ = true;
}

void ProgressLine::clear() {
    if (visible_) console_.err << startOfLine << std::flush;
    visible_ = false;
}

void ProgressLine::begin(const std::string& run) {
    run_ = run;
    messages_ = 0;
    last_ = {};
}

void ProgressLine::message(const ResultMessage& message) {
    ++messages_;
    if (quiet_ && message.severity == ResultMessage::Severity::Note) return;
    clear();
    // What many outputs have in common is said once, then only what differs.
    const bool again = message.id != 0 && message.id == last_.id && message.text == last_.text;
    std::string text;
    if (!again) {
        if (!run_.empty()) text = run_ + ": ";
        if (message.id != 0) text += "message " + std::to_string(message.id) + ": ";
        text += trimmed(message.text);
    }
    const std::vector<std::string_view> before =
        again ? linesOf(last_.detail) : std::vector<std::string_view>{};
    for (const std::string_view line : linesOf(message.detail))
        if (std::find(before.begin(), before.end(), line) == before.end())
            text.append(text.empty() ? "  " : "\n  ").append(line);
    if (!again)
        console_.say(text);
    else if (!text.empty())
        console_.sayMore(text);
    last_ = message;
}

} // namespace korvana::cli
