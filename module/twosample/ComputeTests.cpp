#include "module/twosample/ComputeTests.h"

#include "module/survdata/FTail.h"
#include "module/survdata/NormalTail.h"

namespace ozm::survival {
namespace {

double ProbabilityOf(const CoxFStatistic& statistic) {
    const float p = FTailProbability(statistic.f, statistic.numeratorDf, statistic.denominatorDf);
    return p == noProbability ? 1.0 : static_cast<double>(p);
}

bool ListFailures(CAnalysisSupport& host, const PooledSample& sample, TestResult& result) {
    if (!result.failureRoom.Allocate(host, static_cast<std::size_t>(sample.counts.Uncensored())))
        return false;
    result.failures = TabulateFailures(sample, result.failureRoom.Span());
    return true;
}

} // namespace

float TestResult::Statistic() const {
    switch (test) {
    case TwoTest::Gehan:
        break;
    case TwoTest::CoxF:
        return coxF.f;
    case TwoTest::CoxMantel:
        return coxMantel.c;
    case TwoTest::LogRank:
        return scoreTest.z;
    case TwoTest::PetoPeto:
        if (!gehanInstead) return scoreTest.z;
    }
    return gehan.corrected.z;
}

Status ComputeTest(CAnalysisSupport& host, const PooledSample& sample, TwoTest test, TestResult& result) {
    result.test = test;
    result.gehanInstead = test == TwoTest::PetoPeto && sample.counts.Censored() == 0;
    const std::size_t n = sample.observations.size();
    if (test == TwoTest::CoxF) {
        result.computed = CoxFApplies(sample.counts) && ListFailures(host, sample, result) &&
                          result.scores.Allocate(host, static_cast<std::size_t>(sample.counts.Uncensored()));
        if (!result.computed) return Status::Success;
        result.coxF = CoxFTest(sample, result.scores.Span());
        result.p = ProbabilityOf(result.coxF);
        return Status::Success;
    }
    if (!result.ByGehan() && !ListFailures(host, sample, result)) return Status::NoMemory;
    if (test == TwoTest::CoxMantel) {
        if (!result.group2.Allocate(host, result.failures.times.size())) return Status::NoMemory;
        result.coxMantel = CoxMantelTest(sample, result.failures, result.group2.Span());
    } else {
        if (!result.scores.Allocate(host, n)) return Status::NoMemory;
        if (result.ByGehan()) {
            if (!result.ranks.Allocate(host, n)) return Status::NoMemory;
            result.gehan = GehanTest(sample, result.ranks.Span(), result.scores.Span());
        } else {
            const auto compute = test == TwoTest::LogRank ? LogRankTest : PetoPetoTest;
            result.scoreTest = compute(sample, result.failures, result.scores.Span());
        }
    }
    result.p = TwoSidedProbability(static_cast<double>(result.Statistic()));
    return Status::Success;
}

} // namespace ozm::survival
