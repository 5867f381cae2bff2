#pragma once

#include "apps/python/binding/Errors.h"
#include "apps/python/binding/Working.h"

#include <thread>
#include <unistd.h>

namespace korvana::python {

/// Lets one thread at a time into an application and its analysis. Operations that may take long release the
/// interpreter's lock, so that other threads run meanwhile; one of these that wants the same application is
/// refused. Touched only under the interpreter's lock.
class Gate {
public:
    /// Whether an operation of this thread goes on, which has called back into Python.
    [[nodiscard]] bool isInside() const { return uses_ > 0 && isOurs(); }

    /// Raises Busy where another thread is inside.
    void check() const {
        if (uses_ > 0 && !isOurs() && process_ == ::getpid())
            raise("Busy", "another thread works with this application or these results; wait until it has "
                          "done, or give each thread an application of its own");
    }

private:
    friend class Use;
    [[nodiscard]] bool isOurs() const { return thread_ == std::this_thread::get_id(); }

    int uses_ = 0;
    std::thread::id thread_;
    pid_t process_ = 0; ///< a forked process has none of the threads of the other
};

/// An operation on what is behind a gate; raises Busy where another thread is inside.
class Use {
public:
    explicit Use(Gate& gate) : gate_(gate) {
        gate.check();
        if (gate.uses_ == 0 || gate.process_ != ::getpid()) {
            gate.uses_ = 0;
            gate.thread_ = std::this_thread::get_id();
            gate.process_ = ::getpid();
        }
        ++gate.uses_;
    }
    ~Use() { --gate_.uses_; }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

private:
    Working working_;
    Gate& gate_;
};

/// An operation that changes the data: refused while the analysis waits for the answer to a question.
class Change : public Use {
public:
    explicit Change(Gate& gate) : Use(requireOutside(gate)) {}

private:
    static Gate& requireOutside(Gate& gate) {
        gate.check();
        if (gate.isInside())
            raise("Busy",
                  "the analysis waits for an answer; its data can be changed when the call that asked "
                  "has ended");
        return gate;
    }
};

} // namespace korvana::python
