#include "module/lifetable/FitTexts.h"

#include "module/resources/LifeTables.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <cmath>

namespace ozm::survival {
namespace {

std::string WhyStopped(const DistributionFits& fits) {
    const std::string at = FormatNumber(fits.stoppedTime);
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
    // Before the mark that another fit may have given it.
    if (fit.estimated && std::isnan(fit.parameters.lambda))
        return std::string{Text(table.Closed() < 2 ? StrLifeWhyOneInterval : StrLifeWhyNoLogarithm)};
    switch (fit.inadequacy) {
    case Inadequacy::NegativeLambda:
        return std::string{Text(StrLifeWhyNegativeLambda)};
    case Inadequacy::NegativeHazard:
        return Filled(StrLifeWhyNegativeHazard, {FormatNumber(fit.where)});
    case Inadequacy::SurvivalAboveOne:
        return Filled(StrLifeWhySurvivalAboveOne, {FormatNumber(fit.where)});
    case Inadequacy::NobodyLeft:
        return Filled(StrLifeWhyNobodyLeft, {FormatNumber(fit.where)});
    case Inadequacy::WeibullHazard:
        return std::string{Text(StrLifeWhyWeibullHazard)};
    case Inadequacy::None:
        break;
    }
    if (std::isfinite(fit.logLikelihood)) return {};
    if (fits.stop == FitStop::NoVariance) return WhyStopped(fits);
    if (fits.stop == FitStop::None) return std::string{Text(StrLifeWhyNotComputed)};
    if (fits.stoppedAt == family && fits.stoppedWeighting == weighting) return WhyStopped(fits);
    return Filled(StrLifeWhyStopped, {FitName(fits.stoppedAt, fits.stoppedWeighting), WhyStopped(fits)});
}

void AddReasons(std::vector<std::string>& sentences, const DistributionFits& fits, Distribution family,
                const LifeTable& table) {
    for (std::size_t w = 0; w < weightings; ++w)
        if (const std::string why = WhyInadequate(fits, family, w, table); !why.empty())
            sentences.push_back(Filled(StrLifeInadequateFit, {FitName(family, w), why}));
}

std::string DescribeStop(const DistributionFits& fits) {
    const std::string why = WhyStopped(fits);
    if (fits.stop == FitStop::NoVariance) return Filled(StrLifeWhyStoppedAll, {why});
    return Filled(StrLifeStoppedAt, {FitName(fits.stoppedAt, fits.stoppedWeighting), why});
}

} // namespace ozm::survival
