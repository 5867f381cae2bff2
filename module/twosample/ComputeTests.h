#pragma once

#include "module/survdata/HostArray.h"
#include "module/survdata/Status.h"
#include "module/twosample/CoxFTest.h"
#include "module/twosample/CoxMantelTest.h"
#include "module/twosample/PooledFailures.h"
#include "module/twosample/ScoreTests.h"

#include <cstdint>

namespace ozm::survival {

/// The five tests, in the order in which they are shown.
enum class TwoTest : std::uint8_t { Gehan, CoxF, CoxMantel, LogRank, PetoPeto };

/// One test of a sample with all its intermediate values. Which of the numbers are in use the test says;
/// spans and arrays are of the sample's order, or of its distinct failure times.
struct TestResult {
    TwoTest test = TwoTest::Gehan;
    bool computed = true; ///< only Cox's F-test may not be
    bool gehanInstead =
        false; ///< Peto & Peto's without a censored observation: `gehan` and `ranks` are in use
    double p = 1.0;

    GehanStatistic gehan;
    CoxFStatistic coxF;
    CoxMantelStatistic coxMantel;
    ScoreStatistic scoreTest; ///< log-rank, Peto & Peto

    HostArray<GehanRanks> ranks;    ///< Gehan
    HostArray<double> scores;       ///< Gehan, log-rank, Peto & Peto
    HostArray<Group2AtRisk> group2; ///< Cox-Mantel
    HostArray<FailureTime> failureRoom;
    PooledFailures failures; ///< all but Gehan

    [[nodiscard]] bool ByGehan() const { return test == TwoTest::Gehan || gehanInstead; }
    /// What p refers to: z, F or C.
    [[nodiscard]] float Statistic() const;
};

/// Takes the memory that a test needs and computes it. NoMemory when the host refused it; Cox's F-test is
/// then not computed, which is a success.
Status ComputeTest(CAnalysisSupport& host, const PooledSample& sample, TwoTest test, TestResult& result);

} // namespace ozm::survival
