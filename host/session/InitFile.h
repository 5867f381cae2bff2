#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// An initialisation file: sections "[name]" of lines "keyword=value", UTF-8, comments from ; or # at the
/// start of a line. Names compare without regard to the case of ASCII letters; sections of the same name are
/// one, and of several equal keywords the first counts. Blanks around names and values are ignored. Other
/// lines are kept as they are, and so are the line ends (LF, CR LF or CR).
class InitFile {
public:
    /// Reads a file, in Windows-1252 when it is not UTF-8. Nothing when it cannot be read, or is far too long
    /// to be an initialisation file.
    static std::optional<InitFile> read(const std::filesystem::path& path);
    static InitFile parse(std::string_view text);

    [[nodiscard]] bool hasSection(std::string_view section) const;
    [[nodiscard]] std::optional<std::string> value(std::string_view section, std::string_view keyword) const;
    /// In file order, one that stands there several times as often; its value is the first one.
    [[nodiscard]] std::vector<std::string> keywords(std::string_view section) const;

    /// Replaces a value, or appends the keyword to its section, or the section to the file. False when the
    /// names or the value are not possible in such a file (line breaks, a "]" in a section, a "=" in a
    /// keyword).
    bool put(std::string_view section, std::string_view keyword, std::string_view value);

    /// Removes the keywords of a section; its heading and comments stay. Returns whether there were any.
    bool clear(std::string_view section);

    [[nodiscard]] std::string text() const;
    /// Replaces the file atomically. Throws std::runtime_error naming the file and the reason.
    void write(const std::filesystem::path& path) const;

private:
    struct Line {
        enum class Kind { Other, Section, Entry } kind = Kind::Other;
        std::string name;  ///< of the section or the keyword
        std::string value; ///< of an entry
        std::string text;  ///< the line in the file, without its end
    };
    static Line classify(std::string_view text);
    /// The places of its headings and lines; none when there is no such section.
    [[nodiscard]] std::vector<std::size_t> linesOf(std::string_view section) const;

    std::vector<Line> lines_;
    std::string lineEnd_ = "\n";
    bool hasMark_ = false; ///< begins with a UTF-8 mark
};

} // namespace korvana
