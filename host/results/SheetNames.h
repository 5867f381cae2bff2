#pragma once

#include <set>
#include <string>
#include <string_view>

namespace korvana {

/// Gives the sheets of a workbook names that the format allows: at most 31 characters, without forbidden
/// ones, and unique without regard to case.
class SheetNames {
public:
    /// A name made from the title. One that is too long loses words before its last comma: the part after it
    /// distinguishes sheets of one kind.
    [[nodiscard]] std::string take(std::string_view title);

private:
    std::set<std::string> taken_; // in lower case
};

} // namespace korvana
