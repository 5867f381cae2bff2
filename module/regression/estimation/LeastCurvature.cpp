#include "module/regression/estimation/LeastCurvature.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace ozm::survival {
namespace {

/// Turns rows and columns p and q of A so that their element vanishes, and the columns of V with them.
void Rotate(SquareMatrix& a, SquareMatrix& v, std::size_t p, std::size_t q, std::size_t size) {
    if (a(p, q) == 0.0) return;
    const double ratio = (a(q, q) - a(p, p)) / (2.0 * a(p, q));
    const double tangent = (ratio >= 0.0 ? 1.0 : -1.0) / (std::abs(ratio) + std::hypot(1.0, ratio));
    const double cosine = 1.0 / std::hypot(1.0, tangent);
    const double sine = tangent * cosine;
    for (std::size_t k = 0; k < size; ++k) {
        const double one = a(k, p);
        const double other = a(k, q);
        a(k, p) = cosine * one - sine * other;
        a(k, q) = sine * one + cosine * other;
    }
    for (std::size_t k = 0; k < size; ++k) {
        const double one = a(p, k);
        const double other = a(q, k);
        a(p, k) = cosine * one - sine * other;
        a(q, k) = sine * one + cosine * other;
    }
    for (std::size_t k = 0; k < size; ++k) {
        const double one = v(k, p);
        const double other = v(k, q);
        v(k, p) = cosine * one - sine * other;
        v(k, q) = sine * one + cosine * other;
    }
}

} // namespace

std::vector<double> FlatPart(const SquareMatrix& matrix, std::span<const double> vector) {
    constexpr int sweeps = 30; // it converges quadratically, in fewer than ten
    constexpr double flat = 1e-4;
    const std::size_t size = vector.size();
    SquareMatrix a = matrix;
    SquareMatrix v;
    for (std::size_t k = 0; k < size; ++k)
        v(k, k) = 1.0;
    for (int sweep = 0; sweep < sweeps; ++sweep)
        for (std::size_t p = 0; p < size; ++p)
            for (std::size_t q = p + 1; q < size; ++q)
                Rotate(a, v, p, q, size);
    double least = a(0, 0);
    double largest = a(0, 0);
    for (std::size_t k = 0; k < size; ++k) {
        least = std::min(least, a(k, k));
        largest = std::max(largest, a(k, k));
    }
    std::vector<double> part(size, 0.0);
    for (std::size_t k = 0; k < size; ++k) {
        if (a(k, k) > std::max(least, flat * largest)) continue;
        double along = 0.0;
        for (std::size_t i = 0; i < size; ++i)
            along += v(i, k) * vector[i];
        for (std::size_t i = 0; i < size; ++i)
            part[i] += along * v(i, k);
    }
    return part;
}

} // namespace ozm::survival
