#include "module/regression/parametric/NormalInformation.h"

#include "module/regression/estimation/PositiveInverse.h"
#include "module/regression/parametric/CensoredNormal.h"

#include <optional>
#include <vector>

namespace ozm::survival {
namespace {

/// The covariates less their means over their standard deviations, and what the parameters become by that.
class StandardScale {
public:
    StandardScale(const RegressionSample& sample, std::span<const double> parameters)
        : sample_(sample), parameters_(parameters.begin(), parameters.end()) {
        const std::size_t constant = sample.Covariates();
        cells_.reserve(sample.Cases() * constant);
        for (std::size_t k = 0; k < constant; ++k) {
            const CovariateSummary& of = sample.Summary(k);
            parameters_[constant] += parameters[k] * of.mean;
            parameters_[k] *= of.deviation;
            for (const double x : sample.Column(k))
                cells_.push_back((x - of.mean) / of.deviation);
        }
    }

    [[nodiscard]] CensoredCases Cases(std::span<const double> y) const {
        return {.y = y,
                .status = sample_.Complete(),
                .covariates = sample_.Covariates(),
                .stride = sample_.Cases(),
                .x = cells_,
                .upper = {}};
    }
    [[nodiscard]] std::span<const double> Parameters() const { return parameters_; }

    void CarryBack(ParameterVector& gradient) const {
        const std::size_t constant = sample_.Covariates();
        for (std::size_t k = 0; k < constant; ++k)
            gradient[k] =
                gradient[k] * sample_.Summary(k).deviation + gradient[constant] * sample_.Summary(k).mean;
    }
    void CarryBack(SquareMatrix& covariance) const {
        const std::size_t constant = sample_.Covariates();
        const std::size_t size = parameters_.size();
        for (std::size_t k = 0; k < constant; ++k)
            for (std::size_t l = 0; l < size; ++l) {
                covariance(k, l) /= sample_.Summary(k).deviation;
                covariance(l, k) /= sample_.Summary(k).deviation;
            }
        // b0 is the constant of the standard scale less the sum of b times the mean.
        for (std::size_t k = 0; k < constant; ++k)
            for (std::size_t l = 0; l < size; ++l)
                covariance(constant, l) -= sample_.Summary(k).mean * covariance(k, l);
        for (std::size_t k = 0; k < constant; ++k)
            for (std::size_t l = 0; l < size; ++l)
                covariance(l, constant) -= sample_.Summary(k).mean * covariance(l, k);
    }

private:
    const RegressionSample& sample_;
    std::vector<double> parameters_;
    std::vector<double> cells_;
};

} // namespace

bool NormalInformation(const RegressionSample& sample, std::span<const double> y,
                       std::span<const double> parameters, ParameterVector& gradient,
                       SquareMatrix& covariance) {
    const StandardScale standard(sample, parameters);
    SquareMatrix information;
    gradient = {};
    CensoredNormalDerivatives(standard.Cases(y), standard.Parameters(),
                              std::span{gradient}.first(parameters.size()), information);
    const std::optional<SquareMatrix> inverse = PositiveInverse(information, parameters.size());
    if (!inverse) return false;
    covariance = *inverse;
    standard.CarryBack(gradient);
    standard.CarryBack(covariance);
    return true;
}

} // namespace ozm::survival
