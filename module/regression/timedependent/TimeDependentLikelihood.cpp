#include "module/regression/timedependent/TimeDependentLikelihood.h"

#include "module/regression/timedependent/PredictorBounds.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ozm::survival {
namespace {

constexpr std::size_t valuesPerWatch = 65536;

} // namespace

TimeDependentLikelihood::TimeDependentLikelihood(const OrderedSample& sample, TimeCovariates& covariates,
                                                 std::span<double> room, EvaluationWatch watch)
    : sample_(sample), covariates_(covariates), table_(sample, covariates, room), watch_(std::move(watch)),
      pass_(UsableRiskSetPasses().front()), parameters_(covariates.Count()),
      stride_(sample.cases + caseGroup), predictor_(stride_), weights_(stride_), share_(stride_),
      ofChanging_(std::max<std::size_t>(table_.Changing().size(), 1) * stride_) {
    const std::size_t changing = table_.Changing().size();
    pairSums_.resize(changing * (changing + 1) / 2 * caseGroup);
    changingB_.resize(changing);
    const CaseColumns fixed = table_.FixedFrom(0);
    for (std::size_t k = 0; k < fixed.count; ++k) {
        double sum = 0.0;
        for (std::size_t i = 0; i < sample.cases; ++i)
            sum += fixed[k][i];
        centres_.push_back(sum / static_cast<double>(sample.cases));
    }
    for (const RiskTime& at : table_.Times())
        pairs_ += static_cast<double>(at.AtRisk());
}

double TimeDependentLikelihood::NegligibleStep(std::size_t parameter) const {
    double largest = 0.0;
    const CaseColumns fixed = table_.FixedFrom(0);
    for (std::size_t k = 0; k < fixed.count; ++k)
        for (std::size_t i = 0; i < sample_.cases && table_.Fixed()[k] == parameter; ++i)
            largest = std::max(largest, std::abs(fixed[k][i] - centres_[k]));
    for (std::size_t k = 0; k < changingB_.size(); ++k)
        for (std::size_t time = 0; table_.Known(time) && table_.Changing()[k] == parameter; ++time)
            largest = std::max(largest, table_.LargestAt(time)[k]);
    return NegligibleStepOf(largest);
}

EstimationStatus TimeDependentLikelihood::Check(std::span<const double> parameters) {
    return Visit(parameters, false);
}

EstimationStatus TimeDependentLikelihood::LogLikelihood(std::span<const double> parameters, double& value) {
    Clear();
    const EstimationStatus status = Visit(parameters, true);
    if (status != EstimationStatus::Success) return status;
    SumInformation();
    value = logLikelihood_;
    return status;
}

void TimeDependentLikelihood::Derivatives(std::span<double> gradient, SquareMatrix& information) {
    Gradient(gradient);
    information = information_;
}

void TimeDependentLikelihood::Gradient(std::span<double> gradient) {
    std::copy_n(gradient_.begin(), parameters_, gradient.begin());
}

void TimeDependentLikelihood::Predict(std::span<const double> parameters) {
    std::ranges::fill(predictor_, 0.0);
    const CaseColumns fixed = table_.FixedFrom(0);
    for (std::size_t k = 0; k < fixed.count; ++k) {
        const double b = parameters[table_.Fixed()[k]];
        const double* const x = fixed[k];
        for (std::size_t i = 0; i < sample_.cases; ++i)
            predictor_[i] += b * x[i];
    }
    finite_ = std::ranges::all_of(predictor_, [](double each) { return std::isfinite(each); });
    for (std::size_t k = 0; k < changingB_.size(); ++k)
        changingB_[k] = parameters[table_.Changing()[k]];
}

bool TimeDependentLikelihood::SurelyWithin(std::size_t time, double largestFixed) const {
    if (!finite_ || !table_.Known(time) || table_.FirstWithout() < table_.Times()[time].end) return false;
    double bound = largestFixed;
    const std::span<const double> largest = table_.LargestAt(time);
    for (std::size_t k = 0; k < largest.size(); ++k)
        bound += std::abs(changingB_[k]) * largest[k];
    return bound < largestTimePredictor - 1.0; // rounding moves neither this nor any predictor by 1
}

EstimationStatus TimeDependentLikelihood::Visit(std::span<const double> parameters, bool compute) {
    Predict(parameters);
    beyond_.reset();
    double largestFixed = 0.0; // of those at risk
    double visited = 0.0;
    std::size_t sinceWatch = 0;
    for (std::size_t time = 0; time < table_.Times().size(); ++time) {
        const RiskTime& at = table_.Times()[time];
        if (at.own == at.first) largestFixed = 0.0;
        for (std::size_t i = at.own; i < at.end; ++i)
            largestFixed = std::max(largestFixed, std::abs(predictor_[i]));
        visited += static_cast<double>(at.AtRisk());
        const bool add = compute && at.events > 0;
        if (!add && SurelyWithin(time, largestFixed)) continue;

        const CaseColumns changing = table_.ChangingAt(time);
        const bool hasValues = table_.Known(time) && table_.FirstWithout() >= at.end;
        const RiskSetAt set{at.AtRisk(), predictor_.data() + at.first, table_.FixedFrom(at.first), changing};
        WeightedSums sums;
        const bool within =
            add ? pass_.weigh(set, changingB_.data(), largestTimePredictor, weights_.data(), sums)
                : pass_.within(set, changingB_.data(), largestTimePredictor);
        if (!hasValues || !within) return WhyNot(at, changing, parameters);
        if (add) AddTime(at, set, sums);
        sinceWatch += (1 + changing.count) * at.AtRisk();
        if (sinceWatch < valuesPerWatch) continue;
        sinceWatch = 0;
        if (watch_ && watch_(visited / pairs_)) return EstimationStatus::Stopped;
    }
    return EstimationStatus::Success;
}

