#pragma once

#include <string>

namespace korvana::python {

/// The right to run an analysis: there is one in a process, since the module keeps one set of settings and
/// results. Under the interpreter's lock, like all of its members.
class Lease {
public:
    /// Raises Busy where somebody has it.
    /// @param why  the message to whoever wants it meanwhile
    explicit Lease(std::string why);
    ~Lease();
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;

    /// False in a forked process where another analysis has begun since: the one before is lost there.
    [[nodiscard]] bool holds() const;

private:
    unsigned long number_ = 0;
};

} // namespace korvana::python
