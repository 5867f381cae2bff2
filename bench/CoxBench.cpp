// Cox regressions of cases in memory: from the cases as they are read to the estimates, and the parts of
// that.

#include "bench/RegressionCases.h"
#include "module/regression/cox/Concordance.h"
#include "module/regression/cox/CoxResiduals.h"
#include "module/regression/cox/FitCox.h"
#include "module/regression/cox/PartialLikelihood.h"

#include <benchmark/benchmark.h>

#include <optional>
#include <vector>

namespace {

namespace survival = ozm::survival;
using korvana::bench::casesWith;

void prepare(survival::RegressionSample& sample, const std::vector<korvana::bench::CoxCase>& cases) {
    korvana::bench::fill(sample, cases);
    if (!sample.Order(korvana::bench::benchHost(), 1)) std::abort();
}

void prepareCox(benchmark::State& state) {
    const auto cases = casesWith(state.range(0));
    survival::RegressionSample sample;
    for ([[maybe_unused]] auto _ : state)
        prepare(sample, cases);
}

/// Everything from the cases on: their order, means and deviations, and the iteration.
void fitCox(benchmark::State& state) {
    const auto cases = casesWith(state.range(0));
    survival::RegressionSample sample;
    survival::NewtonEstimate estimate;
    for ([[maybe_unused]] auto _ : state) {
        prepare(sample, cases);
        std::vector<double> parameters(sample.Covariates());
        const auto watch = [](int, double, std::span<const double>) { return false; };
        if (survival::FitCox(sample, {}, watch, parameters, estimate) != survival::EstimationStatus::Success)
            state.SkipWithError("no estimates");
    }
    state.counters["iterations"] = estimate.iterations;
    state.counters["logLikelihood"] = estimate.logLikelihood;
}

/// A likelihood that was computed at a vector, as an iteration does at each.
struct AtAVector {
    explicit AtAVector(const benchmark::State& state) {
        prepare(sample, casesWith(state.range(0)));
        ordered = sample.Ordered();
        likelihood.emplace(ordered);
        parameters.assign(sample.Covariates(), 0.01);
        Compute();
    }
    void Compute() { benchmark::DoNotOptimize(likelihood->LogLikelihood(parameters, value)); }

    survival::RegressionSample sample;
    survival::OrderedSample ordered;
    std::optional<survival::PartialLikelihood> likelihood;
    std::vector<double> parameters;
    double value = 0;
};

void partialLikelihood(benchmark::State& state) {
    AtAVector at(state);
    for ([[maybe_unused]] auto _ : state)
        at.Compute();
}

void derivatives(benchmark::State& state) {
    AtAVector at(state);
    std::vector<double> gradient(at.parameters.size());
    survival::SquareMatrix information;
    for ([[maybe_unused]] auto _ : state) {
        at.likelihood->Derivatives(gradient, information);
        benchmark::DoNotOptimize(information);
    }
}

/// Residuals and concordance at estimates.
void coxResiduals(benchmark::State& state) {
    survival::RegressionSample sample;
    prepare(sample, casesWith(state.range(0)));
    const survival::OrderedSample ordered = sample.Ordered();
    const std::vector<double> parameters(sample.Covariates(), 0.01);
    for ([[maybe_unused]] auto _ : state) {
        const survival::RiskSets sets(ordered, parameters, 0);
        benchmark::DoNotOptimize(survival::ComputeCoxResiduals(ordered, sets));
        benchmark::DoNotOptimize(survival::ComputeConcordance(ordered, sets.Predictors()));
    }
}

void withCovariates(benchmark::internal::Benchmark* one) {
    one->Arg(5)->Arg(20)->Arg(40)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(prepareCox)->Apply(withCovariates);
BENCHMARK(fitCox)->Apply(withCovariates);
BENCHMARK(partialLikelihood)->Apply(withCovariates);
BENCHMARK(derivatives)->Apply(withCovariates);
BENCHMARK(coxResiduals)->Apply(withCovariates);
