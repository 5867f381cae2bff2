#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// An initialisation file: sections "[name]" of lines "keyword=value", comments from ; or # at the start of a
/// line (one without a "=" is a keyword without a value), in UTF-8 or else Windows-1252; names and values are
/// given and taken in UTF-8. Names compare without regard to the case of ASCII letters; sections of the same
/// name are one, and of several equal keywords the first counts. Blanks around names and values are ignored.
/// What is not changed keeps its bytes, line ends (LF, CR LF or CR) and a missing one at the end included.
class InitFile {
public:
    static constexpr std::size_t longest = std::size_t{1} << 20U; ///< bytes

    /// Reads a file. Nothing when it cannot be read, or is longer than any initialisation file.
    static std::optional<InitFile> read(const std::filesystem::path& path);
    static InitFile parse(std::string_view bytes);

    [[nodiscard]] bool hasSection(std::string_view section) const;
    [[nodiscard]] std::optional<std::string> value(std::string_view section, std::string_view keyword) const;
    /// In file order, one that stands there several times as often; its value is the first one.
    [[nodiscard]] std::vector<std::string> keywords(std::string_view section) const;

    /// Replaces a value, or appends the keyword to its section, or the section to the file. False when the
    /// names or the value are not possible in such a file (line breaks, a "]" in a section, a "=" in a
    /// keyword, bytes that are not UTF-8). A file in Windows-1252 becomes UTF-8 where it must.
    bool put(std::string_view section, std::string_view keyword, std::string_view value);

    /// Removes the keywords of a section; its heading and comments stay. Returns whether there were any.
    bool clear(std::string_view section);

    [[nodiscard]] bool isUtf8() const { return utf8_; }
    /// The whole as it is in the file.
    [[nodiscard]] std::string bytes() const;

private:
    struct Line {
        enum class Kind { Other, Section, Entry } kind = Kind::Other;
        std::string name{};  ///< of the section or the keyword, in UTF-8
        std::string value{}; ///< of an entry, in UTF-8
        std::string bytes{}; ///< the line in the file, without its end
        std::string end{};   ///< empty: a new line, or the last one
    };
    static Line classify(std::string_view text);
    /// A line to be added.
    [[nodiscard]] Line encoded(const std::string& text) const;
    void becomeUtf8();
    void set(const std::string& heading, const std::string& entry);
    /// The places of its headings and lines; none when there is no such section.
    [[nodiscard]] std::vector<std::size_t> linesOf(std::string_view section) const;

    std::vector<Line> lines_;
    std::string lineEnd_ = "\n";
    bool endsOpen_ = false; ///< the last line has no end
    bool hasMark_ = false;  ///< begins with a UTF-8 mark
    bool utf8_ = true;
};

} // namespace korvana
