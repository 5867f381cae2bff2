#include "module/regression/parametric/CensoredNormal.h"

#include "module/regression/estimation/PositiveInverse.h"
#include "module/regression/parametric/NormalHazard.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace ozm::survival {
namespace {

constexpr double logTwoPi = 1.8378770664093445;
const double logOfLeast = std::log(1e-300);

std::vector<std::uint8_t> StatusOf(const CensoredCases& cases) {
    std::vector<std::uint8_t> status(cases.status.begin(), cases.status.end());
    for (std::size_t i = 0; i < status.size(); ++i)
        if (cases.IsComplete(i)) status[i] = CensoredCases::complete;
    return status;
}

double SumOfSquares(std::span<const Eight> values) {
    Eight sums{};
    for (const Eight& each : values)
        for (std::size_t l = 0; l < 8; ++l)
            sums.values[l] += each.values[l] * each.values[l];
    return sums.Sum();
}

void AddTo(std::vector<double>& sums, std::span<const double> more, double factor = 1.0) {
    for (std::size_t k = 0; k < sums.size(); ++k)
        sums[k] += factor * more[k];
}

/// ln Q(z) by the ratio of density and tail.
double LogTail(double z, double ratio) {
    constexpr double lowerTailIsOne = -7.0;
    constexpr double upperTailIsZero = 18.66;
    if (z < lowerTailIsOne) return 0.0;
    if (z > upperTailIsZero) return logOfLeast;
    return std::max(std::log(0.39894228 / ratio) - 0.5 * z * z, logOfLeast);
}

} // namespace

CensoredNormal::CensoredNormal(const CensoredCases& cases, CovariateScales scales)
    : kernels_(UsableCaseKernels().front()), scales_(std::move(scales)), columns_(cases.covariates + 1),
      complete_(cases, PlacesOf(StatusOf(cases), CensoredCases::complete), scales_),
      censored_(cases, PlacesOf(StatusOf(cases), CensoredCases::censored), scales_),
      confined_(cases, PlacesOf(StatusOf(cases), CensoredCases::confined), scales_),
      completeProducts_(Products(complete_)), coefficients_(columns_) {
    if (!confined_.y.empty())
        upper_ = InBlocks(cases.upper, PlacesOf(StatusOf(cases), CensoredCases::confined));
    SquareMatrix known = Products(confined_);
    SquareMatrix all = Products(censored_);
    for (std::size_t k = 0; k < columns_; ++k)
        for (std::size_t l = 0; l < columns_; ++l) {
            known(k, l) += completeProducts_(k, l);
            all(k, l) += known(k, l);
        }
    factor_ = Factor(all);
    const auto ofKnown = Factor(known);
    determined_ = ofKnown && ofKnown->Deficiency() == 0;
    reference_.assign(columns_, 0.0);
    FitKnown(ofKnown);
}

std::optional<PackedCholesky> CensoredNormal::Factor(const SquareMatrix& products) const {
    constexpr double lostPivot = 1e-10;
    return PackedCholesky::Of(Pack(products, columns_), columns_, lostPivot);
}

SquareMatrix CensoredNormal::Products(const Group& group) const {
    std::vector<Eight> ones(group.blocks.Blocks());
    for (std::size_t b = 0; b < ones.size(); ++b)
        ones[b] = group.blocks.Block(b)[columns_ - 1];
    SquareMatrix products;
    kernels_.multiply(group.blocks, ones, products);
    return products;
}

void CensoredNormal::FitKnown(const std::optional<PackedCholesky>& factor) {
    std::vector<Eight> middle = confined_.y;
    for (std::size_t b = 0; b < middle.size(); ++b)
        for (std::size_t l = 0; l < 8; ++l)
            middle[b].values[l] += 0.5 * (upper_[b].values[l] - middle[b].values[l]);
    std::vector<double> sums(columns_);
    kernels_.sum(complete_.blocks, complete_.y, reference_);
    kernels_.sum(confined_.blocks, middle, sums);
    AddTo(reference_, sums);
    if (factor)
        factor->SolveRest(reference_);
    else
        std::ranges::fill(reference_, 0.0);
    const std::vector<Eight> residuals = Residuals(complete_, complete_.y, reference_);
    completeExcess_.resize(columns_);
    kernels_.sum(complete_.blocks, residuals, completeExcess_);
    completeSquares_ = SumOfSquares(residuals);
    knownSquares_ = completeSquares_ + SumOfSquares(Residuals(confined_, middle, reference_));
}

