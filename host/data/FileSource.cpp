#include "host/data/FileSource.h"

#include "host/data/DataError.h"
#include "host/data/FileName.h"
#include "host/data/ReadData.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvana {

FileSource::FileSource(const std::filesystem::path& path, std::stop_token stop)
    : name_(path == "-" ? "standard input" : path.string()), stop_(std::move(stop)),
      descriptor_(STDIN_FILENO), owned_(path != "-") {
    if (hasNul(path)) throw DataError(shownName(path), 0, 0, nulInName);
    // Without O_NONBLOCK, opening a pipe that has no writer would block, and a stop would not be noticed.
    if (owned_) descriptor_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor_ < 0) refuse(errno);
    struct stat status {};
    const int failure = fstat(descriptor_, &status) != 0 ? errno : 0;
    try {
        if (failure != 0) refuse(failure);
        if (S_ISDIR(status.st_mode)) throw DataError(name_, 0, 0, "this is a folder; name a data file in it");
        const bool pipe = S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode);
        if (!S_ISREG(status.st_mode) && !pipe && owned_)
            throw DataError(name_, 0, 0, "this is a device, not a data file; name a file");
    } catch (...) {
        if (owned_) close(descriptor_);
        throw;
    }
    seeks_ = S_ISREG(status.st_mode);
    if (owned_) nameDescriptor(path);
    if (!seeks_) return;
    if (!owned_) begin_ = std::max<off_t>(lseek(descriptor_, 0, SEEK_CUR), 0);
    size_ = static_cast<std::size_t>(std::max<off_t>(status.st_size - begin_, 0));
    modified_ = status.st_mtim;
    posix_fadvise(descriptor_, 0, 0, POSIX_FADV_SEQUENTIAL);
}

/// A shell's <(command) is /dev/fd/63, a number that means nothing to readers of the results.
void FileSource::nameDescriptor(const std::filesystem::path& path) {
    const std::filesystem::path folder = path.parent_path();
    if (folder != "/dev/fd" && folder != "/proc/self/fd") return;
    std::error_code unknown;
    const std::filesystem::path file = std::filesystem::read_symlink(path, unknown);
    if (!seeks_)
        name_ = "pipe";
    else if (!unknown)
        name_ = file.string();
}

FileSource::~FileSource() {
    if (owned_) close(descriptor_);
}

std::size_t FileSource::read(std::span<char> room) {
    if (room.empty()) return 0;
    const std::size_t count = seeks_ ? readFile(room) : readPipe(room);
    at_ += count;
    return count;
}

std::size_t FileSource::readFile(std::span<char> room) {
    for (;;) {
        if (stop_.stop_requested()) throw ReadingStopped();
        const ssize_t count = pread(descriptor_, room.data(), room.size(), begin_ + static_cast<off_t>(at_));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) refuse(errno);
        if (count == 0) {
            if (at_ < size_) refuseChanged();
            checkUnchanged();
        }
        return static_cast<std::size_t>(count);
    }
}

std::size_t FileSource::readPipe(std::span<char> room) {
    if (at_ < keptBytes_) {
        const std::vector<char>& block = kept_[at_ / blockBytes];
        const std::size_t from = at_ % blockBytes;
        const std::size_t count = std::min(room.size(), block.size() - from);
        std::memcpy(room.data(), block.data() + from, count);
        return count;
    }
    while (!ended_) {
        waitForBytes();
        const ssize_t count = ::read(descriptor_, room.data(), room.size());
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (count < 0) refuse(errno);
        if (count > 0) {
            keep(room.first(static_cast<std::size_t>(count)));
            return static_cast<std::size_t>(count);
        }
        ended_ = true;
    }
    return 0;
}

void FileSource::waitForBytes() const {
    constexpr int glance = 100; // milliseconds between two checks for a stop
    for (;;) {
        if (stop_.stop_requested()) throw ReadingStopped();
        pollfd waiting{descriptor_, POLLIN, 0};
        const int ready = poll(&waiting, 1, glance);
        if (ready > 0) return;
        if (ready < 0 && errno != EINTR) refuse(errno);
    }
}

void FileSource::keep(std::span<const char> bytes) {
    while (!bytes.empty()) {
        if (keptBytes_ % blockBytes == 0) kept_.emplace_back().reserve(blockBytes);
        std::vector<char>& block = kept_.back();
        const auto part = bytes.first(std::min(bytes.size(), blockBytes - block.size()));
        block.insert(block.end(), part.begin(), part.end());
        keptBytes_ += part.size();
        bytes = bytes.subspan(part.size());
    }
}

void FileSource::checkUnchanged() const {
    if (!seeks_) return;
    struct stat now {};
    if (fstat(descriptor_, &now) != 0) refuse(errno);
    const auto size = static_cast<std::size_t>(std::max<off_t>(now.st_size - begin_, 0));
    if (size != size_ || now.st_mtim.tv_sec != modified_.tv_sec || now.st_mtim.tv_nsec != modified_.tv_nsec)
        refuseChanged();
}

void FileSource::refuse(int error) const {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        throw DataError(name_, 0, 0, "there is no such file; check the name and the folder");
    case EACCES:
    case EPERM:
        throw DataError(name_, 0, 0, "there is no permission to read the file; check its permissions");
    default:
        throw DataError(name_, 0, 0, std::string("the file cannot be read: ") + std::strerror(error));
    }
}

} // namespace korvana
