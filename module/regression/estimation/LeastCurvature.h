#pragma once

#include "module/regression/estimation/SquareMatrix.h"

#include <span>
#include <vector>

namespace ozm::survival {

/// The part of a vector in the directions in which the first rows and columns of a symmetric matrix, as many
/// as the vector has, hardly curve: the eigenvectors of the smallest eigenvalue and of all that are at most
/// 1e-4 of the largest one, by Jacobi's rotations (Golub & Van Loan 1996, Matrix Computations, section 8.4).
std::vector<double> FlatPart(const SquareMatrix& matrix, std::span<const double> vector);

} // namespace ozm::survival
