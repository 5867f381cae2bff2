#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace ozm::survival {

/// The families of survival distributions, by their hazard h(t) and survival S(t). Scripts know their order.
enum class Distribution : std::uint8_t {
    Exponential,  ///< h = lambda, S = exp(-lambda t)
    LinearHazard, ///< h = lambda + gamma t, S = exp(-(lambda t + gamma t^2 / 2))
    Gompertz,     ///< h = exp(lambda + gamma t), S = exp(-(e^lambda / gamma) (e^(gamma t) - 1))
    Weibull,      ///< h = lambda gamma t^(gamma - 1), S = exp(-lambda t^gamma)
};
inline constexpr std::size_t distributions = 4;
inline constexpr std::array<Distribution, distributions> allDistributions{
    Distribution::Exponential, Distribution::LinearHazard, Distribution::Gompertz, Distribution::Weibull};

/// A member of a family.
struct DistributionParameters {
    double lambda = 0.0;
    double gamma = 0.0; ///< of the families with two parameters
};

/// The number of parameters of a family: 1 or 2.
constexpr int ParameterCount(Distribution family) {
    return family == Distribution::Exponential ? 1 : 2;
}

/// The hazard at a time, by its formula as it stands.
double HazardAt(Distribution family, const DistributionParameters& of, double time);

/// -ln S(t), by its formula as it stands (for a Gompertz distribution whose gamma is 0: e^lambda t).
double CumulativeHazardAt(Distribution family, const DistributionParameters& of, double time);

/// The time at which survival has fallen to a proportion between 0 and 1, exclusive; NaN where it never does.
double TimeOfSurvival(Distribution family, const DistributionParameters& of, double surviving);

} // namespace ozm::survival
