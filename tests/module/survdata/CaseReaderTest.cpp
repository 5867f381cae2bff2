#include "module/survdata/CaseReader.h"
#include "module/survdata/InputHeader.h"
#include "module/survdata/ReadingNotes.h"
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
    host.columns = {{"t", {5, -9, none, 2e15, -1, 0, 7, 8, -1e15, 3, none}, -9},
                    {"d", {1, 1, 1, 1, 1, 0, 2, none, 0, 0, 7}, 7}};
    host.selected = {true, true, true, true, true, true, true, true, true, false, true};
    Times({1}, 2);
    const Reading r = Read();
    EXPECT_EQ(r.status, Status::TooFewValid); // two valid ones are refused
    EXPECT_EQ(r.complete, std::vector<double>{5});
    EXPECT_EQ(r.censored, std::vector<double>{0}); // a time of zero counts
    EXPECT_EQ(r.cases, (std::vector<int>{1, 6}));
    EXPECT_EQ(r.counts.casesRead, 10);
    EXPECT_EQ(r.counts.LeftOut(), 8);
    EXPECT_EQ(ReadingNotes(analysis, settings, r.counts),
              std::vector<std::string>{
                  "8 of 10 selected cases left out: 2 with no value of 'd', 1 with a "
                  "code of 'd' other than 1 or 0, 2 with no value of 't', 1 with a value of 't' "
                  "beyond 1e15, 2 with a negative survival time."});
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
    EXPECT_EQ(r.counts.distinctValid + static_cast<double>(r.counts.LeftOut()), 6);
    host.columns[2].values = {0, -1, 1, 2, 2.0000001, 1e18}; // the last on a case that is left out
    EXPECT_EQ(Read().cases, (std::vector<int>{1, 2, 3, 4, 4, 5, 5, 5}));
}

TEST_F(CaseReaderTest, WeightsThatDoSomethingElseAreTold) {
    host.columns = {{"t", {1, 2, 3, 4, 5, 6, 7}}, {"d", {1, 0, 1, 1, 1, 1, 9}}, {"w", {}}};
    host.weight = 3;
    Times({1}, 2);
    const auto notes = [&](std::vector<double> weights) {
        host.columns[2].values = std::move(weights);
        return ReadingNotes(analysis, settings, Read().counts);
    };
    const std::string leftOut = "1 of 7 cases left out: 1 with a code of 'd' other than 1 or 0.";
    EXPECT_EQ(notes({1, 2, 3, 1, 2, 1, none}), std::vector<std::string>{leftOut});
    EXPECT_EQ(notes({0, none, 2.0000001, 0.5, 1, 1, 0}),
              (std::vector<std::string>{leftOut, "1 case without a weight in 'w' counts once.",
                                        "1 case with a weight of 0 or less in 'w' counts once.",
                                        "1 case with a weight below 2 in 'w' that is not 1 counts once.",
                                        "1 case with a weight in 'w' that is not a whole number: it is "
                                        "rounded up (2.1 would count three times)."}));
    EXPECT_EQ(notes({0, -1, 0, none, none, 1, 1})[2],
              "3 cases with a weight of 0 or less in 'w' count once each.");
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
    EXPECT_EQ(ReadingNotes(analysis, settings, r.counts),
              (std::vector<std::string>{
                  "Two time variables are start and end: the survival time is 'end' - 'start'.",
                  "2 of 4 cases left out: 1 with no value of 'start' or 'end', 1 with 'end' "
                  "before 'start'."}));
}

