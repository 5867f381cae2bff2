#pragma once

#include "module/survdata/HostArray.h"
#include "module/survdata/Status.h"
#include "module/twosample/CoxFTest.h"
#include "module/twosample/CoxMantelTest.h"
#include "module/twosample/PooledFailures.h"
#include "module/twosample/ScoreTests.h"

#include <array>
#include <cstdint>
#include <variant>

namespace ozm::survival {

enum class TwoTest : std::uint8_t { Gehan, CoxF, CoxMantel, LogRank, PetoPeto };

/// All of them, in the order in which they are shown.
inline constexpr std::array twoTests{TwoTest::Gehan, TwoTest::CoxF, TwoTest::CoxMantel, TwoTest::LogRank,
                                     TwoTest::PetoPeto};

/// A test that was not computed; only Cox's F-test may not be.
struct NotComputed {};

/// One test of a sample with all its intermediate values; an array is empty where the test has none of the
/// kind.
struct TestResult {
    TwoTest test = TwoTest::Gehan;
    /// Peto & Peto's test without a censored observation is Gehan's, and has its numbers.
    std::variant<NotComputed, GehanStatistic, CoxFStatistic, CoxMantelStatistic, ScoreStatistic> numbers;
    double p = 1.0;

    HostArray<GehanRanks> ranks;    ///< of each observation: Gehan
    HostArray<double> scores;       ///< of each observation; of each uncensored one for Cox's F
    HostArray<Group2AtRisk> group2; ///< of each failure time: Cox-Mantel
    HostArray<FailureTime> failureRoom;
    PooledFailures failures; ///< all but Gehan

    [[nodiscard]] bool Computed() const { return !std::holds_alternative<NotComputed>(numbers); }
    [[nodiscard]] bool ByGehan() const { return std::holds_alternative<GehanStatistic>(numbers); }
};

/// Takes the memory that a test needs and computes it. NoMemory when the host refused it; Cox's F-test is
/// then not computed, which is a success.
Status ComputeTest(CAnalysisSupport& host, const PooledSample& sample, TwoTest test, TestResult& result);

} // namespace ozm::survival
