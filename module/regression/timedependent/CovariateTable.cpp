#include "module/regression/timedependent/CovariateTable.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ozm::survival {
namespace {

constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();

std::size_t Size(const RiskTime& at, std::size_t changing) {
    return at.events > 0 ? changing * InGroups(at.AtRisk()) : 0;
}

} // namespace

std::size_t CovariateTable::WholeRoom(const OrderedSample& sample, const TimeCovariates& covariates) {
    std::size_t changing = 0;
    for (std::size_t k = 0; k < covariates.Count(); ++k)
        changing += covariates.DependsOnTime(k) ? 1U : 0U;
    std::size_t room = 0;
    for (const RiskTime& at : RiskTimesOf(sample))
        room += Size(at, changing);
    return room;
}

CovariateTable::CovariateTable(const OrderedSample& sample, TimeCovariates& covariates,
                               std::span<double> room)
    : covariates_(covariates), times_(RiskTimesOf(sample)), stride_(sample.cases + caseGroup),
      firstWithout_(sample.cases), room_(room), places_(times_.size(), nowhere) {
    for (std::size_t k = 0; k < covariates.Count(); ++k)
        (covariates.DependsOnTime(k) ? changing_ : fixed_).push_back(k);
    std::size_t next = 0;
    std::size_t most = 0; // at risk, where there is no place
    for (std::size_t time = 0; time < times_.size(); ++time) {
        const RiskTime& at = times_[time];
        const std::size_t size = Size(at, changing_.size());
        if (size > 0 && size <= room.size() - next) {
            places_[time] = next;
            next += size;
        } else {
            most = std::max(most, at.AtRisk());
        }
    }
    computed_.resize(changing_.size() * InGroups(most));
    largest_.resize(changing_.size() * times_.size());
    ComputeFixed(sample.cases);
}

void CovariateTable::ComputeFixed(std::size_t cases) {
    fixedValues_.resize(std::max<std::size_t>(fixed_.size(), 1) * stride_);
    for (std::size_t k = 0; k < fixed_.size() && cases > 0; ++k) {
        const std::span<double> column = std::span{fixedValues_}.subspan(k * stride_, cases);
        covariates_.Evaluate(fixed_[k], 0, times_.front().time, column);
        for (std::size_t i = 0; i < cases; ++i) {
            if (std::isfinite(column[i])) continue;
            firstWithout_ = std::min(firstWithout_, i);
            column[i] = 0.0;
        }
    }
}

CaseColumns CovariateTable::ChangingAt(std::size_t time) {
    const RiskTime& at = times_[time];
    const std::size_t stride = InGroups(at.AtRisk());
    const bool kept = places_[time] != nowhere;
    double* const values = kept ? room_.data() + places_[time] : computed_.data();
    const CaseColumns columns{values, stride, changing_.size()};
    if (kept && Known(time)) return columns;
    for (std::size_t k = 0; k < changing_.size(); ++k) {
        double* const column = values + k * stride;
        covariates_.Evaluate(changing_[k], at.first, at.time, {column, at.AtRisk()});
        std::fill(column + at.AtRisk(), column + stride, 0.0);
    }
    if (time == known_ && Survey(time, columns)) ++known_;
    return columns;
}

bool CovariateTable::Survey(std::size_t time, const CaseColumns& columns) {
    static const RiskSetPass pass = UsableRiskSetPasses().front();
    bool finite = true;
    for (std::size_t k = 0; k < columns.count; ++k) {
        double& largest = largest_[time * columns.count + k];
        largest = pass.survey(columns[k], columns.stride);
        finite = finite && !std::isnan(largest);
    }
    return finite;
}

} // namespace ozm::survival
