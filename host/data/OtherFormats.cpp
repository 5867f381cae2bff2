#include "host/data/OtherFormats.h"

#include "host/data/DataError.h"
#include "host/data/NameMatch.h"

#include <algorithm>
#include <cstddef>

namespace korvana {
namespace {

using namespace std::string_view_literals;

constexpr auto fromProgram = "save the data from the program that made it as text with commas, semicolons or "
                             "tabs (.csv)"sv;
constexpr auto unpack = "unpack it first, or pack it with gzip (.gz), which can be read"sv;

/// A format, and what to do about it.
struct OtherFormat {
    std::string_view magic;  ///< first bytes, may be empty
    std::string_view ending; ///< may be empty
    std::string_view name;
    std::string_view remedy = fromProgram;
    bool asName = false; ///< the first bytes could be the name of a variable
};

constexpr OtherFormat otherFormats[] = {
    {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, ".xls", "an old workbook (.xls)"},
    {"$FL2", ".sav", "an SPSS file (.sav)"},
    {"$FL3", ".zsav", "a compressed SPSS file (.zsav)"},
    {"", ".por", "a portable SPSS file (.por)"},
    {"<stata_dta>", ".dta", "a Stata file (.dta)"},
    {"\0\0\0\0\0\0\0\0\0\0\0\0\xC2\xEA\x81\x60"sv, ".sas7bdat", "a SAS file (.sas7bdat)"},
    {"HEADER RECORD*******LIB", ".xpt", "a SAS transport file (.xpt)"},
    {"RDX2\n", ".RData", "a file of R's objects (.RData)", "write them in R with write.csv"},
    {"RDX3\n", ".rda", "a file of R's objects (.rda)", "write them in R with write.csv"},
    {"X\n\0\0\0"sv, ".rds", "an object of R (.rds)", "write it in R with write.csv"},
    {"PAR1", ".parquet", "a Parquet file (.parquet)", fromProgram, true},
    {"ARROW1", ".arrow", "an Arrow file (.arrow, .feather)", fromProgram, true},
    {"FEA1", ".feather", "a Feather file (.feather)", fromProgram, true},
    {"\x89HDF\r\n\x1A\n"sv, ".h5", "an HDF5 file (.h5)"},
    {"SQLite format 3\0"sv, ".sqlite", "an SQLite database", "export the table as text with commas (.csv)"},
    {"BZh", ".bz2", "a file packed with bzip2 (.bz2)", unpack, true},
    {"\x28\xB5\x2F\xFD"sv, ".zst", "a file packed with Zstandard (.zst)", unpack},
    {"\xFD"
     "7zXZ\0"sv,
     ".xz", "a file packed with xz (.xz)", unpack},
    {"\x04\x22\x4D\x18"sv, ".lz4", "a file packed with LZ4 (.lz4)", unpack},
    {"7z\xBC\xAF\x27\x1C"sv, ".7z", "a 7-Zip archive (.7z)", unpack},
    {"Rar!\x1A\x07"sv, ".rar", "a RAR archive (.rar)", unpack},
    {"\x1F\x8B"sv, "", "packed twice with gzip", "unpack it once"},
    {"%PDF", ".pdf", "a PDF document"},
    {"\x1F\x9D", ".Z", "a file packed with compress (.Z)", unpack},
    {"\x89PNG", ".png", "a picture (PNG)"},
    {"{\\rtf", ".rtf", "a document (.rtf)", "save it as plain text"},
};

/// Workbooks and documents are ZIP archives; the names of their members show which.
OtherFormat zipFormat(std::string_view beginning, std::string_view ending) {
    const auto holds = [&](std::string_view name) { return beginning.find(name) != std::string_view::npos; };
    const auto ends = [&](std::string_view with) { return equalIgnoringCase(ending, with); };
    constexpr auto asText =
        "save the sheet with the data as text (\"CSV UTF-8\" in the list of file types)"sv;
    if (holds("xl/workbook.bin") || ends(".xlsb")) return {"", "", "a binary workbook (.xlsb)", asText};
    if (holds("xl/") || ends(".xlsx") || ends(".xlsm")) return {"", "", "a workbook (.xlsx)", asText};
    if (holds("opendocument.spreadsheet") || ends(".ods")) return {"", "", "a workbook (.ods)", asText};
    if (holds("word/") || ends(".docx")) return {"", "", "a document (.docx)", "save it as plain text"};
    if (holds("opendocument.text") || ends(".odt"))
        return {"", "", "a document (.odt)", "save it as plain text"};
    return {"", "", "an archive (.zip)", unpack};
}

bool beginsWith(std::string_view text, std::string_view with) {
    return equalIgnoringCase(text.substr(0, with.size()), with);
}

/// The kind of a text that is no table; empty when it may be one.
std::string_view markupFormat(std::string_view beginning) {
    constexpr auto blanks = " \t\r\n"sv;
    if (beginning.starts_with("\xEF\xBB\xBF")) beginning.remove_prefix(3);
    beginning.remove_prefix(std::min(beginning.find_first_not_of(blanks), beginning.size()));
    if (beginsWith(beginning, "<?xml")) return "an XML file";
    for (const std::string_view tag : {"<!doctype html", "<html", "<head", "<body", "<table"})
        if (beginsWith(beginning, tag)) return "a web page (HTML)";
    if (!beginning.starts_with('{') && !beginning.starts_with('[')) return "";
    const std::size_t next = beginning.find_first_not_of(blanks, 1);
    const bool json =
        next != std::string_view::npos && "\"{[]}"sv.find(beginning[next]) != std::string_view::npos;
    return json ? "a JSON file" : "";
}

[[noreturn]] void refuse(const OtherFormat& format, const std::string& name) {
    std::string text("this is ");
    throw DataError(name, 0, 0,
                    text.append(format.name).append(", which cannot be read; ").append(format.remedy));
}

/// Whether there are bytes that do not occur in text.
bool isBinary(std::string_view beginning) {
    return std::any_of(beginning.begin(), beginning.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x09 || (byte > 0x0D && byte < 0x20);
    });
}

/// UTF-16 and UTF-32: known by the mark at the beginning, or by Latin letters with a zero beside each.
std::string_view wideEncoding(std::string_view beginning) {
    if (beginning.starts_with("\xFF\xFE\0\0"sv) || beginning.starts_with("\0\0\xFE\xFF"sv)) return "UTF-32";
    if (beginning.starts_with("\xFF\xFE") || beginning.starts_with("\xFE\xFF")) return "UTF-16";
    const std::size_t looked = std::min<std::size_t>(beginning.size(), 512) / 2 * 2;
    std::size_t zeros[2] = {0, 0};
    for (std::size_t i = 0; i < looked; ++i)
        if (beginning[i] == '\0') ++zeros[i % 2];
    const bool wide = looked >= 4 && std::max(zeros[0], zeros[1]) * 10 >= looked / 2 * 8 &&
                      std::min(zeros[0], zeros[1]) == 0;
    return wide ? "UTF-16" : "";
}

} // namespace

