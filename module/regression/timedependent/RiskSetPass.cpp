#include "module/regression/timedependent/RiskSetPass.h"

#include "module/regression/estimation/LaneExp.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

namespace ozm::survival {
namespace {

constexpr std::size_t chunk = 256; ///< cases whose numbers are in use at a time
static_assert(chunk % caseGroup == 0);

// Each function is translated for vectors of several widths. Its sums are the same in all of them: they are
// kept for each place in a group of cases, and added up at the end.

/// The numbers of a group of cases.
template <std::size_t Lanes>
struct Group {
    static constexpr std::size_t parts = caseGroup / Lanes;
    Lane<Lanes> part[parts];

    [[gnu::always_inline]] void Read(const double* from) {
        for (std::size_t i = 0; i < parts; ++i)
            std::memcpy(&part[i], from + i * Lanes, sizeof(part[i]));
    }
    [[gnu::always_inline]] void Write(double* to) const {
        for (std::size_t i = 0; i < parts; ++i)
            std::memcpy(to + i * Lanes, &part[i], sizeof(part[i]));
    }
    [[gnu::always_inline]] void Clear() {
        for (Lane<Lanes>& each : part)
            each = Lane<Lanes>{};
    }
    [[gnu::always_inline]] void Add(const Group& other) {
        for (std::size_t i = 0; i < parts; ++i)
            part[i] += other.part[i];
    }
    [[gnu::always_inline]] void AddTimes(const Group& other, double factor) {
        for (std::size_t i = 0; i < parts; ++i)
            part[i] += other.part[i] * factor;
    }
    [[gnu::always_inline]] void AddProduct(const Group& one, const Group& other) {
        for (std::size_t i = 0; i < parts; ++i)
            part[i] += one.part[i] * other.part[i];
    }
    [[gnu::always_inline]] void Multiply(double factor) {
        for (Lane<Lanes>& each : part)
            each *= factor;
    }
    [[gnu::always_inline]] void Multiply(const Group& other) {
        for (std::size_t i = 0; i < parts; ++i)
            part[i] *= other.part[i];
    }
    [[gnu::always_inline]] void Subtract(double number) {
        for (Lane<Lanes>& each : part)
            each -= number;
    }
};

/// Whether magnitudes are up to a bound: every bit is 1 for as long as they are.
template <std::size_t Lanes>
struct Bound {
    LaneBits<Lanes> within = ~LaneBits<Lanes>{};

