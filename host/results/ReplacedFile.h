#pragma once

#include <filesystem>
#include <optional>

#include <sys/types.h>

namespace korvana {

/// What stands where a file is to be written. A new file takes its name by a rename; for the user it is the
/// same file with another content all the same: links go on leading to it, and it keeps its owner and
/// permissions.
class ReplacedFile {
public:
    /// Throws `std::runtime_error` if there is something that no file can or may replace.
    explicit ReplacedFile(const std::filesystem::path& name);

    /// The name behind symbolic links.
    [[nodiscard]] const std::filesystem::path& place() const { return place_; }
    /// For `open`, until `passOn`: others may not read the content before.
    [[nodiscard]] mode_t modeUntilThen() const { return before_ ? 0600 : 0666; }
    /// Gives a file owner and permissions of the one that it is going to replace.
    void passOn(const std::filesystem::path& file) const;

private:
    struct Before {
        mode_t mode;
        uid_t owner;
        gid_t group;
    };
    std::filesystem::path name_;
    std::filesystem::path place_;
    std::optional<Before> before_; ///< nothing: there is no file
};

} // namespace korvana
