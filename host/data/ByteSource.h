#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <stop_token>
#include <string>

namespace korvana {

/// The bytes of a data file in order, as often as wanted: of a file, of a pipe or of what a packed file
/// holds. To be used by one thread at a time.
class ByteSource {
public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource() = default;

    /// Puts the next bytes into the room, at least one; answers how many, 0 at the end. Throws DataError
    /// when they cannot be read, ReadingStopped when the reader is to give up.
    virtual std::size_t read(std::span<char> room) = 0;

    /// Begins anew with the first byte.
    virtual void rewind() = 0;

    /// Throws a DataError when the file is no longer what it was when it was opened.
    virtual void checkUnchanged() const = 0;

    /// The number of bytes; 0 when it is not known before they are read.
    virtual std::size_t size() const = 0;

    /// As the user knows it, for messages.
    virtual const std::string& name() const = 0;

    /// Reads until the room is full; answers how many bytes there were, fewer only at the end.
    std::size_t readFully(std::span<char> room);

    /// Throws the DataError of a file that changed.
    [[noreturn]] void refuseChanged() const;
};

/// Opens a file, a pipe, or standard input for "-"; what gzip has packed (known by its content) is unpacked
/// on the way. Throws DataError when there is no such file, it may not be read, it is a folder or it is
/// empty; ReadingStopped when asked to stop while a pipe keeps it waiting.
std::unique_ptr<ByteSource> openSource(const std::filesystem::path& path, std::stop_token stop = {});

} // namespace korvana
