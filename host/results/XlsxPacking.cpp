#include "host/results/XlsxPacking.h"

#include <cerrno>
#include <condition_variable>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

#include "host/results/OutputFile.h"
#include "host/results/PlainNumbers.h"
#include "host/results/WritingWatch.h"

namespace korvana {
namespace {

Packed packHere(lxw_workbook* book) {
    const PlainNumbers plain; // of this thread
    errno = 0;
    const lxw_error error = workbook_close(book);
    return {error, errno};
}

/// What the thread that packs shares with the one that waits.
struct Packing {
    std::mutex mutex;
    std::condition_variable_any ended;
    std::optional<Packed> result;
};

} // namespace

PackedFile::PackedFile(const std::filesystem::path& pending, const std::filesystem::path& target)
    : path_(pending.string()) {
    descriptor_ = ::open(pending.c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor_ < 0) throwCannotWrite(target, errno);
    path_ = "/proc/self/fd/" + std::to_string(descriptor_);
}

PackedFile::~PackedFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

Packed PackedFile::pack(lxw_workbook* book) {
    const WritingWatch* watch = WritingWatch::current();
    if (watch == nullptr) return packHere(book);
    const auto packing = std::make_shared<Packing>();
    const int descriptor = std::exchange(descriptor_, -1); // the thread's
    const auto run = [packing, book, descriptor] {
        const Packed result = packHere(book);
        ::close(descriptor);
        const std::lock_guard lock(packing->mutex);
        packing->result = result;
        packing->ended.notify_all();
    };
    try {
        std::thread(run).detach();
    } catch (const std::system_error&) { // no thread available
        run();
    }
    std::unique_lock lock(packing->mutex);
    if (!packing->ended.wait(lock, watch->stop(), [&] { return packing->result.has_value(); }))
        throw WritingStopped();
    return *packing->result;
}

} // namespace korvana
