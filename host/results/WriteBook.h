#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/results/ResultsBook.h"
#include "host/results/ResultsFolder.h"

namespace korvana {

enum class OutputFormat : std::uint8_t { Json, Txt, Csv, Html, Xlsx, Svg, Png, Pdf, Py };
inline constexpr std::size_t outputFormatCount = 9;

class FormatSet {
public:
    FormatSet& add(OutputFormat format) {
        bits_.set(static_cast<std::size_t>(format));
        return *this;
    }
    [[nodiscard]] bool has(OutputFormat format) const { return bits_.test(static_cast<std::size_t>(format)); }
    [[nodiscard]] bool empty() const { return bits_.none(); }
    [[nodiscard]] static FormatSet all() {
        FormatSet set;
        set.bits_.set();
        return set;
    }
    bool operator==(const FormatSet&) const = default;

private:
    std::bitset<outputFormatCount> bits_;
};

/// "json,txt" (blanks and case do not matter). Throws `std::invalid_argument` naming what is unknown and what
/// is known; an empty list is an error as well.
[[nodiscard]] FormatSet parseFormats(std::string_view list);

/// "json, txt, csv, html, xlsx, svg, png, pdf, py"
[[nodiscard]] std::string knownFormats();

/// The names of files that a run always writes; tables and pictures are named after their titles.
[[nodiscard]] std::vector<std::string> certainFileNames(FormatSet formats);

/// The results have nothing for the formats asked for: only tables for formats of pictures, or the other way
/// round.
struct NothingToWrite : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Writes the book into a directory, made if there is none: report.txt, results.json, report.html,
/// results.xlsx, script.py (see `recordedScript`), a CSV file per table and a picture per chart and picture
/// format, named after their titles.
/// All of them appear together once all are whole, in place of those of an earlier run (see `ResultsFolder`).
/// Returns the files.
///
/// Throws `std::runtime_error` naming the file and the reason when one cannot be written; the directory then
/// is as it was. A chart that cannot be drawn does not keep the other files from being written: the reason is
/// put into `problems`, or, without such a list, thrown as `std::runtime_error` at the end. If that leaves no
/// file at all, or there was none to write (`NothingToWrite`), the directory also stays as it was.
std::vector<std::filesystem::path> writeBook(const ResultsBook& book, const std::filesystem::path& directory,
                                             FormatSet formats, std::vector<std::string>* problems = nullptr,
                                             OthersFiles others = OthersFiles::Kept);

/// File names (without ending) made from the titles of the book's tables and charts, in the order of the
/// outputs, empty for reports: lower-case ASCII letters, digits and hyphens, 60 characters at most, numbered
/// where they collide.
[[nodiscard]] std::vector<std::string> fileNames(const ResultsBook& book);

} // namespace korvana
