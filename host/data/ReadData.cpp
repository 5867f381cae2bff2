#include "host/data/ReadData.h"

#include "host/data/ByteSource.h"
#include "host/data/DataError.h"
#include "host/data/DelimitedReader.h"
#include "host/data/NameMatch.h"

#include <array>
#include <memory>
#include <new>
#include <string>
#include <string_view>

namespace korvana {
namespace {

/** Formats that are known by their first bytes or their ending, and what to do about them. */
struct OtherFormat {
    std::string_view magic;  ///< first bytes, may be empty
    std::string_view ending; ///< may be empty
    std::string_view name;
};

constexpr std::array<OtherFormat, 12> otherFormats{{
    {"PK\x03\x04", "", "a compressed file, perhaps a workbook (.xlsx, .ods)"},
    {"\xD0\xCF\x11\xE0", ".xls", "an old workbook (.xls)"},
    {"\x1F\x8B", "", "a compressed file within a compressed file"},
    {"$FL2", ".sav", "an SPSS file"},
    {"$FL3", ".zsav", "a compressed SPSS file"},
    {"", ".por", "a portable SPSS file"},
    {"<stata_dta>", ".dta", "a Stata file"},
    {"", ".sas7bdat", "a SAS file"},
    {"HEADER RECORD*******LIBRARY", ".xpt", "a SAS transport file"},
    {"%PDF", ".pdf", "a PDF document"},
    {"\x89PNG", ".png", "a picture"},
    {"SQLite format 3", ".db", "a database"},
}};

void refuseOtherFormats(ByteSource& source, const std::filesystem::path& path) {
    std::array<char, 4096> first{};
    const std::string_view text(first.data(), source.readFully(first));
    source.rewind();
    const std::string ending = path.extension().string();
    for (const OtherFormat& format : otherFormats) {
        const bool byContent = !format.magic.empty() && text.starts_with(format.magic);
        const bool byEnding = !format.ending.empty() && equalIgnoringCase(ending, format.ending);
        if (byContent || byEnding) {
            throw DataError(
                source.name(), 0, 0,
                "this is " + std::string(format.name) +
                    ", which cannot be read; save the data as text with commas, semicolons or tabs (.csv)");
        }
    }
}

} // namespace

DataSet readData(const std::filesystem::path& path, const ReadOptions& options) {
    std::string name = path.string();
    try {
        const std::unique_ptr<ByteSource> source = openSource(path, options.stop);
        name = source->name();
        // Readers of further formats are chosen here, by the first bytes and the ending.
        refuseOtherFormats(*source, path);
        return readDelimited(*source, options);
    } catch (const std::bad_alloc&) {
        throw DataError(
            name, 0, 0,
            "there is not enough memory for the data; leave out cases or variables that are not needed");
    }
}

} // namespace korvana
