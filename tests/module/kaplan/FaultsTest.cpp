// Every memory request of a whole analysis refused in turn, every stop question answered yes in turn, every
// allocation of the C++ runtime failing in turn: nothing may be left behind, and the next run must come
// through.

#include "module/resources/StringIds.h"
#include "tests/module/FailingNew.h"
#include "tests/module/kaplan/KaplanFixture.h"

#include <gtest/gtest.h>

namespace ozm::survival {
namespace {

class FaultsTest : public test::KaplanFixture {
protected:
    void SetUp() override {
        KaplanFixture::SetUp();
        // Enough cases for arrays of the host's, and for the sort of many with ties among them.
        auto& times = host.columns[0].values;
        auto& codes = host.columns[1].values;
        times.clear();
        codes.clear();
        for (int i = 0; i < 50000; ++i) {
            times.push_back((i * 31) % 977);
            codes.push_back(i % 2);
        }
    }
    void EveryOutput() {
        for (const int button : {KaplanSummary, KaplanPercentiles, KaplanPlot1, KaplanPlot2, KaplanPlot3})
            host.Dialog().Press(button);
    }
    /// From the specification's OK through every output and back; true when it reached the results.
    bool Whole() {
        if (host.Press(analysis, ControlOk) != StepKaplanResults) return false;
        EveryOutput();
        EXPECT_EQ(host.Press(analysis, ControlCancel), StepSpecifyKaplan);
        return true;
    }
};

TEST_F(FaultsTest, EveryMemoryRequestRefusedInTurn) {
    Specify();
    int refused = 0;
    for (int n = 1;; ++n) {
        host.messages.clear();
        host.requests = 0;
        host.refuseRequest = n;
        Whole();
        EXPECT_EQ(host.outstanding, 0) << "request " << n;
        if (host.requests < n) break;
        ++refused;
        EXPECT_EQ(host.messages.front().id, StrKaplanNoMemory) << "request " << n;
        ASSERT_LT(n, 1000);
    }
    EXPECT_GE(refused, 7 + 8 + 5); // arrays of the run, of the tie order, of the table
    host.refuseRequest = 0;
    EXPECT_TRUE(Whole());
}

TEST_F(FaultsTest, EveryStopQuestionAnsweredYes) {
    // The reading pass asks once per case: its first and last questions, then all that follow.
    Specify();
    host.questions = 0;
    Whole();
    const int all = host.questions;
    EXPECT_GT(all, 50000);
    for (int n = 1; n <= all; n += n < 20 || n > 49990 ? 1 : 977) {
        host.messages.clear();
        host.sheets.clear();
        host.questions = 0;
        host.stopAt = n;
        const bool results = Whole();
        EXPECT_EQ(results, n > 50000 && results) << "a stop while reading leads to no results";
        EXPECT_EQ(host.outstanding, 0) << "question " << n;
        if (!results) {
            EXPECT_TRUE(host.messages.empty()) << "question " << n;
        }
        host.stopAt = 0;
    }
    EXPECT_TRUE(Whole());
}

TEST_F(FaultsTest, EveryAllocationOfTheRuntimeFailingInTurn) {
    Specify();
    bool through = false;
    for (long n = 1; n < 5000 && !through; ++n) {
        host.nextStep = -1;
        test::failingNew = n;
        host.Dialog().Press(ControlOk);
        through = test::failingNew > 0;
        test::failingNew = 0;
        if (host.nextStep == -1) continue; // refused before it could close: the dialog stays as it was
        const int step = host.Go(analysis, host.nextStep);
        if (step != StepKaplanResults) continue;
        for (const int button : {KaplanSummary, KaplanPercentiles, KaplanPlot1}) {
            test::failingNew = n;
            host.Dialog().Press(button);
            test::failingNew = 0;
        }
        EXPECT_EQ(host.Press(analysis, ControlCancel), StepSpecifyKaplan);
        EXPECT_EQ(host.outstanding, 0) << "allocation " << n;
    }
    EXPECT_TRUE(through);
    EXPECT_TRUE(Whole());
}

} // namespace
} // namespace ozm::survival
