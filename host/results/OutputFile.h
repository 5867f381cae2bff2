#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "host/results/ReplacedFile.h"
#include "host/results/Unfinished.h"

namespace korvana {

/// A temporary file beside the file it will become, so that the final rename is atomic and nobody finds half
/// a file. The file exists (empty) once this is constructed, and is removed unless `commit` was called, also
/// when a signal ends the program (see `removeUnfinished`). What is kept of a file that is there already, see
/// `ReplacedFile`. Every failure is a `std::runtime_error` that names the wanted file and the reason.
class PendingFile {
public:
    explicit PendingFile(std::filesystem::path target);
    ~PendingFile() = default;
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return pending_; }
    [[nodiscard]] const std::filesystem::path& target() const { return target_; }
    void commit();

private:
    std::filesystem::path target_;
    ReplacedFile replaced_;
    std::filesystem::path pending_;
    std::optional<Unfinished> unfinished_;
};

/// A file written through `stream()`. A failed write (disk full, quota, ...) throws `std::runtime_error` out
/// of the stream operation, and so does a stop (WritingWatch.h), checked at each block. The file appears only
/// with `commit()`.
class OutputFile : private std::streambuf {
public:
    explicit OutputFile(std::filesystem::path target);
    /// Writes into a file that the caller commits; it must outlive this.
    explicit OutputFile(PendingFile& pending);
    ~OutputFile() override;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    [[nodiscard]] std::ostream& stream() { return stream_; }
    /// Flushes and closes; the stream must not be used after this.
    void close();
    /// Closes and gives the file its name.
    void commit();

private:
    explicit OutputFile(std::unique_ptr<PendingFile> own);

    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* data, std::streamsize size) override;
    int sync() override;
    void drain();
    void writeAll(const char* data, std::size_t size);

    std::unique_ptr<PendingFile> own_;
    PendingFile& pending_;
    int descriptor_ = -1;
    std::vector<char> buffer_;
    std::ostream stream_;
};

/// Writes a file whose whole content is in memory, such as a picture.
void writeFile(const std::filesystem::path& target, std::string_view bytes);

/// "cannot write 'report.txt': No space left on device"
[[noreturn]] void throwCannotWrite(const std::filesystem::path& target, const std::string& why);
[[noreturn]] void throwCannotWrite(const std::filesystem::path& target, int error);

} // namespace korvana
