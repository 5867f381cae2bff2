#include "apps/python/binding/Working.h"

#include "apps/python/binding/Module.h"
#include "host/results/WritingWatch.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <unistd.h>

namespace korvana::python {
namespace {

using namespace std::chrono_literals;

/// The operations of this process. Never destroyed: threads may sleep beyond its end.
struct Works {
    std::mutex mutex;
    std::condition_variable ended;
    int count = 0;
    pid_t process = ::getpid(); ///< a forked one has none of the other's threads
    bool ending = false;
    std::thread::id ender;
};

Works& works() {
    static auto* const all = new Works; // NOLINT(cppcoreguidelines-owning-memory)
    return *all;
}

thread_local int depth = 0;

/// Whatever this thread needs of memory for its variables. The system ends the process when that cannot be
/// had at their first use, such as when an exception is thrown because memory is short.
void touchThreadVariables() {
    static_cast<void>(std::current_exception()); // asks for the variables of exceptions
    static_cast<void>(WritingWatch::current());
}

[[noreturn]] void sleepForGood() {
    PyEval_SaveThread();
    for (;;)
        std::this_thread::sleep_for(1h);
}

} // namespace

bool Working::isToStop() {
    Works& all = works();
    const std::lock_guard lock(all.mutex);
    return all.ending && all.ender != std::this_thread::get_id();
}

Working::Working() {
    if (depth++ > 0) return;
    touchThreadVariables();
    if (isToStop()) sleepForGood();
    Works& all = works();
    const std::lock_guard lock(all.mutex);
    if (all.process != ::getpid()) {
        all.process = ::getpid();
        all.count = 0;
    }
    ++all.count;
}

Working::~Working() {
    if (--depth > 0) return;
    {
        Works& all = works();
        const std::lock_guard lock(all.mutex);
        if (all.process == ::getpid() && all.count > 0) --all.count;
        all.ended.notify_all();
    }
    if (isToStop()) sleepForGood();
}

void endWork() {
    Works& all = works();
    {
        const std::lock_guard lock(all.mutex);
        if (all.process != ::getpid()) return;
        all.ending = true;
        all.ender = std::this_thread::get_id();
    }
    for (bool done = false; !done;) {
        {
            const py::gil_scoped_release others;
            std::unique_lock lock(all.mutex);
            // What is going on around this very call does not end before it.
            done = all.ended.wait_for(lock, 30ms, [&all] { return all.count <= (depth > 0 ? 1 : 0); });
        }
        if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    }
}

} // namespace korvana::python
