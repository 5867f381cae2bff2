#include "host/session/InitFile.h"

#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace korvana {
namespace {

constexpr std::string_view mark = "\xEF\xBB\xBF";
constexpr std::string_view lineBreaks{"\r\n\0", 3};

} // namespace

std::optional<InitFile> InitFile::read(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error) || std::filesystem::file_size(path, error) > longest)
        return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>{in}, {}};
    if (!in.good() && !in.eof()) return std::nullopt;
    return parse(text);
}

InitFile::Line InitFile::classify(std::string_view text) {
    Line line;
    const std::string_view content = trimmed(text);
    if (content.empty() || content.front() == ';' || content.front() == '#') return line;
    if (content.front() == '[') {
        if (const auto end = content.find(']'); end != std::string_view::npos) {
            line.kind = Line::Kind::Section;
            line.name = trimmed(content.substr(1, end - 1));
        }
        return line;
    }
    const std::size_t equals = std::min(content.find('='), content.size());
    line.kind = Line::Kind::Entry;
    line.name = trimmed(content.substr(0, equals));
    line.value = trimmed(content.substr(std::min(equals + 1, content.size())));
    return line;
}

InitFile::Line InitFile::encoded(const std::string& text) const {
    Line line = classify(text);
    line.bytes = utf8_ ? text : toWindows1252(text).value_or(text);
    return line;
}

void InitFile::becomeUtf8() {
    for (Line& line : lines_)
        line.bytes = fromWindows1252(line.bytes);
    utf8_ = true;
}

InitFile InitFile::parse(std::string_view bytes) {
    InitFile file;
    if (bytes.starts_with(mark)) {
        file.hasMark_ = true;
        bytes.remove_prefix(mark.size());
    }
    file.utf8_ = korvana::isUtf8(bytes);
    const auto has = [bytes](std::string_view end) { return bytes.find(end) != std::string_view::npos; };
    file.lineEnd_ = has("\r\n") ? "\r\n" : has("\r") && !has("\n") ? "\r" : "\n";
    const char lineEnd = file.lineEnd_.back();
    file.endsOpen_ = !bytes.empty() && bytes.back() != lineEnd;
    while (!bytes.empty()) {
        const auto end = bytes.find(lineEnd);
        const std::string_view whole = bytes.substr(0, end == std::string_view::npos ? end : end + 1);
        bytes.remove_prefix(whole.size());
        // Further CRs before the end have no meaning.
        const std::string_view text = whole.substr(0, whole.find_last_not_of("\r\n") + 1);
        Line line = classify(file.utf8_ ? std::string{text} : fromWindows1252(text));
        line.bytes = text;
        line.end = whole.substr(text.size());
        file.lines_.push_back(std::move(line));
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
        if (!writable || text.find_first_of(lineBreaks) != std::string_view::npos || !korvana::isUtf8(text))
            return false;

    const std::string heading = "[" + std::string{section} + "]";
    const std::string entry = std::string{keyword}.append("=").append(trimmed(value));
    if (!utf8_ && !toWindows1252(heading + entry)) {
        if (byteOfNoCharacter(bytes())) return false;
        becomeUtf8();
    }
    set(heading, entry);
    // Bytes of Windows-1252 that happen to be UTF-8 would be read as that.
    if (const std::string all = bytes(); !utf8_ && korvana::isUtf8(all) && fromWindows1252(all) != all)
        becomeUtf8();
    return true;
}

void InitFile::set(const std::string& heading, const std::string& entry) {
    Line line = encoded(entry);
    const std::vector<std::size_t> places = linesOf(classify(heading).name);
    for (const std::size_t i : places)
        if (lines_[i].kind == Line::Kind::Entry && equalIgnoringCase(lines_[i].name, line.name)) {
            line.end = lines_[i].end;
            lines_[i] = std::move(line);
            return;
        }
    if (places.empty()) {
        lines_.push_back(encoded(heading));
        lines_.push_back(std::move(line));
        return;
    }
    // Blank lines at the end of a section separate it from the next one.
    std::size_t last = places.back();
    while (trimmed(lines_[last].bytes).empty())
        --last;
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(last + 1), std::move(line));
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

std::string InitFile::bytes() const {
    std::string bytes{hasMark_ ? mark : std::string_view{}};
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const Line& line = lines_[i];
        const bool ended = line.end.ends_with(lineEnd_.back());
        const bool shallEnd = !endsOpen_ || i + 1 < lines_.size();
        bytes += line.bytes;
        if (ended == shallEnd)
            bytes += line.end;
        else if (shallEnd)
            bytes += lineEnd_;
    }
    return bytes;
}

} // namespace korvana
