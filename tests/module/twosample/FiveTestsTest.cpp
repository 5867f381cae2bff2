// The five tests as numbers: against published figures, against an independent computation, and by what must
// hold for any data.

#include "module/survdata/NormalTail.h"
#include "module/twosample/CoxFTest.h"
#include "module/twosample/CoxMantelTest.h"
#include "module/twosample/ScoreTests.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace ozm::survival {
namespace {

using korvana::golden::Table;
using Observations = std::vector<PooledObservation>;

struct FiveTests {
    explicit FiveTests(Observations given) : observations(std::move(given)) {
        for (const PooledObservation& o : observations) {
            GroupCount& group = groups[static_cast<std::size_t>(o.group) - 1];
            ++(o.Failed() ? group.uncensored : group.censored);
        }
        SortPooled(observations);
        const PooledSample sample{observations, groups};
        const std::size_t n = observations.size();
        room.resize(n);
        scores.resize(n);
        ranks.resize(n);
        group2.resize(n);
        failures = TabulateFailures(sample, room);
        gehan = GehanTest(sample, ranks, scores);
        if (CoxFApplies(sample)) coxF = CoxFTest(sample, scores);
        coxMantel = CoxMantelTest(sample, failures, group2);
        peto = sample.Total().censored > 0 ? PetoPetoTest(sample, failures, scores) : gehan.corrected;
        logRank = LogRankTest(sample, failures, scores);
    }
    /// By the names of the golden file.
    [[nodiscard]] std::map<std::string, float> Named() const {
        std::map<std::string, float> all{{"gehan,uncorrected", gehan.uncorrected},
                                         {"cox-f,t1", coxF.scoreSum1},
                                         {"cox-f,t2", coxF.scoreSum2},
                                         {"cox-f,f", coxF.f},
                                         {"cox-f,df1", coxF.numeratorDf},
                                         {"cox-f,df2", coxF.denominatorDf},
                                         {"cox-mantel,u", coxMantel.excess},
                                         {"cox-mantel,i", coxMantel.information},
                                         {"cox-mantel,c", coxMantel.c}};
        const std::pair<const char*, const ScoreStatistic*> byScores[] = {
            {"gehan", &gehan.corrected}, {"log-rank", &logRank}, {"peto", &peto}};
        for (const auto& [name, s] : byScores) {
            const std::string test = name;
            all[test + ",score_sum"] = s->scoreSum;
            all[test + ",sum_of_squares"] = s->sumOfSquares;
            all[test + ",variance"] = s->variance;
            all[test + ",statistic"] = s->z;
        }
        return all;
    }

