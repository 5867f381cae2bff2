#include "host/session/SessionFiles.h"

#include "host/data/FileName.h"
#include "host/data/FileSource.h"
#include "host/results/OutputFile.h"
#include "host/session/InitTarget.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stop_token>
#include <utility>
#include <vector>

namespace korvana {
namespace {

constexpr const char* tooLong = "it is too long to be a file of covariates";

bool isStream(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    return std::filesystem::is_fifo(status) || std::filesystem::is_socket(status);
}

/// Empty when it can be read.
std::string whyUnreadable(const std::string& path) {
    if (hasNul(path)) return nulInName;
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status)) return "it is a folder";
    if (std::filesystem::is_character_file(status) || std::filesystem::is_block_file(status))
        return "it is a device";
    if (isStream(path)) return {}; // to open it twice may take something from it
    if (std::filesystem::file_size(path, error) > InitFile::longest && !error) return tooLong;
    errno = 0;
    if (std::ifstream(path)) return {};
    return errno != 0 ? std::strerror(errno) : "it cannot be opened";
}

bool take(std::optional<std::string> chosen, std::string& path) {
    if (chosen) path = std::move(*chosen);
    return chosen.has_value();
}

} // namespace

std::optional<std::string> SessionFiles::choose(const FrontEnd::FileRequest& request, Purpose purpose) {
    if (auto named = std::exchange(parts_.scriptFile, std::nullopt); named && parts_.automation) {
        // People can choose only what is there; a script is told.
        const std::string reason = purpose == Purpose::Open ? whyUnreadable(*named) : std::string{};
        if (reason.empty()) return named;
        parts_.fail("The file " + shownName(*named) + " cannot be read: " + reason + ".");
        return std::nullopt;
    }
    auto chosen = purpose == Purpose::Open ? parts_.frontEnd->fileToOpen(request)
                                           : parts_.frontEnd->fileToSave(request);
    if (!chosen && parts_.automation)
        parts_.fail("'" + std::string{request.title} + "' was cancelled: the script names no file.");
    return chosen;
}

bool SessionFiles::DoFileOpenDlg(std::string_view title, std::string_view defaultName,
                                 std::string_view extension, std::string& path) {
    stream_.reset();
    std::optional<std::string> chosen = choose({title, defaultName, extension}, Purpose::Open);
    if (chosen && isStream(*chosen) && !keepStream(*chosen)) return false;
    return take(std::move(chosen), path);
}

bool SessionFiles::DoFileSaveAsDlg(std::string_view title, std::string_view defaultName,
                                   std::string_view extension, std::string& path) {
    return take(choose({title, defaultName, extension}, Purpose::Save), path);
}

bool SessionFiles::keepStream(const std::string& path) try {
    FileSource source(path, std::stop_token{});
    std::string bytes;
    std::vector<char> block(1U << 16U);
    while (const std::size_t count = source.read(block)) {
        bytes.append(block.data(), count);
        if (bytes.size() <= InitFile::longest) continue;
        parts_.fail("The file " + path + " cannot be read: " + tooLong + ".");
        return false;
    }
    stream_ = Known{path, InitFile::parse(bytes)};
    return true;
} catch (const std::exception& failure) {
    parts_.fail(failure.what());
    return false;
}

std::optional<InitFile> SessionFiles::fileAt(const std::string& path) const {
    return stream_ && stream_->path == path ? stream_->file : InitFile::read(path);
}

bool SessionFiles::edit(const std::string& path, const std::function<bool(InitFile&)>& change) try {
    requireInitTarget(path, parts_.data.state().where());
    std::error_code error;
    std::optional<InitFile> file = std::filesystem::exists(path, error) ? InitFile::read(path) : InitFile{};
    if (!file) throwCannotWrite(path, "the file there cannot be read");
    if (written_ && written_->path == path && written_->file.bytes() == file->bytes()) file = written_->file;
    const bool wasUtf8 = file->isUtf8();
    const std::string before = file->bytes();
    if (!change(*file)) return false;
    if (const std::string after = file->bytes(); after != before) writeFile(path, after);
    written_ = Known{path, *file};
    if (!wasUtf8 && file->isUtf8())
        parts_.note(
            {0,
             path + " was in Windows-1252, which lacks a character of the new texts, and is UTF-8 now.",
             {},
             ResultMessage::Severity::Note});
    return true;
} catch (const std::exception& failure) {
    parts_.fail(failure.what());
    return false;
}

bool SessionFiles::PutInitKeywordPrivate(const std::string& path, std::string_view section,
                                         std::string_view keyword, std::string_view value) {
    return edit(path, [&](InitFile& file) { return file.put(section, keyword, value); });
}

bool SessionFiles::ClearInitSection(const std::string& path, std::string_view section) {
    return edit(path, [&](InitFile& file) {
        file.clear(section);
        return true;
    });
}

bool SessionFiles::GetInitKeywordPrivate(const std::string& path, std::string_view section,
                                         std::string_view keyword, std::string& value) {
    const auto file = fileAt(path);
    return file && take(file->value(section, keyword), value);
}

bool SessionFiles::EnumPrivateKeywords(const std::string& path, std::string_view section,
                                       std::vector<std::string>& keywords) {
    keywords.clear();
    const auto file = fileAt(path);
    if (!file || !file->hasSection(section)) return false;
    keywords = file->keywords(section);
    return true;
}

bool SessionFiles::GetStartValues(std::span<const std::string> names, std::span<double> values) {
    // The front end edits a copy: a cancelled dialog leaves the values as they are.
    std::vector<double> edited(values.begin(), values.end());
    if (!parts_.frontEnd->editStartValues(names, edited)) return false;
    std::copy(edited.begin(), edited.end(), values.begin());
    return true;
}

} // namespace korvana
