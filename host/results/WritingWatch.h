#pragma once

#include <exception>
#include <filesystem>
#include <functional>
#include <stop_token>

namespace korvana {

/// Thrown by writers that are asked to stop; uncommitted files are removed.
struct WritingStopped : std::exception {
    [[nodiscard]] const char* what() const noexcept override { return "writing was stopped"; }
};

/// While it lives, writing in its thread can be stopped, and reports each file that it begins. Without one,
/// nothing stops it.
class WritingWatch {
public:
    using FileBegins = std::function<void(const std::filesystem::path& target)>;

    explicit WritingWatch(std::stop_token stop, FileBegins begins = {});
    ~WritingWatch();
    WritingWatch(const WritingWatch&) = delete;
    WritingWatch& operator=(const WritingWatch&) = delete;

    /// This thread's; nullptr: none.
    [[nodiscard]] static const WritingWatch* current();
    [[nodiscard]] const std::stop_token& stop() const { return stop_; }
    void fileBegins(const std::filesystem::path& target) const;

private:
    std::stop_token stop_;
    FileBegins begins_;
    const WritingWatch* before_;
};

/// Writers call this at least every few milliseconds. Throws WritingStopped when asked to stop.
void throwIfWritingStopped();

} // namespace korvana
