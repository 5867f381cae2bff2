#include "module/regression/timedependent/TimeDiagnosis.h"

#include "module/regression/estimation/Dependence.h"
#include "module/regression/timedependent/PredictorBounds.h"

#include <algorithm>
#include <numeric>

namespace ozm::survival {
namespace {

/// What the deaths so far say of a covariate.
struct Extremes {
    bool largest = true; ///< each has the largest value
    bool smallest = true;
    bool varies = false;

    [[nodiscard]] bool Unrefuted() const { return largest || smallest; }
    void Add(const RiskTime& at, std::span<const std::uint8_t> complete, const double* values) {
        const auto [least, most] = std::minmax_element(values, values + at.AtRisk());
        varies = varies || *least < *most;
        for (std::size_t i = at.own; i < at.end; ++i) {
            if (complete[i] == 0) continue;
            largest = largest && values[i - at.first] == *most;
            smallest = smallest && values[i - at.first] == *least;
        }
    }
};

} // namespace

std::vector<Diagnosis::Unbounded> FindUnbounded(TimeDependentCox& cox) {
    CovariateTable table(cox.sample, cox.covariates, {});
    std::vector<Extremes> extremes(cox.covariates.Count());
    for (std::size_t time = 0; time < table.Times().size(); ++time) {
        const RiskTime& at = table.Times()[time];
        if (at.events == 0) continue;
        if (std::ranges::none_of(extremes, &Extremes::Unrefuted)) return {};
        const CaseColumns fixed = table.FixedFrom(at.first);
        for (std::size_t k = 0; k < fixed.count; ++k)
            extremes[table.Fixed()[k]].Add(at, cox.sample.complete, fixed[k]);
        const CaseColumns changing = table.ChangingAt(time);
        for (std::size_t k = 0; k < changing.count; ++k)
            extremes[table.Changing()[k]].Add(at, cox.sample.complete, changing[k]);
        const auto all = static_cast<double>(table.Times().size());
        if (cox.watch && cox.watch(static_cast<double>(time + 1) / all)) return {};
    }
    std::vector<Diagnosis::Unbounded> unbounded;
    for (std::size_t k = 0; k < extremes.size(); ++k)
        if (extremes[k].varies && extremes[k].Unrefuted()) unbounded.push_back({k, extremes[k].largest});
    return unbounded;
}

std::optional<Diagnosis::Dependence> FindDependence(TimeDependentCox& cox) {
    constexpr double leastInformation = 1e-13; // of an event
    TimeDependentLikelihood likelihood(cox.sample, cox.covariates, cox.room, cox.watch);
    const std::size_t p = likelihood.Parameters();
    double value = 0.0;
    if (likelihood.LogLikelihood(std::vector<double>(p), value) != EstimationStatus::Success)
        return std::nullopt;
    ParameterVector gradient{};
    SquareMatrix information;
    likelihood.Derivatives(std::span{gradient}.first(p), information);
    const auto scale = [&](std::size_t k) { return likelihood.NegligibleStep(k) / NegligibleStepOf(1.0); };
    for (std::size_t k = 0; k < p; ++k)
        for (std::size_t l = 0; l < p; ++l)
            information(k, l) *= scale(k) * scale(l);
    const double events = std::accumulate(cox.sample.complete.begin(), cox.sample.complete.end(), 0.0);
    return DependenceIn(information, p, leastInformation * events);
}

} // namespace ozm::survival
