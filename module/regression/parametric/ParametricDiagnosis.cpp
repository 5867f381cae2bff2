#include "module/regression/parametric/ParametricDiagnosis.h"

#include "module/regression/estimation/Dependence.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

namespace ozm::survival {

namespace {

constexpr double leastOfACase = 1e-13; // that counts, on the standardised scale

double Standardised(const RegressionSample& sample, std::size_t k, std::size_t i) {
    const CovariateSummary& of = sample.Summary(k);
    return (sample.Column(k)[i] - of.mean) / of.deviation;
}

std::vector<std::size_t> CasesOf(const RegressionSample& sample, bool uncensoredOnly) {
    std::vector<std::size_t> cases;
    for (std::size_t i = 0; i < sample.Cases(); ++i)
        if (!uncensoredOnly || sample.Complete()[i] != 0) cases.push_back(i);
    return cases;
}

/// Products of standardised covariates, less their means among these cases.
SquareMatrix ProductsOf(const RegressionSample& sample, std::span<const std::size_t> cases) {
    std::vector<std::vector<double>> columns(sample.Covariates());
    for (std::size_t k = 0; k < columns.size(); ++k) {
        double sum = 0.0;
        for (const std::size_t i : cases) {
            columns[k].push_back(Standardised(sample, k, i));
            sum += columns[k].back();
        }
        const double mean = sum / static_cast<double>(cases.size());
        for (double& value : columns[k])
            value -= mean;
    }
    SquareMatrix products;
    for (std::size_t k = 0; k < columns.size(); ++k)
        for (std::size_t l = 0; l <= k; ++l)
            for (std::size_t i = 0; i < columns[k].size(); ++i)
                products(k, l) += columns[k][i] * columns[l][i];
    return products;
}

/// A direction in which the likelihood rises for ever takes the cases off its face to certain survival;
/// further ones are looked for among those that stay.
class UnboundedSearch {
public:
    explicit UnboundedSearch(const RegressionSample& sample)
        : sample_(sample), events_(CasesOf(sample, true)), stays_(sample.Cases(), true),
          included_(sample.Covariates()) {
        std::iota(included_.begin(), included_.end(), 0U);
    }

    std::vector<UnboundedByCensoring> Find() {
        while (FindSingle() || FindCombination()) {}
        return std::move(found_);
    }

private:
    enum class Side : std::uint8_t { None, Above, Below };

    /// On which side of the events' common value other cases lie, which are then left out; None where the
    /// events have no common value, or cases lie on both sides or on none.
    template <class Value>
    Side LeaveOut(Value valueOf) {
        constexpr double rounding = 1e-9;
        std::vector<double> values(sample_.Cases());
        double least = valueOf(events_[0]);
        double greatest = least;
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (!stays_[i]) continue;
            values[i] = valueOf(i);
            least = std::min(least, values[i]);
            greatest = std::max(greatest, values[i]);
        }
        const double tolerance = rounding * (greatest - least);
        const double common = values[events_[0]];
        for (const std::size_t i : events_)
            if (std::abs(values[i] - common) > tolerance) return Side::None;
        const bool below = least < common - tolerance;
        const bool above = greatest > common + tolerance;
        if (below == above) return Side::None;
        for (std::size_t i = 0; i < values.size(); ++i)
            stays_[i] = stays_[i] && std::abs(values[i] - common) <= tolerance;
        return above ? Side::Above : Side::Below;
    }

    bool FindSingle() {
        for (std::size_t place = 0; place < included_.size(); ++place) {
            const std::size_t k = included_[place];
            const std::span<const double> x = sample_.Column(k);
            const Side side = LeaveOut([&](std::size_t i) { return x[i]; });
            if (side == Side::None) continue;
            found_.push_back({{k}, x[events_[0]], side == Side::Above});
            Exclude(place);
            return true;
        }
        return false;
    }

    bool FindCombination() {
        if (!mayDepend_) mayDepend_ = DependsAmongSome();
        if (!*mayDepend_) return false;
        if (!products_) products_ = ProductsOf(sample_, events_);
        std::vector<std::size_t> rest = included_;
        while (const auto dependence = DependenceOf(*products_, rest, events_.size())) {
            UnboundedByCensoring unbounded{{rest[dependence->covariate]}};
            for (const std::size_t j : dependence->on)
                unbounded.covariates.push_back(rest[j]);
            const Side side = LeaveOut([&](std::size_t i) {
                double value = Standardised(sample_, unbounded.covariates[0], i);
                for (std::size_t j = 0; j < dependence->on.size(); ++j)
                    value -= dependence->weights[j] * Standardised(sample_, unbounded.covariates[j + 1], i);
                return value;
            });
            const std::size_t last = rest[dependence->covariate];
            rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(dependence->covariate));
            if (side == Side::None) continue;
            std::ranges::sort(unbounded.covariates);
            found_.push_back(std::move(unbounded));
            Exclude(static_cast<std::size_t>(std::ranges::find(included_, last) - included_.begin()));
            return true;
        }
        return false;
    }

    static std::optional<Diagnosis::Dependence>
    DependenceOf(const SquareMatrix& all, std::span<const std::size_t> covariates, std::size_t cases) {
        SquareMatrix products;
        for (std::size_t k = 0; k < covariates.size(); ++k)
            for (std::size_t l = 0; l <= k; ++l)
                products(k, l) = all(covariates[k], covariates[l]);
        return DependenceIn(products, covariates.size(), leastOfACase * static_cast<double>(cases));
    }

    /// Whether covariates depend on each other among the first uncensored cases: else they do not among all.
    [[nodiscard]] bool DependsAmongSome() const {
        const std::size_t some = 20 * sample_.Covariates() + 50;
        const std::span<const std::size_t> first = std::span{events_}.first(std::min(some, events_.size()));
        return DependenceOf(ProductsOf(sample_, first), included_, first.size()).has_value();
    }

    void Exclude(std::size_t place) {
        included_.erase(included_.begin() + static_cast<std::ptrdiff_t>(place));
    }

    const RegressionSample& sample_;
    std::vector<std::size_t> events_;
    std::vector<bool> stays_;
    std::vector<std::size_t> included_;
    std::optional<bool> mayDepend_;
    std::optional<SquareMatrix> products_;
    std::vector<UnboundedByCensoring> found_;
};

} // namespace

std::optional<Diagnosis::Dependence> FindLinearDependence(const RegressionSample& sample,
                                                          bool uncensoredOnly) {
    const std::vector<std::size_t> cases = CasesOf(sample, uncensoredOnly);
    return DependenceIn(ProductsOf(sample, cases), sample.Covariates(),
                        leastOfACase * static_cast<double>(cases.size()));
}

std::vector<UnboundedByCensoring> FindUnboundedByCensoring(const RegressionSample& sample) {
    return UnboundedSearch(sample).Find();
}

std::optional<std::size_t> FindNearlyConstant(const RegressionSample& sample, double below) {
    double least = below;
    std::optional<std::size_t> found;
    for (std::size_t k = 0; k < sample.Covariates(); ++k) {
        const double variation = sample.Summary(k).deviation / std::abs(sample.Summary(k).mean);
        if (!(variation < least)) continue;
        least = variation;
        found = k;
    }
    return found;
}

} // namespace ozm::survival
