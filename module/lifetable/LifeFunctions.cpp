#include "module/lifetable/FitTexts.h"
#include "module/lifetable/FunctionTexts.h"
#include "module/lifetable/LifeOutput.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {

OutputResult WriteFittedFunction(const LifeReportOf& of, LifeFunction function, Distribution family) {
    static constexpr std::array<std::string_view, weightings> ids{"weight1", "weight2", "weight3"};
    const StatusLine line(of.host, StrPrinting);
    const LifeTable& life = of.results.table;
    const FunctionTexts& texts = TextsOf(function);
    ResultTable table{Trimmed(texts.sheetTitle) + " " + DistributionName(family)};
    table.AddFootnote(std::string{Text(StrLifeWeightsNote)});
    const auto number = table.AddNumbers(
        {"interval", StrLifeColNumber, 0, std::string{Text(StrLifeInFullNumber)}}, CellFormat::integer());
    const auto start =
        table.AddNumbers({"start", StrLifeColInterval, StrLifeColStart}, CellFormat::general(8));
    std::vector<ResultTable::Numbers> values;
    bool any = false;
    for (std::size_t w = 0; w < weightings; ++w) {
        values.push_back(table.AddNumbers({ids[w], StrLifeWeight1 + static_cast<int>(w)},
                                          function == LifeFunction::Survival ? CellFormat::fixed(6)
                                                                             : CellFormat::general(7)));
        if (texts.IsShown(of.results.fits.Of(family, w), life))
            any = true;
        else
            table.AddFootnote(Filled(StrLifeInadequateFit,
                                     {FitName(family, w), WhyInadequate(of.results.fits, family, w, life)}));
    }
    if (!any) return OutputResult::Failed(StrLifeNoFits);
    if (!table.AddRows(of.host, life.Rows())) return OutputResult::Failed(StrLifeNoMemory);
    for (std::size_t i = 0; i < life.Rows(); ++i) {
        if (ResultTable::StopsAt(of.host, i)) return OutputResult::NotMade();
        table[number][i] = static_cast<double>(i + 1);
        table[start][i] = life.lower[i];
        for (std::size_t w = 0; w < weightings; ++w)
            if (const DistributionFit& fit = of.results.fits.Of(family, w); texts.IsShown(fit, life))
                table[values[w]][i] = (fit.*texts.fitted)[i];
    }
    return table.Write(of.host);
}

} // namespace ozm::survival
