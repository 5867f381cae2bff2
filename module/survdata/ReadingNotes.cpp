#include "module/survdata/ReadingNotes.h"

#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/SelectionChecks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

namespace ozm::survival {
namespace {

/// The most covariates that a note names.
constexpr std::size_t namesShown = 6;

/// For a variable of texts, the text: its number is the host's, and may look like another text of the data.
std::string CodeText(CAnalysisSupport& host, int variable, double code) {
    if (!std::isfinite(code)) return std::string{Text(StrNotSet)};
    if (variable != 0 && host.HoldsTexts(variable))
        if (const auto label = LabelOfCode(host, variable, code)) return "'" + InOneLine(*label) + "'";
    return CodeWithLabel(host, variable, code);
}

/// "1 (treated) or 2 (placebo)"; of many codes only the first.
std::string CodeTexts(CAnalysisSupport& host, int variable, std::span<const double> codes) {
    const std::size_t shown = std::min(codes.size(), codesShown);
    std::vector<std::string> texts;
    for (const double code : codes.first(shown))
        texts.push_back(CodeText(host, variable, code));
    return Listed(texts, StrOr, StrOrMore, codes.size() - shown);
}

/// "'age', 'karno' or 7 more".
std::string SomeNames(CAnalysisSupport& host, std::span<const int> variables) {
    const std::size_t shown = std::min(variables.size(), namesShown);
    std::vector<std::string> names;
    for (const int variable : variables.first(shown))
        names.push_back(QuotedName(host, variable));
    return Listed(names, StrOr, StrOrMore, variables.size() - shown);
}

/// "2 with no value of 'time', 1 with a negative survival time".
std::string Reasons(CAnalysisSupport& host, const SharedSettings& settings, const ReadingCounts& counts) {
    std::string text;
    const auto reason = [&](std::int32_t count, int id, std::initializer_list<std::string> values) {
        if (count == 0) return;
        text += (text.empty() ? "" : ", ") + FormatCount(count) + " " + Filled(id, values);
    };
    const auto codes = [&](std::int32_t missing, std::int32_t other, int variable,
                           std::span<const double> wanted) {
        if (missing == 0 && other == 0) return;
        const std::string name = QuotedName(host, variable);
        reason(missing, StrWhyNoValue, {name});
        if (std::all_of(wanted.begin(), wanted.end(), [](double code) { return std::isnan(code); })) {
            reason(other, StrWhyNoCodes, {name});
            return;
        }
        reason(other, StrWhyOtherCode, {name, CodeTexts(host, variable, wanted)});
    };
    const int censoring = settings.First(ListCensoring);
    codes(counts.missingCode, counts.otherCode, censoring,
          std::array{settings.completeCode, settings.censoredCode});
    // Where others have neither code, one that no case has may be a mistake.
    if (counts.otherCode > 0 && counts.hasComplete && !counts.hasCensored &&
        std::isfinite(settings.censoredCode))
        text += " " + Filled(StrNoCaseHas, {CodeText(host, censoring, settings.censoredCode)});
    codes(counts.missingGroup, counts.otherGroup, settings.First(ListGrouping), settings.groupCodes);
    const auto times = settings.Times();
    reason(counts.missingTime, StrWhyNoValue, {QuotedNames(host, times, StrOr)});
    reason(counts.tooLarge, StrWhyTooLarge, {QuotedNames(host, times, StrOr)});
    reason(counts.invalidDate, StrWhyInvalidDate, {});
    if (times.size() == 2)
        reason(counts.negativeTime, StrWhyEndFirst, {QuotedName(host, times[1]), QuotedName(host, times[0])});
    else
        reason(counts.negativeTime, StrWhyNegative, {});
    reason(counts.missingCovariate, StrWhyNoValue, {SomeNames(host, settings.List(ListCovariates))});
    codes(counts.missingStratum, counts.otherStratum, settings.First(ListStrata), settings.groupCodes);
    return text;
}

void AddWeights(std::vector<std::string>& notes, CAnalysisSupport& host, const ReadingCounts& counts) {
    const auto note = [&](std::int32_t count, int one, int many) {
        if (count > 0)
            notes.push_back(Filled(count == 1 ? one : many,
                                   {FormatCount(count), QuotedName(host, host.WeightVariable())}));
    };
    note(counts.missingWeight, StrWeightMissingOne, StrWeightMissing);
    note(counts.zeroWeight, StrWeightZeroOne, StrWeightZero);
    note(counts.smallWeight, StrWeightSmallOne, StrWeightSmall);
    note(counts.roundedWeight, StrWeightRoundedOne, StrWeightRounded);
}

} // namespace

std::vector<std::string> ReadingNotes(CAnalysisSupport& host, const SharedSettings& settings,
                                      const ReadingCounts& counts) {
    std::vector<std::string> notes;
    const auto times = settings.Times();
    if (times.size() == 1 && host.HoldsDates(times[0]))
        notes.push_back(Filled(StrNoteDatesAsTimes, {QuotedName(host, times[0])}));
    if (times.size() == 2)
        notes.push_back(Filled(StrNoteStartAndEnd, {QuotedName(host, times[1]), QuotedName(host, times[0])}));
    if (counts.LeftOut() > 0) {
        const bool all = counts.distinctCasesRead == static_cast<double>(host.ss_nb());
        notes.push_back(Filled(all ? StrNoteLeftOut : StrNoteSelectedLeftOut,
                               {FormatCount(counts.LeftOut()), FormatNumber(counts.distinctCasesRead, 10),
                                Reasons(host, settings, counts)}));
    }
    AddWeights(notes, host, counts);
    return notes;
}

void TellReading(CAnalysisSupport& host, const SharedSettings& settings, const ReadingCounts& counts) {
    for (const std::string& note : ReadingNotes(host, settings, counts))
        host.DspMessageBox(MessageStyle::Note, nullptr, 0, note, {});
}

std::string DescribeReading(CAnalysisSupport& host, const SharedSettings& settings,
                            const ReadingCounts& counts) {
    std::string text = Filled(host.ss_nb() == 1 ? StrCasesReadOne : StrCasesRead,
                              {FormatCount(host.ss_nb()), FormatNumber(counts.distinctCasesRead, 10),
                               FormatNumber(counts.distinctValid, 10)});
    for (const std::string& note : ReadingNotes(host, settings, counts))
        text += "\n" + note;
    if (const std::string codes = DescribeCodes(host, settings.First(ListCensoring)); !codes.empty())
        text += "\n" + codes;
    for (const auto& [others, list] :
         {std::pair{counts.otherGroup, ListGrouping}, {counts.otherStratum, ListStrata}}) {
        const std::string codes = others > 0 ? DescribeCodes(host, settings.First(list)) : std::string{};
        if (!codes.empty()) text += "\n" + codes;
    }
    return text;
}

} // namespace ozm::survival
