#include "module/lifetable/LifeTables.h"

#include "module/resources/LifeTables.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {
namespace {

constexpr CellFormat whole = CellFormat::integer();
constexpr CellFormat count = CellFormat::general(10);
constexpr CellFormat time = CellFormat::general(8);
constexpr CellFormat proportion = CellFormat::fixed(6);
constexpr CellFormat perTime = CellFormat::general(6); // its size depends on the unit of time

/// A column of the table; `open` when the open row has a value of it.
struct LifeColumn {
    std::string_view id;
    int heading1;
    int heading2;
    int inFull; ///< 0: the headings are
    CellFormat format;
    bool open;
    IntervalColumn LifeTable::*cells;
};

constexpr LifeColumn columns[] = {
    {"start", StrLifeColInterval, StrLifeColStart, 0, time, true, &LifeTable::lower},
    {"midpoint", StrLifeColMid, StrLifeColPoint, 0, time, false, &LifeTable::midpoint},
    {"width", StrLifeColInterval, StrLifeColWidth, 0, time, false, &LifeTable::width},
    {"entering", StrLifeColCount, StrLifeColEntering, 0, count, true, &LifeTable::entering},
    {"withdrawn", StrLifeColCount, StrLifeColWithdrawn, StrLifeInFullWithdrawn, count, true,
     &LifeTable::withdrawn},
    {"exposed", StrLifeColCount, StrLifeColExposed, 0, count, true, &LifeTable::exposed},
    {"dying", StrLifeColCount, StrLifeColDying, 0, count, true, &LifeTable::dying},
    {"proportionDead", StrLifeColProportion, StrLifeColDead, StrLifeInFullProportionDead, proportion, true,
     &LifeTable::proportionDead},
    {"proportionSurviving", StrLifeColProportion, StrLifeColSurviving, StrLifeInFullProportionSurviving,
     proportion, true, &LifeTable::proportionSurviving},
    {"cumulativeSurviving", StrLifeColCumulative, StrLifeColSurviving, StrLifeInFullCumulative, proportion,
     true, &LifeTable::cumulativeSurviving},
    {"density", StrLifeColProbability, StrLifeColDensity, StrLifeInFullDensity, perTime, false,
     &LifeTable::density},
    {"hazard", StrLifeColHazard, StrLifeColRate, 0, perTime, false, &LifeTable::hazard},
    {"survivingError", StrLifeColError, StrLifeColErrorSurviving, StrLifeInFullErrorSurviving, proportion,
     true, &LifeTable::survivingError},
    {"densityError", StrLifeColError, StrLifeColErrorDensity, StrLifeInFullErrorDensity, perTime, false,
     &LifeTable::densityError},
    {"hazardError", StrLifeColError, StrLifeColErrorHazard, StrLifeInFullErrorHazard, perTime, false,
     &LifeTable::hazardError},
};

std::string InFull(int id) {
    return id == 0 ? std::string{} : std::string{Text(id)};
}

/// What overflows cannot be computed.
double Computed(double value) {
    return std::isfinite(value) ? value : std::numeric_limits<double>::quiet_NaN();
}

/// Whether some proportion dead is a corrected one.
bool Corrects(const LifeResults& results) {
    const LifeTable& table = results.table;
    for (std::size_t i = 0; results.corrected && i < table.Rows(); ++i)
        if (table.exposed[i] > 0.0 && (table.dying[i] == 0.0 || table.dying[i] == table.exposed[i]))
            return true;
    return false;
}

} // namespace

OutputResult WriteLifeTableSheet(const LifeReportOf& of) {
    static constexpr std::array<std::string_view, 2> marks{"", "+"};
    const LifeTable& life = of.results.table;
    const MedianLives& medians = of.results.medians;
    ResultTable table{std::string{Text(StrLifeTable)}};
    table.AddFootnote(std::string{Text(StrLifeLogLikelihood)} + FormatNumber(of.results.logLikelihood, 10));
    if (medians.beyond.any()) table.AddFootnote(std::string{Text(StrLifeMarkNote)});
    if (Corrects(of.results)) table.AddFootnote(std::string{Text(StrLifeCorrectedNote)});
    const auto number =
        table.AddNumbers({"interval", StrLifeColNumber, 0, InFull(StrLifeInFullNumber)}, whole);
    std::vector<ResultTable::Numbers> cells;
    for (const LifeColumn& each : columns)
        cells.push_back(
            table.AddNumbers({each.id, each.heading1, each.heading2, InFull(each.inFull)}, each.format));
    const auto median = table.AddNumbers(
        {"median", StrLifeColMedian, StrLifeColExpectancy, InFull(StrLifeInFullMedian)}, time);
    const auto beyond = table.AddMarks({"medianBeyond", StrLifeColMark}, marks);
    const auto error = table.AddNumbers(
        {"medianError", StrLifeColError, StrLifeColExpectancy, InFull(StrLifeInFullErrorMedian)}, time);
    if (!table.AddRows(of.host, life.Rows())) return OutputResult::Failed(StrLifeNoMemory);
    for (std::size_t i = 0; i < life.Rows(); ++i) {
        table[number][i] = static_cast<double>(i + 1);
        for (std::size_t k = 0; k < cells.size(); ++k)
            if (columns[k].open || i < life.Closed())
                table[cells[k]][i] = Computed((life.*columns[k].cells)[i]);
        if (i == life.Closed()) break;
        table[median][i] = Computed(medians.median[i]);
        table[beyond][i] = medians.beyond[i] ? 1 : 0;
        table[error][i] = Computed(medians.error[i]);
    }
    return table.Write(of.host);
}

} // namespace ozm::survival
