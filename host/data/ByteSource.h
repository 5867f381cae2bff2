#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <stop_token>
#include <string>

namespace korvana {

/// The bytes of a data file in order, readable more than once: of a file, a pipe or the content of a packed
/// file. To be used by one thread at a time.
class ByteSource {
public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource() = default;

    /// Puts the next bytes, at least one, into `room`; returns how many, 0 at the end. Throws DataError when
    /// they cannot be read, ReadingStopped when asked to stop.
    virtual std::size_t read(std::span<char> room) = 0;

    /// Starts again at the first byte.
    virtual void rewind() = 0;

    /// Throws a DataError when the file is no longer what it was when it was opened.
    virtual void checkUnchanged() const = 0;

    /// The number of bytes; 0 when it is not known before they are read.
    virtual std::size_t size() const = 0;

    /// The name that the user knows, for messages.
    virtual const std::string& name() const = 0;

    /// Reads until `room` is full; returns how many bytes were read, fewer only at the end.
    std::size_t readFully(std::span<char> room);

    /// Throws the DataError of a file that changed.
    [[noreturn]] void refuseChanged() const;
};

/// Opens a file, a pipe, or standard input for "-"; data packed by gzip (known by their content) are unpacked
/// on the way. Throws DataError when there is no such file, it may not be read, it is a folder or it is
/// empty; ReadingStopped when asked to stop while a pipe keeps it waiting.
std::unique_ptr<ByteSource> openSource(const std::filesystem::path& path, std::stop_token stop = {});

} // namespace korvana
