#include "host/data/Workers.h"

#include <atomic>
#include <exception>
#include <limits>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace korvana {

void forEachInOrder(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next{0};
    std::atomic<bool> failed{false};
    std::mutex guard;
    std::size_t failedAt = std::numeric_limits<std::size_t>::max();
    std::exception_ptr failure;
    const auto run = [&] {
        while (!failed) {
            const std::size_t i = next++;
            if (i >= count) return;
            try {
                work(i);
            } catch (...) {
                failed = true;
                const std::lock_guard<std::mutex> lock(guard);
                if (i < failedAt) {
                    failedAt = i;
                    failure = std::current_exception();
                }
            }
        }
    };
    {
        std::vector<std::jthread> helpers;
        try {
            for (unsigned i = 1; i < threads && i < count; ++i)
                helpers.emplace_back(run);
        } catch (const std::system_error&) { // no further thread to be had: this one does the work
        }
        run();
    }
    if (failure) std::rethrow_exception(failure);
}

} // namespace korvana
