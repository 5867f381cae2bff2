#pragma once

#include "module/lifetable/LifeTable.h"
#include "module/resources/Groups.h"
#include "support/services/SheetService.h"

namespace ozm::survival {

/// A column of the life tables by group, beside the lower limits.
struct LifeTableColumn {
    const char* id;
    int heading;
    int inFull;
    CellFormat format;
    double factor; ///< 100 for a proportion that is shown in percent
    IntervalColumn LifeTable::*cells;
};

inline constexpr LifeTableColumn lifeTableColumns[] = {
    {"entering", StrLtEntering, StrLtEnteringInFull, CellFormat::integer(), 1.0, &LifeTable::entering},
    {"censored", StrLtCensored, StrLtCensoredInFull, CellFormat::integer(), 1.0, &LifeTable::withdrawn},
    {"dying", StrLtDying, StrLtDyingInFull, CellFormat::integer(), 1.0, &LifeTable::dying},
    {"percentSurviving", StrLtSurviving, StrLtSurvivingInFull, CellFormat::fixed(4), 100.0,
     &LifeTable::proportionSurviving},
    {"cumulativePercentSurviving", StrLtCumulative, StrLtCumulativeInFull, CellFormat::fixed(4), 100.0,
     &LifeTable::cumulativeSurviving},
};

} // namespace ozm::survival