std::vector<Eight> CensoredNormal::Residuals(const Group& group, std::span<const Eight> y,
                                             std::span<const double> coefficients) const {
    std::vector<Eight> residuals(y.size());
    kernels_.predict(group.blocks, coefficients, residuals);
    for (std::size_t b = 0; b < y.size(); ++b)
        for (std::size_t l = 0; l < 8; ++l)
            residuals[b].values[l] = y[b].values[l] - residuals[b].values[l];
    return residuals;
}

void CensoredNormal::MoveTo(std::span<const double> parameters) {
    coefficients_ = scales_.Inwards(parameters.first(columns_));
    sigma_ = parameters[columns_];
}

bool CensoredNormal::MoveToLeastSquares() {
    if (!determined_) return false;
    coefficients_ = reference_;
    sigma_ = std::sqrt(knownSquares_ / (complete_.Cases() + confined_.Cases()));
    return true;
}

void CensoredNormal::Report(std::span<double> parameters) const {
    scales_.Outwards(coefficients_, parameters);
    parameters[columns_] = sigma_;
}

void CensoredNormal::Step() {
    Sums sums = OfComplete();
    AddCensored(sums);
    AddConfined(sums);
    factor_->SolveRest(sums.excess);
    AddTo(coefficients_, sums.excess);
    sigma_ = std::sqrt(sums.squares / sums.divisor);
}

/// Where the reference is their own fit, no term is negative.
CensoredNormal::Sums CensoredNormal::OfComplete() const {
    Sums sums{completeExcess_, completeSquares_, complete_.Cases()};
    for (std::size_t k = 0; k < columns_; ++k) {
        double product = 0.0;
        for (std::size_t l = 0; l < columns_; ++l)
            product += completeProducts_(k, l) * (coefficients_[l] - reference_[l]);
        sums.excess[k] -= product;
        sums.squares += (coefficients_[k] - reference_[k]) * (product - 2.0 * completeExcess_[k]);
    }
    return sums;
}

void CensoredNormal::AddCensored(Sums& sums) const {
    const CensoredSums censored = kernels_.expect(censored_.blocks, censored_.y, coefficients_, sigma_);
    AddTo(sums.excess, censored.excess, sigma_);
    sums.squares += sigma_ * sigma_ * censored.squares;
    sums.divisor += censored.weight;
}

void CensoredNormal::AddConfined(Sums& sums) const {
    std::vector<Eight> terms = Residuals(confined_, confined_.y, coefficients_);
    for (std::size_t i = 0; i < confined_.blocks.Cases(); ++i) {
        double& term = terms[i / 8].values[i % 8];
        const double width = upper_[i / 8].values[i % 8] - confined_.y[i / 8].values[i % 8];
        const NormalInterval interval(term / sigma_, (term + width) / sigma_);
        term = sigma_ * interval.Mean();
        sums.divisor += interval.Weight();
    }
    std::vector<double> excess(columns_);
    kernels_.sum(confined_.blocks, terms, excess);
    AddTo(sums.excess, excess);
    sums.squares += SumOfSquares(terms);
}

double CensoredNormal::LogLikelihood() const {
    const double n = complete_.Cases();
    return n * (-std::log(sigma_) - logTwoPi / 2.0) - OfComplete().squares / (2.0 * sigma_ * sigma_) +
           OfCensored() + OfConfined();
}

double CensoredNormal::OfCensored() const {
    std::vector<Eight> z = Residuals(censored_, censored_.y, coefficients_);
    for (Eight& each : z)
        for (double& value : each.values)
            value /= sigma_;
    std::vector<Eight> ratios(z.size());
    kernels_.tailRatios(z, ratios);
    Eight sums{};
    for (std::size_t i = 0; i < censored_.blocks.Cases(); ++i)
        sums.values[i % 8] += LogTail(z[i / 8].values[i % 8], ratios[i / 8].values[i % 8]);
    return sums.Sum();
}

