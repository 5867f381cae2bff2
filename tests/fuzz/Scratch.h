#pragma once
// A folder for a fuzzer, in memory if possible, and checks that end the run.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <unistd.h>

namespace korvana::fuzz {

/// Ends the run, so that the input is kept, if a condition does not hold.
inline void require(bool holds, std::string_view what, std::string_view detail = {}) {
    if (holds) return;
    std::fprintf(stderr, "\nDOES NOT HOLD: %.*s\n%.*s\n", static_cast<int>(what.size()), what.data(),
                 static_cast<int>(detail.size()), detail.data());
    std::abort();
}

/// Lives as long as the process, and is removed if that ends normally.
class Scratch {
public:
    Scratch() {
        std::error_code none;
        const std::filesystem::path memory = "/dev/shm";
        folder_ =
            (std::filesystem::is_directory(memory, none) ? memory : std::filesystem::temp_directory_path()) /
            ("korvana-fuzz-" + std::to_string(getpid()));
        clear();
    }
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

    void clear() {
        std::filesystem::create_directories(folder_);
        for (const auto& entry : std::filesystem::directory_iterator(folder_))
            std::filesystem::remove_all(entry.path());
    }

    std::filesystem::path write(const std::string& name, std::string_view bytes) {
        std::ofstream(folder_ / name, std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return folder_ / name;
    }

private:
    std::filesystem::path folder_;
};

inline Scratch& scratch() {
    static Scratch only;
    return only;
}

} // namespace korvana::fuzz
