#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <unistd.h>

#include "host/results/ChartDrawing.h"
#include "host/results/WorkApart.h"

namespace korvana {
namespace {

TEST(WorkApart, WhateverItsEndThereIsAnAnswer) {
    // For slow machines: only a process that never ends gets a short time.
    const auto drawing = [](auto how, int seconds = 60) {
        const Work work{"drawing", noMemoryToDraw, std::chrono::seconds{seconds}};
        return workApart(work, how).value_or(Answer{"", "no process"});
    };
    EXPECT_EQ(drawing([] { return Answer{"bytes", ""}; }).bytes, "bytes");
    const std::string large(std::size_t{5} << 20U, 'x'); // more than a pipe holds
    EXPECT_EQ(drawing([&] { return Answer{large, ""}; }).bytes, large);
    EXPECT_EQ(drawing([] { return Answer{"", "why"}; }).error, "why");
    EXPECT_EQ(drawing([]() -> Answer { throw std::bad_alloc(); }).error, noMemoryToDraw);
    EXPECT_EQ(drawing([]() -> Answer { throw 1; }).error, "drawing failed");
    EXPECT_EQ(drawing([]() -> Answer { _exit(0); }).error, noMemoryToDraw);
    const auto endless = []() -> Answer { pause(), _exit(1); };
    EXPECT_EQ(drawing(endless, 1).error, "drawing did not end within 1 seconds");
    for (const int signal : {SIGABRT, SIGSEGV, SIGKILL, SIGBUS}) {
        const Answer answer = drawing([signal]() -> Answer {
            std::raise(signal);
            return {"bytes", ""};
        });
        EXPECT_TRUE(answer.error.starts_with(noMemoryToDraw)) << answer.error;
    }
    // A stop ends the drawing even if the program handles the signal.
    const auto before = std::signal(SIGTERM, SIG_IGN);
    EXPECT_EQ(drawing([]() -> Answer {
                  std::raise(SIGTERM);
                  return {"bytes", ""};
              }).error,
              "drawing was stopped");
    std::signal(SIGTERM, before);
}

} // namespace
} // namespace korvana
