#include "module/regression/data/RegressionReader.h"

#include "module/survdata/CaseReader.h"
#include "module/survdata/CodeIndex.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

/// What the pass does with each observation.
class Collector {
public:
    Collector(const CaseReader& reader, RegressionResults& results, const std::vector<double>& strata)
        : reader_(reader), results_(results), strata_(strata), used_(strata.size(), 0) {}

    Taken operator()(const Observation& observation) {
        const std::size_t count = results_.covariates.size();
        const std::span<const double> further = reader_.Further();
        std::int16_t stratum = 0;
        if (results_.Stratified()) {
            if (std::isnan(further[count])) return Taken::MissingStratum;
            stratum = static_cast<std::int16_t>(strata_.Find(further[count]) - 1);
            if (stratum < 0) return Taken::OtherStratum;
        }
        const std::span<const double> values = further.first(count);
        bool complete = true;
        for (std::size_t k = 0; k < count; ++k) {
            const bool missing = std::isnan(values[k]);
            results_.missing[k] += missing ? 1 : 0;
            complete = complete && !missing;
        }
        if (!complete && !results_.meansSubstituted) return Taken::MissingCovariate;
        results_.sample.Add(observation.time, observation.complete, observation.caseNumber, stratum, values);
        if (results_.Stratified()) used_[static_cast<std::size_t>(stratum)] = 1;
        return Taken::Yes;
    }

    /// Whether each stratum has a case.
    [[nodiscard]] const std::vector<std::uint8_t>& Used() const { return used_; }

private:
    const CaseReader& reader_;
    RegressionResults& results_;
    CodeIndex strata_;
    std::vector<std::uint8_t> used_;
};

std::vector<int> FurtherVariables(const RegressionResults& results) {
    std::vector<int> variables = results.covariates;
    if (results.Stratified()) variables.push_back(results.stratumVariable);
    return variables;
}

/// Numbers the strata that have cases from 0.
void DropEmptyStrata(RegressionResults& results, const std::vector<std::uint8_t>& used) {
    std::vector<std::int16_t> places;
    std::vector<double> kept;
    for (std::size_t g = 0; g < used.size(); ++g) {
        places.push_back(static_cast<std::int16_t>(kept.size()));
        (used[g] != 0 ? kept : results.strataWithoutCases).push_back(results.strata[g]);
    }
    if (kept.size() < used.size()) results.sample.RenumberStrata(places);
    results.strata = std::move(kept);
}

std::int32_t CapacityFor(std::int32_t cases, bool weighted) {
    return weighted ? RegressionSample::mostCases : std::min(cases, RegressionSample::mostCases);
}

} // namespace

RegressionStatus ReadRegression(CAnalysisSupport& host, SharedSettings& shared,
                                const RegressionSettings& settings, RegressionResults& results) {
    const std::vector<int> further = FurtherVariables(results);
    results.meansSubstituted = settings.substituteMeans;
    results.missing.assign(results.covariates.size(), 0);
    const auto capacity =
        static_cast<std::size_t>(std::max(CapacityFor(host.ss_nb(), host.WeightVariable() != 0), 1));
    if (!results.sample.Obtain(host, capacity, results.covariates.size())) return RegressionStatus::NoMemory;
    CaseReader reader(host, shared, CaseReader::Groups::None, further);
    Collector collect(reader, results, results.strata);
    const Status status = reader.Read(static_cast<std::int32_t>(capacity), collect);
    results.reading = reader.Counts();
    if (status != Status::Success) return static_cast<RegressionStatus>(status);
    DropEmptyStrata(results, collect.Used());
    results.sample.Summarise();
    if (results.meansSubstituted) {
        results.sample.SubstituteMeans();
        results.sample.Summarise();
    }
    return RegressionStatus::Success;
}

} // namespace ozm::survival
