#include "module/lifetable/FitTexts.h"

#include "module/resources/LifeTables.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <cmath>

namespace ozm::survival {
namespace {

std::string WhyStopped(const DistributionFits& fits, const LifeTable& table) {
    const std::string at = FormatNumber(table.lower[fits.stoppedRow]);
    switch (fits.stop) {
    case FitStop::NoVariance:
        return Filled(StrLifeWhyNoVariance, {at});
    case FitStop::LargeIntercept:
        return std::string{Text(StrLifeWhyIntercept)};
    case FitStop::LargeLambda:
        return std::string{Text(StrLifeWhyLargeLambda)};
    case FitStop::LargeExponent:
        return Filled(StrLifeWhyExponent, {at});
    case FitStop::GammaZero:
        return std::string{Text(StrLifeWhyGammaZero)};
    case FitStop::None:
        break;
    }
    return {};
}

} // namespace

std::string DistributionName(Distribution family) {
    return Trimmed(StrLifeExponential + static_cast<int>(family));
}

std::string FitName(Distribution family, std::size_t weighting) {
    return Filled(StrLifeFitName,
                  {DistributionName(family), FormatCount(static_cast<long long>(weighting) + 1)});
}

std::string WhyInadequate(const DistributionFits& fits, Distribution family, std::size_t weighting,
                          const LifeTable& table) {
    const DistributionFit& fit = fits.Of(family, weighting);
    switch (fit.inadequacy) {
    case Inadequacy::NegativeLambda:
        return std::string{Text(StrLifeWhyNegativeLambda)};
    case Inadequacy::NegativeHazard:
        return Filled(StrLifeWhyNegativeHazard, {FormatNumber(table.midpoint[fit.where])});
    case Inadequacy::SurvivalAboveOne:
        return Filled(StrLifeWhySurvivalAboveOne, {FormatNumber(table.lower[fit.where])});
    case Inadequacy::NobodyLeft:
        return Filled(StrLifeWhyNobodyLeft, {FormatNumber(table.lower[fit.where])});
    case Inadequacy::WeibullHazard:
        return std::string{Text(StrLifeWhyWeibullHazard)};
    case Inadequacy::None:
        break;
    }
    if (std::isfinite(fit.logLikelihood)) return {};
    if (fits.stop == FitStop::NoVariance) return WhyStopped(fits, table);
    if (fits.stop == FitStop::None) return std::string{Text(StrLifeWhyNoLogarithm)};
    if (fits.stoppedAt == family && fits.stoppedWeighting == weighting) return WhyStopped(fits, table);
    return Filled(StrLifeWhyStopped,
                  {FitName(fits.stoppedAt, fits.stoppedWeighting), WhyStopped(fits, table)});
}

void AddReasons(std::vector<std::string>& sentences, const DistributionFits& fits, Distribution family,
                const LifeTable& table) {
    for (std::size_t w = 0; w < weightings; ++w)
        if (const std::string why = WhyInadequate(fits, family, w, table); !why.empty())
            sentences.push_back(Filled(StrLifeInadequateFit, {FitName(family, w), why}));
}

std::string DescribeStop(const DistributionFits& fits, const LifeTable& table) {
    const std::string why = WhyStopped(fits, table);
    if (fits.stop == FitStop::NoVariance) return Filled(StrLifeWhyStoppedAll, {why});
    return Filled(StrLifeStoppedAt, {FitName(fits.stoppedAt, fits.stoppedWeighting), why});
}

} // namespace ozm::survival
