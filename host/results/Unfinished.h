#pragma once

#include <csignal>
#include <filesystem>

namespace korvana {

/// A file or directory in the making: it is removed (a directory when it is empty) unless `keep` was called.
/// To be constructed before the file itself, so that no moment is left out.
class Unfinished {
public:
    explicit Unfinished(const std::filesystem::path& path);
    ~Unfinished();
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;

    void keep() noexcept;

    struct Entry;

private:
    Entry* entry_;
};

/// Removes whatever is unfinished, for a signal handler that then ends the program. It runs in the thread
/// that writes, or that thread must not go on.
void removeUnfinished() noexcept;

/// While it lives, the signals by which people end a program wait.
class HeldSignals {
public:
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

private:
    sigset_t before_;
};

} // namespace korvana