TEST_F(CaseReaderTest, SixVariablesAreTwoDates) {
    // month, day, year of both ends; two-digit years mean 19xx; parts are truncated; 32000 and more count as
    // 0.
    host.columns = {{"m0", {1, 13, 1, 1, 2.9, 12, 12, 1, 1}},
                    {"d0", {15, 1, 1, 1, 28, 31, 31, 0, 1}},
                    {"y0", {95, 95, 0.5, 1995, 1996, 99, 100, 95, 95}},
                    {"m1", {1, 1, 1, 1, 3, 1, 1, 1, 0}},
                    {"d1", {20, 1, 1, 1, 1, 1, 1, 1, 1}},
                    {"y1", {95, 95, 95, 32000, 96, 1900, 101, 95, 95}},
                    {"d", {1, 1, 1, 1, 0, 1, 1, 1, 1}}};
    Times({1, 2, 3, 4, 5, 6}, 7);
    const Reading r = Read();
    // The year 100 is that year; day 0 is the day before the first.
    EXPECT_EQ(r.complete, (std::vector<double>{5, 1, 1}));
    EXPECT_EQ(r.censored, std::vector<double>{2}); // 28 February to 1 March of a leap year
    EXPECT_EQ(r.counts.invalidDate, 4);            // months 13 and 0, year 0 (0.5), year out of range
    EXPECT_EQ(r.counts.negativeTime, 1);           // 99 is 1999, after 1900
}

TEST_F(CaseReaderTest, AsManyGroupsAsThereAreCodes) {
    host.columns = {{"t", {}}, {"d", {}}, {"g", {}}};
    for (int g = 20000; g > 0; --g) {
        host.columns[0].values.push_back(g);
        host.columns[1].values.push_back(1);
        host.columns[2].values.push_back(g);
        if (g > 1) settings.groupCodes.push_back(g);
    }
    settings.List(ListGrouping) = {3};
    Times({1}, 2);
    CaseReader reader(analysis, settings, CaseReader::Groups::ByCodes);
    int next = 0;
    EXPECT_EQ(reader.Read(30000, [&](const Observation& o) { EXPECT_EQ(o.group, ++next); }), Status::Success);
    EXPECT_EQ(next, 19999);
    const std::vector<std::string> notes = ReadingNotes(analysis, settings, reader.Counts());
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_TRUE(notes[0].ends_with(
        "'g' other than 20000, 19999, 19998, 19997, 19996, 19995, 19994, 19993, 19992, 19991, "
        "19990, 19989 or 19987 more."))
        << notes[0];
    // The header lists them all; two also have names.
    settings.analysisType = AnalysisType::MultipleSamples;
    WriteInputHeader(analysis, settings);
    EXPECT_NE(host.report.find("Variable with group codes: g\n           20000\n           19999\n"),
              std::string::npos);
    EXPECT_TRUE(host.report.ends_with("               2\n"));
    // A table of survival times has nothing of this.
    settings.analysisType = AnalysisType::LifeTables;
    settings.inputDataType = InputDataType::Table;
    settings.List(ListIntervalLimits) = {1};
    host.report.clear();
    WriteInputHeader(analysis, settings);
    EXPECT_EQ(host.report, "Input data is a table of survival times\nVariables:\n    t\n    --\n    --\n");
}

