#pragma once

#include "host/data/ByteSource.h"

#include <cstdint>
#include <vector>

#include <sys/types.h>
#include <time.h>

namespace korvana {

/// A file, read in blocks and never mapped: truncating a mapped file would crash the program. Data from a
/// pipe are kept in memory, because they cannot be read a second time.
class FileSource final : public ByteSource {
public:
    /// @param path  "-" is standard input
    FileSource(const std::filesystem::path& path, std::stop_token stop);
    ~FileSource() override;

    std::size_t read(std::span<char> room) override;
    void rewind() override { at_ = 0; }
    void checkUnchanged() const override;
    std::size_t size() const override { return size_; }
    const std::string& name() const override { return name_; }

private:
    static constexpr std::size_t blockBytes = std::size_t{1} << 20;

    void nameDescriptor(const std::filesystem::path& path);
    std::size_t readFile(std::span<char> room);
    std::size_t readPipe(std::span<char> room);
    void waitForBytes() const;
    void keep(std::span<const char> bytes);
    [[noreturn]] void refuse(int error) const;

    std::string name_;
    std::stop_token stop_;
    int descriptor_;
    bool owned_;         ///< standard input is not
    bool seeks_ = false; ///< it can be read at any position
    bool ended_ = false; ///< the pipe is at its end
    off_t begin_ = 0;    ///< the initial position of standard input
    std::size_t size_ = 0;
    timespec modified_{};
    std::size_t at_ = 0;
    std::vector<std::vector<char>> kept_; ///< of a pipe, in blocks of blockBytes, the last one shorter
    std::size_t keptBytes_ = 0;
};

} // namespace korvana
