#include "module/regression/timedependent/TimeDiagnosis.h"

#include "module/regression/estimation/Dependence.h"
#include "module/regression/estimation/LeastCurvature.h"
#include "module/regression/timedependent/PredictorBounds.h"

#include <algorithm>
#include <cmath>
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

/// The largest magnitude of a covariate, of a fixed one about its mean; 0 where it is always that.
double MagnitudeOf(const TimeDependentLikelihood& likelihood, std::size_t covariate) {
    const double step = likelihood.NegligibleStep(covariate);
    return step > 0.0 ? NegligibleStepOf(1.0) / step : 0.0;
}

/// Whether each death has the largest value of a combination of the covariates among those at risk with it,
/// but for a part of the combination's range, and these differ.
bool IsLargestInDeaths(TimeDependentCox& cox, std::span<const double> direction, double part) {
    CovariateTable table(cox.sample, cox.covariates, {});
    std::vector<double> values;
    double range = 0.0;
    double shortfall = 0.0;
    for (std::size_t time = 0; time < table.Times().size(); ++time) {
        const RiskTime& at = table.Times()[time];
        if (at.events == 0) continue;
        values.assign(at.AtRisk(), 0.0);
        const auto add = [&](const CaseColumns& columns, std::span<const std::size_t> which) {
            for (std::size_t k = 0; k < columns.count; ++k)
                for (std::size_t i = 0; i < values.size(); ++i)
                    values[i] += columns[k][i] * direction[which[k]];
        };
        add(table.FixedFrom(at.first), table.Fixed());
        add(table.ChangingAt(time), table.Changing());
        const auto [least, most] = std::ranges::minmax(values);
        range = std::max(range, most - least);
        for (std::size_t i = at.own; i < at.end; ++i)
            if (cox.sample.complete[i] != 0) shortfall = std::max(shortfall, most - values[i - at.first]);
        const auto all = static_cast<double>(table.Times().size());
        if (cox.watch && cox.watch(static_cast<double>(time + 1) / all)) return false;
    }
    return range > 0.0 && shortfall <= part * range;
}

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

std::vector<std::size_t> FindUnboundedTogether(TimeDependentCox& cox, std::span<const double> parameters) {
    constexpr double farOut = 8.0; // of a coefficient times the magnitude of its covariate
    constexpr double allowed = 0.001;
    constexpr double considerable = 0.001;
    const std::size_t p = parameters.size();
    TimeDependentLikelihood likelihood(cox.sample, cox.covariates, cox.room, cox.watch);
    double value = 0.0;
    // An estimation may have ended where there is no likelihood: nearer to 0, in the same direction, there
    // is.
    std::vector<double> reached(parameters.begin(), parameters.end());
    EstimationStatus status = EstimationStatus::NoLikelihood;
    for (int halvings = 0; p >= 2 && halvings < 10 && status == EstimationStatus::NoLikelihood; ++halvings) {
        if (halvings > 0)
            for (double& each : reached)
                each /= 2.0;
        status = likelihood.LogLikelihood(reached, value);
    }
    if (status != EstimationStatus::Success) return {};
    std::vector<double> scaled(p);
    std::vector<double> magnitudes(p);
    for (std::size_t k = 0; k < p; ++k) {
        const double magnitude = MagnitudeOf(likelihood, k);
        magnitudes[k] = magnitude > 0.0 ? magnitude : 1.0;
        scaled[k] = reached[k] * magnitudes[k];
    }
    if (std::ranges::none_of(scaled, [](double each) { return std::abs(each) > farOut; })) return {};
    ParameterVector gradient{};
    SquareMatrix information;
    likelihood.Derivatives(std::span{gradient}.first(p), information);
    for (std::size_t k = 0; k < p; ++k)
        for (std::size_t l = 0; l < p; ++l)
            information(k, l) /= magnitudes[k] * magnitudes[l];
    std::vector<double> direction = FlatPart(information, scaled);
    double most = 0.0;
    for (const double each : direction)
        most = std::max(most, std::abs(each));
    if (!(most > 0.0)) return {};
    std::vector<std::size_t> together;
    for (std::size_t k = 0; k < p; ++k) {
        if (std::abs(direction[k]) >= considerable * most) together.push_back(k);
        direction[k] /= magnitudes[k];
    }
    if (together.size() < 2 || !IsLargestInDeaths(cox, direction, allowed)) return {};
    return together;
}

std::vector<Diagnosis::Scale> FindScales(TimeDependentCox& cox) {
    constexpr double least = 1e-4;
    constexpr double largest = 1e70;
    TimeDependentLikelihood likelihood(cox.sample, cox.covariates, cox.room, cox.watch);
    double value = 0.0;
    const std::vector<double> zeros(likelihood.Parameters());
    (void)likelihood.LogLikelihood(zeros, value); // which finds out the magnitudes
    std::vector<Diagnosis::Scale> scales;
    for (std::size_t k = 0; k < zeros.size(); ++k)
        if (const double magnitude = MagnitudeOf(likelihood, k);
            magnitude > 0.0 && (magnitude < least || magnitude > largest))
            scales.push_back({k, magnitude});
    return scales;
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
    constexpr double leastMagnitude = 1e-140; // products of smaller values are 0
    for (std::size_t k = 0; k < p; ++k)
        for (std::size_t l = 0; l < p; ++l) {
            if (!std::isfinite(information(k, l))) return std::nullopt;
            if (const double magnitude = MagnitudeOf(likelihood, k);
                magnitude > 0.0 && magnitude < leastMagnitude)
                return std::nullopt;
            if (const double magnitude = MagnitudeOf(likelihood, k); magnitude > 0.0)
                information(k, l) /= magnitude;
            if (const double magnitude = MagnitudeOf(likelihood, l); magnitude > 0.0)
                information(k, l) /= magnitude;
        }
    const double events = std::accumulate(cox.sample.complete.begin(), cox.sample.complete.end(), 0.0);
    return DependenceIn(information, p, leastInformation * events);
}

} // namespace ozm::survival
