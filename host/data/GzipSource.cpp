#include "host/data/GzipSource.h"

#include "host/data/DataError.h"

#include <algorithm>
#include <limits>
#include <new>
#include <string>
#include <utility>

namespace korvana {
namespace {

constexpr std::size_t inputBytes = std::size_t{64} << 10;

Bytef* bytesOf(char* data) {
    return reinterpret_cast<Bytef*>(data); // NOLINT: the library's type
}

} // namespace

GzipSource::GzipSource(std::unique_ptr<ByteSource> packed) : packed_(std::move(packed)), input_(inputBytes) {
    constexpr int gzipAlone = 15 + 16; // largest window; gzip format only
    if (inflateInit2(&stream_, gzipAlone) != Z_OK) throw std::bad_alloc();
}

GzipSource::~GzipSource() {
    inflateEnd(&stream_);
}

void GzipSource::rewind() {
    packed_->rewind();
    stream_.avail_in = 0;
    inflateReset(&stream_);
    inPiece_ = true;
}

/// Ensures that there is packed input; false at its end.
bool GzipSource::fill() {
    if (stream_.avail_in > 0) return true;
    const std::size_t count = packed_->read(input_);
    stream_.next_in = bytesOf(input_.data());
    stream_.avail_in = static_cast<uInt>(count);
    return count > 0;
}

/// Starts the next piece; zeros that pad a tape block are skipped.
void GzipSource::beginPiece() {
    while (fill() && *stream_.next_in == 0) {
        ++stream_.next_in;
        --stream_.avail_in;
    }
    if (stream_.avail_in == 0) return;
    inflateReset(&stream_);
    inPiece_ = true;
}

std::size_t GzipSource::read(std::span<char> room) {
    const std::size_t wanted = std::min<std::size_t>(room.size(), std::numeric_limits<uInt>::max());
    stream_.next_out = bytesOf(room.data());
    stream_.avail_out = static_cast<uInt>(wanted);
    while (stream_.avail_out == wanted && wanted > 0) {
        if (!inPiece_) beginPiece();
        if (!inPiece_) return 0;
        if (!fill())
            throw DataError(name(), 0, 0,
                            "the compressed file (gzip) ends too early, a part of it is missing; fetch or "
                            "pack it again");
        switch (inflate(&stream_, Z_NO_FLUSH)) {
        case Z_OK:
        case Z_BUF_ERROR:
            break;
        case Z_STREAM_END:
            inPiece_ = false;
            break;
        case Z_MEM_ERROR:
            throw std::bad_alloc();
        default:
            refuseDamaged(stream_.msg != nullptr ? stream_.msg : "unknown");
        }
    }
    return wanted - stream_.avail_out;
}

void GzipSource::refuseDamaged(std::string_view why) const {
    std::string text("the compressed file (gzip) is damaged: ");
    throw DataError(name(), 0, 0, text.append(why).append("; fetch or pack it again"));
}

} // namespace korvana
