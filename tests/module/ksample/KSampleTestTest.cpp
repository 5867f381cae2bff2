// The comparison of k samples as numbers: against published figures, an independent program, and by what must
// hold for any data.

#include "module/ksample/KSampleTest.h"
#include "module/groups/GehanRanks.h"
#include "module/groups/GroupEstimates.h"
#include "module/ksample/WeightedLogRank.h"
#include "module/survdata/FTail.h"
#include "module/survdata/NormalQuantile.h"
#include "module/twosample/ScoreTests.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace ozm::survival {
namespace {

using korvana::golden::Table;
using Observations = std::vector<PooledObservation>;

struct KSample {
    explicit KSample(Observations given) : observations(std::move(given)) {
        for (const PooledObservation& o : observations) {
            const auto place = static_cast<std::size_t>(o.group);
            if (groups.size() < place) groups.resize(place);
            GroupCount& group = groups[place - 1];
            ++(o.Failed() ? group.uncensored : group.censored);
        }
        SortPooled(observations);
        scores.resize(observations.size());
        ranks.resize(observations.size());
        sums.resize(groups.size());
        ComputeGehanScores(observations, ranks, scores);
        AddUpScores(Sample(), scores, sums);
        test = ComputeKSampleTest(Sample(), scores, sums);
    }
    [[nodiscard]] PooledSample Sample() const { return {observations, groups}; }

