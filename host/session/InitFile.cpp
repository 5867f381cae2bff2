#include "host/session/InitFile.h"

#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"
#include "host/results/OutputFile.h"

#include <fstream>
#include <iterator>

namespace korvana {
namespace {

constexpr std::string_view mark = "\xEF\xBB\xBF";
constexpr std::string_view lineBreaks{"\r\n\0", 3};

} // namespace

std::optional<InitFile> InitFile::read(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>{in}, {}};
    if (!in.good() && !in.eof()) return std::nullopt;
    return parse(text);
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
    if (text.find("\r\n") != std::string_view::npos) file.lineEnd_ = "\r\n";
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        while (line.ends_with('\r'))
            line.remove_suffix(1); // further ones have no meaning
        file.lines_.push_back(classify(line));
    }
    return file;
}

std::pair<std::size_t, std::size_t> InitFile::range(std::string_view section) const {
    section = trimmed(section);
    std::size_t first = 0;
    while (first < lines_.size() &&
           !(lines_[first].kind == Line::Kind::Section && equalIgnoringCase(lines_[first].name, section)))
        ++first;
    if (first == lines_.size()) return {first, first};
    std::size_t last = ++first;
    while (last < lines_.size() && lines_[last].kind != Line::Kind::Section)
        ++last;
    return {first, last};
}

bool InitFile::hasSection(std::string_view section) const {
    for (const Line& line : lines_)
        if (line.kind == Line::Kind::Section && equalIgnoringCase(line.name, trimmed(section))) return true;
    return false;
}

std::optional<std::string> InitFile::value(std::string_view section, std::string_view keyword) const {
    const auto [first, last] = range(section);
    for (std::size_t i = first; i < last; ++i)
        if (lines_[i].kind == Line::Kind::Entry && equalIgnoringCase(lines_[i].name, trimmed(keyword)))
            return lines_[i].value;
    return std::nullopt;
}

std::vector<std::string> InitFile::keywords(std::string_view section) const {
    std::vector<std::string> names;
    const auto [first, last] = range(section);
    for (std::size_t i = first; i < last; ++i) {
        if (lines_[i].kind != Line::Kind::Entry) continue;
        bool known = false;
        for (const std::string& name : names)
            known = known || equalIgnoringCase(name, lines_[i].name);
        if (!known) names.push_back(lines_[i].name);
    }
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
    const auto [first, last] = range(section);
    for (std::size_t i = first; i < last; ++i)
        if (lines_[i].kind == Line::Kind::Entry && equalIgnoringCase(lines_[i].name, keyword)) {
            lines_[i] = entry;
            return true;
        }
    if (!hasSection(section)) {
        lines_.push_back(classify(std::string{"["}.append(section).append("]")));
        lines_.push_back(entry);
        return true;
    }
    // Blank lines at the end of a section separate it from the next one.
    std::size_t place = last;
    while (place > first && trimmed(lines_[place - 1].text).empty())
        --place;
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(place), entry);
    return true;
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
