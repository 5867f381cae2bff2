#include "module/kaplan/RunProductLimit.h"
#include "module/resources/Kaplan.h"
#include "tests/module/AnalysisFixture.h"

#include <cmath>
#include <string>
#include <tuple>
#include <vector>

namespace ozm::survival {
namespace {

using test::KaplanFixture;

TEST_F(KaplanFixture, PublishedEstimatesOfTheLeukaemiaData) {
    ASSERT_EQ(Run(), StepKaplanResults);
    // The published estimates of these data, to six decimals; the last digit of an error carries their
    // rounding.
    const struct {
        double time, survival, error;
    } published[] = {{6, .857143, .076360},  {7, .806723, .086936},  {10, .752941, .096350},
                     {13, .690196, .106815}, {16, .627451, .114054}, {22, .537815, .128234},
                     {23, .448179, .134592}};
    const KaplanResults& r = State().results;
    EXPECT_EQ(r.uncensored, 9);
    EXPECT_EQ(r.censored, 12);
    std::size_t i = 0;
    for (const auto& row : published) {
        while (i + 1 < r.UncensoredTimes().size() && r.UncensoredTimes()[i + 1] <= row.time)
            ++i;
        EXPECT_EQ(r.UncensoredTimes()[i], row.time);
        EXPECT_NEAR(r.Survival()[i], row.survival, 5e-7);
        EXPECT_NEAR(r.StandardError()[i], row.error, 1e-6);
    }
    // By hand: S falls from .752941 at 10 to .690196 at 13, from .537815 at 22 to .448179 at 23.
    EXPECT_NEAR(r.percentiles.times[0], 10 + 3 * (.7529412 - .75) / (.7529412 - .6901961), 1e-5);
    EXPECT_NEAR(r.percentiles.times[1], 22 + (.5378151 - .5) / (.5378151 - .4481793), 1e-5);
    EXPECT_FALSE(r.percentiles.located[2]);
    // What the host sees in the shared areas.
    EXPECT_EQ(static_cast<const double*>(analysis.Commons()[4].address)[1], r.percentiles.times[1]);
    EXPECT_EQ(static_cast<const std::int32_t*>(analysis.Commons()[3].address)[1], 21);
    EXPECT_EQ(host.requests, 0); // small data take no memory from the host
}

TEST_F(KaplanFixture, CapacityFollowsTheDataAndTheWeights) {
    struct {
        int cases;
        bool weighted;
        int capacity;
    } const rows[] = {{2500, false, 2500},
                      {2501, false, 5002},
                      {5'000'000, false, 10'000'000},
                      {5'000'001, false, 10'000'000},
                      {3, true, 10'000'000},
                      {2'000'000'000, false, 10'000'000}};
    for (const auto& row : rows) {
        KaplanArrays arrays;
        ASSERT_TRUE(arrays.Obtain(analysis, KaplanArrays::CapacityFor(row.cases, row.weighted)));
        EXPECT_EQ(arrays.Capacity(), row.capacity) << row.cases;
        EXPECT_EQ(arrays.ranks.Size(), static_cast<std::size_t>(row.capacity));
    }
    EXPECT_EQ(host.outstanding, 0);
}

TEST_F(KaplanFixture, DataThatCannotBeAnalysedAreRefused) {
    Data({1, 2, -1}, {1, 0, 1});
    ExpectRefused(StrTooFewValid);
    Data({1, 2, 3}, {0, 0, 0});
    ExpectRefused(StrNoUncensored);
    Data({1, 2}, {1, 1});
    host.columns.push_back({"w", {1, 1e9}});
    host.weight = 3;
    ExpectRefused(StrTooManyCasesKaplan);
}

TEST_F(KaplanFixture, ACodeThatNoCaseHasIsNamedAmongOthersThatDo) {
    Specify();
    host.Script().Put("CodeForCensoredResponses", 7777);
    EXPECT_EQ(host.Press(analysis, ControlOk), StepKaplanResults);
    ASSERT_EQ(host.notes.size(), 1U);
    EXPECT_EQ(host.notes[0],
              "12 of 21 cases left out: 12 with a code of 'relapse' other than 1 or 7777 (no case "
              "has 7777).");
}

TEST_F(KaplanFixture, AnEmptyReadingSaysWhichCodesThereAre) {
    const double unset = test::none;
    const std::vector<std::tuple<double, double, std::string>> cases{
        {5, 6, "with a code of 'relapse' other than 5 or 6"},
        {5, unset, "with a code of 'relapse' other than 5 or not set"},
        {unset, unset, "as no codes of 'relapse' are given: give the two whose cases are to be analysed"}};
    Specify();
    for (const auto& [complete, censored, why] : cases) {
        host.Script().Put("CodeForCompleteResponses", complete);
        host.Script().Put("CodeForCensoredResponses", censored);
        EXPECT_EQ(host.Press(analysis, ControlOk), StepSpecifyKaplan);
        EXPECT_EQ(host.messages.back().text, "Fewer than two valid cases.");
        EXPECT_EQ(host.messages.back().detail,
                  "Three valid observations are needed.\n"
                  "21 cases in the data, 21 selected, 0 valid.\n"
                  "21 of 21 cases left out: 21 " +
                      why + ".\nCodes of 'relapse' among the selected cases: 0 (12 cases), 1 (9 cases).");
        EXPECT_TRUE(host.notes.empty()) << "the refusal says it itself";
    }
}

TEST_F(KaplanFixture, CaseNumbersOfManyTiesAreMadeExactOnDemand) {
    ManyCases(70000);
    ASSERT_EQ(Run(), StepKaplanResults);
    const auto& times = host.columns[0].values;
    std::vector<double> keys;
    std::vector<std::int32_t> cases;
    for (std::size_t i = 0; i < times.size(); ++i)
        if (host.columns[1].values[i] == 1) {
            keys.push_back(times[i]);
            cases.push_back(static_cast<std::int32_t>(i) + 1);
        }
    HeapSortWithIndex(keys, std::span{cases});
    KaplanResults& r = State().results;
    const auto shown = [&] {
        return std::vector<std::int32_t>(r.UncensoredCases().begin(), r.UncensoredCases().end());
    };
    EXPECT_NE(shown(), cases);
    EXPECT_EQ(MakeTieOrderExact(analysis, r), Status::Success);
    EXPECT_EQ(shown(), cases);
    EXPECT_EQ(std::vector<double>(r.UncensoredTimes().begin(), r.UncensoredTimes().end()), keys);
}

} // namespace
} // namespace ozm::survival
