#include "module/regression/parametric/FitCensoredNormal.h"

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

/// Covariates less their means over their standard deviations, and a column of ones: least squares on these
/// do not suffer from large common parts.
class Design {
public:
    explicit Design(const CensoredCases& cases)
        : cases_(cases.Cases()), columns_(cases.covariates + 1), cells_(cases_ * columns_, 1.0),
          mean_(cases.covariates), scale_(cases.covariates, 1.0) {
        const auto n = static_cast<double>(cases_);
        for (std::size_t k = 0; k < cases.covariates; ++k) {
            const std::span<const double> x = cases.Column(k);
            double sum = 0.0;
            for (const double each : x)
                sum += each - x[0];
            mean_[k] = x[0] + sum / n;
            double squares = 0.0;
            for (const double each : x)
                squares += (each - mean_[k]) * (each - mean_[k]);
            if (squares > 0.0) scale_[k] = std::sqrt(squares / n);
            for (std::size_t i = 0; i < cases_; ++i)
                cells_[k * cases_ + i] = (x[i] - mean_[k]) / scale_[k];
        }
    }

    [[nodiscard]] std::size_t Columns() const { return columns_; }
    [[nodiscard]] std::span<const double> Column(std::size_t k) const {
        return std::span{cells_}.subspan(k * cases_, cases_);
    }
    /// Coefficients of the design from parameters, and back.
    [[nodiscard]] std::vector<double> OnItsScale(std::span<const double> parameters) const {
        std::vector<double> coefficients(columns_, parameters[columns_ - 1]);
        for (std::size_t k = 0; k + 1 < columns_; ++k) {
            coefficients[k] = parameters[k] * scale_[k];
            coefficients.back() += parameters[k] * mean_[k];
        }
        return coefficients;
    }
    void OnScaleOfData(std::span<const double> coefficients, std::span<double> parameters) const {
        parameters[columns_ - 1] = coefficients[columns_ - 1];
        for (std::size_t k = 0; k + 1 < columns_; ++k) {
            parameters[k] = coefficients[k] / scale_[k];
            parameters[columns_ - 1] -= parameters[k] * mean_[k];
        }
    }
    [[nodiscard]] std::vector<double> Means(std::span<const double> coefficients) const {
        std::vector<double> means(cases_, 0.0);
        for (std::size_t k = 0; k < columns_; ++k)
            for (std::size_t i = 0; i < cases_; ++i)
                means[i] += coefficients[k] * Column(k)[i];
        return means;
    }
    /// Sums over the cases of a weight times each column.
    [[nodiscard]] std::vector<double> Sums(std::span<const double> weights) const {
        std::vector<double> sums(columns_, 0.0);
        for (std::size_t k = 0; k < columns_; ++k)
            for (std::size_t i = 0; i < cases_; ++i)
                sums[k] += weights[i] * Column(k)[i];
        return sums;
    }
    /// Products of the columns over some cases, factored; none where they depend on each other.
    template <class TakesPart>
    [[nodiscard]] std::optional<PackedCholesky> Factor(TakesPart takesPart) const {
        std::vector<double> products;
        for (std::size_t k = 0; k < columns_; ++k)
            for (std::size_t l = 0; l <= k; ++l) {
                double sum = 0.0;
                for (std::size_t i = 0; i < cases_; ++i)
                    sum += takesPart(i) ? Column(k)[i] * Column(l)[i] : 0.0;
                products.push_back(sum);
            }
        auto factor = PackedCholesky::Of(products, columns_, 1e-10);
        if (factor && factor->Deficiency() > 0) factor.reset();
        return factor;
    }

private:
    std::size_t cases_;
    std::size_t columns_;
    std::vector<double> cells_;
    std::vector<double> mean_;
    std::vector<double> scale_;
};

/// The iteration with a bound for each case, as codes of status say.
class Em {
public:
    explicit Em(const CensoredCases& cases)
        : cases_(cases), status_(cases.status.begin(), cases.status.end()), design_(cases),
          expected_(cases.Cases()) {}

