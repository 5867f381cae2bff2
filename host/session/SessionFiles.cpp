#include "host/session/SessionFiles.h"

#include "host/session/InitFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <utility>

namespace korvana {
namespace {

/// Empty when it can be read.
std::string whyUnreadable(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return "it is a folder";
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
        parts_.fail("The file " + *named + " cannot be read: " + reason + ".");
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
    return take(choose({title, defaultName, extension}, Purpose::Open), path);
}

bool SessionFiles::DoFileSaveAsDlg(std::string_view title, std::string_view defaultName,
                                   std::string_view extension, std::string& path) {
    return take(choose({title, defaultName, extension}, Purpose::Save), path);
}

bool SessionFiles::PutInitKeywordPrivate(const std::string& path, std::string_view section,
                                         std::string_view keyword, std::string_view value) try {
    std::error_code error;
    const bool isNew = !std::filesystem::exists(path, error);
    std::optional<InitFile> file = isNew ? InitFile{} : InitFile::read(path);
    // A file that exists but cannot be read must not be replaced.
    if (!file || !file->put(section, keyword, value)) return false;
    file->write(path);
    return true;
} catch (const std::exception& failure) {
    parts_.fail(failure.what());
    return false;
}

bool SessionFiles::ClearInitSection(const std::string& path, std::string_view section) try {
    std::error_code error;
    if (!std::filesystem::exists(path, error)) return true;
    std::optional<InitFile> file = InitFile::read(path);
    if (!file) return false;
    if (file->clear(section)) file->write(path);
    return true;
} catch (const std::exception& failure) {
    parts_.fail(failure.what());
    return false;
}

bool SessionFiles::GetInitKeywordPrivate(const std::string& path, std::string_view section,
                                         std::string_view keyword, std::string& value) {
    const auto file = InitFile::read(path);
    return file && take(file->value(section, keyword), value);
}

bool SessionFiles::EnumPrivateKeywords(const std::string& path, std::string_view section,
                                       std::vector<std::string>& keywords) {
    keywords.clear();
    const auto file = InitFile::read(path);
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
