#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace ozm::survival {

/// How the times of cases with covariates x are distributed about the location mu = b0 + x'b, by the score s
/// of a time t:
///
///   Exponential   s = ln t - mu             S(t) = exp(-exp(s)), so the mean time is exp(mu)
///   Lognormal     s = (ln t - mu) / sigma   S(t) = Q(s), Q the upper tail of the standard normal
///   distribution Normal        s = (t - mu) / sigma      S(t) = Q(s)
enum class TimeDistribution : std::uint8_t { Exponential, Lognormal, Normal };

/// A fitted model; refers to its parameters: b, then b0, then sigma, which the exponential model has not.
struct FittedTimes {
    TimeDistribution distribution = TimeDistribution::Exponential;
    std::span<const double> parameters;

    [[nodiscard]] bool HasSigma() const { return distribution != TimeDistribution::Exponential; }
    [[nodiscard]] bool OfLogarithm() const { return distribution != TimeDistribution::Normal; }
    [[nodiscard]] std::size_t Covariates() const { return parameters.size() - (HasSigma() ? 2 : 1); }
    [[nodiscard]] double Constant() const { return parameters[Covariates()]; }
    [[nodiscard]] double Sigma() const { return HasSigma() ? parameters.back() : 1.0; }

    /// The location of somebody with these covariates.
    [[nodiscard]] double Location(std::span<const double> covariates) const;
    /// The score of a time; -infinity for a time of 0 that is taken the logarithm of.
    [[nodiscard]] double Score(double time, double location) const;
    /// The score at which the survival is a share in 0..1.
    [[nodiscard]] double ScoreOfSurvival(double survival) const;
    /// The logarithm of the cumulative hazard -ln S at a score, also where S is 1 or 0 to a double.
    [[nodiscard]] double LogHazard(double score) const;
    /// Its derivative by the score.
    [[nodiscard]] double LogHazardSlope(double score) const;
};

/// ln Q(z), also where Q(z) is 1 or 0 to a double.
double LogNormalTail(double z);

} // namespace ozm::survival
