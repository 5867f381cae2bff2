// The module under the session's own services, with one fault at a time: the n-th allocation refused, the
// n-th stop test answered, the n-th output refused. Each is repeated with n + 1 until a run comes through
// clean.

#include "apps/cli/Script.h"
#include "apps/cli/commands/SurvivalModule.h"
#include "host/data/ReadData.h"
#include "host/session/Session.h"

#include <gtest/gtest.h>

namespace korvana::cli {
namespace {

using List = ozm::AutomationValue::List;

/// Runs the analysis with every output; answers whether it reached its results.
bool runAll(Session& session) {
    session.data().open(readData(std::string{KORVANA_SOURCE_DIR} + "/examples/data/aml.csv"));
    session.start();
    try {
        Script script(session);
        script.put("TypeOfAnalysis", 2);
        script.press("OK");
        script.put("Variables", List{List{1}, List{2}});
        script.put("CodeForCompleteResponses", 1);
        script.put("CodeForCensoredResponses", 0);
        script.press("OK");
        if (!script.isAt("SurKaplanMeierResults")) return false;
        for (const char* output :
             {"Summary", "PercentilesOfSurvivalFunction", "PlotOfSurvivalTimesVsCumProportionSurviving",
              "PlotOfLogSurvivalTimesVsCumProportionSurviving",
              "PlotOfLogSurvivalTimesVsLogCumProportionSurviving"})
            script.press(output);
        script.press("Cancel");
        return true;
    } catch (const ScriptError&) {
        return false;
    }
}

struct Countdown {
    int left = 0;
    bool hit = false;
    bool now() {
        hit = hit || left == 1;
        return left-- == 1;
    }
};

struct RefusingMemory final : SessionMemory {
    bool AllocMem(void*& memory, std::size_t size) override {
        memory = nullptr;
        return !fault.now() && SessionMemory::AllocMem(memory, size);
    }
    Countdown fault;
};

TEST(FaultsTest, ARefusedAllocationIsAMessageAndLeaksNothing) {
    int n = 1;
    for (bool clean = false; !clean; ++n) {
        RefusingMemory memory;
        memory.fault.left = n;
        SessionOptions options;
        options.services.memory = &memory;
        Session session(loadSurvivalModule(), options);
        const bool reached = runAll(session);
        clean = !memory.fault.hit;
        if (clean) {
            EXPECT_TRUE(reached);
            EXPECT_EQ(session.book().outputs.size(), 7U);
        } else {
            EXPECT_FALSE(session.book().messages.empty()) << "allocation " << n;
        }
        session.close();
        EXPECT_EQ(memory.outstanding(), 0U) << "allocation " << n;
        ASSERT_LT(n, 1000);
    }
    EXPECT_GT(n, 2) << "no allocation was refused";
}

struct StoppingProgress final : SessionProgress {
    using SessionProgress::SessionProgress;
    bool pcancel() override { return fault.now(); }
    Countdown fault;
};

TEST(FaultsTest, AStopAtAnyPollIsQuiet) {
    // The run asks once per case; a stop behind it leaves out the output that was being made.
    constexpr int cases = 23;
    int n = 1;
    for (bool clean = false; !clean; ++n) {
        SessionParts parts;
        StoppingProgress progress(parts);
        progress.fault.left = n;
        SessionOptions options;
        options.services.progress = &progress;
        Session session(loadSurvivalModule(), options);
        const bool reached = runAll(session);
        clean = !progress.fault.hit;
        EXPECT_EQ(reached, n > cases) << "poll " << n;
        EXPECT_TRUE(session.book().messages.empty()) << "poll " << n;
        session.close();
        EXPECT_EQ(session.outstandingAllocations(), 0U) << "poll " << n;
        ASSERT_LT(n, 10000);
    }
    EXPECT_GT(n, cases) << "every case is polled";
}

struct RefusingCharts final : SessionCharts {
    using SessionCharts::SessionCharts;
    short NewGeneralMultipleChartLongEx(const ozm::CChartInfo&) override { return 1; }
};

TEST(FaultsTest, AChartThatIsRefusedIsAMessage) {
    SessionParts parts;
    RefusingCharts charts(parts);
    SessionOptions options;
    options.services.charts = &charts;
    Session session(loadSurvivalModule(), options);
    EXPECT_TRUE(runAll(session));
    ASSERT_EQ(session.book().messages.size(), 3U);
    EXPECT_EQ(session.book().messages[0].text, " Error in graphics routine.");
}

} // namespace
} // namespace korvana::cli
