#include "module/regression/RegressionMessages.h"

#include "module/regression/data/DataChecks.h"
#include "module/resources/Regression.h"
#include "module/resources/Resources.h"
#include "module/resources/TimeDependent.h"
#include "module/survdata/ReadingNotes.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/SelectionChecks.h"
#include "module/survdata/StatusMessages.h"

#include <algorithm>
#include <span>

namespace ozm::survival {
namespace {

/// "'age': 3, 'karno': 1"; of covariates without missing values nothing.
std::string MissingByCovariate(const RegressionResults& results) {
    std::vector<std::string> counts;
    for (std::size_t k = 0; k < results.missing.size(); ++k)
        if (results.missing[k] > 0)
            counts.push_back(
                Filled(StrRegCountOf, {Quoted(results.variableNames[k]), FormatCount(results.missing[k])}));
    return Listed(counts, 0);
}

std::string StrataWithoutCases(CAnalysisSupport& host, const RegressionResults& results) {
    const std::size_t shown = std::min(results.strataWithoutCases.size(), codesShown);
    std::vector<std::string> codes;
    for (const double code : std::span{results.strataWithoutCases}.first(shown))
        codes.push_back(CodeWithLabel(host, results.stratumVariable, code));
    return Filled(StrRegNoCaseOfStratum,
                  {Listed(codes, StrOr, StrOrMore, results.strataWithoutCases.size() - shown),
                   QuotedName(host, results.stratumVariable)});
}

/// The selections, with the variables that were read for covariates: those of expressions, where these define
/// them.
SharedSettings AsRead(const SharedSettings& shared, const RegressionResults& results) {
    SharedSettings settings = shared;
    settings.List(ListCovariates) = results.covariates;
    return settings;
}

} // namespace

std::string Quoted(const std::string& name) {
    return "'" + name + "'";
}

std::string QuotedNames(const std::vector<std::string>& all, std::span<const std::size_t> which) {
    std::vector<std::string> names;
    for (const std::size_t k : which)
        names.push_back(Quoted(all[k]));
    return Listed(names, StrAnd);
}

int RegressionMessage(RegressionStatus status) {
    static constexpr StatusMessage<RegressionStatus> messages[] = {
        {RegressionStatus::NoMemory, StrRegNoMemory},
        {RegressionStatus::TooManyCases, StrTooManyCases32000},
        {RegressionStatus::TooFewUncensored, StrRegTooFewUncensored},
        {RegressionStatus::TooFewValid, StrRegTooFewValid},
        {RegressionStatus::NoUncensored, StrRegNoUncensored},
        {RegressionStatus::FewValues, StrRegFewValues},
        {RegressionStatus::ConstantCovariate, StrRegConstantCovariate},
        {RegressionStatus::ConstantTimes, StrRegConstantTimes},
        {RegressionStatus::BadStrata, StrRegBadStratum},
        {RegressionStatus::BadScale, StrRegBadScale},
        {RegressionStatus::BadExpression, StrTimeFault},
    };
    return MessageOf(status, messages);
}

std::string DescribeDataFault(CAnalysisSupport& host, const SharedSettings& shared,
                              const RegressionResults& results, RegressionStatus status,
                              std::size_t covariate) {
    const RegressionSample& sample = results.sample;
    const std::string reading = "\n" + DescribeReading(host, AsRead(shared, results), results.reading);
    const auto count = [](auto number) { return FormatCount(static_cast<long long>(number)); };
    switch (status) {
    case RegressionStatus::TooManyCases:
        return Whole(StrRegCapacity);
    case RegressionStatus::TooFewValid:
        return Whole(StrNeedThreeValid) + reading;
    case RegressionStatus::NoUncensored:
        return Whole(StrAllCensored) + reading;
    case RegressionStatus::TooFewUncensored:
        return Filled(StrRegUncensoredDetail, {count(sample.Events()), count(sample.Cases())}) + reading;
    case RegressionStatus::FewValues:
        return Filled(StrRegValuesDetail, {Quoted(results.variableNames[covariate]),
                                           count(ValidOtherwise(results) - results.missing[covariate]),
                                           count(ValidOtherwise(results))});
    case RegressionStatus::ConstantCovariate:
        return Filled(StrRegConstantDetail,
                      {Quoted(results.variableNames[covariate]), FormatExact(sample.Column(covariate)[0]),
                       count(sample.Cases())});
    case RegressionStatus::BadScale: {
        const auto [least, largest] = std::ranges::minmax(sample.Column(covariate));
        return Filled(StrRegScaleDetail,
                      {Quoted(results.variableNames[covariate]), FormatNumber(least), FormatNumber(largest)});
    }
    case RegressionStatus::ConstantTimes:
        return Filled(StrRegTimesDetail, {count(sample.Cases()), FormatExact(sample.Times()[0])});
    default:
        return {};
    }
}

void TellPreparation(CAnalysisSupport& host, const SharedSettings& shared, const RegressionResults& results) {
    TellReading(host, AsRead(shared, results), results.reading);
    const auto note = [&](const std::string& text) {
        host.DspMessageBox(MessageStyle::Note, nullptr, 0, text, {});
    };
    if (const std::string missing = MissingByCovariate(results); !missing.empty())
        note(Filled(results.meansSubstituted ? StrRegMissingReplaced : StrRegMissingDropped, {missing}));
    if (!results.strataWithoutCases.empty()) note(StrataWithoutCases(host, results));
}

std::vector<std::string> DescribeDiagnosis(const std::vector<std::string>& names, bool stratified,
                                           const Diagnosis& diagnosis) {
    std::vector<std::string> texts;
    for (const Diagnosis::Unbounded& each : diagnosis.unbounded)
        texts.push_back(Filled(StrRegUnbounded, {Quoted(names[each.covariate]),
                                                 Whole(each.upwards ? StrRegLargest : StrRegSmallest)}));
    if (!diagnosis.unboundedTogether.empty())
        texts.push_back(Filled(StrRegUnboundedTogether, {QuotedNames(names, diagnosis.unboundedTogether)}));
    for (const Diagnosis::Scale& each : diagnosis.scales)
        texts.push_back(
            Filled(StrTimeUnits, {Quoted(names[each.covariate]), FormatNumber(each.magnitude, 3)}));
    if (!diagnosis.dependence) return texts;
    const std::string name = Quoted(names[diagnosis.dependence->covariate]);
    if (!diagnosis.dependence->on.empty())
        texts.push_back(Filled(StrRegDependent, {name, QuotedNames(names, diagnosis.dependence->on)}));
    else
        texts.push_back(Filled(stratified ? StrRegNoVariationInStrata : StrRegNoVariation, {name}));
    return texts;
}

} // namespace ozm::survival
