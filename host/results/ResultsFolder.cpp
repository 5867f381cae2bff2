#include "host/results/ResultsFolder.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "host/data/FileName.h"
#include "host/results/JsonWriter.h"

namespace korvana {
namespace {

namespace fs = std::filesystem;

/// Reads the beginning of a results.json: the name of the program and the list of files after it. The
/// results, which may be large, are not read.
class ListOfFiles : public nlohmann::json_sax<nlohmann::json> {
public:
    std::vector<std::string> files;

    bool start_object(std::size_t /*count*/) override {
        ++depth_;
        return true;
    }
    bool end_object() override { return --depth_ > 0; }
    bool key(std::string& name) override {
        if (depth_ == 1) key_ = name;
        return !(depth_ == 1 && isOurs_ && !files.empty());
    }
    bool start_array(std::size_t /*count*/) override {
        // Everything else comes after the list.
        if (depth_ == 0 || (depth_ == 1 && key_ != "files")) return false;
        ++depth_;
        return isOurs_;
    }
    bool end_array() override { return --depth_ > 1; }
    bool string(std::string& text) override {
        if (depth_ == 1 && key_ == "format") isOurs_ = text == resultsFormat;
        if (depth_ == 2 && key_ == "files") files.push_back(text);
        return true;
    }
    bool null() override { return true; }
    bool boolean(bool /*value*/) override { return true; }
    bool number_integer(number_integer_t /*value*/) override { return true; }
    bool number_unsigned(number_unsigned_t /*value*/) override { return true; }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return true; }
    bool binary(binary_t& /*value*/) override { return true; }
    bool parse_error(std::size_t /*position*/, const std::string& /*last*/,
                     const nlohmann::detail::exception& /*why*/) override {
        return false;
    }

private:
    int depth_ = 0;
    std::string key_;
    bool isOurs_ = false;
};

bool isOfAKindWritten(const fs::path& name) {
    constexpr std::array<std::string_view, 9> endings{".json", ".txt", ".csv", ".html", ".xlsx",
                                                      ".svg",  ".png", ".pdf", ".py"};
    return std::find(endings.begin(), endings.end(), name.extension().string()) != endings.end();
}

/// A list cannot be trusted: only plain files beside it count.
bool isPlainFileIn(const fs::path& directory, const std::string& name) {
    if (name.empty() || name.find('/') != std::string::npos || name.find('\0') != std::string::npos)
        return false;
    std::error_code ignored;
    return isOfAKindWritten(name) &&
           fs::symlink_status(directory / name, ignored).type() == fs::file_type::regular;
}

bool holds(const std::vector<std::string>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::vector<std::string> without(std::vector<std::string> names, const std::vector<std::string>& some) {
    std::erase_if(names, [&some](const std::string& name) { return holds(some, name); });
    return names;
}

/// The names of all files of a run, which without results.json include a separate list.
std::vector<std::string> withList(std::vector<std::string> names) {
    if (!holds(names, resultsJson)) names.emplace_back(fileList);
    return names;
}

} // namespace

std::vector<std::string> filesOfRun(const fs::path& directory) {
    std::vector<std::string> found;
    for (const std::string_view list : {resultsJson, fileList}) {
        if (!isPlainFileIn(directory, std::string(list))) continue;
        std::ifstream in(directory / list, std::ios::binary);
        ListOfFiles reader;
        nlohmann::json::sax_parse(in, &reader);
        if (reader.files.empty()) continue;
        reader.files.emplace_back(list);
        for (std::string& name : reader.files)
            if (isPlainFileIn(directory, name) && !holds(found, name)) found.push_back(std::move(name));
    }
    return found;
}

FolderChanges changesIn(const fs::path& directory, const std::vector<std::string>& names) {
    const std::vector<std::string> earlier = filesOfRun(directory);
    const std::vector<std::string> kept = withList(names);
    FolderChanges changes{{}, without(earlier, kept)};
    for (const std::string& name : kept) {
        std::error_code ignored;
        if (fs::symlink_status(directory / name, ignored).type() != fs::file_type::not_found && !ignored)
            changes.replaced.push_back(name);
    }
    std::erase(changes.removed, fileList);
    if (holds(earlier, fileList)) std::erase(changes.replaced, fileList);
    return changes;
}

void refuseToReplaceOthers(const fs::path& directory, const std::vector<std::string>& names) {
    const std::vector<std::string> own = filesOfRun(directory);
    constexpr int mostNamed = 5;
    std::string others;
    int count = 0;
    for (const std::string& name : names) {
        std::error_code ignored;
        const bool there = fs::symlink_status(directory / name, ignored).type() != fs::file_type::not_found;
        if (ignored || !there || holds(own, name)) continue;
        if (++count <= mostNamed)
            others += (others.empty() ? "'" : ", '") + (directory / name).string() + "'";
    }
    if (count == 0) return;
    if (count > mostNamed) others += " and " + std::to_string(count - mostNamed) + " more";
    throw std::runtime_error(
        others + (count == 1 ? " is there already and was" : " are there already and were") +
        " not written by an earlier run; write into another folder, or move " + (count == 1 ? "it" : "them"));
}

ResultsFolder::ResultsFolder(fs::path path, OthersFiles others) : path_(std::move(path)), others_(others) {
    if (hasNul(path_))
        throw std::runtime_error("cannot create the directory '" + shownName(path_) + "': " + nulInName);
    // Level by level, so that exactly those made here are removed again.
    std::vector<fs::path> missing;
    std::error_code error;
    for (fs::path level = fs::absolute(path_, error);
         !error && !fs::exists(level, error) && level.has_relative_path(); level = level.parent_path())
        if (level.has_filename()) missing.push_back(level);
    for (auto level = missing.rbegin(); level != missing.rend() && !error; ++level) {
        made_.emplace_front(*level);
        if (!fs::create_directory(*level, error)) made_.front().keep();
    }
    std::error_code unknown;
    if (!fs::is_directory(path_, unknown)) {
        throw std::runtime_error("cannot create the directory '" + path_.string() +
                                 "': " + (error ? error.message() : "a file of that name is in the way"));
    }
}

PendingFile& ResultsFolder::add(const std::string& name) {
    PendingFile& file = files_.emplace_back(path_ / name);
    names_.push_back(name);
    return file;
}

/// Lists the files of this run for the next one; returns the files of the previous run that remain.
std::vector<std::string> ResultsFolder::prepareList() {
    const std::vector<std::string> kept = withList(names_);
    if (others_ == OthersFiles::Kept) refuseToReplaceOthers(path_, kept);
    if (kept.size() > names_.size()) {
        OutputFile list(files_.emplace_back(path_ / fileList));
        writeFileList(names_, list.stream());
        list.close();
    }
    return without(filesOfRun(path_), kept);
}

std::vector<fs::path> ResultsFolder::commit() {
    std::vector<fs::path> written;
    for (const std::string& name : names_)
        written.push_back(path_ / name);
    const std::vector<std::string> leftOver = prepareList();

    const HeldSignals untilDone;
    for (PendingFile& file : files_)
        file.commit();
    for (Unfinished& directory : made_)
        directory.keep();
    for (const std::string& name : leftOver)
        ::unlink((path_ / name).c_str());
    return written;
}

} // namespace korvana
