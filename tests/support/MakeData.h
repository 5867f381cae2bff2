#pragma once

#include "host/data/DataSet.h"

#include <cstddef>
#include <utility>

namespace korvana::test {

/// Adds a variable whose cell i, counted from 0, is `cell(i)`.
template <class Cell>
void addVariable(DataSet& data, Variable variable, Cell cell) {
    Column column(static_cast<std::size_t>(data.caseCount()));
    for (int i = 0; i < data.caseCount(); ++i)
        column.data()[i] = cell(i);
    data.addVariable(std::move(variable), std::move(column));
}

} // namespace korvana::test
