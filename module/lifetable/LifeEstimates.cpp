#include "module/lifetable/FitEstimates.h"
#include "module/lifetable/FitTexts.h"
#include "module/lifetable/LifeOutput.h"
#include "module/resources/LifeTables.h"
#include "module/resources/Resources.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <cmath>
#include <span>
#include <string>
#include <vector>

namespace ozm::survival {
namespace {

constexpr CellFormat timeFormat = CellFormat::general(8);
constexpr CellFormat proportionFormat = CellFormat::fixed(6);

struct AdequateFit {
    Distribution family;
    std::size_t weighting;
};

std::vector<AdequateFit> AdequateFits(const DistributionFits& fits) {
    std::vector<AdequateFit> adequate;
    for (const Distribution family : allDistributions)
        for (std::size_t w = 0; w < weightings; ++w)
            if (const DistributionFit& fit = fits.Of(family, w);
                fit.IsShown() && std::isfinite(fit.logLikelihood))
                adequate.push_back({family, w});
    return adequate;
}

/// An estimate with its limits for each value of an argument: times by proportions, or proportions by times.
struct EstimateTable {
    int title;
    int note;
    bool ofTimes; ///< the estimates are times
    EstimateWithLimits (*estimate)(Distribution, const DistributionFit&, double, double);
};

constexpr EstimateTable byProportion{StrLifeQuantiles, StrLifeQuantilesNote, true, TimeWithLimits};
constexpr EstimateTable byTime{StrLifeSurvivalAtTimes, StrLifeAtTimesNote, false, SurvivalWithLimits};

OutputResult Write(const LifeReportOf& of, const EstimateTable& what, std::span<const double> arguments,
                   double level) {
    constexpr int limitColumns = 5; // the columns before the limits
    const StatusLine line(of.host, StrLifePreparing);
    const std::vector<AdequateFit> fits = AdequateFits(of.results.fits);
    if (fits.empty()) return OutputResult::Failed(StrLifeNoFits);
    ResultTable table{std::string{Text(what.title)}};
    table.AddFootnote(std::string{Text(what.note)});
    table.AddFootnote(std::string{Text(StrLifeWeightsNote)});
    const auto model = table.AddTexts({"model", StrLifeColModel});
    const auto weight = table.AddNumbers({"weight", StrLifeColWeight}, CellFormat::integer());
    const auto add = [&](bool time) {
        return time ? table.AddNumbers({"time", StrLifeColSurvivalTime, StrLifeColTime}, timeFormat)
                    : table.AddNumbers({"surviving", StrLifeColProportionSurviving}, proportionFormat);
    };
    const CellFormat format = what.ofTimes ? timeFormat : proportionFormat;
    const auto argument = add(!what.ofTimes);
    const auto value = add(what.ofTimes);
    const auto error = table.AddNumbers({"standardError", StrLifeColError}, format);
    const auto lower = table.AddNumbers({"lowerLimit", StrLifeColEstimate}, format);
    const auto upper = table.AddNumbers({"upperLimit", StrLifeColEstimate}, format);
    if (!table.AddRows(of.host, fits.size() * arguments.size())) return OutputResult::Failed(StrLifeNoMemory);
    const double z = ConfidenceZ(level);
    std::size_t row = 0;
    for (const AdequateFit& fit : fits)
        for (const double each : arguments) {
            if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
            const EstimateWithLimits found =
                what.estimate(fit.family, of.results.fits.Of(fit.family, fit.weighting), each, z);
            table[model][row] = DistributionName(fit.family);
            table[weight][row] = static_cast<double>(fit.weighting + 1);
            table[argument][row] = each;
            table[value][row] = found.value;
            table[error][row] = found.error;
            table[lower][row] = found.lower;
            table[upper][row] = found.upper;
            ++row;
        }
    const OutputResult written = table.Write(of.host);
    if (!written.made) return written;
    const std::string percent = LevelInPercent(level);
    of.host.RenameColumn(limitColumns, percent + std::string{Text(StrLifeLevelLower)}, {});
    of.host.RenameColumn(limitColumns + 1, percent + std::string{Text(StrLifeLevelUpper)}, {});
    return {};
}

} // namespace

OutputResult WriteSurvivalTimes(const LifeReportOf& of, std::span<const double> proportions, double level) {
    return Write(of, byProportion, proportions, level);
}

OutputResult WriteSurvivalAtTimes(const LifeReportOf& of, std::span<const double> times, double level) {
    return Write(of, byTime, times, level);
}

} // namespace ozm::survival
