#include "host/results/ReplacedFile.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "host/data/FileName.h"
#include "host/results/OutputFile.h"

namespace korvana {
namespace {

namespace fs = std::filesystem;

fs::path behindLinks(const fs::path& name) {
    constexpr int most = 40; // as the system
    fs::path file = name;
    std::error_code error;
    for (int links = 0; fs::is_symlink(file, error); ++links) {
        if (links == most) throwCannotWrite(name, ELOOP);
        const fs::path next = fs::read_symlink(file, error);
        if (error) throwCannotWrite(name, error.value());
        file = file.parent_path() / next;
    }
    return file;
}

} // namespace

ReplacedFile::ReplacedFile(const fs::path& name) : name_(name) {
    if (hasNul(name)) throwCannotWrite(shownName(name), nulInName);
    place_ = behindLinks(name);
    struct stat before {};
    if (::stat(place_.c_str(), &before) != 0) return; // whatever is wrong is found when the file is made
    if (S_ISDIR(before.st_mode)) throwCannotWrite(name, EISDIR);
    if (!S_ISREG(before.st_mode)) throwCannotWrite(name, "it is a pipe or a device; choose another name");
    if (::faccessat(AT_FDCWD, place_.c_str(), W_OK, AT_EACCESS) != 0)
        throwCannotWrite(name, "it is read-only (" + std::generic_category().message(errno) + ")");
    before_ = {before.st_mode & 0777U, before.st_uid, before.st_gid};
}

void ReplacedFile::passOn(const fs::path& file) const {
    if (!before_) return;
    mode_t mode = before_->mode;
    // Only root can give a file away. A group that cannot be kept leaves no more to ours than to others.
    if (::chown(file.c_str(), before_->owner, before_->group) != 0 &&
        ::chown(file.c_str(), static_cast<uid_t>(-1), before_->group) != 0)
        mode = (mode & 0707U) | ((mode & 0007U) << 3U);
    if (::chmod(file.c_str(), mode) != 0) throwCannotWrite(name_, errno);
}

} // namespace korvana
