#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// An initialisation file: sections "[name]" of lines "keyword=value", UTF-8, comments from ; or # at the
/// start of a line. Names compare without regard to the case of ASCII letters; of several equal ones the
/// first counts. Blanks around names and values are ignored. Other lines are kept as they are, and so are the
/// line ends.
class InitFile {
public:
    /// Reads a file; nothing when it cannot be read.
    static std::optional<InitFile> read(const std::filesystem::path& path);
    static InitFile parse(std::string_view text);

    [[nodiscard]] bool hasSection(std::string_view section) const;
    [[nodiscard]] std::optional<std::string> value(std::string_view section, std::string_view keyword) const;
    /// In file order, each once.
    [[nodiscard]] std::vector<std::string> keywords(std::string_view section) const;

    /// Replaces a value, or appends the keyword to its section, or the section to the file. False when the
    /// names or the value are not possible in such a file (line breaks, a "]" in a section, a "=" in a
    /// keyword).
    bool put(std::string_view section, std::string_view keyword, std::string_view value);

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
    /// Lines of the section, its heading left out: [first, last). Empty at the end when there is none.
    [[nodiscard]] std::pair<std::size_t, std::size_t> range(std::string_view section) const;

    std::vector<Line> lines_;
    std::string lineEnd_ = "\n";
    bool hasMark_ = false; ///< begins with a UTF-8 mark
};

} // namespace korvana
