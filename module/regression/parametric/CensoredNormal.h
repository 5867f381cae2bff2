#pragma once

#include "module/regression/parametric/CaseSums.h"
#include "module/regression/parametric/PackedCholesky.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace ozm::survival {

/// By coefficients, constant and sigma: the gradient of a log-likelihood, and the observed information, minus
/// the matrix of second derivatives.
struct NormalDerivatives {
    std::vector<double> gradient;
    SquareMatrix information;
};
/// And with the inverse of the information: NaN where it has none.
struct NormalCovariance {
    std::vector<double> gradient;
    SquareMatrix covariance;
};

/// A linear model of responses that are normal about b0 + x'b with standard deviation sigma, some of them
/// censored, or confined between two bounds; at parameters b, b0, sigma. It works on covariates less their
/// means over their standard deviations, unless given other scales. Sums over complete cases follow from
/// those about their own least squares fit, so that a step takes the time of the other cases.
class CensoredNormal {
public:
    /// Takes copies. The arrays of the cases fit each other; upper bounds are above lower ones.
    explicit CensoredNormal(const CensoredCases& cases)
        : CensoredNormal(cases, CovariateScales::Standard(cases)) {}
    CensoredNormal(const CensoredCases& cases, CovariateScales scales);

    /// Whether the covariates of all cases, with the constant, depend on each other.
    [[nodiscard]] bool IsSingular() const { return !factor_ || factor_->Deficiency() > 0; }
    void MoveTo(std::span<const double> parameters);
    /// To the least squares fit on the cases that are not censored, confined ones at their midpoints, and the
    /// root mean square of its residuals. False where it is not determined.
    [[nodiscard]] bool MoveToLeastSquares();
    /// A step of the EM iteration. The model is not singular.
    void Step();
    void Report(std::span<double> parameters) const;

    /// The sum over complete cases of -ln sigma - z^2/2 - ln(2 pi)/2, with z = (y - b0 - x'b) / sigma; over
    /// censored ones of ln Q(z), Q the upper tail of the standard normal distribution; over confined ones of
    /// the logarithm of their probability. Tails and probabilities count as 1e-300 where they are less.
    [[nodiscard]] double LogLikelihood() const;
    /// Its derivatives for covariates on the scales, without the floor, by exact tails. Not with confined
    /// cases.
    [[nodiscard]] NormalDerivatives Derivatives() const;
    /// The same and their inverse for the covariates as they are. There is none where the information is not
    /// positive definite, as it is about a maximum.
    [[nodiscard]] NormalCovariance Covariance() const;

private:
    /// Cases of one kind.
    struct Group {
        Group(const CensoredCases& cases, std::span<const std::uint32_t> places,
              const CovariateScales& scales)
            : blocks(cases, places, scales), y(InBlocks(cases.y, places)) {}

        [[nodiscard]] double Cases() const { return static_cast<double>(blocks.Cases()); }

        CaseBlocks blocks;
        std::vector<Eight> y;
    };
    /// What a step sums up.
    struct Sums {
        std::vector<double> excess; ///< of the expected responses less their means, times each column
        double squares = 0.0;       ///< of them
        double divisor = 0.0;
    };

    [[nodiscard]] std::optional<PackedCholesky> Factor(const SquareMatrix& products) const;
    [[nodiscard]] SquareMatrix Products(const Group& group) const;
    void FitKnown(const std::optional<PackedCholesky>& factor);
    [[nodiscard]] std::vector<Eight> Residuals(const Group& group, std::span<const Eight> y,
                                               std::span<const double> coefficients) const;
    [[nodiscard]] Sums OfComplete() const;
    void AddCensored(Sums& sums) const;
    void AddConfined(Sums& sums) const;
    [[nodiscard]] double OfCensored() const;
    [[nodiscard]] double OfConfined() const;

    CaseKernels kernels_;
    CovariateScales scales_;
    std::size_t columns_;
    Group complete_;
    Group censored_;
    Group confined_;
    std::vector<Eight> upper_;             ///< bounds of the confined cases
    std::optional<PackedCholesky> factor_; ///< of the products of the columns over all cases
    // Least squares on the cases that are not censored: the reference of sums over the complete ones.
    bool determined_ = false;
    std::vector<double> reference_;
    double knownSquares_ = 0.0;          ///< of the residuals
    double completeSquares_ = 0.0;       ///< of those of complete cases
    std::vector<double> completeExcess_; ///< of the latter times each column: 0, unless cases are confined
    SquareMatrix completeProducts_;      ///< of the columns
    // Where it is.
    std::vector<double> coefficients_;
    double sigma_ = 0.0;
};

} // namespace ozm::survival
