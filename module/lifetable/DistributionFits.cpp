#include "module/lifetable/DistributionFits.h"

#include "module/lifetable/HazardRegression.h"
#include "module/survdata/FTail.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {
namespace {

constexpr double largestExponent = 70.0;

void Mark(DistributionFit& fit, Inadequacy why, double where) {
    fit.inadequacy = why;
    fit.where = where;
    fit.logLikelihood = 0.0;
}

/// Calls `step(fit, family, weighting)`, which returns why the fitting stops, for every fit that is not
/// inadequate yet. True unless it stopped.
template <class Step>
bool ForEachFit(DistributionFits& all, Step step) {
    for (const Distribution family : allDistributions)
        for (std::size_t w = 0; w < weightings; ++w) {
            DistributionFit& fit = all.Of(family, w);
            if (fit.inadequacy != Inadequacy::None) continue;
            all.stop = step(fit, family, w);
            if (all.stop == FitStop::None) continue;
            all.stoppedAt = family;
            all.stoppedWeighting = w;
            return false;
        }
    return true;
}

/// A survival function's value at a time, or why it cannot be computed.
struct SurvivalValue {
    double value = 0.0;
    FitStop stop = FitStop::None;
};

SurvivalValue SurvivalAt(Distribution family, const DistributionParameters& of, double t) {
    if (family == Distribution::Gompertz) {
        if (of.gamma == 0.0) return {0.0, FitStop::GammaZero};
        if (of.lambda > largestExponent || of.gamma * t > largestExponent)
            return {0.0, FitStop::LargeExponent};
        const double exponent = (std::exp(of.gamma * t) - 1.0) * std::exp(of.lambda) / -of.gamma;
        if (exponent > largestExponent) return {0.0, FitStop::LargeExponent};
        return {std::exp(exponent), FitStop::None};
    }
    const double exponent = -CumulativeHazardAt(family, of, t);
    if (exponent > largestExponent) return {0.0, FitStop::LargeExponent};
    return {std::exp(exponent), FitStop::None};
}

/// Survival at the interval starts, and at the midpoints for the densities. `time` is that of the last value.
FitStop FitSurvival(const LifeTable& table, Distribution family, DistributionFit& fit, IntervalColumn& middle,
                    double& time) {
    // False where the fit ends.
    const auto value = [&](double& out, FitStop& stop) {
        const SurvivalValue at = SurvivalAt(family, fit.parameters, time);
        stop = at.stop;
        if (stop != FitStop::None) return false;
        const bool mayRise = family == Distribution::LinearHazard || family == Distribution::Gompertz;
        out = mayRise && at.value > 1.0 ? 0.0 : at.value;
        if (mayRise && at.value > 1.0) Mark(fit, Inadequacy::SurvivalAboveOne, time);
        return fit.inadequacy == Inadequacy::None;
    };
    FitStop stop = FitStop::None;
    fit.survival[0] = 1.0;
    for (std::size_t i = 1; i < table.Rows(); ++i) {
        time = table.lower[i];
        if (!value(fit.survival[i], stop)) return stop;
    }
    for (std::size_t i = 0; i < table.Closed(); ++i) {
        time = table.midpoint[i];
        if (!value(middle[i], stop)) return stop;
    }
    return FitStop::None;
}

void FitConditional(const LifeTable& table, DistributionFit& fit) {
    for (std::size_t i = 0; i < table.Closed(); ++i) {
        double p = fit.survival[i] == 0.0 ? 0.0 : fit.survival[i + 1] / fit.survival[i];
        const double most = 1.0 - 1.0 / (2.0 * table.exposed[i]);
        if (p > most) p = most;
        if (fit.survival[i] == 0.0 || p <= 0.0) {
            fit.survival[i + 1] = 0.0;
            Mark(fit, Inadequacy::NobodyLeft, table.lower[i + 1]);
            return;
        }
        fit.conditional[i] = p;
    }
}

double LogLikelihoodOf(const LifeTable& table, const DistributionFit& fit) {
    double sum = 0.0;
    for (std::size_t i = 0; i < table.Closed(); ++i)
        sum += table.dying[i] * std::log(1.0 - fit.conditional[i]) +
               (table.exposed[i] - table.dying[i]) * std::log(fit.conditional[i]);
    return sum;
}

void CheckSigns(DistributionFits& all) {
    for (const Distribution family : {Distribution::Exponential, Distribution::Weibull})
        for (std::size_t w = 0; w < weightings; ++w)
            if (DistributionFit& fit = all.Of(family, w); fit.parameters.lambda < 0.0)
                Mark(fit, Inadequacy::NegativeLambda, 0.0);
}

} // namespace

