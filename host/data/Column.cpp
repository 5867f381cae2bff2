#include "host/data/Column.h"

#include "host/data/BigPages.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

#include <sys/mman.h>

namespace korvana {
namespace {

std::size_t bytesFor(std::size_t cells) {
    if (cells > std::numeric_limits<std::size_t>::max() / sizeof(double) - bigPage) throw std::bad_alloc();
    const std::size_t bytes = std::max<std::size_t>(cells, 1) * sizeof(double);
    return isForBigPages(bytes) ? (bytes + bigPage - 1) / bigPage * bigPage : bytes;
}

/// Memory aligned for big pages, which can be made longer without a copy.
void* mapBig(std::size_t bytes) {
    void* const memory =
        mmap(nullptr, bytes + bigPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::bad_alloc();
    char* const begin = static_cast<char*>(memory);
    const std::size_t over = reinterpret_cast<std::uintptr_t>(begin) % bigPage; // NOLINT: an alignment
    const std::size_t head = over == 0 ? 0 : bigPage - over;
    if (head > 0) munmap(begin, head);
    munmap(begin + head + bytes, bigPage - head);
    askForBigPages(begin + head, bytes);
    return begin + head;
}

} // namespace

Column::Column(std::size_t cells) {
    const std::size_t bytes = bytesFor(cells);
    void* const memory = isForBigPages(bytes) ? mapBig(bytes) : std::malloc(bytes);
    if (memory == nullptr) throw std::bad_alloc();
    cells_ = static_cast<double*>(memory);
    bytes_ = bytes;
}

Column::Column(Column&& other) noexcept
    : cells_(std::exchange(other.cells_, nullptr)), bytes_(std::exchange(other.bytes_, 0)),
      owner_(std::move(other.owner_)) {}

Column& Column::operator=(Column&& other) noexcept {
    std::swap(cells_, other.cells_);
    std::swap(bytes_, other.bytes_);
    std::swap(owner_, other.owner_);
    return *this;
}

Column::~Column() {
    if (owner_ != nullptr) return;
    if (isForBigPages(bytes_))
        munmap(cells_, bytes_);
    else
        std::free(cells_);
}

Column Column::borrowed(const double* cells, std::shared_ptr<const void> owner) {
    if (owner == nullptr) throw std::invalid_argument("borrowed cells need an owner");
    Column column;
    column.cells_ = const_cast<double*>(cells); // NOLINT: never written, see requireOwn
    column.owner_ = std::move(owner);
    return column;
}

void Column::requireOwn() const {
    if (owner_ != nullptr) throw std::logic_error("borrowed cells are only read");
}

double* Column::data() {
    requireOwn();
    return cells_;
}

void Column::resize(std::size_t cells) {
    requireOwn();
    const std::size_t bytes = bytesFor(cells);
    if (bytes == bytes_ || (bytes < bytes_ && !isForBigPages(bytes_))) return; // not worth a copy
    if (isForBigPages(bytes) && isForBigPages(bytes_)) {
        void* const memory = mremap(cells_, bytes_, bytes, MREMAP_MAYMOVE);
        if (memory == MAP_FAILED) throw std::bad_alloc();
        cells_ = static_cast<double*>(memory);
        bytes_ = bytes;
        return;
    }
    Column other(cells);
    if (cells_ != nullptr) std::memcpy(other.cells_, cells_, std::min(bytes, bytes_));
    *this = std::move(other);
}

} // namespace korvana
