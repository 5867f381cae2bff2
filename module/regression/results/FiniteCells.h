#pragma once

#include "module/resources/RegressionResultTexts.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"

#include <cmath>
#include <string>

namespace ozm::survival {

/// Fills cells whose numbers may be beyond what can be represented, or not be there at all: these stay empty,
/// and a note says so.
class FiniteCells {
public:
    void Put(ResultTable& table, ResultTable::Numbers column, std::size_t row, double value) {
        if (std::isfinite(value))
            table[column][row] = value;
        else
            (std::isnan(value) ? anyMissing_ : anyEmpty_) = true;
    }
    /// After the last cell.
    void AddNote(ResultTable& table) const {
        if (anyEmpty_) table.AddFootnote(Whole(StrRegNoteEmpty));
        if (anyMissing_) table.AddFootnote(Whole(StrRegNoteMissing));
    }

private:
    bool anyEmpty_ = false;
    bool anyMissing_ = false;
};

} // namespace ozm::survival
