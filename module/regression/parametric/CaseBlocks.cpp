#include "module/regression/parametric/CaseBlocks.h"

#include <cmath>
#include <numeric>

namespace ozm::survival {
namespace {

/// The sum of a function of the elements.
template <class Function>
double SumOf(std::span<const double> values, Function function) {
    Eight sums{};
    std::size_t i = 0;
    for (; i + 8 <= values.size(); i += 8)
        for (std::size_t l = 0; l < 8; ++l)
            sums.values[l] += function(values[i + l]);
    for (std::size_t l = 0; i < values.size(); ++i, ++l)
        sums.values[l] += function(values[i]);
    return sums.Sum();
}

} // namespace

CovariateScales CovariateScales::Standard(const CensoredCases& cases) {
    CovariateScales scales = None(cases.covariates);
    const auto n = static_cast<double>(cases.Cases());
    for (std::size_t k = 0; k < cases.covariates; ++k) {
        const std::span<const double> x = cases.Column(k);
        const double origin = x[0];
        const double centre = origin + SumOf(x, [origin](double each) { return each - origin; }) / n;
        const double squares = SumOf(x, [centre](double each) { return (each - centre) * (each - centre); });
        scales.centre[k] = centre;
        if (squares > 0.0) scales.scale[k] = std::sqrt(squares / n);
    }
    return scales;
}

std::vector<double> CovariateScales::Inwards(std::span<const double> coefficients) const {
    std::vector<double> inside(coefficients.begin(), coefficients.end());
    for (std::size_t k = 0; k < scale.size(); ++k) {
        inside[k] *= scale[k];
        inside.back() += coefficients[k] * centre[k];
    }
    return inside;
}

void CovariateScales::Outwards(std::span<const double> inside, std::span<double> coefficients) const {
    const std::size_t q = scale.size();
    coefficients[q] = inside[q];
    for (std::size_t k = 0; k < q; ++k) {
        coefficients[k] = inside[k] / scale[k];
        coefficients[q] -= coefficients[k] * centre[k];
    }
}

CaseBlocks::CaseBlocks(const CensoredCases& cases, std::span<const std::uint32_t> places,
                       const CovariateScales& scales)
    : cases_(places.size()), columns_(cases.covariates + 1),
      cells_(std::make_unique_for_overwrite<Eight[]>(Blocks() * columns_)) {
    Eight* cell = cells_.get();
    for (std::size_t first = 0; first < cases_; first += 8) {
        const std::span<const std::uint32_t> here =
            places.subspan(first, std::min<std::size_t>(8, cases_ - first));
        for (std::size_t k = 0; k < cases.covariates; ++k, ++cell) {
            const std::span<const double> x = cases.Column(k);
            *cell = {};
            for (std::size_t l = 0; l < here.size(); ++l)
                cell->values[l] = (x[here[l]] - scales.centre[k]) / scales.scale[k];
        }
        *cell = {};
        for (std::size_t l = 0; l < here.size(); ++l)
            cell->values[l] = 1.0;
        ++cell;
    }
}

std::vector<Eight> InBlocks(std::span<const double> values, std::span<const std::uint32_t> places) {
    std::vector<Eight> blocks((places.size() + 7) / 8);
    for (std::size_t i = 0; i < places.size(); ++i)
        blocks[i / 8].values[i % 8] = values[places[i]];
    return blocks;
}

std::vector<std::uint32_t> PlacesOf(std::span<const std::uint8_t> status, std::uint8_t which) {
    // Without a branch: which case has it is hard to foresee.
    std::vector<std::uint32_t> places(status.size() + 1);
    std::size_t count = 0;
    for (std::size_t i = 0; i < status.size(); ++i) {
        places[count] = static_cast<std::uint32_t>(i);
        count += static_cast<std::size_t>(status[i] == which);
    }
    places.resize(count);
    return places;
}

std::vector<std::uint32_t> AllPlaces(std::size_t cases) {
    std::vector<std::uint32_t> places(cases);
    std::iota(places.begin(), places.end(), 0U);
    return places;
}

} // namespace ozm::survival
