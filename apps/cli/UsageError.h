#pragma once

#include <stdexcept>
#include <string>

namespace korvana::cli {

/// Wrong usage; what() says what is wrong and what to do.
class UsageError : public std::runtime_error {
public:
    /// @param seeHelp  whether to point to the command's list of options
    explicit UsageError(const std::string& text, bool seeHelp = false)
        : std::runtime_error(text), seeHelp_(seeHelp) {}
    [[nodiscard]] bool seeHelp() const { return seeHelp_; }

private:
    bool seeHelp_;
};

} // namespace korvana::cli
