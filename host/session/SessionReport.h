#pragma once

#include "host/session/SessionParts.h"
#include "support/services/ReportService.h"

#include <string>
#include <vector>

namespace korvana {

/// Builds the blocks of the text report. A block that is closed becomes a `Report` of the book: its first
/// line that is not empty is the title, the others are its lines. Positions count characters, not bytes. Text
/// attributes are ignored. Text outside a block opens one.
class SessionReport : public ozm::ReportService {
public:
    explicit SessionReport(SessionParts& parts) : parts_(parts) {}

    void writst(int length, std::string_view text) override;
    void writch(char character) override { write({&character, 1}); }
    void newline(int count) override;
    void prttop() override;
    void type() override;
    void cup(int row, int column) override;
    void cupst(int row, int column, int attribute, std::string_view text) override;
    void normal() override {}
    void revers() override {}
    void SetAttribColor(int) override {}

    /// Positions beyond these are ignored: no page is that wide, and a wrong number must not use up memory.
    static constexpr int mostColumns = 10'000;
    static constexpr int mostRows = 100'000'000;

private:
    void open();
    void write(std::string_view text);
    std::string& line() { return lines_[row_]; }

    SessionParts& parts_;
    std::vector<std::string> lines_;
    std::shared_ptr<const OutputOrigin> origin_; ///< of the block that is open
    std::size_t row_ = 0;
    std::size_t column_ = 0; ///< characters left of the position
    bool atEnd_ = true;      ///< the position is the end of its line
    bool open_ = false;
};

} // namespace korvana
