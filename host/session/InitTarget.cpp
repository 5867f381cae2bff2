#include "host/session/InitTarget.h"

#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"
#include "host/results/OutputFile.h"
#include "host/session/InitFile.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

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

std::filesystem::path behindLinks(const std::filesystem::path& path) {
    constexpr int most = 40; // as the system
    std::filesystem::path file = path;
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(file, error); ++links) {
        if (links == most) throwCannotWrite(path, ELOOP);
        const std::filesystem::path next = std::filesystem::read_symlink(file, error);
        if (error) throwCannotWrite(path, error.value());
        file = file.parent_path() / next;
    }
    return file;
}

void requireInitTarget(const std::filesystem::path& path, const std::filesystem::path& dataFile) {
    const std::filesystem::path file = behindLinks(path);
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (!std::filesystem::exists(status)) return;
    if (std::filesystem::is_directory(status)) throwCannotWrite(path, EISDIR);
    if (!std::filesystem::is_regular_file(status))
        throwCannotWrite(path, "it is a pipe or a device" + std::string{wayOut});
    if (!dataFile.empty() && std::filesystem::equivalent(file, dataFile, error) && !error)
        throwCannotWrite(path, "it is the file of the data" + std::string{wayOut});
    if (::access(file.c_str(), W_OK) != 0)
        throwCannotWrite(path, "it is read-only (" + std::generic_category().message(errno) + ")");
    if (std::filesystem::file_size(file, error) > InitFile::longest)
        throwCannotWrite(path, "the file there is too long to be one of covariates" + std::string{wayOut});
    if (const std::string reason = whyNoInitText(contentOf(file)); !reason.empty())
        throwCannotWrite(path, reason + std::string{wayOut});
}

void replaceInitFile(const std::filesystem::path& path, std::string_view bytes) {
    const std::filesystem::path file = behindLinks(path);
    struct stat before {};
    const bool isNew = ::stat(file.c_str(), &before) != 0;
    PendingFile pending(file);
    OutputFile out(pending);
    if (!isNew) {
        // Others may not read it in the meantime either. That the owner cannot be kept is no failure.
        std::ignore = ::chown(pending.path().c_str(), before.st_uid, before.st_gid);
        if (::chmod(pending.path().c_str(), before.st_mode & 0777U) != 0) throwCannotWrite(path, errno);
    }
    out.stream().write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.commit();
}

} // namespace korvana
