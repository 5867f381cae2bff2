// Cox regressions with the covariates "x" and "x * log(T_)", of cases in memory: from the cases in their
// order to the estimates, by the strictest criterion; one likelihood with its derivatives; and how long it is
// between two questions whether to stop.

#include "bench/CoxCases.h"
#include "host/session/SessionServices.h"
#include "module/regression/data/ExpressionCovariates.h"
#include "module/regression/timedependent/FitTimeDependentCox.h"
#include "tests/support/MakeData.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace survival = ozm::survival;

/// Cases in order, their covariates, and how many values of these are to be kept.
class Regression {
public:
    explicit Regression(const benchmark::State& state) {
        korvana::DataSet data("bench.csv", 1);
        korvana::Variable variable;
        variable.name = "x";
        korvana::test::addVariable(data, variable, [](int) { return 1.0; });
        parts_.data.open(std::move(data));
        const auto cases = static_cast<std::size_t>(state.range(0));
        korvana::bench::CoxCases source(1);
        if (!sample_.Obtain(host_, cases, 1)) std::abort();
        for (std::size_t i = 0; i < cases; ++i) {
            const korvana::bench::CoxCase one = source.next();
            sample_.Add(one.time, one.event, static_cast<std::int32_t>(i) + 1, 0, one.x);
        }
        sample_.Summarise();
        if (!sample_.Order(host_, 1)) std::abort();
        sample = sample_.Ordered();
        const std::string time[] = {"T_"};
        std::string error;
        for (const char* text : {"x", "x * log(T_)"})
            if (host_.COMP(text, time, expressions_.emplace_back(), error) != 0) std::abort();
        constexpr int variables[] = {1};
        covariates.emplace(host_, expressions_, sample_, variables, 2);
        if (state.range(1) != 0) kept = survival::RoomFor(sample, *covariates);
    }

    survival::OrderedSample sample;
    std::optional<survival::ExpressionCovariates> covariates;
    std::size_t kept = 0;

private:
    korvana::SessionParts parts_;
    korvana::SessionServices services_{parts_, {}};
    ozm::CAnalysisSupport host_{&services_};
    survival::RegressionSample sample_;
    std::vector<std::unique_ptr<ozm::CompiledExpression>> expressions_;
};

void fitTimeDependentCox(benchmark::State& state) {
    Regression regression(state);
    const survival::IterationLimits limits{.criterion = 1e-5, .most = 200};
    survival::NewtonEstimate estimate;
    std::vector<double> parameters;
    double longest = 0; // between two questions
    for ([[maybe_unused]] auto _ : state) {
        parameters.assign(2, 0.0);
        const auto room = std::make_unique_for_overwrite<double[]>(regression.kept);
        auto last = std::chrono::steady_clock::now();
        const auto ask = [&](double) {
            const auto now = std::chrono::steady_clock::now();
            longest = std::max(longest, std::chrono::duration<double, std::milli>(now - last).count());
            last = now;
            return false;
        };
        const auto watch = [](int, double, std::span<const double>) { return false; };
        survival::TimeDependentCox cox{
            regression.sample, *regression.covariates, {room.get(), regression.kept}, ask, {}};
        if (survival::FitTimeDependentCox(cox, limits, watch, parameters, estimate) !=
            survival::EstimationStatus::Success)
            state.SkipWithError("no estimates");
    }
    state.counters["iterations"] = estimate.iterations;
    state.counters["logLikelihood"] = estimate.logLikelihood;
    state.counters["nullLogLikelihood"] = estimate.nullLogLikelihood;
    state.counters["x"] = parameters[0];
    state.counters["xLogT"] = parameters[1];
    state.counters["msBetweenQuestions"] = longest;
    state.counters["roomMB"] = static_cast<double>(regression.kept) * 8 / 1e6;
}

void timeDependentLikelihood(benchmark::State& state) {
    Regression regression(state);
    std::vector<double> room(regression.kept);
    survival::TimeDependentLikelihood likelihood(regression.sample, *regression.covariates, room, {});
    const std::vector<double> parameters{0.1, 0.05};
    double value = 0;
    if (likelihood.LogLikelihood(parameters, value) != survival::EstimationStatus::Success) std::abort();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(likelihood.LogLikelihood(parameters, value));
}

void sizes(benchmark::internal::Benchmark* one) {
    for (const int kept : {1, 0})
        for (const int cases : {500, 1000, 2000, 5000})
            one->Args({cases, kept});
    one->ArgNames({"cases", "kept"})->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(fitTimeDependentCox)->Apply(sizes);
BENCHMARK(timeDependentLikelihood)->Apply(sizes);
BENCHMARK(fitTimeDependentCox)
    ->Args({32000, 0})
    ->ArgNames({"cases", "kept"})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
