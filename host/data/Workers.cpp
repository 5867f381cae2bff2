#include "host/data/Workers.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <mutex>
#include <sched.h>
#include <thread>
#include <vector>

namespace korvana {
namespace {

/// Hands out the pieces, and keeps the exception of the earliest one.
class Desk {
public:
    void serve(Worker& worker) {
        for (;;) {
            std::size_t piece = 0;
            {
                const std::lock_guard<std::mutex> lock(guard_);
                if (ended_) return;
                piece = next_++;
                try {
                    ended_ = !worker.take();
                } catch (...) {
                    fail(piece);
                }
                if (ended_) return;
            }
            try {
                worker.work();
            } catch (...) {
                const std::lock_guard<std::mutex> lock(guard_);
                fail(piece);
            }
        }
    }

    void rethrow() const {
        if (failure_) std::rethrow_exception(failure_);
    }

private:
    void fail(std::size_t piece) {
        ended_ = true;
        if (piece >= failedAt_) return;
        failedAt_ = piece;
        failure_ = std::current_exception();
    }

    std::mutex guard_;
    std::size_t next_ = 0;
    bool ended_ = false;
    std::size_t failedAt_ = std::numeric_limits<std::size_t>::max();
    std::exception_ptr failure_;
};

} // namespace

unsigned usableCores() {
    cpu_set_t allowed;
    // Fails where there are more cores than the set has places, which is many more than are used.
    const int cores = ::sched_getaffinity(0, sizeof allowed, &allowed) == 0
                          ? CPU_COUNT(&allowed)
                          : static_cast<int>(std::thread::hardware_concurrency());
    return static_cast<unsigned>(std::max(cores, 1));
}

void runWorkers(std::span<const std::unique_ptr<Worker>> workers) {
    Desk desk;
    {
        std::vector<std::jthread> helpers;
        try {
            for (std::size_t i = 1; i < workers.size(); ++i)
                helpers.emplace_back([&desk, &worker = *workers[i]] { desk.serve(worker); });
        } catch (const std::exception&) { // no further thread available: the others do the work
        }
        if (!workers.empty()) desk.serve(*workers.front());
    }
    desk.rethrow();
}

void forEachInOrder(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& work) {
    struct Counter final : Worker {
        Counter(std::size_t& next, std::size_t count, const std::function<void(std::size_t)>& work)
            : next_(next), count_(count), work_(work) {}
        bool take() override {
            mine_ = next_++;
            return mine_ < count_;
        }
        void work() override { work_(mine_); }

        std::size_t& next_;
        std::size_t count_;
        const std::function<void(std::size_t)>& work_;
        std::size_t mine_ = 0;
    };
    std::size_t next = 0;
    std::vector<std::unique_ptr<Worker>> workers;
    for (std::size_t i = 0; i < std::max<std::size_t>(1, std::min<std::size_t>(threads, count)); ++i)
        workers.push_back(std::make_unique<Counter>(next, count, work));
    runWorkers(workers);
}

} // namespace korvana
