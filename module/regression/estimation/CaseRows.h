#pragma once

#include "module/regression/estimation/Lanes.h"
#include "module/regression/estimation/SquareMatrix.h"

#include <array>
#include <cstddef>

namespace ozm::survival {

/// Rows of covariates, of so many cases at most.
template <std::size_t Cases>
using CaseRows = std::array<ParameterVector, Cases>;

/// The covariates of neighbouring cases, case by case. `column(k)` points to those of covariate k.
template <std::size_t Lanes, std::size_t Cases, class Column>
[[gnu::always_inline]] inline void TurnIntoRows(std::size_t columns, std::size_t count, const Column& column,
                                                CaseRows<Cases>& rows) {
    const std::size_t wholeCases = count / Lanes * Lanes;
    const std::size_t wholeColumns = columns / Lanes * Lanes;
    for (std::size_t k = 0; k < wholeColumns; k += Lanes)
        for (std::size_t i = 0; i < wholeCases; i += Lanes) {
            LaneSquare<Lanes> square;
            for (std::size_t l = 0; l < Lanes; ++l)
                square.Read(l, column(k + l) + i);
            square.Transpose();
            for (std::size_t l = 0; l < Lanes; ++l)
                square.Write(l, &rows[i + l][k]);
        }
    for (std::size_t k = 0; k < columns; ++k)
        for (std::size_t i = k < wholeColumns ? wholeCases : 0; i < count; ++i)
            rows[i][k] = column(k)[i];
}

} // namespace ozm::survival