DistributionFit::DistributionFit() {
    hazard.fill(none);
    survival.fill(none);
    density.fill(none);
    conditional.fill(none);
}

bool DistributionFits::AnyInadequate() const {
    return std::ranges::any_of(fits, [](const auto& family) {
        return std::ranges::any_of(family,
                                   [](const auto& fit) { return fit.inadequacy != Inadequacy::None; });
    });
}

bool DistributionFits::AnyShown() const {
    return std::ranges::any_of(fits, [](const auto& family) {
        return std::ranges::any_of(family, [](const auto& fit) { return fit.IsShown(); });
    });
}

void FitHazards(const LifeTable& table, Distribution family, std::size_t weighting, DistributionFits& fits) {
    DistributionFit& fit = fits.Of(family, weighting);
    for (std::size_t i = 0; i < table.Closed() && fit.inadequacy == Inadequacy::None; ++i) {
        if (family == Distribution::Weibull && !(fit.parameters.lambda * fit.parameters.gamma > 0.0)) {
            if (DistributionFit& gompertz = fits.Of(Distribution::Gompertz, weighting);
                gompertz.inadequacy == Inadequacy::None)
                Mark(gompertz, Inadequacy::WeibullHazard, 0.0);
            return;
        }
        fit.hazard[i] = HazardAt(family, fit.parameters, table.midpoint[i]);
        if (family == Distribution::LinearHazard && fit.hazard[i] < 0.0) {
            fit.hazard[i] = 0.0;
            Mark(fit, Inadequacy::NegativeHazard, table.midpoint[i]);
        }
    }
}

DistributionFits FitDistributions(const LifeTable& table) {
    DistributionFits all;
    for (std::size_t i = 0; i < table.Closed(); ++i)
        if (!HasVariances(table, i)) {
            all.stop = FitStop::NoVariance;
            all.stoppedTime = table.lower[i];
            return all;
        }
    bool goesOn = ForEachFit(all, [&](DistributionFit& fit, Distribution family, std::size_t w) {
        return EstimateParameters(table, family, w, fit);
    });
    if (!goesOn) return all;
    CheckSigns(all);
    ForEachFit(all, [&](DistributionFit&, Distribution family, std::size_t w) {
        FitHazards(table, family, w, all);
        return FitStop::None;
    });
    std::array<std::array<IntervalColumn, weightings>, distributions> middles{};
    goesOn = ForEachFit(all, [&](DistributionFit& fit, Distribution family, std::size_t w) {
        return FitSurvival(table, family, fit, middles[static_cast<std::size_t>(family)][w], all.stoppedTime);
    });
    if (!goesOn) return all;
    ForEachFit(all, [&](DistributionFit& fit, Distribution family, std::size_t w) {
        for (std::size_t i = 0; i < table.Closed(); ++i)
            fit.density[i] = fit.hazard[i] * middles[static_cast<std::size_t>(family)][w][i];
        fit.density[table.Closed()] = 0.0;
        return FitStop::None;
    });
    ForEachFit(all, [&](DistributionFit& fit, Distribution, std::size_t) {
        FitConditional(table, fit);
        return FitStop::None;
    });
    ForEachFit(all, [&](DistributionFit& fit, Distribution, std::size_t) {
        fit.logLikelihood = LogLikelihoodOf(table, fit);
        return FitStop::None;
    });
    return all;
}

GoodnessOfFit TestFit(const DistributionFit& fit, Distribution family, const LifeTable& table,
                      double logLikelihoodOfData) {
    GoodnessOfFit test;
    test.df = static_cast<int>(table.Closed()) - ParameterCount(family);
    test.chiSquare =
        -2.0 * (static_cast<double>(static_cast<float>(fit.logLikelihood)) - logLikelihoodOfData);
    test.p = static_cast<double>(
        ChiSquareTailProbability(static_cast<float>(test.chiSquare), static_cast<std::int16_t>(test.df)));
    return test;
}

} // namespace ozm::survival
