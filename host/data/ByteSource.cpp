#include "host/data/ByteSource.h"

#include "host/data/DataError.h"
#include "host/data/FileSource.h"
#include "host/data/GzipSource.h"

#include <array>
#include <string_view>
#include <utility>

namespace korvana {
namespace {

void refuseEmpty(ByteSource& source) {
    char first = 0;
    if (source.read({&first, 1}) == 0) {
        throw DataError(source.name(), 0, 0,
                        "the file is empty; give a file with a line of names and the cases");
    }
    source.rewind();
}

} // namespace

std::size_t ByteSource::readFully(std::span<char> room) {
    std::size_t filled = 0;
    while (filled < room.size()) {
        const std::size_t count = read(room.subspan(filled));
        if (count == 0) break;
        filled += count;
    }
    return filled;
}

void ByteSource::refuseChanged() const {
    throw DataError(name(), 0, 0,
                    "the file changed while it was read; wait until it is complete, then read it again");
}

std::unique_ptr<ByteSource> openSource(const std::filesystem::path& path, std::stop_token stop) {
    std::unique_ptr<ByteSource> source = std::make_unique<FileSource>(path, std::move(stop));
    refuseEmpty(*source);
    std::array<char, gzipMark.size()> first{};
    const std::size_t count = source->readFully(first);
    source->rewind();
    if (std::string_view(first.data(), count) == gzipMark) {
        source = std::make_unique<GzipSource>(std::move(source));
        refuseEmpty(*source);
    }
    return source;
}

} // namespace korvana
