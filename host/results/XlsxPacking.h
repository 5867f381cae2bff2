#pragma once

#include <filesystem>
#include <string>
#include <xlsxwriter.h>

namespace korvana {

/// How the library's last step ended.
struct Packed {
    lxw_error error = LXW_NO_ERROR;
    int reason = 0; ///< errno
};

/// The file that the library packs a workbook into. Packing takes seconds and cannot be interrupted: where
/// somebody watches (WritingWatch.h) a stop does not wait for it.
class PackedFile {
public:
    /// `pending` exists. Throws `std::runtime_error` naming `target` when it cannot be opened.
    PackedFile(const std::filesystem::path& pending, const std::filesystem::path& target);
    ~PackedFile();
    PackedFile(const PackedFile&) = delete;
    PackedFile& operator=(const PackedFile&) = delete;

    /// The name to give the library.
    [[nodiscard]] const std::string& path() const { return path_; }

    /// Packs and frees the book. Throws WritingStopped at a stop: packing then goes on in a thread that
    /// nobody waits for, into a file that has lost its name, and its room is free once it ends.
    [[nodiscard]] Packed pack(lxw_workbook* book);

private:
    std::string path_;
    /// By which the library finds the file, and cannot make it anew; -1: it is not needed.
    int descriptor_ = -1;
};

} // namespace korvana
