#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace korvana {

/** The bytes of a file, mapped into memory (a pipe is read into memory instead). */
class FileBytes {
public:
    /** Throws DataError when there is no such file, it is a directory, it may not be read or it is empty. */
    explicit FileBytes(const std::filesystem::path& path);
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;
    ~FileBytes();

    std::string_view view() const { return view_; }

    /** Says that these bytes are not needed for now: their pages leave memory and come back when they are
       read again. May be called from several threads. */
    void release(std::size_t begin, std::size_t end) const;

private:
    void readPipe(int descriptor, const std::string& name);

    void* mapping_ = nullptr; ///< none for a pipe
    std::string pipe_;
    std::string_view view_;
};

} // namespace korvana
