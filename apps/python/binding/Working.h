#pragma once

namespace korvana::python {

/// An operation of the package, from its beginning to its end; it may call back into Python. The interpreter
/// does not wait for daemon threads: at its end `endWork` asks their operations to stop and waits for them,
/// and a thread that begins another one then, or ends one, sleeps until the process is gone, as a thread does
/// that waits for a lock nobody gives back.
///
/// Under the interpreter's lock.
class Working {
public:
    Working();
    ~Working();
    Working(const Working&) = delete;
    Working& operator=(const Working&) = delete;

    /// Whether operations of this thread are to stop, since the interpreter ends in another.
    [[nodiscard]] static bool isToStop();
};

/// What the interpreter calls when it ends. Returns early with a Python exception if a signal raises one.
void endWork();

} // namespace korvana::python
