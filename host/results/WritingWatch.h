#pragma once

#include <exception>
#include <filesystem>
#include <functional>
#include <stop_token>

namespace korvana {

/// Thrown out of whatever writes when it is to give up; what was not committed is removed on the way.
struct WritingStopped : std::exception {
    [[nodiscard]] const char* what() const noexcept override { return "writing was stopped"; }
};

/// While it lives, what its thread writes can be stopped and reports which file it begins. Without one
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

/// To be called at least every few milliseconds by what writes. Throws WritingStopped when it is to give up.
void throwIfWritingStopped();

} // namespace korvana
