#include "module/regression/parametric/FitCensoredNormal.h"

#include "module/regression/parametric/CaseSums.h"
#include "module/regression/parametric/NormalHazard.h"
#include "module/regression/parametric/PackedCholesky.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace ozm::survival {
namespace {

bool IsConfined(std::uint8_t status) {
    return status == CensoredCases::confined;
}

/// Rules of the data's shape: the first that they break.
EmStatus CheckSizes(const CensoredCases& cases, const EmLimits& limits, std::size_t parameters) {
    using enum EmStatus;
    const std::size_t n = cases.Cases();
    if (n == 0 || cases.status.size() != n) return WrongCases;
    if (std::ranges::any_of(cases.status, [](auto each) { return each > CensoredCases::confined; }))
        return WrongCases;
    if (std::ranges::any_of(cases.status, IsConfined) && cases.upper.size() != n) return WrongCases;
    if (parameters != cases.covariates + 2 || parameters > mostParameters) return WrongParameters;
    if (cases.covariates > 0 &&
        (cases.stride < n || cases.x.size() < (cases.covariates - 1) * cases.stride + n))
        return WrongCovariates;
    if (limits.tolerances.size() != parameters) return WrongTolerances;
    return Success;
}

/// Cases of one status.
struct Group {
    Group(const CensoredCases& cases, std::span<const std::uint8_t> status, std::uint8_t which,
          const CovariateScales& scales)
        : places(PlacesOf(status, which)), blocks(cases, places, scales), y(InBlocks(cases.y, places)),
          upper(cases.upper.empty() ? std::vector<Eight>() : InBlocks(cases.upper, places)),
          ones(InBlocks(std::vector<double>(cases.Cases(), 1.0), places)) {}

    [[nodiscard]] double Cases() const { return static_cast<double>(places.size()); }

    std::vector<std::uint32_t> places;
    CaseBlocks blocks;
    std::vector<Eight> y;
    std::vector<Eight> upper;
    std::vector<Eight> ones;
};

/// Sums over the complete cases about coefficients near their own least squares fit, from which those about
/// any others follow.
struct Reference {
    std::vector<double> coefficients;
    std::vector<double> gradient; ///< of the columns times the residuals
    double squares = 0.0;         ///< of the residuals
    SquareMatrix products;        ///< of the columns
};

/// What an iteration sums up.
struct Sums {
    std::vector<double> excess; ///< of the expected responses less their means, times each column
    double squares = 0.0;       ///< of them
    double divisor = 0.0;
};

class Em {
public:
    Em(const CensoredCases& cases, std::span<const std::uint8_t> status)
        : kernels_(UsableCaseKernels().front()), scales_(CovariateScales::Standard(cases)),
          columns_(cases.covariates + 1), complete_(cases, status, CensoredCases::complete, scales_),
          censored_(cases, status, CensoredCases::censored, scales_),
          confined_(cases, status, CensoredCases::confined, scales_) {}

    EmStatus Prepare(std::span<double> parameters) {
        const SquareMatrix confined = Products(confined_);
        reference_.products = Products(complete_);
        SquareMatrix all = Products(censored_);
        SquareMatrix known = reference_.products;
        for (std::size_t k = 0; k < columns_; ++k)
            for (std::size_t l = 0; l < columns_; ++l) {
                known(k, l) += confined(k, l);
                all(k, l) += known(k, l);
            }
        factor_ = Factor(all);
        if (!factor_ || factor_->Deficiency() > 0) return EmStatus::Singular;
        const auto ofKnown = Factor(known);
        if (!ofKnown) return EmStatus::SingularStart;
        const double squares = FitKnown(*ofKnown);
        coefficients_ = scales_.Inwards(parameters.first(columns_));
        sigma_ = parameters.back();
        if (sigma_ > 0.0) return EmStatus::Success;
        if (ofKnown->Deficiency() > 0) return EmStatus::SingularStart;
        coefficients_ = reference_.coefficients;
        sigma_ = std::sqrt(squares / (complete_.Cases() + confined_.Cases()));
        Report(parameters);
        return EmStatus::Success;
    }

    void Step() {
        Sums sums = OfComplete();
        AddCensored(sums);
        if (!confined_.places.empty()) AddConfined(sums);
        factor_->SolveRest(sums.excess);
        for (std::size_t k = 0; k < columns_; ++k)
            coefficients_[k] += sums.excess[k];
        sigma_ = std::sqrt(sums.squares / sums.divisor);
    }

    void Report(std::span<double> parameters) const {
        scales_.Outwards(coefficients_, parameters);
        parameters.back() = sigma_;
    }

private:
    [[nodiscard]] SquareMatrix Products(const Group& group) const {
        SquareMatrix products;
        kernels_.multiply(group.blocks, group.ones, products);
        return products;
    }
    [[nodiscard]] std::optional<PackedCholesky> Factor(const SquareMatrix& products) const {
        constexpr double lostPivot = 1e-10;
        return PackedCholesky::Of(Pack(products, columns_), columns_, lostPivot);
    }

