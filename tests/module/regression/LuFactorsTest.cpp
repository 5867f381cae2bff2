#include "module/regression/estimation/LuFactors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <random>

namespace ozm::survival {
namespace {

SquareMatrix Matrix(std::initializer_list<std::initializer_list<double>> rows) {
    SquareMatrix matrix;
    std::size_t i = 0;
    for (const auto& row : rows) {
        std::size_t j = 0;
        for (const double value : row)
            matrix(i, j++) = value;
        ++i;
    }
    return matrix;
}

TEST(LuFactors, SolvesAndInverts) {
    std::mt19937 draw(7);
    for (std::size_t size = 1; size <= mostParameters; ++size) {
        SquareMatrix a; // positive definite, its rows of very different sizes
        for (std::size_t i = 0; i < size; ++i)
            for (std::size_t j = 0; j <= i; ++j) {
                const double sizes = std::pow(10.0, static_cast<double>(i % 7 + j % 7));
                a(i, j) = a(j, i) = i == j ? 2.0 * static_cast<double>(size) * sizes
                                           : sizes * (static_cast<double>(draw() % 1001) / 500 - 1);
            }
        const auto factors = LuFactors::Of(a, size);
        ASSERT_TRUE(factors) << size;
        const SquareMatrix inverse = factors->Inverse();
        for (std::size_t i = 0; i < size; ++i)
            for (std::size_t j = 0; j < size; ++j) {
                double sum = 0.0;
                for (std::size_t k = 0; k < size; ++k)
                    sum += a(i, k) * inverse(k, j);
                const double scale = std::pow(10.0, static_cast<double>(i % 7) - static_cast<double>(j % 7));
                EXPECT_NEAR(sum / scale, i == j ? 1.0 : 0.0, 1e-12) << size;
            }
    }
    // Hilbert's: an inverse of whole numbers.
    const auto hilbert = LuFactors::Of(
        Matrix({{1, 1.0 / 2, 1.0 / 3}, {1.0 / 2, 1.0 / 3, 1.0 / 4}, {1.0 / 3, 1.0 / 4, 1.0 / 5}}), 3);
    ASSERT_TRUE(hilbert);
    EXPECT_NEAR(hilbert->Determinant(), 1.0 / 2160, 1e-17);
    const SquareMatrix whole = Matrix({{9, -36, 30}, {-36, 192, -180}, {30, -180, 180}});
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            EXPECT_NEAR(hilbert->Inverse()(i, j), whole(i, j), 1e-10);
}

TEST(LuFactors, PivotsAreChosenByTheirPartOfTheRow) {
    // Both ones of the first column are as large; the first row's is next to nothing beside 1e20, and taken
    // as the pivot it would leave x = 0.
    ParameterVector x{1e20, 0};
    const auto factors = LuFactors::Of(Matrix({{1, 1e20}, {-1, 1}}), 2);
    ASSERT_TRUE(factors);
    factors->Solve(x);
    EXPECT_DOUBLE_EQ(x[0], 1);
    EXPECT_DOUBLE_EQ(x[1], 1);
    // Rows that go round three places.
    ParameterVector y{1, 2, 3};
    const auto turned = LuFactors::Of(Matrix({{0, 2, 0}, {0, 0, 4}, {8, 0, 0}}), 3);
    ASSERT_TRUE(turned);
    EXPECT_EQ(turned->Determinant(), 64);
    turned->Solve(y);
    EXPECT_EQ(y[0], 3.0 / 8);
    EXPECT_EQ(y[1], 1.0 / 2);
    EXPECT_EQ(y[2], 2.0 / 4);
}

TEST(LuFactors, SingularMatrices) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const auto singular = [](const SquareMatrix& a, std::size_t size) { return !LuFactors::Of(a, size); };
    EXPECT_TRUE(singular(Matrix({{0}}), 1));
    EXPECT_TRUE(singular(Matrix({{1e9, 2e9}, {0, 0}}), 2));
    EXPECT_TRUE(singular(Matrix({{0, 1e9}, {0, 2e9}}), 2));
    EXPECT_TRUE(singular(Matrix({{1e9, 1e9, 3}, {1e9, 1e9, 3}, {3, 3, 1e9}}), 3)); // the last pivot
    EXPECT_TRUE(singular(Matrix({{nan, 0}, {0, 1}}), 2));
    EXPECT_TRUE(singular(Matrix({{1, nan}, {1, 1}}), 2));
    // By the determinant, absolute and with its sign.
    EXPECT_FALSE(singular(Matrix({{1e-14}}), 1));
    EXPECT_TRUE(singular(Matrix({{9.99e-15}}), 1));
    EXPECT_TRUE(singular(Matrix({{1e-8, 0}, {0, 9e-7}}), 2));
    EXPECT_TRUE(singular(Matrix({{0, 1e9}, {1e9, 0}}), 2));
    EXPECT_FALSE(singular(Matrix({{0, -1}, {1, 0}}), 2));
    EXPECT_FALSE(singular(Matrix({{1e200, 0}, {0, 1e200}}), 2)); // overflows
    EXPECT_TRUE(singular(Matrix({{1e200, 0}, {0, -1e200}}), 2));
}

} // namespace
} // namespace ozm::survival