void TimeDependentLikelihood::Clear() {
    logLikelihood_ = 0.0;
    gradient_.fill(0.0);
    information_ = {};
    std::ranges::fill(share_, 0.0);
    std::ranges::fill(ofChanging_, 0.0);
    std::ranges::fill(pairSums_, 0.0);
}

void TimeDependentLikelihood::AddTime(const RiskTime& at, const RiskSetAt& set, const WeightedSums& sums) {
    const auto events = static_cast<double>(at.events);
    const std::span<const std::size_t> changing = table_.Changing();
    const std::span<const std::size_t> fixed = table_.Fixed();
    ParameterVector means; // first of the changing covariates, then of the fixed ones about their centres
    for (std::size_t k = 0; k < parameters_; ++k)
        means[k] = sums[1 + k] / sums[0];
    for (std::size_t k = 0; k < fixed.size(); ++k)
        means[changing.size() + k] -= centres_[k];

    for (std::size_t i = at.own; i < at.end; ++i) {
        if (sample_.complete[i] == 0) continue;
        const std::size_t j = i - at.first;
        double eta = set.predictor[j];
        for (std::size_t k = 0; k < changing.size(); ++k) {
            eta += set.changing[k][j] * changingB_[k];
            gradient_[changing[k]] += set.changing[k][j] - means[k];
        }
        for (std::size_t k = 0; k < fixed.size(); ++k)
            gradient_[fixed[k]] += (set.fixed[k][j] - centres_[k]) - means[changing.size() + k];
        logLikelihood_ += eta;
    }
    logLikelihood_ -= events * std::log(sums[0]);

    pass_.spread(set, weights_.data(), events / sums[0], means.data(),
                 {share_.data() + at.first, ofChanging_.data() + at.first, stride_, pairSums_});
    for (std::size_t k = 0; k < fixed.size(); ++k)
        for (std::size_t l = 0; l <= k; ++l)
            information_(fixed[k], fixed[l]) +=
                events * means[changing.size() + k] * means[changing.size() + l];
}

void TimeDependentLikelihood::SumInformation() {
    const std::span<const std::size_t> changing = table_.Changing();
    const std::span<const std::size_t> fixed = table_.Fixed();
    const CaseColumns x = table_.FixedFrom(0);
    const auto put = [this](std::size_t k, std::size_t l, double value) {
        information_(k, l) = information_(l, k) = value;
    };
    for (std::size_t k = 0; k < fixed.size(); ++k) {
        for (std::size_t l = 0; l <= k; ++l) {
            double sum = 0.0;
            for (std::size_t i = 0; i < sample_.cases; ++i)
                sum += share_[i] * (x[k][i] - centres_[k]) * (x[l][i] - centres_[l]);
            put(fixed[k], fixed[l], sum - information_(fixed[k], fixed[l]));
        }
        for (std::size_t l = 0; l < changing.size(); ++l) {
            const double* const z = ofChanging_.data() + l * stride_;
            double sum = 0.0;
            for (std::size_t i = 0; i < sample_.cases; ++i)
                sum += z[i] * (x[k][i] - centres_[k]);
            put(fixed[k], changing[l], sum);
        }
    }
    const double* pair = pairSums_.data();
    for (std::size_t k = 0; k < changing.size(); ++k)
        for (std::size_t l = 0; l <= k; ++l, pair += caseGroup)
            put(changing[k], changing[l], SumOfGroup(pair));
}

EstimationStatus TimeDependentLikelihood::WhyNot(const RiskTime& at, const CaseColumns& changing,
                                                 std::span<const double> parameters) {
    std::vector<std::size_t> order{at.own}; // each case's own time comes before those at risk with it
    for (std::size_t i = at.first; i < at.end; ++i)
        if (i != at.own) order.push_back(i);
    for (const std::size_t i : order) {
        const auto valueOf = [&](std::size_t covariate) {
            const auto found = std::ranges::find(table_.Changing(), covariate);
            if (found != table_.Changing().end())
                return changing[static_cast<std::size_t>(found - table_.Changing().begin())][i - at.first];
            double value = 0.0;
            covariates_.Evaluate(covariate, i, at.time, {&value, 1});
            return value;
        };
        for (std::size_t covariate = 0; covariate < parameters_; ++covariate) {
            if (std::isfinite(valueOf(covariate))) continue;
            missing_ = ValueAt{covariate, i, at.time};
            return EstimationStatus::InvalidOperation;
        }
        double eta = predictor_[i];
        for (std::size_t k = 0; k < changing.count; ++k)
            eta += changing[k][i - at.first] * changingB_[k];
        if (std::abs(eta) <= largestTimePredictor) continue;
        beyond_ = ValueAt{0, i, at.time};
        double largest = 0.0;
        for (std::size_t covariate = 0; covariate < parameters_; ++covariate)
            if (const double part = std::abs(valueOf(covariate) * parameters[covariate]); part > largest) {
                largest = part;
                beyond_->covariate = covariate;
            }
        break;
    }
    return EstimationStatus::NoLikelihood;
}

} // namespace ozm::survival