double CensoredNormal::OfConfined() const {
    const std::vector<Eight> residuals = Residuals(confined_, confined_.y, coefficients_);
    double sum = 0.0;
    for (std::size_t i = 0; i < confined_.blocks.Cases(); ++i) {
        const double lower = residuals[i / 8].values[i % 8];
        const double width = upper_[i / 8].values[i % 8] - confined_.y[i / 8].values[i % 8];
        sum +=
            std::max(NormalInterval(lower / sigma_, (lower + width) / sigma_).LogProbability(), logOfLeast);
    }
    return sum;
}

NormalDerivatives CensoredNormal::Derivatives() const {
    const double perSigma = 1.0 / sigma_;
    const Sums complete = OfComplete();
    // Of the censored cases by the mean, the root of twice by it, by it and sigma; times sigma or its square.
    std::vector<Eight> byMean = Residuals(censored_, censored_.y, coefficients_);
    std::vector<Eight> root(byMean.size());
    std::vector<Eight> mixed(byMean.size());
    Eight bySigma{};
    Eight sigmaTwice{};
    for (std::size_t i = 0; i < censored_.blocks.Cases(); ++i) {
        const std::size_t b = i / 8;
        const std::size_t l = i % 8;
        const double z = byMean[b].values[l] * perSigma;
        const double h = NormalHazard(z);
        const double slope = std::max(h * (h - z), 0.0);
        byMean[b].values[l] = h;
        root[b].values[l] = std::sqrt(slope);
        mixed[b].values[l] = slope * z + h;
        bySigma.values[l] += h * z;
        sigmaTwice.values[l] += slope * z * z + 2.0 * h * z;
    }
    NormalDerivatives result;
    std::vector<double> sums(columns_);
    SquareMatrix& information = result.information;
    kernels_.multiply(censored_.blocks, root, information);
    kernels_.sum(censored_.blocks, mixed, sums);
    for (std::size_t k = 0; k < columns_; ++k) {
        for (std::size_t l = 0; l < columns_; ++l)
            information(k, l) += completeProducts_(k, l);
        information(k, columns_) = information(columns_, k) = sums[k] + 2.0 * complete.excess[k] * perSigma;
    }
    const double squares = complete.squares * perSigma * perSigma;
    information(columns_, columns_) = sigmaTwice.Sum() + 3.0 * squares - complete.divisor;
    for (std::size_t k = 0; k <= columns_; ++k)
        for (std::size_t l = 0; l <= columns_; ++l)
            information(k, l) *= perSigma * perSigma;
    kernels_.sum(censored_.blocks, byMean, sums);
    AddTo(sums, complete.excess, perSigma);
    sums.push_back(bySigma.Sum() + squares - complete.divisor);
    for (double& each : sums)
        each *= perSigma;
    result.gradient = std::move(sums);
    return result;
}

NormalCovariance CensoredNormal::Covariance() const {
    NormalDerivatives there = Derivatives();
    NormalCovariance result{std::move(there.gradient), {}};
    if (const auto inverse = PositiveInverse(there.information, columns_ + 1))
        result.covariance = *inverse;
    else
        for (std::size_t k = 0; k <= columns_; ++k)
            for (std::size_t l = 0; l <= columns_; ++l)
                result.covariance(k, l) = std::numeric_limits<double>::quiet_NaN();
    const std::size_t constant = columns_ - 1;
    SquareMatrix& v = result.covariance;
    // Outwards, rows and then columns: b = inside / scale, b0 = inside - sum of b centre.
    for (std::size_t l = 0; l <= columns_; ++l)
        for (std::size_t k = 0; k < constant; ++k) {
            v(k, l) /= scales_.scale[k];
            v(constant, l) -= v(k, l) * scales_.centre[k];
        }
    for (std::size_t l = 0; l <= columns_; ++l)
        for (std::size_t k = 0; k < constant; ++k) {
            v(l, k) /= scales_.scale[k];
            v(l, constant) -= v(l, k) * scales_.centre[k];
        }
    for (std::size_t k = 0; k < constant; ++k)
        result.gradient[k] =
            result.gradient[k] * scales_.scale[k] + result.gradient[constant] * scales_.centre[k];
    return result;
}

} // namespace ozm::survival