    [[gnu::always_inline]] void Test(const Group<Lanes>& group, double largest) {
        for (const Lane<Lanes>& each : group.part) {
            const Lane<Lanes> magnitude = each < 0.0 ? -each : each;
            const auto inside = magnitude <= largest;
            within &= __builtin_bit_cast(LaneBits<Lanes>, inside);
        }
    }
    [[gnu::always_inline]] bool Holds() const {
        std::uint64_t all = ~std::uint64_t{0};
        for (std::size_t l = 0; l < Lanes; ++l)
            all &= within[l];
        return all != 0;
    }
};

template <std::size_t Lanes>
[[gnu::always_inline]] inline double Survey(const double* values, std::size_t count) {
    double largest = 0.0;
    Group<Lanes> here;
    Group<Lanes> most;
    Group<Lanes> zeros; // of what is not finite: NaN
    most.Clear();
    zeros.Clear();
    for (std::size_t i = 0; i < count; i += caseGroup) {
        here.Read(values + i);
        zeros.AddTimes(here, 0.0);
        for (std::size_t p = 0; p < Group<Lanes>::parts; ++p) {
            const Lane<Lanes> magnitude = here.part[p] < 0.0 ? -here.part[p] : here.part[p];
            most.part[p] = magnitude > most.part[p] ? magnitude : most.part[p];
        }
    }
    std::array<double, caseGroup> all{};
    zeros.Write(all.data());
    if (std::isnan(SumOfGroup(all.data()))) return std::numeric_limits<double>::quiet_NaN();
    most.Write(all.data());
    for (const double each : all)
        largest = std::max(largest, each);
    return largest;
}

/// The predictors of a group of cases.
template <std::size_t Lanes>
[[gnu::always_inline]] inline void Predict(const RiskSetAt& set, const double* parameters, std::size_t first,
                                           Group<Lanes>& eta) {
    eta.Read(set.predictor + first);
    Group<Lanes> z;
    for (std::size_t k = 0; k < set.changing.count; ++k) {
        z.Read(set.changing[k] + first);
        eta.AddTimes(z, parameters[k]);
    }
}

/// Takes the group in which the cases end, if they do not fill it.
template <std::size_t Lanes>
[[gnu::always_inline]] inline void ClearBeyond(std::size_t cases, std::size_t first, Group<Lanes>& group) {
    if (cases - first >= caseGroup) return;
    std::array<double, caseGroup> all{};
    group.Write(all.data());
    for (std::size_t l = cases - first; l < caseGroup; ++l)
        all[l] = 0.0;
    group.Read(all.data());
}

template <std::size_t Lanes>
[[gnu::always_inline]] inline bool Within(const RiskSetAt& set, const double* parameters, double largest) {
    Bound<Lanes> bound;
    Group<Lanes> eta;
    for (std::size_t first = 0; first < set.cases; first += caseGroup) {
        Predict<Lanes>(set, parameters, first, eta);
        ClearBeyond<Lanes>(set.cases, first, eta);
        bound.Test(eta, largest);
    }
    return bound.Holds();
}

/// Adds products of weights and columns to the sums, a group for each column.
template <std::size_t Lanes>
[[gnu::always_inline]] inline void AddWeighted(const CaseColumns& columns, const double* weights,
                                               std::size_t first, std::size_t end, double* sums) {
    Group<Lanes> w;
    Group<Lanes> z;
    Group<Lanes> sum;
    for (std::size_t k = 0; k < columns.count; ++k) {
        sum.Read(sums + k * caseGroup);
        for (std::size_t i = first; i < end; i += caseGroup) {
            w.Read(weights + i);
            z.Read(columns[k] + i);
            sum.AddProduct(w, z);
        }
        sum.Write(sums + k * caseGroup);
    }
}

template <std::size_t Lanes>
[[gnu::always_inline]] inline bool Weigh(const RiskSetAt& set, const double* parameters, double largest,
                                         double* weights, WeightedSums& sums) {
    alignas(64) std::array<double, mostParameters * caseGroup> weighted;
    std::fill_n(weighted.begin(), (set.changing.count + set.fixed.count) * caseGroup, 0.0);
    double* const ofFixed = weighted.data() + set.changing.count * caseGroup;
    Bound<Lanes> bound;
    Group<Lanes> all;
    Group<Lanes> eta;
    all.Clear();
    for (std::size_t first = 0; first < set.cases; first += chunk) {
        const std::size_t end = std::min(first + chunk, set.cases);
        for (std::size_t i = first; i < end; i += caseGroup) {
            Predict<Lanes>(set, parameters, i, eta);
            ClearBeyond<Lanes>(set.cases, i, eta);
            bound.Test(eta, largest);
            for (Lane<Lanes>& part : eta.part)
                Exponentiate<Lanes>(part);
            ClearBeyond<Lanes>(set.cases, i, eta);
            all.Add(eta);
            eta.Write(weights + i);
        }
        AddWeighted<Lanes>(set.changing, weights, first, end, weighted.data());
        AddWeighted<Lanes>(set.fixed, weights, first, end, ofFixed);
    }
    std::array<double, caseGroup> each{};
    all.Write(each.data());
    sums[0] = SumOfGroup(each.data());
    for (std::size_t k = 0; k < set.changing.count + set.fixed.count; ++k)
        sums[1 + k] = SumOfGroup(weighted.data() + k * caseGroup);
    return bound.Holds();
}

template <std::size_t Lanes>
[[gnu::always_inline]] inline void Spread(const RiskSetAt& set, const double* weights, double perWeight,
                                          const double* means, const SpreadSums& sums) {
    alignas(64) std::array<std::array<double, chunk>, mostParameters> differences;
    alignas(64) std::array<double, chunk> shares;
    alignas(64) std::array<double, chunk> weighted;
    Group<Lanes> one;
    Group<Lanes> other;
    Group<Lanes> sum;
    for (std::size_t first = 0; first < set.cases; first += chunk) {
        const std::size_t count = std::min(chunk, set.cases - first);
        for (std::size_t i = 0; i < count; i += caseGroup) {
            one.Read(weights + first + i);
            one.Multiply(perWeight);
            one.Write(&shares[i]);
            sum.Read(sums.share + first + i);
            sum.Add(one);
            sum.Write(sums.share + first + i);
        }
        double* pair = sums.pairs.data();
        for (std::size_t k = 0; k < set.changing.count; ++k) {
            const double* const z = set.changing[k] + first;
            double* const ofCases = sums.changing + k * sums.stride + first;
            for (std::size_t i = 0; i < count; i += caseGroup) {
                one.Read(z + i);
                one.Subtract(means[k]);
                one.Write(&differences[k][i]);
                other.Read(&shares[i]);
                one.Multiply(other);
                one.Write(&weighted[i]);
                sum.Read(ofCases + i);
                sum.Add(one);
                sum.Write(ofCases + i);
            }
            for (std::size_t l = 0; l <= k; ++l) {
                sum.Read(pair);
                for (std::size_t i = 0; i < count; i += caseGroup) {
                    one.Read(&weighted[i]);
                    other.Read(&differences[l][i]);
                    sum.AddProduct(one, other);
                }
                sum.Write(pair);
                pair += caseGroup;
            }
        }
    }
}

#define KORVANA_PASS(Name, Lanes, ...)                                                                       \
    __VA_ARGS__ double Survey##Name(const double* values, std::size_t count) {                               \
        return Survey<Lanes>(values, count);                                                                 \
    }                                                                                                        \
    __VA_ARGS__ bool Within##Name(const RiskSetAt& set, const double* parameters, double largest) {          \
        return Within<Lanes>(set, parameters, largest);                                                      \
    }                                                                                                        \
    __VA_ARGS__ bool Weigh##Name(const RiskSetAt& set, const double* parameters, double largest,             \
                                 double* weights, WeightedSums& sums) {                                      \
        return Weigh<Lanes>(set, parameters, largest, weights, sums);                                        \
    }                                                                                                        \
    __VA_ARGS__ void Spread##Name(const RiskSetAt& set, const double* weights, double perWeight,             \
                                  const double* means, const SpreadSums& sums) {                             \
        Spread<Lanes>(set, weights, perWeight, means, sums);                                                 \
    }

KORVANA_PASS(Two, 2, )
#if defined(__x86_64__)
KORVANA_PASS(Four, 4, [[gnu::target("avx2")]])
KORVANA_PASS(Eight, 8, [[gnu::target("avx512f")]])
#endif

std::vector<RiskSetPass> Usable() {
    std::vector<RiskSetPass> passes;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f"))
        passes.push_back({SurveyEight, WithinEight, WeighEight, SpreadEight});
    if (__builtin_cpu_supports("avx2")) passes.push_back({SurveyFour, WithinFour, WeighFour, SpreadFour});
#endif
    passes.push_back({SurveyTwo, WithinTwo, WeighTwo, SpreadTwo});
    return passes;
}

} // namespace

std::span<const RiskSetPass> UsableRiskSetPasses() {
    static const std::vector<RiskSetPass> passes = Usable();
    return passes;
}

} // namespace ozm::survival