    EmStatus Prepare(std::span<double> parameters) {
        using enum EmStatus;
        for (std::size_t i = 0; i < status_.size(); ++i) {
            if (!IsConfined(status_[i])) continue;
            const double width = cases_.upper[i] - cases_.y[i];
            if (std::abs(width) <= 1e-5 * std::abs(cases_.y[i]))
                status_[i] = CensoredCases::complete;
            else if (!(width > 0.0))
                return BoundsReversed;
        }
        const auto known =
            std::ranges::count_if(status_, [](auto each) { return each != CensoredCases::censored; });
        if (static_cast<double>(known) + 0.01 < static_cast<double>(parameters.size()))
            return TooFewUncensored;
        factor_ = design_.Factor([](std::size_t) { return true; });
        if (!factor_) return Singular;
        return parameters.back() > 0.0 || Start(parameters, static_cast<double>(known)) ? Success
                                                                                        : SingularStart;
    }

    /// The parameters after those given.
    void Step(std::span<const double> parameters, std::span<double> next) {
        const std::vector<double> coefficients = design_.OnItsScale(parameters);
        const std::vector<double> means = design_.Means(coefficients);
        const double sigma = parameters.back();
        double squares = 0.0;
        double divisor = 0.0;
        for (std::size_t i = 0; i < means.size(); ++i) {
            const double z = (cases_.y[i] - means[i]) / sigma;
            double weight = 1.0;
            expected_[i] = cases_.y[i] - means[i];
            if (IsConfined(status_[i])) {
                const NormalInterval interval(z, (cases_.upper[i] - means[i]) / sigma);
                expected_[i] = sigma * interval.Mean();
                weight = interval.Weight();
            } else if (status_[i] == CensoredCases::censored) {
                const double h = TailRatio(z);
                expected_[i] = sigma * h;
                weight = h * (h - z);
            }
            squares += expected_[i] * expected_[i];
            divisor += weight;
        }
        std::vector<double> change = design_.Sums(expected_);
        factor_->SolveRest(change);
        for (std::size_t k = 0; k < change.size(); ++k)
            change[k] += coefficients[k];
        design_.OnScaleOfData(change, next);
        next.back() = std::sqrt(squares / divisor);
    }

private:
    [[nodiscard]] bool IsKnown(std::size_t i) const { return status_[i] != CensoredCases::censored; }

    /// Least squares on cases that are not censored.
    bool Start(std::span<double> parameters, double known) {
        const auto factor = design_.Factor([this](std::size_t i) { return IsKnown(i); });
        if (!factor) return false;
        std::vector<double> y(status_.size(), 0.0);
        for (std::size_t i = 0; i < y.size(); ++i)
            if (IsKnown(i))
                y[i] = IsConfined(status_[i]) ? 0.5 * (cases_.y[i] + cases_.upper[i]) : cases_.y[i];
        std::vector<double> coefficients = design_.Sums(y);
        factor->SolveRest(coefficients);
        design_.OnScaleOfData(coefficients, parameters);
        const std::vector<double> means = design_.Means(coefficients);
        double squares = 0.0;
        for (std::size_t i = 0; i < y.size(); ++i)
            if (IsKnown(i)) squares += (y[i] - means[i]) * (y[i] - means[i]);
        parameters.back() = std::sqrt(squares / known);
        return true;
    }

    const CensoredCases& cases_;
    std::vector<std::uint8_t> status_;
    Design design_;
    std::optional<PackedCholesky> factor_; ///< of all cases
    std::vector<double> expected_;         ///< less the mean
};

} // namespace

EmStatus FitCensoredNormal(const CensoredCases& cases, const EmLimits& limits, const IterationWatch& watch,
                           std::span<double> parameters, int& iterations) {
    iterations = 0;
    if (const EmStatus status = CheckSizes(cases, limits, parameters.size()); status != EmStatus::Success)
        return status;
    Em em(cases);
    if (const EmStatus status = em.Prepare(parameters); status != EmStatus::Success) return status;
    std::vector<double> next(parameters.size());
    while (iterations < std::max(limits.most, 1)) {
        em.Step(parameters, next);
        bool settled = true;
        for (std::size_t k = 0; k < next.size(); ++k)
            settled &= std::abs(next[k] - parameters[k]) <= limits.tolerances[k];
        if (!std::ranges::all_of(next, [](double each) { return std::isfinite(each); }))
            return EmStatus::NotFinite;
        std::ranges::copy(next, parameters.begin());
        ++iterations;
        if (watch(iterations, std::numeric_limits<double>::quiet_NaN(), parameters)) return EmStatus::Stopped;
        if (settled) return EmStatus::Success;
    }
    return EmStatus::TooManyIterations;
}

} // namespace ozm::survival