    Observations observations;
    std::vector<GroupCount> groups;
    std::vector<GehanRanks> ranks;
    std::vector<double> scores;
    std::vector<double> sums;
    KSampleStatistic test;
};

Observations Veteran(bool inMonths) {
    const Table table = Table::read("../../examples/data/veteran.csv");
    const auto times = table.numbers("time");
    const auto statuses = table.numbers("status");
    const auto karno = table.numbers("karno");
    const auto types = table.texts("celltype");
    const std::vector<std::string> known{"squamous", "smallcell", "adeno", "large"};
    Observations all;
    for (std::size_t i = 0; i < times.size(); ++i) {
        const auto type = std::find(known.begin(), known.end(), types[i]) - known.begin();
        const int class4 = karno[i] < 35 ? 0 : karno[i] < 55 ? 1 : karno[i] < 75 ? 2 : 3;
        all.push_back({inMonths ? std::ceil(times[i] / 30) : times[i], static_cast<std::int16_t>(statuses[i]),
                       static_cast<std::int16_t>(1 + (inMonths ? class4 : type))});
    }
    return all;
}

TEST(KSampleTest, PublishedFiguresOfTheLungCancerTrial) {
    const KSample k(Veteran(false));
    EXPECT_EQ(k.sums, (std::vector<double>{890, -1278, -697, 1085}));
    EXPECT_NEAR(k.test.statistic, 19.4405, 5e-5);
    EXPECT_EQ(k.test.df, 3);
}

TEST(KSampleTest, AgreesWithAnIndependentProgram) {
    int compared = 0;
    for (const bool inMonths : {false, true}) {
        const KSample k(Veteran(inMonths));
        const std::vector<double> codes =
            inMonths ? std::vector<double>{20, 40, 70, 99} : std::vector<double>{1, 2, 3, 4};
        std::map<std::string, double> named;
        double squares = 0.0;
        for (const double score : k.scores)
            squares += score * score;
        named["gehan,sum_of_squares"] = squares;
        named["gehan,chisq"] = k.test.statistic;
        named["gehan,p"] = k.test.exactProbability;
        const auto each = [&](const std::string& name, const std::vector<double>& values) {
            for (std::size_t g = 0; g < values.size(); ++g)
                named[name + std::to_string(g + 1)] = values[g];
        };
        each("gehan,sum", k.sums);
        const std::pair<const char*, LogRankWeight> tests[] = {{"log-rank", LogRankWeight::LogRank},
                                                               {"tarone-ware", LogRankWeight::TaroneWare},
                                                               {"peto", LogRankWeight::PetoPeto}};
        for (const auto& [name, weight] : tests) {
            const std::string test = std::string{name} + ",";
            const WeightedLogRank sums = ComputeWeightedLogRank(k.Sample(), weight);
            each(test + "observed", sums.observed);
            each(test + "expected", sums.expected);
            const std::pair<const char*, ChiSquareTest> statistics[] = {
                {"", TestOfDifferences(sums)},
                {"order_", TestOfTrend(sums, std::vector<double>{1, 2, 3, 4})},
                {"code_", TestOfTrend(sums, codes)}};
            for (const auto& [kind, statistic] : statistics) {
                named[test + kind + "chisq"] = statistic.chiSquare;
                named[test + kind + "p"] = statistic.p;
            }
        }
        for (const PairTest& pair : ComparePairs(k.Sample())) {
            const std::string both = std::to_string(pair.first + 1) + "-" + std::to_string(pair.second + 1);
            named["pairs,p" + both] = pair.test.p;
            named["pairs,holm" + both] = pair.adjusted;
        }
        const auto estimates = EstimateGroups(k.Sample());
        for (std::size_t g = 0; g < estimates.size(); ++g) {
            const MedianSurvival median = MedianOf(estimates[g], ConfidenceZ(0.95));
            named["median,median" + std::to_string(g + 1)] = median.median;
            named["median,0.95LCL" + std::to_string(g + 1)] = median.lower;
            named["median,0.95UCL" + std::to_string(g + 1)] = median.upper;
        }
        const Table golden =
            Table::read("k-sample.csv").where("data", inMonths ? "veteran-months" : "veteran");
        const auto test = golden.texts("test");
        const auto quantity = golden.texts("quantity");
        const auto value = golden.numbers("value");
        for (std::size_t i = 0; i < golden.size(); ++i) {
            const auto found = named.find(test[i] + "," + quantity[i]);
            if (found == named.end()) continue; // Tarone-Ware's sums alone
            EXPECT_NEAR(found->second, value[i], 1e-10 * std::abs(value[i])) << found->first;
            ++compared;
        }
    }
    EXPECT_EQ(compared, 2 * 65);
}

/// Random samples with ties; every third has no censored observation.
Observations Random(std::mt19937& random, int size, int groups, bool censored) {
    Observations all;
    for (int i = 0; i < size; ++i)
        all.push_back(
            {static_cast<double>(random() % 40U),
             static_cast<std::int16_t>(censored && random() % 3U == 0 ? 0 : 1),
             static_cast<std::int16_t>(
                 1 + (i < groups ? i : static_cast<int>(random() % static_cast<unsigned>(groups))))});
    return all;
}

TEST(KSampleTest, TwoGroupsAreGehansTestWithApproximateProbabilities) {
    std::mt19937 random(11);
    double largestError = 0.0; // of the approximation: 0 would mean that it is not used
    for (int repeat = 0; repeat < 200; ++repeat) {
        const KSample k(Random(random, 5 + static_cast<int>(random() % 60U), 2, repeat % 3 != 0));
        std::vector<GehanRanks> ranks(k.scores.size());
        std::vector<double> scores(k.scores.size());
        const GehanStatistic gehan = GehanTest(k.Sample(), ranks, scores);
        // There |WW| is taken back from stored numbers: where the correction takes all of it away, 0 is but
        // small.
        EXPECT_NEAR(k.test.statistic, static_cast<double>(gehan.corrected.z), 1e-6) << repeat;
        const double z = std::abs(k.test.statistic);
        EXPECT_NEAR(k.test.exactProbability, std::erfc(z / std::sqrt(2.0)), 1e-15);
        if (z > 3.1) {
            EXPECT_EQ(k.test.oneTailed, 0.001);
            EXPECT_EQ(k.test.twoTailed, 0.002);
        } else {
            EXPECT_NEAR(k.test.oneTailed, k.test.exactProbability / 2.0, 1.5e-7);
            largestError = std::max(largestError, std::abs(k.test.oneTailed - k.test.exactProbability / 2.0));
            EXPECT_EQ(k.test.twoTailed, std::min(1.0, 2.0 * k.test.oneTailed));
        }
    }
    EXPECT_GT(largestError, 5e-8);
    const KSample equal({{1, 1, 1}, {1, 1, 2}, {2, 1, 1}, {2, 1, 2}, {3, 0, 1}, {3, 0, 2}});
    EXPECT_EQ(equal.sums[0], 0.0);
    EXPECT_EQ(equal.test.statistic, 0.0);
    EXPECT_EQ(equal.test.twoTailed, 1.0);
}

TEST(KSampleTest, ProbabilitiesOfChiSquareComeFromTheSeriesAndHaveAFloor) {
    std::mt19937 random(12);
    for (int groups = 3; groups <= 31; ++groups) {
        const KSample k(Random(random, 8 * groups, groups, true));
        EXPECT_EQ(k.test.df, groups - 1);
        EXPECT_NEAR(k.test.chiSquareProbability, k.test.exactProbability, 4e-7) << groups;
        EXPECT_NEAR(ChiSquareTailProbability(static_cast<float>(k.test.statistic),
                                             static_cast<std::int16_t>(groups - 1)),
                    k.test.exactProbability, 5e-4);
    }
    Observations apart;
    for (int i = 0; i < 300; ++i)
        apart.push_back({static_cast<double>(i), 1, static_cast<std::int16_t>(1 + i / 100)});
    const KSample k(apart);
    EXPECT_EQ(k.test.chiSquareProbability, 0.00001);
    EXPECT_EQ(k.test.Printed(), 0.00001);
    EXPECT_LT(k.test.exactProbability, 1e-30);
    // All censored at once: no score tells them apart.
    const KSample none({{1, 0, 1}, {1, 0, 2}, {1, 0, 3}});
    EXPECT_EQ(none.test.statistic, 0.0);
    EXPECT_EQ(none.test.chiSquareProbability, 1.0);
}

TEST(WeightedLogRank, IsTheSumOverTheFailureTimes) {
    std::mt19937 random(13);
    for (int repeat = 0; repeat < 60; ++repeat) {
        const int groups = 2 + static_cast<int>(random() % 5U);
        const KSample s(Random(random, 10 + static_cast<int>(random() % 80U), groups, repeat % 3 != 0));
        const auto k = static_cast<std::size_t>(groups);
        for (const LogRankWeight weight : logRankWeights) {
            std::vector<double> observed(k), expected(k), covariance(k * k);
            double survival = 1.0;
            for (int t = 0; t < 40; ++t) {
                std::vector<double> n(k), d(k);
                for (const PooledObservation& o : s.observations) {
                    const auto g = static_cast<std::size_t>(o.group) - 1;
                    if (o.time >= t) n[g] += 1;
                    if (o.time == t && o.Failed()) d[g] += 1;
                }
                double all = 0.0;
                double failing = 0.0;
                for (std::size_t g = 0; g < k; ++g) {
                    all += n[g];
                    failing += d[g];
                }
                if (failing == 0.0) continue;
                const double w = weight == LogRankWeight::LogRank    ? 1.0
                                 : weight == LogRankWeight::PetoPeto ? survival
                                                                     : std::sqrt(all);
                survival *= 1.0 - failing / all;
                for (std::size_t g = 0; g < k; ++g) {
                    observed[g] += w * d[g];
                    expected[g] += w * failing * n[g] / all;
                    for (std::size_t h = 0; h < k && all > 1.0; ++h)
                        covariance[g * k + h] += w * w * failing * (all - failing) / (all - 1.0) * n[g] /
                                                 all * ((g == h ? 1.0 : 0.0) - n[h] / all);
                }
            }
            const WeightedLogRank sums = ComputeWeightedLogRank(s.Sample(), weight);
            for (std::size_t g = 0; g < k; ++g) {
                EXPECT_NEAR(sums.observed[g], observed[g], 1e-9);
                EXPECT_NEAR(sums.expected[g], expected[g], 1e-9);
                for (std::size_t h = 0; h < k; ++h)
                    EXPECT_NEAR(sums.covariance[g * k + h], covariance[g * k + h], 1e-8);
            }
            // The test does not depend on which group is left out.
            Observations turned = s.observations;
            for (PooledObservation& o : turned)
                o.group = static_cast<std::int16_t>(1 + o.group % groups);
            const ChiSquareTest test = TestOfDifferences(sums);
            const ChiSquareTest other =
                TestOfDifferences(ComputeWeightedLogRank(KSample(turned).Sample(), weight));
            EXPECT_EQ(test.df, other.df);
            if (test.df > 0) {
                EXPECT_NEAR(test.chiSquare, other.chiSquare, 1e-8 * (1.0 + test.chiSquare));
            }
        }
    }
}

TEST(WeightedLogRank, AGroupThatIsNeverAtRiskCostsADegreeOfFreedom) {
    // Group 2 has left before the first failure.
    const KSample s({{5, 1, 1}, {6, 0, 1}, {7, 1, 1}, {1, 0, 2}, {2, 0, 2}, {5, 1, 3}, {8, 1, 3}, {9, 0, 3}});
    const ChiSquareTest all = TestOfDifferences(ComputeWeightedLogRank(s.Sample(), LogRankWeight::LogRank));
    EXPECT_EQ(all.df, 1);
    const std::vector<PairTest> pairs = ComparePairs(s.Sample());
    ASSERT_EQ(pairs.size(), 3U);
    EXPECT_EQ(pairs[0].test.df, 0); // 1 and 2
    EXPECT_TRUE(std::isnan(pairs[0].test.p) && std::isnan(pairs[0].adjusted));
    EXPECT_NEAR(pairs[1].test.chiSquare, all.chiSquare, 1e-12); // 1 and 3
    EXPECT_EQ(pairs[1].adjusted, pairs[1].test.p) << "the only comparison";
}

TEST(MedianSurvival, FlatPiecesAndLimitsThatAreNotReached) {
    const auto median = [](Observations given) {
        return MedianOf(EstimateGroups(KSample(std::move(given)).Sample())[0], ConfidenceZ(0.95));
    };
    EXPECT_EQ(median({{1, 1, 1}, {2, 1, 1}, {3, 1, 1}, {4, 1, 1}}).median, 2.5); // 0.5 from 2 to 3
    EXPECT_EQ(median({{1, 1, 1}, {2, 1, 1}, {3, 0, 1}, {4, 0, 1}}).median, 3.0); // to the end; as survfit
    EXPECT_EQ(median({{1, 1, 1}, {3, 1, 1}, {3, 1, 1}}).median, 3.0);            // tied
    const MedianSurvival never = median({{1, 1, 1}, {2, 0, 1}, {3, 0, 1}});
    EXPECT_TRUE(std::isnan(never.median) && std::isnan(never.upper));
}

} // namespace
} // namespace ozm::survival