    /// Least squares on the cases that are not censored, confined ones at their midpoints. Returns the sum of
    /// squared residuals.
    double FitKnown(const PackedCholesky& factor) {
        std::vector<Eight> middle = confined_.y;
        for (std::size_t b = 0; b < middle.size(); ++b)
            for (std::size_t l = 0; l < 8; ++l)
                middle[b].values[l] += 0.5 * (confined_.upper[b].values[l] - middle[b].values[l]);
        std::vector<double>& fit = reference_.coefficients;
        std::vector<double> more(columns_);
        fit.resize(columns_);
        reference_.gradient.resize(columns_);
        kernels_.sum(complete_.blocks, complete_.y, fit);
        kernels_.sum(confined_.blocks, middle, more);
        for (std::size_t k = 0; k < columns_; ++k)
            fit[k] += more[k];
        factor.SolveRest(fit);
        const std::vector<Eight> residuals = Residuals(complete_, complete_.y, fit);
        kernels_.sum(complete_.blocks, residuals, reference_.gradient);
        reference_.squares = SumOfSquares(residuals);
        return reference_.squares + SumOfSquares(Residuals(confined_, middle, fit));
    }
    [[nodiscard]] std::vector<Eight> Residuals(const Group& group, const std::vector<Eight>& y,
                                               std::span<const double> coefficients) const {
        std::vector<Eight> residuals(y.size());
        kernels_.predict(group.blocks, coefficients, residuals);
        for (std::size_t b = 0; b < y.size(); ++b)
            for (std::size_t l = 0; l < 8; ++l)
                residuals[b].values[l] = y[b].values[l] - residuals[b].values[l];
        return residuals;
    }
    static double SumOfSquares(std::span<const Eight> values) {
        Eight sums{};
        for (const Eight& each : values)
            for (std::size_t l = 0; l < 8; ++l)
                sums.values[l] += each.values[l] * each.values[l];
        return sums.Sum();
    }

    /// From those about the reference; apart from rounding its gradient is 0, and no term is negative.
    [[nodiscard]] Sums OfComplete() const {
        Sums sums{reference_.gradient, reference_.squares, complete_.Cases()};
        for (std::size_t k = 0; k < columns_; ++k) {
            double product = 0.0;
            for (std::size_t l = 0; l < columns_; ++l)
                product += reference_.products(k, l) * (coefficients_[l] - reference_.coefficients[l]);
            sums.excess[k] -= product;
            sums.squares +=
                (coefficients_[k] - reference_.coefficients[k]) * (product - 2.0 * reference_.gradient[k]);
        }
        return sums;
    }
    void AddCensored(Sums& sums) const {
        const CensoredSums censored = kernels_.expect(censored_.blocks, censored_.y, coefficients_, sigma_);
        for (std::size_t k = 0; k < columns_; ++k)
            sums.excess[k] += sigma_ * censored.excess[k];
        sums.squares += sigma_ * sigma_ * censored.squares;
        sums.divisor += censored.weight;
    }
    void AddConfined(Sums& sums) const {
        std::vector<Eight> terms = Residuals(confined_, confined_.y, coefficients_);
        for (std::size_t i = 0; i < confined_.places.size(); ++i) {
            double& term = terms[i / 8].values[i % 8];
            const double width = confined_.upper[i / 8].values[i % 8] - confined_.y[i / 8].values[i % 8];
            const NormalInterval interval(term / sigma_, (term + width) / sigma_);
            term = sigma_ * interval.Mean();
            sums.divisor += interval.Weight();
        }
        std::vector<double> excess(columns_);
        kernels_.sum(confined_.blocks, terms, excess);
        for (std::size_t k = 0; k < columns_; ++k)
            sums.excess[k] += excess[k];
        sums.squares += SumOfSquares(terms);
    }

    CaseKernels kernels_;
    CovariateScales scales_;
    std::size_t columns_;
    Group complete_;
    Group censored_;
    Group confined_;
    Reference reference_;
    std::optional<PackedCholesky> factor_; ///< of the products of the columns over all cases
    std::vector<double> coefficients_;     ///< on the scales
    double sigma_ = 0.0;
};

} // namespace

EmStatus FitCensoredNormal(const CensoredCases& cases, const EmLimits& limits, const IterationWatch& watch,
                           std::span<double> parameters, int& iterations) {
    iterations = 0;
    if (const EmStatus status = CheckSizes(cases, limits, parameters.size()); status != EmStatus::Success)
        return status;
    std::vector<std::uint8_t> status(cases.status.begin(), cases.status.end());
    for (std::size_t i = 0; i < status.size(); ++i) {
        if (cases.IsComplete(i)) status[i] = CensoredCases::complete;
        if (IsConfined(status[i]) && !(cases.upper[i] > cases.y[i])) return EmStatus::BoundsReversed;
    }
    const auto known =
        std::ranges::count_if(status, [](auto each) { return each != CensoredCases::censored; });
    if (static_cast<std::size_t>(known) < parameters.size()) return EmStatus::TooFewUncensored;
    Em em(cases, status);
    if (const EmStatus prepared = em.Prepare(parameters); prepared != EmStatus::Success) return prepared;
    std::vector<double> next(parameters.size());
    while (iterations < limits.most) {
        em.Step();
        em.Report(next);
        if (!std::ranges::all_of(next, [](double each) { return std::isfinite(each); }))
            return EmStatus::NotFinite;
        bool settled = true;
        for (std::size_t k = 0; k < next.size(); ++k)
            settled &= std::abs(next[k] - parameters[k]) <= limits.tolerances[k];
        std::ranges::copy(next, parameters.begin());
        ++iterations;
        if (watch(iterations, std::numeric_limits<double>::quiet_NaN(), parameters)) return EmStatus::Stopped;
        if (settled) return EmStatus::Success;
    }
    return EmStatus::TooManyIterations;
}

} // namespace ozm::survival