TEST_F(CaseReaderTest, GroupsOfTwoCodesAndOverlappingCensoringCodes) {
    host.columns = {{"t", {1, 2, 3, 4, 5}}, {"d", {1, 1, 1, 1, 1}}, {"g", {7, 8, 9, 7, none}}};
    host.columns[2].labels = {{7, "treated"}};
    Times({1}, 2);
    settings.censoredCode = 1; // both codes match: complete wins
    settings.List(ListGrouping) = {3};
    settings.groupCodes = {7, 8};
    CaseReader reader(analysis, settings, CaseReader::Groups::ByCodes);
    std::vector<int> groups;
    EXPECT_EQ(reader.Read(10,
                          [&](const Observation& o) {
                              EXPECT_TRUE(o.complete);
                              groups.push_back(o.group);
                          }),
              Status::Success);
    EXPECT_EQ(groups, (std::vector<int>{1, 2, 1}));
    EXPECT_EQ(
        ReadingNotes(analysis, settings, reader.Counts()),
        std::vector<std::string>{"2 of 5 cases left out: 1 with no value of 'g', 1 with a code of 'g' other "
                                 "than 7 (treated) or 8."});
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

TEST_F(CaseReaderTest, NoCaseIsLostWhereManyAreReadAtOnce) {
    Times({1}, 2);
    for (const int cases : {511, 512, 513, 1024, 1025, 1300}) {
        host.columns = {{"t", {}}, {"d", {}}};
        host.selected.clear();
        std::vector<int> expected;
        for (int n = 1; n <= cases; ++n) {
            host.columns[0].values.push_back(n % 11 == 0 ? none : n);
            host.columns[1].values.push_back(n % 3 == 0 ? 0.0 : n % 17 == 0 ? 5.0 : 1.0);
            host.selected.push_back(n % 7 != 0);
            if (n % 11 != 0 && n % 7 != 0 && (n % 3 == 0 || n % 17 != 0)) expected.push_back(n);
        }
        const auto valid = static_cast<std::int32_t>(expected.size());
        const Reading all = Read(valid + 1);
        EXPECT_EQ(all.status, Status::Success);
        EXPECT_EQ(all.cases, expected);
        const Reading fewer = Read(valid - 1);
        EXPECT_EQ(fewer.status, Status::TooManyCases);
        EXPECT_EQ(fewer.cases, std::vector<int>(expected.begin(), expected.end() - 1));
        host.unreadableFrom = expected[static_cast<std::size_t>(valid) - 5];
        EXPECT_EQ(Read(valid).cases, std::vector<int>(expected.begin(), expected.end() - 5));
        host.unreadableFrom = std::numeric_limits<int>::max();
    }
}

TEST_F(CaseReaderTest, AStopIsNoticedAtTheNextCase) {
    host.columns = {{"t", std::vector<double>(2000, 1.0)}, {"d", std::vector<double>(2000, 1.0)}};
    Times({1}, 2);
    std::atomic<unsigned> word = 0;
    host.stopWord = &word;
    for (const int last : {1, 100, 512, 513, 1400}) {
        word = 0;
        host.stopAt = 0;
        int reached = 0;
        CaseReader reader(analysis, settings);
        EXPECT_EQ(reader.Read(3000,
                              [&](const Observation& o) {
                                  reached = o.caseNumber;
                                  if (reached != last) return;
                                  word = 1;
                                  host.stopAt = host.questions + 1;
                              }),
                  Status::Stopped);
        EXPECT_EQ(reached, last);
    }
}

TEST_F(CaseReaderTest, AsManyFurtherVariablesAsThereAre) {
    constexpr int cases = 5;
    host.columns = {{"t", {5, 6, 7, 8, 9}}, {"d", {1, 0, 1, 1, 7}}, {"w", {1, 3, 1, 1, 1}}};
    for (int k = 0; k < 200; ++k) {
        std::vector<double> cells;
        for (int i = 0; i < cases; ++i)
            cells.push_back(k * 10 + i);
        host.columns.push_back({"x" + std::to_string(k), cells, k == 150 ? 1502.0 : none});
    }
    host.weight = 3;
    Times({1}, 2);
    // Around the 76 that the work areas hold, of which four are taken already.
    for (const int count : {0, 1, 71, 72, 73, 76, 77, 200}) {
        std::vector<int> further;
        for (int k = 0; k < count; ++k)
            further.push_back(203 - k);
        CaseReader reader(analysis, settings, CaseReader::Groups::None, further);
        std::vector<int> read;
        EXPECT_EQ(reader.Read(100,
                              [&](const Observation& o) {
                                  read.push_back(o.caseNumber);
                                  ASSERT_EQ(reader.Further().size(), further.size());
                                  for (int k = 0; k < count; ++k) {
                                      const double value = reader.Further()[static_cast<std::size_t>(k)];
                                      const double cell = (199 - k) * 10 + o.caseNumber - 1;
                                      EXPECT_TRUE(cell == 1502.0 ? std::isnan(value) : value == cell)
                                          << k << " of " << count;
                                  }
                              }),
                  Status::Success);
        EXPECT_EQ(read, (std::vector<int>{1, 2, 2, 2, 3, 4})) << count;
    }
}

} // namespace
} // namespace ozm::survival
