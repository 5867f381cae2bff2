// Every memory request of a whole analysis refused in turn, every stop question answered yes in turn, every
// allocation of the C++ runtime failing in turn: nothing may be left behind, and the next run must come
// through.

#include "module/resources/Resources.h"
#include "module/resources/StringIds.h"
#include "tests/module/kaplan/KaplanFixture.h"

#include <gtest/gtest.h>

namespace ozm::survival {
namespace {

class FaultsTest : public test::KaplanFixture {
protected:
    void SetUp() override {
        KaplanFixture::SetUp();
        Cases(50000); // for the sort of many, with ties among them
    }
    void Cases(int count) {
        auto& times = host.columns[0].values;
        auto& codes = host.columns[1].values;
        times.clear();
        codes.clear();
        for (int i = 0; i < count; ++i) {
            times.push_back((i * 31) % 977);
            codes.push_back(i % 2);
        }
    }
    static constexpr int outputs[] = {KaplanSummary, KaplanPercentiles, KaplanPlot1,
                                      KaplanPlot2,   KaplanPlot3,       KaplanCurve};
    /// From the specification's OK through every output and back; true when it reached the results.
    bool Whole() {
        if (host.Press(analysis, ControlOk) != StepKaplanResults) return false;
        for (const int button : outputs)
            host.Dialog().Press(button);
        EXPECT_EQ(host.Press(analysis, ControlCancel), StepSpecifyKaplan);
        return true;
    }
};

TEST_F(FaultsTest, EveryMemoryRequestRefusedInTurn) {
    Specify();
    const int refused = RefuseEveryRequest(
        [this] { Whole(); }, [this] { EXPECT_EQ(host.messages.front().id, StrKaplanNoMemory); });
    EXPECT_GE(refused, 7 + 8 + 5); // arrays of the run, of the tie order, of the table
    EXPECT_TRUE(Whole());
}

TEST_F(FaultsTest, EveryStopQuestionAnsweredYesInTurn) {
    // Arrays of the host's and every question, one by one; then the questions of the large sorts, which begin
    // where the reading pass has asked once per case.
    for (const int cases : {2600, 50000}) {
        Cases(cases);
        host.stopAt = 0;
        Specify();
        host.questions = 0;
        ASSERT_TRUE(Whole());
        const int all = host.questions;
        EXPECT_GE(all, cases);
        for (int n = cases == 2600 ? 1 : cases; n <= all; ++n) {
            host.messages.clear();
            host.questions = 0;
            host.stopAt = n;
            const bool results = Whole();
            EXPECT_EQ(host.outstanding, 0) << "question " << n;
            if (n <= cases) {
                EXPECT_FALSE(results) << "question " << n;
            }
            if (!results) {
                EXPECT_TRUE(host.messages.empty()) << "question " << n;
                EXPECT_EQ(State().results.Valid(), 0);
            }
        }
    }
    host.stopAt = 0;
    EXPECT_TRUE(Whole());
}

TEST_F(FaultsTest, EveryAllocationOfTheRuntimeFailingInTurn) {
    Cases(2600);
    Specify();
    FailEveryAllocationOfTheRun(KaplanResultsTemplate().number,
                                [this] { return State().results.Valid() > 0 ? 7 : 0; });
    for (const int button : outputs)
        FailEveryAllocation(button, [this] { EXPECT_EQ(host.outstanding, 7); }); // the arrays of the run
    EXPECT_EQ(host.Press(analysis, ControlCancel), StepSpecifyKaplan);
    EXPECT_EQ(host.outstanding, 0);
    EXPECT_TRUE(Whole());
}

} // namespace
} // namespace ozm::survival
