#pragma once

#include "host/data/ByteSource.h"

#include <string_view>
#include <vector>

#include <zlib.h>

namespace korvana {

/// The first bytes of gzip data.
inline constexpr std::string_view gzipMark{"\x1F\x8B"};

/// Unpacks gzip data while reading; several packed pieces in a row are one text.
class GzipSource final : public ByteSource {
public:
    explicit GzipSource(std::unique_ptr<ByteSource> packed);
    ~GzipSource() override;

    std::size_t read(std::span<char> room) override;
    void rewind() override;
    void checkUnchanged() const override { packed_->checkUnchanged(); }
    std::size_t size() const override { return 0; }
    const std::string& name() const override { return packed_->name(); }

private:
    bool fill();
    void beginPiece();
    [[noreturn]] void refuseDamaged(std::string_view why) const;

    std::unique_ptr<ByteSource> packed_;
    std::vector<char> input_;
    z_stream stream_{};
    bool inPiece_ = true;
};

} // namespace korvana