    Observations observations;
    std::array<GroupCount, 2> groups{};
    std::vector<FailureTime> room;
    std::vector<double> scores; ///< in the end those of the log-rank test
    std::vector<GehanRanks> ranks;
    std::vector<Group2AtRisk> group2;
    PooledFailures failures;
    GehanStatistic gehan;
    CoxFStatistic coxF;
    CoxMantelStatistic coxMantel;
    ScoreStatistic logRank;
    ScoreStatistic peto;
};

/// Lee (1980): breast cancer patients, 16+ censored.
const Observations tenPatients{{23, 1, 1}, {16, 0, 1}, {18, 0, 1}, {20, 0, 1}, {24, 0, 1},
                               {15, 1, 2}, {18, 1, 2}, {19, 1, 2}, {19, 1, 2}, {20, 1, 2}};

struct DataSet {
    const char* name; ///< in the golden file
    const char* file;
    const char* time;
    const char* status;
    const char* group;
    std::array<const char*, 2> codes;
    bool uncensoredOnly = false;
};

constexpr DataSet dataSets[] = {
    {"leukaemia-6mp", "leukaemia-6mp.csv", "weeks", "relapse", "group", {"6-MP", "placebo"}},
    {"aml", "aml.csv", "time", "status", "group", {"Maintained", "Nonmaintained"}},
    {"veteran", "veteran.csv", "time", "status", "trt", {"1", "2"}},
    {"veteran", "veteran.csv", "time", "status", "celltype", {"squamous", "large"}},
    {"veteran-uncensored", "veteran.csv", "time", "status", "trt", {"1", "2"}, true},
};

Observations Read(const DataSet& set) {
    const Table table = Table::read(std::string{"../../examples/data/"} + set.file);
    const auto times = table.numbers(set.time);
    const auto statuses = table.numbers(set.status);
    const auto groups = table.texts(set.group);
    Observations observations;
    for (std::size_t i = 0; i < times.size(); ++i)
        for (const int g : {1, 2})
            if (groups[i] == set.codes[static_cast<std::size_t>(g - 1)] &&
                (statuses[i] == 1 || !set.uncensoredOnly))
                observations.push_back(
                    {times[i], static_cast<std::int16_t>(statuses[i]), static_cast<std::int16_t>(g)});
    return observations;
}

TEST(FiveTests, PublishedFiguresOfTheLeukaemiaData) {
    const FiveTests t{Read(dataSets[0])};
    EXPECT_EQ(t.gehan.corrected.scoreSum, 271); // group 1 lives longer
    EXPECT_EQ(t.gehan.corrected.sumOfSquares, 22040);
    EXPECT_NEAR(t.gehan.corrected.variance, 5644.39, 5e-3);
    EXPECT_NEAR(t.gehan.uncorrected, 3.6071, 5e-5);
    EXPECT_NEAR(t.gehan.corrected.z, 270.5 / std::sqrt(5644.390), 1e-6);
    EXPECT_NEAR(t.logRank.scoreSum, -10.2505, 5e-5);
    EXPECT_NEAR(t.logRank.variance, 6.89616, 5e-6);
    EXPECT_NEAR(t.logRank.z * t.logRank.z, 15.2364, 5e-5);
    EXPECT_NEAR(t.peto.scoreSum, -6.8770, 5e-5);
    EXPECT_NEAR(t.peto.variance, 3.40763, 5e-6);
    EXPECT_NEAR(t.peto.z, -3.7254, 5e-5);
}

TEST(FiveTests, PublishedFiguresOfTenPatients) {
    const FiveTests t{tenPatients};
    EXPECT_EQ(t.gehan.corrected.scoreSum, 18);
    EXPECT_EQ(t.gehan.corrected.sumOfSquares, 208);
    EXPECT_NEAR(t.gehan.corrected.variance, 57.78, 5e-3);
    EXPECT_FLOAT_EQ(t.coxMantel.excess, 2.75F);
    EXPECT_FLOAT_EQ(t.coxMantel.information, 1.0875F);
    EXPECT_NEAR(t.coxMantel.c, 2.6370, 5e-5);
    EXPECT_FLOAT_EQ(t.logRank.scoreSum, -2.75F);
    EXPECT_NEAR(t.logRank.variance, 1.21065, 5e-6);
    EXPECT_NEAR(t.logRank.z, -2.4993, 5e-5);
    EXPECT_FLOAT_EQ(t.peto.scoreSum, -2.13125F);
    EXPECT_NEAR(t.peto.variance, .755518, 5e-7);
    EXPECT_NEAR(t.peto.z, -2.4520, 5e-5);
}

TEST(FiveTests, CoxFByHand) {
    const auto applies = [](GroupCount one, GroupCount two) {
        return CoxFApplies({{}, std::array{one, two}});
    };
    EXPECT_FALSE(applies({1, 1}, {2, 0})); // three uncensored ones are too few
    EXPECT_FALSE(applies({5, 0}, {0, 5})); // nor is it for a group without any
    // The last failures tied: the censored one goes on from the score before the mean, 1/4 + 1/3 + 1/2.
    const FiveTests lastTied{{{9, 0, 1}, {1, 1, 1}, {2, 1, 2}, {2, 1, 2}, {0, 1, 2}}};
    EXPECT_FLOAT_EQ(lastTied.coxF.scoreSum1,
                    static_cast<float>(1. / 5 + 1. / 4 + (1. / 5 + 1. / 4 + 1. / 3 + 1. / 2 + 1.)));
    // Equal groups: no F and no degrees of freedom.
    const FiveTests equal{{{1, 1, 1}, {1, 1, 2}, {2, 1, 1}, {2, 1, 2}}};
    EXPECT_EQ(equal.coxF.f, 0);
    EXPECT_EQ(equal.coxF.numeratorDf, 0);
}

TEST(FiveTests, AgreeWithAnIndependentComputation) {
    const Table golden = Table::read("two-sample.csv");
    int compared = 0;
    const auto compare = [&](const FiveTests& tests, const Table& rows) {
        const auto named = tests.Named();
        const auto test = rows.texts("test");
        const auto quantity = rows.texts("quantity");
        const auto value = rows.numbers("value");
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const auto found = named.find(test[i] + "," + quantity[i]);
            if (found == named.end()) continue; // sizes and probabilities
            // Stored in single precision; the sums cancel, hence the absolute part.
            EXPECT_NEAR(found->second, value[i], std::abs(value[i]) * 2e-7 + 1e-9)
                << rows.texts("data")[i] << ": " << found->first;
            ++compared;
        }
    };
    for (const DataSet& set : dataSets)
        compare(FiveTests{Read(set)}, golden.where("data", set.name).where("group1", set.codes[0]));
    compare(FiveTests{tenPatients}, golden.where("data", "ten-patients"));
    EXPECT_EQ(compared, 6 * 21);
}

