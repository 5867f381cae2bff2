// Parametric regressions of cases in memory, from the cases as they are read to the estimates.

#include "bench/RegressionCases.h"
#include "module/regression/RegressionModels.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

namespace survival = ozm::survival;

/// Means and deviations, the model with its covariances, and the null model.
void fitParametric(benchmark::State& state, survival::RegressionKind kind) {
    const auto cases = korvana::bench::casesWith(state.range(0));
    const survival::RegressionModel& model = survival::ModelOf(kind);
    const std::vector<std::string> names(cases[0].x.size());
    const survival::CompiledCovariates noExpressions;
    const std::vector<int> variables; // those of expressions
    survival::RegressionSample sample;
    survival::NewtonEstimate estimate;
    for ([[maybe_unused]] auto _ : state) {
        korvana::bench::fill(sample, cases);
        std::vector<double> parameters;
        survival::EstimationRun run{.host = korvana::bench::benchHost(),
                                    .sample = sample,
                                    .covariates = names,
                                    .compiled = noExpressions,
                                    .variables = variables,
                                    .limits = {},
                                    .parameters = parameters,
                                    .estimate = estimate,
                                    .show = {},
                                    .watch = [](int, double, std::span<const double>) { return false; }};
        if (model.fit(run).ending != survival::Ending::Estimated) state.SkipWithError("no estimates");
    }
    // On the scale of time, as other programs have it.
    double logTimes = 0;
    for (const auto& one : cases)
        if (one.event && kind == survival::RegressionKind::Lognormal) logTimes += std::log(one.time);
    state.counters["iterations"] = estimate.iterations;
    state.counters["logLikelihood"] = estimate.logLikelihood - logTimes;
    state.counters["nullLogLikelihood"] = estimate.nullLogLikelihood - logTimes;
}

void withCovariates(benchmark::internal::Benchmark* one) {
    one->Arg(5)->Arg(20)->Arg(40)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK_CAPTURE(fitParametric, exponential, survival::RegressionKind::Exponential)->Apply(withCovariates);
BENCHMARK_CAPTURE(fitParametric, lognormal, survival::RegressionKind::Lognormal)->Apply(withCovariates);
BENCHMARK_CAPTURE(fitParametric, normal, survival::RegressionKind::Normal)->Apply(withCovariates);
