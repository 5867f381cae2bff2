#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>

namespace korvana {

/// The cores that this process may use, at least 1: its CPU affinity may allow fewer than there are.
unsigned usableCores();

/// One of several threads that share work consisting of pieces.
class Worker {
public:
    Worker() = default;
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    virtual ~Worker() = default;

    /// Fetches the next piece; false when there is none. Called for one worker at a time.
    virtual bool take() = 0;

    /// Does the piece that was fetched last, side by side with the other workers.
    virtual void work() = 0;
};

/// Lets the workers, each on a thread of its own, take and do all pieces. When something throws, no further
/// piece is taken and the exception of the earliest piece is thrown: the outcome is that of a plain loop. If
/// threads cannot be started, fewer workers do all the work.
void runWorkers(std::span<const std::unique_ptr<Worker>> workers);

/// Calls work(0), ..., work(count - 1), each once, on the given number of threads, as runWorkers does.
void forEachInOrder(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& work);

} // namespace korvana
