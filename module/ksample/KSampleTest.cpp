#include "module/ksample/KSampleTest.h"

#include "module/groups/GehanRanks.h"
#include "module/survdata/ChiSquareTail.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace ozm::survival {
namespace {

/// 1 - Phi(x) for x >= 0 by Abramowitz & Stegun 26.2.19, to 1.5e-7.
double ApproximateNormalTail(double x) {
    if (x == 0.0) return 0.5;
    constexpr double d1 = 0.049867347;
    constexpr double d2 = 0.0211410061;
    constexpr double d3 = 0.0032776263;
    constexpr double d4 = 3.80036e-5;
    constexpr double d5 = 4.88906e-5;
    constexpr double d6 = 5.383e-6;
    const double sum = 1.0 + x * (d1 + x * (d2 + x * (d3 + x * (d4 + x * (d5 + x * d6)))));
    return 0.5 * std::pow(sum, -16.0);
}

double SumOfSquares(std::span<const double> scores) {
    double sum = 0.0;
    for (const double score : scores)
        sum += score * score;
    return sum;
}

void CompareTwo(const PooledSample& sample, double squares, double sumOfGroup1, KSampleStatistic& test) {
    const double n1 = sample.Group(1).All();
    const double n2 = sample.Group(2).All();
    const double n = n1 + n2;
    test.standardDeviation = std::sqrt(n1 * n2 * squares / (n * (n - 1.0)));
    double corrected = sumOfGroup1;
    if (sumOfGroup1 != 0.0) corrected -= std::copysign(ContinuityCorrection(sample.Total()), sumOfGroup1);
    test.statistic = test.standardDeviation > 1e-32 ? corrected / test.standardDeviation : 0.0;
    const double z = std::abs(test.statistic);
    const bool beyond = z > 3.1;
    test.oneTailed = beyond ? 0.001 : ApproximateNormalTail(z);
    test.twoTailed = beyond ? 0.002 : std::min(2.0 * test.oneTailed, 1.0);
    test.exactProbability = 2.0 * NormalUpperTail(z);
}

void CompareMore(const PooledSample& sample, double squares, std::span<const double> sums,
                 KSampleStatistic& test) {
    double q = 0.0;
    for (std::size_t g = 0; g < sums.size(); ++g)
        q += sums[g] * sums[g] / sample.groups[g].All();
    test.df = static_cast<std::int32_t>(sums.size()) - 1;
    test.statistic =
        squares == 0.0 ? 0.0 : (static_cast<double>(sample.observations.size()) - 1.0) * q / squares;
    constexpr double gammaOfThreeHalves = 0.88622692545;
    const double p = ChiSquareSeries(test.statistic, test.df, ApproximateNormalTail, gammaOfThreeHalves);
    test.chiSquareProbability = p < 0.000005 ? 0.00001 : std::min(p, 1.0); // the approximation may be above 1
    test.exactProbability = ChiSquareUpperTail(test.statistic, test.df);
}

} // namespace

void AddUpScores(const PooledSample& sample, std::span<const double> scores, std::span<double> sums) {
    std::ranges::fill(sums, 0.0);
    for (std::size_t i = 0; i < scores.size(); ++i)
        sums[static_cast<std::size_t>(sample.observations[i].group) - 1] += scores[i];
}

KSampleStatistic ComputeKSampleTest(const PooledSample& sample, std::span<const double> scores,
                                    std::span<const double> sums) {
    KSampleStatistic test{.groups = static_cast<int>(sample.groups.size())};
    const double squares = SumOfSquares(scores);
    if (test.TwoGroups())
        CompareTwo(sample, squares, sums[0], test);
    else
        CompareMore(sample, squares, sums, test);
    return test;
}

} // namespace ozm::survival
