#pragma once

#include "module/regression/estimation/Diagnosis.h"
#include "module/regression/estimation/SquareMatrix.h"

#include <cstddef>
#include <optional>

namespace ozm::survival {

/// The first row of a matrix of (weighted) products of covariates that depends on those before it: whose
/// pivot in Cholesky's factor is at most 1e-10 of its diagonal element, or at most `least`; on none of them,
/// where the diagonal element itself is at most `least`. None where there is no such row.
std::optional<Diagnosis::Dependence> DependenceIn(const SquareMatrix& products, std::size_t size,
                                                  double least);

} // namespace ozm::survival
