#pragma once

#include <cstddef>
#include <ostream>
#include <string>

namespace korvana {

/// Text on its way to a stream, in pieces: a call of a stream takes as long as a short line itself.
class TextPieces {
public:
    explicit TextPieces(std::ostream& out) : out_(out) {}

    /// Where to append. To be followed by `passOn`, at the end by `flush`.
    [[nodiscard]] std::string& text() { return text_; }
    void passOn() {
        if (text_.size() >= pieceSize) flush();
    }
    void flush() {
        out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        text_.clear();
    }

private:
    static constexpr std::size_t pieceSize = 32768;

    std::ostream& out_;
    std::string text_;
};

} // namespace korvana
