#pragma once

#include <csignal>
#include <filesystem>

namespace korvana {

/// An unfinished file or directory: it is removed (a directory if it is empty) unless `keep` was called.
/// Construct it before the file itself, so that there is no gap.
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

/// Removes everything unfinished, for a signal handler that then ends the program. It must run in the thread
/// that writes, or that thread must be stopped.
void removeUnfinished() noexcept;

/// While it lives, the signals that end a program are held back.
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
