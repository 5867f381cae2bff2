#include "module/survdata/CaseReader.h"
#include "tests/module/FakeHost.h"

#include <gtest/gtest.h>

namespace ozm::survival {
namespace {

using test::none;

struct Reading {
    Status status;
    std::vector<double> complete;
    std::vector<double> censored;
    std::vector<int> cases;
    ReadingCounts counts;
};

class CaseReaderTest : public testing::Test {
protected:
    test::FakeHost host;
    CSurvival analysis{&host};
    SharedSettings settings;

    void Times(std::vector<int> variables, int censoring) {
        settings.timeVariables = static_cast<std::int16_t>(variables.size());
        settings.List(ListSurvivalTimes) = std::move(variables);
        settings.List(ListCensoring) = {censoring};
        settings.completeCode = 1;
        settings.censoredCode = 0;
    }
    Reading Read(std::int32_t capacity = 1000) {
        Reading reading{};
        CaseReader reader(analysis, settings);
        reading.status = reader.Read(capacity, [&](const Observation& o) {
            (o.complete ? reading.complete : reading.censored).push_back(o.time);
            reading.cases.push_back(o.caseNumber);
        });
        reading.counts = reader.Counts();
        return reading;
    }
};

TEST_F(CaseReaderTest, SkipsWhatIsNoObservationAndSaysWhy) {
    host.columns = {{"t", {5, -9, none, 2e15, -1, 0, 7, 8, -1e15, 3}, -9},
                    {"d", {1, 1, 1, 1, 1, 0, 2, none, 0, 0}}};
    host.selected = {true, true, true, true, true, true, true, true, true, false};
    Times({1}, 2);
    const Reading r = Read();
    EXPECT_EQ(r.status, Status::TooFewValid); // two valid ones are refused
    EXPECT_EQ(r.complete, std::vector<double>{5});
    EXPECT_EQ(r.censored, std::vector<double>{0}); // a time of zero counts
    EXPECT_EQ(r.cases, (std::vector<int>{1, 6}));
    EXPECT_EQ(r.counts.missing, 3);
    EXPECT_EQ(r.counts.negativeTime, 2);
    EXPECT_EQ(r.counts.otherCode, 2);
    EXPECT_EQ(r.counts.casesRead, 9);
}

TEST_F(CaseReaderTest, MissingCodesAreComparedInSinglePrecision) {
    const double rounded = static_cast<double>(0.1F);
    host.columns = {{"t", {0.1, rounded, 1, 2}, 0.1}, {"d", {1, 1, 1, 1}}};
    Times({1}, 2);
    EXPECT_EQ(Read().complete, (std::vector<double>{0.1, 1, 2}));
    host.columns[0].missingCode = 1e300; // beyond single precision: equals nothing
    EXPECT_EQ(Read().complete.size(), 4U);
}

TEST_F(CaseReaderTest, WeightsOfTwoAndMoreRepeatACase) {
    host.columns = {
        {"t", {1, 2, 3, 4, 5, -6}}, {"d", {1, 0, 1, 1, 1, 1}}, {"w", {3, 2.5, 1.9, 0.5, none, 1e18}}};
    host.weight = 3;
    Times({1}, 2);
    const Reading r = Read();
    EXPECT_EQ(r.status, Status::Success);
    EXPECT_EQ(r.cases, (std::vector<int>{1, 1, 1, 2, 2, 2, 3, 4, 5}));
    EXPECT_EQ(r.counts.valid, 9);
    EXPECT_EQ(r.counts.distinctValid, 5);
    EXPECT_EQ(r.counts.distinctCasesRead, 6);
    EXPECT_EQ(r.counts.casesRead,
              std::numeric_limits<std::int32_t>::max()); // 1e18 copies are counted, not walked
    EXPECT_EQ(r.counts.missingWeight, 1);
}

TEST_F(CaseReaderTest, CapacityIsAskedBeforeACaseOrCopyIsExamined) {
    host.columns = {{"t", {1, 2, 3, 4}}, {"d", {1, 1, 1, 9}}, {"w", {1, 1, 2, 1}}};
    Times({1}, 2);
    EXPECT_EQ(Read(3).status, Status::TooManyCases); // even though the fourth case has another code
    host.selected = {true, true, true, false};
    EXPECT_EQ(Read(3).status, Status::Success);
    host.weight = 3;
    EXPECT_EQ(Read(3).status, Status::TooManyCases);
    EXPECT_EQ(Read(3).cases.size(), 3U);
}

TEST_F(CaseReaderTest, TwoVariablesAreStartAndEnd) {
    host.columns = {{"start", {10, 20, 5, 1}}, {"end", {15, 20, 4, none}}, {"d", {1, 1, 1, 1}}};
    Times({1, 2}, 3);
    const Reading r = Read();
    EXPECT_EQ(r.complete, (std::vector<double>{5, 0}));
    EXPECT_EQ(r.counts.negativeTime, 1);
}

TEST_F(CaseReaderTest, SixVariablesAreTwoDates) {
    // month, day, year of both ends; two-digit years mean 19xx; parts are truncated; 32000 and more count as
    // 0.
    host.columns = {{"m0", {1, 13, 1, 1, 2.9}}, {"d0", {15, 1, 1, 1, 28}}, {"y0", {95, 95, 0.5, 1995, 1996}},
                    {"m1", {1, 1, 1, 1, 3}},    {"d1", {20, 1, 1, 1, 1}},  {"y1", {95, 95, 95, 32000, 96}},
                    {"d", {1, 1, 1, 1, 0}}};
    Times({1, 2, 3, 4, 5, 6}, 7);
    const Reading r = Read();
    EXPECT_EQ(r.complete, std::vector<double>{5});
    EXPECT_EQ(r.censored, std::vector<double>{2}); // 28 February to 1 March of a leap year
    EXPECT_EQ(r.counts.invalidDate, 3);            // month 13, year 0 (0.5), year out of range
}

TEST_F(CaseReaderTest, GroupsOfTwoCodesAndOverlappingCensoringCodes) {
    host.columns = {{"t", {1, 2, 3, 4}}, {"d", {1, 1, 1, 1}}, {"g", {7, 8, 9, 7}}};
    Times({1}, 2);
    settings.censoredCode = 1; // both codes match: complete wins
    settings.List(ListGrouping) = {3};
    settings.groupCodes = {7, 8};
    CaseReader reader(analysis, settings, CaseReader::Groups::TwoCodes);
    std::vector<int> groups;
    EXPECT_EQ(reader.Read(10,
                          [&](const Observation& o) {
                              EXPECT_TRUE(o.complete);
                              groups.push_back(o.group);
                          }),
              Status::Success);
    EXPECT_EQ(groups, (std::vector<int>{1, 2, 1}));
}

TEST_F(CaseReaderTest, EndsWhenTheHostCannotGoOnOrTheUserStops) {
    host.columns = {{"t", {1, 2, 3, 4}}, {"d", {1, 1, 1, 1}}};
    Times({1}, 2);
    host.unreadableFrom = 4;
    EXPECT_EQ(Read().status, Status::Stopped);
    host.unreadableFrom = 100;
    host.stopAt = host.questions + 2;
    EXPECT_EQ(Read().status, Status::Stopped);
}

} // namespace
} // namespace ozm::survival
