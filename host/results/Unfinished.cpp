#include "host/results/Unfinished.h"

#include <atomic>
#include <cstring>
#include <memory>
#include <mutex>
#include <unistd.h>

namespace korvana {

/// Entries, a few bytes each, are never freed, so that a signal handler can walk the list at any moment.
struct Unfinished::Entry {
    std::atomic<char*> path = nullptr; ///< nullptr: finished
    Entry* next = nullptr;
};

namespace {

std::atomic<Unfinished::Entry*> newest = nullptr;
std::mutex adding;
static_assert(std::atomic<char*>::is_always_lock_free, "a signal handler reads the list");

void removePath(const char* path) noexcept {
    if (::unlink(path) != 0) ::rmdir(path);
}

} // namespace

Unfinished::Unfinished(const std::filesystem::path& path) {
    auto text = std::make_unique<char[]>(path.native().size() + 1);
    std::memcpy(text.get(), path.c_str(), path.native().size() + 1);
    const std::lock_guard<std::mutex> lock(adding);
    // The newest comes first: files are removed before the directories made for them.
    entry_ = new Entry;
    entry_->next = newest.load();
    entry_->path = text.release();
    newest = entry_;
}

Unfinished::~Unfinished() {
    if (const char* path = entry_->path.load(); path != nullptr) removePath(path);
    keep();
}

void Unfinished::keep() noexcept {
    delete[] entry_->path.exchange(nullptr);
}

void removeUnfinished() noexcept {
    for (const Unfinished::Entry* entry = newest; entry != nullptr; entry = entry->next)
        if (const char* path = entry->path; path != nullptr) removePath(path);
}

HeldSignals::HeldSignals() {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE})
        sigaddset(&held, signal);
    ::pthread_sigmask(SIG_BLOCK, &held, &before_);
}

HeldSignals::~HeldSignals() {
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

} // namespace korvana
