#include "module/regression/parametric/PackedCholesky.h"

#include <cmath>

namespace ozm::survival {
namespace {

constexpr double lostElement = 1e-10;

} // namespace

// Comparisons with what is not a number are false: a matrix that has such elements is factored.
std::optional<PackedCholesky> PackedCholesky::Of(std::span<const double> packed, std::size_t order,
                                                 double lostPivot) {
    PackedCholesky result;
    result.order_ = order;
    result.factor_.assign(packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(SizeOf(order)));
    for (std::size_t i = 0; i < order; ++i) {
        double* const row = result.factor_.data() + SizeOf(i);
        const double diagonal = row[i];
        for (std::size_t j = 0; j <= i; ++j) {
            double w = row[j];
            for (std::size_t k = 0; k < j; ++k)
                w -= row[k] * result.At(j, k);
            if (j < i && result.At(j, j) == 0.0) {
                row[j] = 0.0;
                if (w * w > std::abs(diagonal * lostElement)) return std::nullopt;
            } else if (j < i) {
                row[j] = w / result.At(j, j);
            } else if (std::abs(diagonal * lostPivot) >= std::abs(w)) {
                row[i] = 0.0;
                ++result.deficiency_;
            } else if (w < 0.0) {
                return std::nullopt;
            } else {
                row[i] = std::sqrt(w);
            }
        }
    }
    return result;
}

std::size_t PackedCholesky::FirstLost() const {
    std::size_t i = 0;
    while (i < order_ && At(i, i) != 0.0)
        ++i;
    return i;
}

bool PackedCholesky::Solve(std::span<double> right) const {
    if (deficiency_ > 0) return false;
    SolveRest(right);
    return true;
}

void PackedCholesky::SolveRest(std::span<double> right) const {
    for (std::size_t i = 0; i < order_; ++i) {
        double sum = right[i];
        for (std::size_t j = 0; j < i; ++j)
            sum -= At(i, j) * right[j];
        right[i] = At(i, i) == 0.0 ? 0.0 : sum / At(i, i);
    }
    for (std::size_t i = order_; i-- > 0;) {
        double sum = right[i];
        for (std::size_t j = i + 1; j < order_; ++j)
            sum -= At(j, i) * right[j];
        right[i] = At(i, i) == 0.0 ? 0.0 : sum / At(i, i);
    }
}

std::vector<double> PackedCholesky::Inverse() const {
    std::vector<double> inverse(SizeOf(order_), 0.0);
    std::vector<double> column(order_);
    for (std::size_t j = order_; j-- > 0;) {
        if (At(j, j) == 0.0) continue;
        column.assign(order_, 0.0);
        column[j] = 1.0;
        SolveRest(column);
        for (std::size_t i = j; i < order_; ++i)
            inverse[SizeOf(i) + j] = column[i];
    }
    return inverse;
}

std::vector<double> Pack(const SquareMatrix& matrix, std::size_t order) {
    std::vector<double> packed;
    for (std::size_t i = 0; i < order; ++i)
        for (std::size_t j = 0; j <= i; ++j)
            packed.push_back(matrix(i, j));
    return packed;
}

SquareMatrix Unpack(std::span<const double> packed, std::size_t order) {
    SquareMatrix matrix;
    for (std::size_t i = 0, at = 0; i < order; ++i)
        for (std::size_t j = 0; j <= i; ++j)
            matrix(i, j) = matrix(j, i) = packed[at++];
    return matrix;
}

} // namespace ozm::survival
