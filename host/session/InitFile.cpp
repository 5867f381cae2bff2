#include "host/session/InitFile.h"

#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"
#include "host/results/OutputFile.h"

#include <cstdint>
#include <fstream>
#include <iterator>

namespace korvana {
namespace {

constexpr std::string_view mark = "\xEF\xBB\xBF";
constexpr std::string_view lineBreaks{"\r\n\0", 3};
constexpr std::uintmax_t longest = 1 << 20; // bytes

} // namespace

std::optional<InitFile> InitFile::read(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error) || std::filesystem::file_size(path, error) > longest)
        return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>{in}, {}};
    if (!in.good() && !in.eof()) return std::nullopt;
    return parse(toUtf8(text));
}

InitFile::Line InitFile::classify(std::string_view text) {
    Line line;
    line.text = text;
    const std::string_view content = trimmed(text);
    if (content.empty() || content.front() == ';' || content.front() == '#') return line;
    if (content.front() == '[') {
        if (const auto end = content.find(']'); end != std::string_view::npos) {
            line.kind = Line::Kind::Section;
            line.name = trimmed(content.substr(1, end - 1));
        }
        return line;
    }
    const auto equals = content.find('=');
    if (equals == std::string_view::npos) return line;
    line.kind = Line::Kind::Entry;
    line.name = trimmed(content.substr(0, equals));
    line.value = trimmed(content.substr(equals + 1));
    return line;
}

InitFile InitFile::parse(std::string_view text) {
    InitFile file;
    if (text.starts_with(mark)) {
        file.hasMark_ = true;
        text.remove_prefix(mark.size());
    }
    const auto has = [text](std::string_view end) { return text.find(end) != std::string_view::npos; };
    file.lineEnd_ = has("\r\n") ? "\r\n" : has("\r") && !has("\n") ? "\r" : "\n";
    const char lineEnd = file.lineEnd_.back();
    while (!text.empty()) {
        const auto end = text.find(lineEnd);
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        while (line.ends_with('\r'))
            line.remove_suffix(1); // further ones have no meaning
        file.lines_.push_back(classify(line));
    }
    return file;
}

std::vector<std::size_t> InitFile::linesOf(std::string_view section) const {
    std::vector<std::size_t> places;
    bool inside = false;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (lines_[i].kind == Line::Kind::Section)
            inside = equalIgnoringCase(lines_[i].name, trimmed(section));
        if (inside) places.push_back(i);
    }
    return places;
}

bool InitFile::hasSection(std::string_view section) const {
    return !linesOf(section).empty();
}

std::optional<std::string> InitFile::value(std::string_view section, std::string_view keyword) const {
    for (const std::size_t i : linesOf(section))
        if (lines_[i].kind == Line::Kind::Entry && equalIgnoringCase(lines_[i].name, trimmed(keyword)))
            return lines_[i].value;
    return std::nullopt;
}

std::vector<std::string> InitFile::keywords(std::string_view section) const {
    std::vector<std::string> names;
    for (const std::size_t i : linesOf(section))
        if (lines_[i].kind == Line::Kind::Entry) names.push_back(lines_[i].name);
    return names;
}

bool InitFile::put(std::string_view section, std::string_view keyword, std::string_view value) {
    section = trimmed(section);
    keyword = trimmed(keyword);
    const bool writable = !section.empty() && section.find(']') == std::string_view::npos &&
                          !keyword.empty() && keyword.find('=') == std::string_view::npos &&
                          std::string_view{"[;#"}.find(keyword.front()) == std::string_view::npos;
    for (const std::string_view text : {section, keyword, value})
        if (!writable || text.find_first_of(lineBreaks) != std::string_view::npos) return false;

    const Line entry = classify(std::string{keyword}.append("=").append(trimmed(value)));
    const std::vector<std::size_t> places = linesOf(section);
    for (const std::size_t i : places)
        if (lines_[i].kind == Line::Kind::Entry && equalIgnoringCase(lines_[i].name, keyword)) {
            lines_[i] = entry;
            return true;
        }
    if (places.empty()) {
        lines_.push_back(classify(std::string{"["}.append(section).append("]")));
        lines_.push_back(entry);
        return true;
    }
    // Blank lines at the end of a section separate it from the next one.
    std::size_t last = places.back();
    while (trimmed(lines_[last].text).empty())
        --last;
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(last + 1), entry);
    return true;
}

bool InitFile::clear(std::string_view section) {
    const std::size_t before = lines_.size();
    std::vector<Line> kept;
    std::size_t next = 0;
    const std::vector<std::size_t> places = linesOf(section);
    for (std::size_t i = 0; i < before; ++i) {
        const bool inside = next < places.size() && places[next] == i;
        next += inside ? 1 : 0;
        if (!inside || lines_[i].kind != Line::Kind::Entry) kept.push_back(std::move(lines_[i]));
    }
    lines_ = std::move(kept);
    return lines_.size() < before;
}

std::string InitFile::text() const {
    std::string text{hasMark_ ? mark : std::string_view{}};
    for (const Line& line : lines_)
        text.append(line.text).append(lineEnd_);
    return text;
}

void InitFile::write(const std::filesystem::path& path) const {
    writeFile(path, text());
}

} // namespace korvana