void refuseOtherFormats(std::string_view beginning, const std::filesystem::path& path,
                        const std::string& name) {
    const std::filesystem::path unpacked =
        equalIgnoringCase(path.extension().string(), ".gz") ? path.stem() : path;
    const std::string ending = unpacked.extension().string();
    if (const std::string_view wide = wideEncoding(beginning); !wide.empty()) {
        throw DataError(
            name, 1, 0,
            "the text is coded in " + std::string(wide) +
                "; save the file as UTF-8 (\"CSV UTF-8\" in a spreadsheet program, encoding UTF-8 "
                "in an editor)");
    }
    if (beginning.starts_with("PK\x03\x04")) refuse(zipFormat(beginning, ending), name);
    for (const OtherFormat& format : otherFormats)
        if (!format.magic.empty() && beginning.starts_with(format.magic) &&
            (!format.asName || isBinary(beginning)))
            refuse(format, name);
    if (const std::string_view markup = markupFormat(beginning); !markup.empty())
        refuse({"", "", markup}, name);
    if (beginning.size() > 262 && beginning.substr(257, 5) == "ustar")
        refuse({"", "", "a tar archive", unpack}, name);
    for (const OtherFormat& format : otherFormats)
        if (!format.ending.empty() && equalIgnoringCase(ending, format.ending)) refuse(format, name);
    for (const std::string_view other : {".xlsx", ".xlsm", ".xlsb", ".ods", ".docx", ".odt", ".zip"})
        if (equalIgnoringCase(ending, other)) refuse(zipFormat(beginning, ending), name);
}

} // namespace korvana
