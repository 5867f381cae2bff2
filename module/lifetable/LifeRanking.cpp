#include "module/lifetable/FitRanking.h"
#include "module/lifetable/FitTexts.h"
#include "module/lifetable/LifeOutput.h"
#include "module/resources/LifeTables.h"
#include "module/resources/Resources.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {

OutputResult WriteFitRanking(const LifeReportOf& of) {
    static const std::array<std::string_view, 2> answers{Text(StrLifeNotAdequate), Text(StrLifeAdequate)};
    constexpr CellFormat whole = CellFormat::integer();
    const StatusLine line(of.host, StrPrinting);
    const LifeResults& results = of.results;
    ResultTable table{std::string{Text(StrLifeRanking)}};
    table.AddFootnote(std::string{Text(StrLifeRankingNote)});
    table.AddFootnote(std::string{Text(StrLifeWeightsNote)});
    const auto rank = table.AddNumbers({"rank", StrLifeColRank}, whole);
    const auto model = table.AddTexts({"model", StrLifeColModel});
    const auto weight = table.AddNumbers({"weight", StrLifeColWeight}, whole);
    const auto logLikelihood = table.AddNumbers(
        {"logLikelihood", StrLifeColLog, StrLifeColLikelihood, std::string{Text(StrLifeInFullLikelihood)}},
        CellFormat::general(10));
    const auto chiSquare =
        table.AddNumbers({"chiSquare", StrLifeColChiSquare, 0, std::string{Text(StrLifeInFullChiSquare)}},
                         CellFormat::general(8));
    const auto df = table.AddNumbers({"df", StrLifeColDf}, whole);
    const auto p = table.AddNumbers({"p", StrLifeColP}, CellFormat::probability());
    const auto akaike = table.AddNumbers(
        {"akaike", StrLifeColAkaike, 0, std::string{Text(StrLifeInFullAkaike)}}, CellFormat::general(10));
    const auto adequate = table.AddMarks({"adequate", StrLifeColAdequate}, answers);
    const auto why = table.AddTexts({"whyNot", StrLifeColWhy});
    const std::vector<RankedFit> ranked = RankFits(results.fits, results.table, results.logLikelihood);
    if (!table.AddRows(of.host, ranked.size())) return OutputResult::Failed(StrLifeNoMemory);
    for (std::size_t i = 0; i < ranked.size(); ++i) {
        if (ResultTable::StopsAt(of.host, i)) return OutputResult::NotMade();
        const RankedFit& fit = ranked[i];
        table[model][i] = DistributionName(fit.family);
        table[weight][i] = static_cast<double>(fit.weighting + 1);
        table[adequate][i] = fit.adequate ? 1 : 0;
        if (!fit.adequate) {
            table[why][i] = WhyInadequate(results.fits, fit.family, fit.weighting, results.table);
            continue;
        }
        table[rank][i] = static_cast<double>(i + 1);
        table[logLikelihood][i] = results.fits.Of(fit.family, fit.weighting).logLikelihood;
        table[chiSquare][i] = fit.test.chiSquare;
        table[df][i] = fit.test.df;
        table[p][i] = fit.test.p;
        table[akaike][i] = fit.akaike;
    }
    return table.Write(of.host);
}

} // namespace ozm::survival
