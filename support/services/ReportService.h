#pragma once

#include <string_view>

namespace ozm {

/// The text report: text is written at a current position, on a page that grows downwards.
class ReportService {
public:
    virtual ~ReportService() = default;

    /// Writes the first `length` characters of a text at the current position (all of it when it is shorter).
    virtual void writst(int length, std::string_view text) = 0;
    /// Writes one character.
    virtual void writch(char character) = 0;
    /// Ends the line and starts `count` new ones (count - 1 of them empty); nothing when count is below 1.
    virtual void newline(int count) = 0;
    /// Opens a block of report lines; the first line written after it is the block's title.
    virtual void prttop() = 0;
    /// Closes the block and shows it.
    virtual void type() = 0;
    /// Moves to a row and a column of the block, both from 1; adds the lines and blanks needed.
    virtual void cup(int row, int column) = 0;
    /// The same, then writes a text with an attribute (0 normal, 1 reverse).
    virtual void cupst(int row, int column, int attribute, std::string_view text) = 0;
    /// Makes the following text normal, reverse or coloured (a number of the host's palette). A host whose
    /// report is plain text may ignore these.
    virtual void normal() = 0;
    virtual void revers() = 0;
    virtual void SetAttribColor(int colour) = 0;
};

} // namespace ozm
