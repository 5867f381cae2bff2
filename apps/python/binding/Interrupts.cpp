#include "apps/python/binding/Interrupts.h"

#include "apps/python/binding/Module.h"
#include "apps/python/binding/Working.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace korvana::python {
namespace {

/// Asks for events at intervals, while there is somebody to ask. Its thread touches nothing of Python. It is
/// never destroyed, since the program may end at any moment; a forked process makes its own.
class Ticker {
public:
    Ticker() : process_(::getpid()) {
        std::thread([this] { tick(); }).detach();
    }

    /// That of the process, made when it is first needed; nullptr where no thread can be started: then
    /// signals wait for the end of the computation.
    static Ticker* ofProcess() {
        static Ticker* own = nullptr;
        if (own == nullptr || own->process_ != ::getpid()) {
            try {
                own = new Ticker;
            } catch (const std::system_error&) {
                return nullptr;
            }
        }
        return own;
    }

    void set(StopSignals* stops) {
        const std::lock_guard lock(mutex_);
        stops_ = stops;
        if (stops != nullptr) wanted_.notify_one();
    }

private:
    [[noreturn]] void tick() {
        std::unique_lock lock(mutex_);
        for (;;) {
            wanted_.wait(lock, [this] { return stops_ != nullptr; });
            lock.unlock();
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            lock.lock();
            if (stops_ != nullptr) stops_->askForEvents();
        }
    }

    pid_t process_;
    std::mutex mutex_;
    std::condition_variable wanted_;
    StopSignals* stops_ = nullptr;
};

/// A thread that does one piece of work.
class Worker {
public:
    explicit Worker(const std::function<void(const std::stop_token&)>& work)
        : thread_([this, &work] {
              try {
                  work(stop_.get_token());
              } catch (...) {
                  fault_ = std::current_exception();
              }
              const std::lock_guard lock(mutex_);
              done_ = true;
              ended_.notify_one();
          }) {}

    bool waitFor(std::chrono::milliseconds time) {
        std::unique_lock lock(mutex_);
        return ended_.wait_for(lock, time, [this] { return done_; });
    }
    void stop() { stop_.request_stop(); }
    std::exception_ptr join() {
        thread_.join();
        return fault_;
    }

private:
    std::stop_source stop_;
    std::exception_ptr fault_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool done_ = false;
    std::thread thread_;
};

PyObject* object(void* kept) {
    return static_cast<PyObject*>(kept);
}

} // namespace

Interrupts::~Interrupts() {
    stopTicking();
    Py_XDECREF(object(type_));
    Py_XDECREF(object(value_));
    Py_XDECREF(object(trace_));
}

void Interrupts::computationStarted(unsigned /*units*/) {
    if (std::exchange(ticking_, true)) return;
    if (Ticker* const ticker = Ticker::ofProcess()) ticker->set(&stops_);
}

void Interrupts::stopTicking() {
    if (!std::exchange(ticking_, false)) return;
    if (Ticker* const ticker = Ticker::ofProcess()) ticker->set(nullptr);
}

void Interrupts::processEvents() {
    const PyGILState_STATE state = PyGILState_Ensure();
    if (PyErr_CheckSignals() != 0) keepException();
    if (Working::isToStop()) stops_.requestStop();
    PyGILState_Release(state);
}

void Interrupts::keepException() {
    stops_.requestStop();
    if (isPending()) return PyErr_Clear();
    PyObject* type = nullptr;
    PyObject* value = nullptr;
    PyObject* trace = nullptr;
    PyErr_Fetch(&type, &value, &trace);
    type_ = type;
    value_ = value;
    trace_ = trace;
}

bool Interrupts::raisePending() {
    if (!isPending()) return false;
    PyErr_Restore(object(type_), object(value_), object(trace_));
    type_ = value_ = trace_ = nullptr;
    return true;
}

void Interrupts::reset() {
    stopTicking();
    stops_.clear(StopSignals::External);
    stops_.clear(StopSignals::Display);
    stops_.clear(StopSignals::Events);
}

bool workInterruptibly(const std::function<void(const std::stop_token&)>& work) {
    std::unique_ptr<Worker> worker;
    try {
        worker = std::make_unique<Worker>(work);
    } catch (const std::system_error&) { // no thread to be had: then nothing interrupts it
        const py::gil_scoped_release others;
        work({});
        return true;
    }
    bool interrupted = false;
    for (bool done = false; !done;) {
        {
            const py::gil_scoped_release others;
            done = worker->waitFor(std::chrono::milliseconds(30));
        }
        if (!interrupted && PyErr_CheckSignals() != 0) {
            interrupted = true;
            worker->stop();
        }
        if (Working::isToStop()) worker->stop();
    }
    const std::exception_ptr fault = worker->join();
    if (interrupted) return false;
    if (fault) std::rethrow_exception(fault);
    return true;
}

} // namespace korvana::python
