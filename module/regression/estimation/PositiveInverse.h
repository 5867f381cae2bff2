#pragma once

#include "module/regression/estimation/SquareMatrix.h"

#include <cstddef>
#include <optional>

namespace ozm::survival {

/// The inverse of the first `size` rows and columns of a symmetric matrix by Cholesky's factors. None where
/// it is not positive definite: where a pivot is at most 1e-14 of its diagonal element, or no number.
std::optional<SquareMatrix> PositiveInverse(const SquareMatrix& matrix, std::size_t size);

} // namespace ozm::survival
