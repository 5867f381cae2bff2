#include "host/data/FileBytes.h"

#include "host/data/DataError.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvana {
namespace {

/** Closes a file descriptor at the end of a scope. */
struct Descriptor {
    explicit Descriptor(int opened) : number(opened) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number >= 0) close(number);
    }

    const int number;
};

[[noreturn]] void refuse(const std::string& name, int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        throw DataError(name, 0, 0, "there is no such file; check the name and the folder");
    case EACCES:
    case EPERM:
        throw DataError(name, 0, 0, "the file may not be read; check its permissions");
    default:
        throw DataError(name, 0, 0, std::string("the file cannot be read: ") + std::strerror(error));
    }
}

} // namespace

FileBytes::FileBytes(const std::filesystem::path& path) {
    const std::string name = path.string();
    const Descriptor file{open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    if (file.number < 0) refuse(name, errno);
    struct stat status {};
    if (fstat(file.number, &status) != 0) refuse(name, errno);
    if (S_ISDIR(status.st_mode)) throw DataError(name, 0, 0, "this is a folder; name a data file in it");
    if (S_ISFIFO(status.st_mode)) {
        readPipe(file.number, name);
    } else if (!S_ISREG(status.st_mode)) {
        throw DataError(name, 0, 0, "this is a device, not a data file; name a file");
    } else if (status.st_size > 0) {
        const auto size = static_cast<std::size_t>(status.st_size);
        void* memory = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.number, 0);
        if (memory == MAP_FAILED) refuse(name, errno);
        madvise(memory, size, MADV_SEQUENTIAL);
        mapping_ = memory;
        view_ = {static_cast<const char*>(memory), size};
    }
    if (view_.empty())
        throw DataError(name, 0, 0, "the file is empty; give a file with a line of names and the cases");
}

FileBytes::~FileBytes() {
    if (mapping_ != nullptr) munmap(mapping_, view_.size());
}

void FileBytes::readPipe(int descriptor, const std::string& name) {
    std::array<char, 65536> buffer; // NOLINT: filled by read
    for (;;) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) refuse(name, errno);
        if (count == 0) break;
        pipe_.append(buffer.data(), static_cast<std::size_t>(count));
    }
    view_ = pipe_;
}

void FileBytes::release(std::size_t begin, std::size_t end) const {
    if (mapping_ == nullptr) return;
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    begin = begin / page * page;
    end = end / page * page; // the last page may be shared with bytes still in use
    if (end > begin) madvise(static_cast<char*>(mapping_) + begin, end - begin, MADV_DONTNEED);
}

} // namespace korvana
