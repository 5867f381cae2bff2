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

/// The file that the library packs a workbook into. Packing takes seconds and cannot be interrupted: under a
/// WritingWatch a stop does not wait for it.
class PackedFile {
public:
    /// `pending` exists. Throws `std::runtime_error` naming `target` when it cannot be opened.
    PackedFile(const std::filesystem::path& pending, const std::filesystem::path& target);
    ~PackedFile();
    PackedFile(const PackedFile&) = delete;
    PackedFile& operator=(const PackedFile&) = delete;

    /// The name to give the library.
    [[nodiscard]] const std::string& path() const { return path_; }

    /// Packs and frees the book. Throws WritingStopped at a stop: packing then continues in a detached
    /// thread, into an unlinked file whose space is freed at the end.
    [[nodiscard]] Packed pack(lxw_workbook* book);

private:
    std::string path_;
    /// The descriptor through which the library opens the file without recreating it; -1: not needed.
    int descriptor_ = -1;
};

} // namespace korvana
