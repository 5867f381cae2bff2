#include "module/regression/timedependent/FitTimeDependentCox.h"

#include "module/regression/timedependent/FixedLikelihood.h"

namespace ozm::survival {

std::size_t RoomFor(const OrderedSample& sample, const TimeCovariates& covariates) {
    return CovariateTable::WholeRoom(sample, covariates);
}

EstimationStatus FitTimeDependentCox(TimeDependentCox& cox, const IterationLimits& limits,
                                     const IterationWatch& watch, std::span<double> parameters,
                                     NewtonEstimate& estimate) {
    const auto fit = [&](auto& likelihood) {
        const EstimationStatus status =
            MaximiseByDampedNewton(likelihood, limits, watch, parameters, estimate);
        cox.missing = likelihood.Missing();
        cox.beyond.reset();
        if (status == EstimationStatus::NoLikelihood) cox.beyond = likelihood.Beyond();
        return status;
    };
    bool changes = false;
    for (std::size_t k = 0; k < cox.covariates.Count(); ++k)
        changes = changes || cox.covariates.DependsOnTime(k);
    if (!changes) {
        FixedLikelihood likelihood(cox.sample, cox.covariates);
        return fit(likelihood);
    }
    TimeDependentLikelihood likelihood(cox.sample, cox.covariates, cox.room, cox.watch);
    return fit(likelihood);
}

} // namespace ozm::survival