/// Random samples with many ties and any censoring, none of it among them.
Observations Random(std::mt19937& generator, int size, int distinct, double censored) {
    Observations sample;
    for (int i = 0; i < size; ++i) {
        const auto time = static_cast<double>(generator() % static_cast<unsigned>(distinct));
        const bool failed = static_cast<double>(generator() % 1000) >= 1000 * censored;
        // Neither group is empty.
        const int group = i < 2 ? i + 1 : static_cast<int>(generator() % 2) + 1;
        sample.push_back({time, static_cast<std::int16_t>(failed ? 1 : 0), static_cast<std::int16_t>(group)});
    }
    return sample;
}

TEST(FiveTests, WhatHoldsForAnyData) {
    std::mt19937 generator{20261121}; // NOLINT: the same samples every time
    for (int round = 0; round < 400; ++round) {
        const Observations sample = Random(generator, 3 + round % 60, 1 + round % 40, 0.1 * (round % 10));
        const FiveTests base{sample};
        SCOPED_TRACE("round " + std::to_string(round));

        Observations shuffled = sample;
        std::shuffle(shuffled.begin(), shuffled.end(), generator);
        EXPECT_EQ(FiveTests{shuffled}.Named(), base.Named()) << "order of the data";

        Observations shifted = sample;
        for (auto& o : shifted)
            o.time += 1000;
        EXPECT_EQ(FiveTests{shifted}.Named(), base.Named()) << "a constant added to all times";

        Observations exchanged = sample;
        for (auto& o : exchanged)
            o.group = static_cast<std::int16_t>(3 - o.group);
        const FiveTests other{exchanged};
        auto named = other.Named();
        for (const auto& [name, value] : base.Named()) {
            if (name.starts_with("cox-f,t")) continue;
            const bool sign = name.ends_with("score_sum") || name.ends_with("statistic") ||
                              name.ends_with("uncorrected") || name == "cox-mantel,u" ||
                              name == "cox-mantel,c";
            EXPECT_NEAR(named[name], sign ? -value : value, 1e-6 * std::abs(value) + 1e-9)
                << name << ": groups exchanged";
        }
        EXPECT_FLOAT_EQ(other.coxF.scoreSum1, base.coxF.scoreSum2);

        double sum = 0.0;
        for (const double score : base.scores)
            sum += score;
        EXPECT_NEAR(sum, 0.0, 1e-10) << "log-rank scores";
        EXPECT_LE(std::abs(base.gehan.corrected.z), std::abs(base.gehan.uncorrected) + 1);
        for (const auto& [name, value] : base.Named())
            EXPECT_TRUE(std::isfinite(value)) << name;
    }
}

TEST(FiveTests, ContinuityCorrectionAndZeroVariance) {
    EXPECT_EQ(ContinuityCorrection({16, 4}), 0.5); // exactly 20 % censored
    EXPECT_EQ(ContinuityCorrection({17, 3}), 1.0);
    // One time for all: every score is 0, and so are variance and statistic.
    const FiveTests one{{{5, 1, 1}, {5, 1, 1}, {5, 1, 2}}};
    EXPECT_EQ(one.gehan.corrected.variance, 0);
    EXPECT_EQ(one.gehan.corrected.z, 0);
    EXPECT_EQ(one.coxMantel.c, 0);
}

} // namespace
} // namespace ozm::survival
