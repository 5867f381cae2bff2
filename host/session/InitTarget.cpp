#include "host/session/InitTarget.h"

#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"
#include "host/results/DataFile.h"
#include "host/results/OutputFile.h"
#include "host/results/ReplacedFile.h"
#include "host/session/InitFile.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace korvana {
namespace {

constexpr std::string_view wayOut = "; choose another name";

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != '\t' && c != '\n' && c != '\r') || byte == 0x7F;
}

/// Why a text is none of sections and keywords; empty: it is one.
std::string whyNoInitText(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (std::ranges::any_of(text, isControl)) return "the file there is no text";
    if (text.starts_with(mark)) text.remove_prefix(mark.size());
    if (const auto byte = byteOfNoCharacter(text)) return "the file there " + noCharacter(*byte);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.empty() || line.front() == ';' || line.front() == '#') continue;
        const bool heading = line.front() == '[' && line.find(']') == line.size() - 1;
        return heading ? "" : "the file there does not begin with a section, as in [Expressions]";
    }
    return {};
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throwCannotWrite(path, "the file there cannot be read");
    return {std::istreambuf_iterator<char>{in}, {}};
}

} // namespace

void requireInitTarget(const std::filesystem::path& path, const std::filesystem::path& dataFile) {
    refuseDataFile(path, dataFile);
    const std::filesystem::path file = ReplacedFile(path).place();
    std::error_code error;
    if (!std::filesystem::exists(file, error)) return;
    if (std::filesystem::file_size(file, error) > InitFile::longest)
        throwCannotWrite(path, "the file there is too long to be one of covariates" + std::string{wayOut});
    if (const std::string reason = whyNoInitText(contentOf(file)); !reason.empty())
        throwCannotWrite(path, reason + std::string{wayOut});
}

} // namespace korvana
