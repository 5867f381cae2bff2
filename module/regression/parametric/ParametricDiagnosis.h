#pragma once

#include "module/regression/data/RegressionSample.h"
#include "module/regression/estimation/Diagnosis.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace ozm::survival {

// What the data say about why the estimation of a parametric model fails or has no end.

/// A covariate, or a combination of several, that has one value in all uncensored cases, which is the least
/// or the greatest that there is, and not that of all cases: the censored cases with other values may live as
/// long as the model likes.
struct UnboundedByCensoring {
    std::vector<std::size_t> covariates; ///< in their order
    double value = 0.0;                  ///< of a single one
    bool least = true;
};
/// All of them, one after the other: each without the cases that those before it leave out. (A group without
/// uncensored cases may be the one that indicators of the others are compared with.) Throws std::bad_alloc
/// without memory for a copy of the covariates.
std::vector<UnboundedByCensoring> FindUnboundedByCensoring(const RegressionSample& sample);

/// The first covariate that depends linearly on those before it and a constant, among all cases or the
/// uncensored ones alone; on none, where it does not vary among them. Throws std::bad_alloc without memory
/// for a copy of the covariates.
std::optional<Diagnosis::Dependence> FindLinearDependence(const RegressionSample& sample,
                                                          bool uncensoredOnly);

/// The covariate that varies least for its size, where its standard deviation is below such a part of its
/// mean.
std::optional<std::size_t> FindNearlyConstant(const RegressionSample& sample, double below);

} // namespace ozm::survival
