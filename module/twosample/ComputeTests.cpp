#include "module/twosample/ComputeTests.h"

#include "module/survdata/FTail.h"
#include "module/survdata/NormalTail.h"

namespace ozm::survival {
namespace {

std::size_t Uncensored(const PooledSample& sample) {
    return static_cast<std::size_t>(sample.Total().uncensored);
}

/// The probability of a statistic in its stored precision.
double NormalProbability(float statistic) {
    return TwoSidedProbability(static_cast<double>(statistic));
}

bool ListFailures(CAnalysisSupport& host, const PooledSample& sample, TestResult& result) {
    if (!result.failureRoom.Allocate(host, Uncensored(sample))) return false;
    result.failures = TabulateFailures(sample, result.failureRoom.Span());
    return true;
}

bool ComputeGehan(CAnalysisSupport& host, const PooledSample& sample, TestResult& result) {
    const std::size_t n = sample.observations.size();
    if (!result.scores.Allocate(host, n) || !result.ranks.Allocate(host, n)) return false;
    const GehanStatistic gehan = GehanTest(sample, result.ranks.Span(), result.scores.Span());
    result.numbers = gehan;
    result.p = NormalProbability(gehan.corrected.z);
    return true;
}

void ComputeCoxF(CAnalysisSupport& host, const PooledSample& sample, TestResult& result) {
    if (!CoxFApplies(sample) || !ListFailures(host, sample, result) ||
        !result.scores.Allocate(host, Uncensored(sample)))
        return;
    const CoxFStatistic coxF = CoxFTest(sample, result.scores.Span());
    result.numbers = coxF;
    const float p = FTailProbability(coxF.f, coxF.numeratorDf, coxF.denominatorDf);
    result.p = p == noProbability ? 1.0 : static_cast<double>(p);
}

bool ComputeCoxMantel(CAnalysisSupport& host, const PooledSample& sample, TestResult& result) {
    if (!ListFailures(host, sample, result) || !result.group2.Allocate(host, result.failures.times.size()))
        return false;
    const CoxMantelStatistic coxMantel = CoxMantelTest(sample, result.failures, result.group2.Span());
    result.numbers = coxMantel;
    result.p = NormalProbability(coxMantel.c);
    return true;
}

using ScoreTest = ScoreStatistic (*)(const PooledSample&, const PooledFailures&, std::span<double>);

bool ComputeByScores(CAnalysisSupport& host, const PooledSample& sample, ScoreTest compute,
                     TestResult& result) {
    if (!ListFailures(host, sample, result) || !result.scores.Allocate(host, sample.observations.size()))
        return false;
    const ScoreStatistic scoreTest = compute(sample, result.failures, result.scores.Span());
    result.numbers = scoreTest;
    result.p = NormalProbability(scoreTest.z);
    return true;
}

bool Compute(CAnalysisSupport& host, const PooledSample& sample, TestResult& result) {
    switch (result.test) {
    case TwoTest::Gehan:
        break;
    case TwoTest::CoxF:
        ComputeCoxF(host, sample, result);
        return true;
    case TwoTest::CoxMantel:
        return ComputeCoxMantel(host, sample, result);
    case TwoTest::LogRank:
        return ComputeByScores(host, sample, LogRankTest, result);
    case TwoTest::PetoPeto:
        if (sample.Total().censored > 0) return ComputeByScores(host, sample, PetoPetoTest, result);
    }
    return ComputeGehan(host, sample, result);
}

} // namespace

Status ComputeTest(CAnalysisSupport& host, const PooledSample& sample, TwoTest test, TestResult& result) {
    result.test = test;
    return Compute(host, sample, result) ? Status::Success : Status::NoMemory;
}

} // namespace ozm::survival
