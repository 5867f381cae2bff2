// Cox regressions with a covariate x and x log(t), of cases in memory: from the cases in their order to the
// estimates; one likelihood with its derivatives; and how long it is between two questions whether to stop.

#include "bench/CoxCases.h"
#include "module/regression/timedependent/FitTimeDependentCox.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

namespace survival = ozm::survival;

/// Cases in the order of the partial likelihood.
struct Ordered {
    explicit Ordered(std::size_t cases) : blocks{static_cast<std::int32_t>(cases)} {
        korvana::bench::CoxCases source(1);
        std::vector<korvana::bench::CoxCase> all;
        for (std::size_t i = 0; i < cases; ++i)
            all.push_back(source.next());
        std::ranges::stable_sort(all, [](const auto& a, const auto& b) {
            return a.time != b.time ? a.time > b.time : a.event < b.event;
        });
        for (const auto& one : all) {
            times.push_back(one.time);
            complete.push_back(one.event ? 1 : 0);
            x.push_back(one.x[0]);
        }
    }
    [[nodiscard]] survival::OrderedSample Sample() const {
        return {times.size(), 0, times.size(), times, complete, {}, blocks};
    }

    std::vector<double> times;
    std::vector<std::uint8_t> complete;
    std::vector<double> x;
    std::vector<std::int32_t> blocks;
};

/// x and x log(t).
class Covariates final : public survival::TimeCovariates {
public:
    explicit Covariates(const std::vector<double>& x) : x_(x) {}
    [[nodiscard]] std::size_t Count() const override { return 2; }
    [[nodiscard]] bool DependsOnTime(std::size_t covariate) const override { return covariate == 1; }
    void Evaluate(std::size_t covariate, std::size_t first, double time, std::span<double> values) override {
        const double factor = covariate == 0 ? 1.0 : std::log(time);
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = x_[first + i] * factor;
    }

private:
    const std::vector<double>& x_;
};

/// The cases, and whether values are kept.
struct Regression {
    explicit Regression(const benchmark::State& state)
        : cases(static_cast<std::size_t>(state.range(0))), sample(cases.Sample()), covariates(cases.x),
          room(state.range(1) != 0 ? survival::RoomFor(sample, covariates) : 0) {}

    Ordered cases;
    survival::OrderedSample sample;
    Covariates covariates;
    std::vector<double> room;
};

void fitTimeDependentCox(benchmark::State& state) {
    Regression regression(state);
    survival::NewtonEstimate estimate;
    double longest = 0; // between two questions
    for ([[maybe_unused]] auto _ : state) {
        std::vector<double> parameters(2);
        auto last = std::chrono::steady_clock::now();
        const auto ask = [&](double) {
            const auto now = std::chrono::steady_clock::now();
            longest = std::max(longest, std::chrono::duration<double, std::milli>(now - last).count());
            last = now;
            return false;
        };
        const auto watch = [](int, double, std::span<const double>) { return false; };
        survival::TimeDependentCox cox{regression.sample, regression.covariates, regression.room, ask, {}};
        if (survival::FitTimeDependentCox(cox, {}, watch, parameters, estimate) !=
            survival::EstimationStatus::Success)
            state.SkipWithError("no estimates");
    }
    state.counters["iterations"] = estimate.iterations;
    state.counters["logLikelihood"] = estimate.logLikelihood;
    state.counters["msBetweenQuestions"] = longest;
    state.counters["roomMB"] = static_cast<double>(regression.room.size()) * 8 / 1e6;
}

void timeDependentLikelihood(benchmark::State& state) {
    Regression regression(state);
    survival::TimeDependentLikelihood likelihood(regression.sample, regression.covariates, regression.room,
                                                 {});
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
