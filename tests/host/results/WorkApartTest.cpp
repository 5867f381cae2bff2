#include <chrono>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <unistd.h>
#include <vector>

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

/// Of a service, say: then files and pipes get the numbers of standard files.
TEST(WorkApart, NeedsNoStandardFiles) {
    const auto withoutThem = [](const std::vector<int>& closed) {
        for (const int standard : closed)
            ::close(standard);
        const std::string large(std::size_t{1} << 20U, 'x');
        const auto answer = workApart({"drawing", noMemoryToDraw, {}}, [&] { return Answer{large, ""}; });
        std::_Exit(answer && answer->bytes == large ? 0 : 1);
    };
    for (const auto& closed : std::vector<std::vector<int>>{{0}, {2}, {0, 1}, {1, 2}, {0, 1, 2}})
        EXPECT_EXIT(withoutThem(closed), ::testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace korvana
