#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/results/OutputFile.h"

namespace korvana {

inline constexpr std::string_view resultsJson = "results.json";
/// Lists the files of a run that writes no results.json.
inline constexpr std::string_view fileList = ".korvana-files.json";

/// What happens to files in the way that no earlier run listed.
enum class OthersFiles : std::uint8_t {
    Kept,     ///< they stay, and the run is refused
    Replaced, ///< the user has agreed
};

/// A directory that holds the files of one run. All of them appear together in `commit`, which also removes
/// the files that an earlier run left there and this one does not have; until then that run stays whole.
/// Failures are `std::runtime_error`s that name the file.
class ResultsFolder {
public:
    /// Makes the directory if there is none; it is removed again if nothing is committed.
    ResultsFolder(std::filesystem::path path, OthersFiles others);

    /// A file to be filled before `commit`. The reference is valid as long as the folder.
    PendingFile& add(const std::string& name);
    /// The names added so far, in order.
    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }
    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    /// Returns the files added, in order.
    std::vector<std::filesystem::path> commit();

private:
    std::vector<std::string> prepareList();

    std::filesystem::path path_;
    OthersFiles others_;
    std::deque<Unfinished> made_; // the deepest first: it is removed first
    std::deque<PendingFile> files_;
    std::vector<std::string> names_;
};

/// The files listed by the run in a directory, as far as they exist, are plain files in that very directory,
/// and are of a kind that runs write. Empty when there is no list.
[[nodiscard]] std::vector<std::string> filesOfRun(const std::filesystem::path& directory);

/// What a run that writes files of these names would do to the files of a directory. The runs' own list of
/// files is not counted.
struct FolderChanges {
    std::vector<std::string> replaced; ///< an earlier run's or another program's
    std::vector<std::string> removed;  ///< an earlier run's
};
[[nodiscard]] FolderChanges changesIn(const std::filesystem::path& directory,
                                      const std::vector<std::string>& names);

/// Throws `std::runtime_error` when files of these names exist that no run listed: they are not ours, and the
/// run would replace them.
void refuseToReplaceOthers(const std::filesystem::path& directory, const std::vector<std::string>& names);

} // namespace korvana
