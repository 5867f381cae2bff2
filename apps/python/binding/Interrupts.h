#pragma once

#include "host/session/SessionObserver.h"
#include "host/session/StopSignals.h"

#include <functional>
#include <stop_token>

namespace korvana::python {

/// Lets Python's signal handlers run while an analysis computes without the interpreter's lock: about thirty
/// times a second the computation takes the lock for a moment and looks for signals. A handler that raises,
/// as that of Ctrl-C does, stops the computation; the exception waits until `raisePending`.
///
/// Python runs handlers in its main thread only; an analysis in another thread computes on, while the main
/// thread handles the signal.
class Interrupts final : public SessionObserver {
public:
    explicit Interrupts(StopSignals& stops) : stops_(stops) {}
    ~Interrupts() override;
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;

    /// From here on, to `reset`, signals are looked for: what follows the part that shows its progress, such
    /// as sorting or drawing, may take longer than it.
    void computationStarted(unsigned units) override;
    void processEvents() override;

    /// Keeps the Python exception that was just raised, unless one is kept already, and stops the
    /// computation. Under the interpreter's lock, like the rest.
    void keepException();
    [[nodiscard]] bool isPending() const { return type_ != nullptr; }
    /// Makes the exception kept the current one of Python; returns whether there was one.
    bool raisePending();
    /// Forgets requests to stop from before.
    void reset();

private:
    void stopTicking();

    StopSignals& stops_;
    bool ticking_ = false;
    // As PyErr_Fetch gives them (PyObject); opaque here.
    void* type_ = nullptr;
    void* value_ = nullptr;
    void* trace_ = nullptr;
};

/// Calls `work`, which touches nothing of Python, without the interpreter's lock and so that Python's signal
/// handlers run meanwhile: what one raises asks the work to stop. Returns false when a Python exception is
/// raised for that reason; throws what the work throws.
[[nodiscard]] bool workInterruptibly(const std::function<void(const std::stop_token&)>& work);

} // namespace korvana::python
