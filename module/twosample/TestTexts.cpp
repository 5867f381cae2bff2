#include "module/twosample/TestTexts.h"

#include "module/resources/Resources.h"
#include "module/resources/TwoSamples.h"
#include "module/survdata/ReportLines.h"

#include <array>
#include <cstddef>

namespace ozm::survival {
namespace {

double Wide(float value) {
    return static_cast<double>(value);
}

using Line = std::vector<Statistic>;

Line LineOf(const NotComputed& /*none*/) {
    return {};
}

Line LineOf(const ScoreStatistic& s) {
    return {{"WW", "sum", StrTwoColScoreSum1, StrTwoColScoreSum2, Wide(s.scoreSum)},
            {"Sum", "sumOfSquares", StrTwoColScoreSum1, StrTwoColSquares2, Wide(s.sumOfSquares)},
            {"Var", "variance", StrTwoColVariance, 0, Wide(s.variance)},
            {"z", "statistic", StrTwoColStatistic1, StrTwoColStatistic2, Wide(s.z)}};
}

Line LineOf(const GehanStatistic& s) {
    Line line = LineOf(s.corrected);
    line.push_back({Text(StrTwoUncorrectedZ), "uncorrected", StrTwoColUncorrected1, StrTwoColUncorrected2,
                    Wide(s.uncorrected)});
    return line;
}

Line LineOf(const CoxFStatistic& s) {
    return {{"T1", "t1", StrTwoColT1, 0, Wide(s.scoreSum1)},
            {"T2", "t2", StrTwoColT2, 0, Wide(s.scoreSum2)},
            {"F", "statistic", StrTwoColF, 0, Wide(s.f)},
            {"df 1", "df1", StrTwoColDf1, 0, Wide(s.numeratorDf)},
            {"df 2", "df2", StrTwoColDf2, 0, Wide(s.denominatorDf)}};
}

Line LineOf(const CoxMantelStatistic& s) {
    return {{"I", "variance", StrTwoColI, 0, Wide(s.information)},
            {"U", "sum", StrTwoColU, 0, Wide(s.excess)},
            {"C", "statistic", StrTwoColC, 0, Wide(s.c)}};
}

SummaryRow RowOf(const NotComputed& /*none*/) {
    return {};
}

SummaryRow RowOf(const ScoreStatistic& s) {
    return {.statistic = Wide(s.z),
            .scoreSum = Wide(s.scoreSum),
            .variance = Wide(s.variance),
            .varianceForm = std::string{Text(StrTwoPermutational)}};
}

SummaryRow RowOf(const GehanStatistic& s) {
    return RowOf(s.corrected);
}

SummaryRow RowOf(const CoxFStatistic& s) {
    return {.statistic = Wide(s.f), .df1 = Wide(s.numeratorDf), .df2 = Wide(s.denominatorDf)};
}

SummaryRow RowOf(const CoxMantelStatistic& s) {
    return {.statistic = Wide(s.c),
            .scoreSum = Wide(s.excess),
            .variance = Wide(s.information),
            .varianceForm = std::string{Text(StrTwoHypergeometric)}};
}

} // namespace

std::string Statistic::InReport() const {
    if (heading1 != StrTwoColP) return std::string{symbol} + " = " + FormatNumber(value, 7);
    const std::string p = FormatProbability(value);
    return std::string{symbol} + (p.starts_with('<') ? " " : " = ") + p;
}

std::string TitleOf(TwoTest test) {
    static constexpr std::array titles{StrTwoGehan, StrTwoCoxF, StrTwoCoxMantel, StrTwoLogRank,
                                       StrTwoPetoPeto};
    return std::string{Text(titles[static_cast<std::size_t>(test)])};
}

std::vector<Statistic> StatisticsOf(const TestResult& result) {
    Line line = std::visit([](const auto& numbers) { return LineOf(numbers); }, result.numbers);
    if (result.Computed()) line.push_back({"p", "p", StrTwoColP, 0, result.p});
    return line;
}

std::vector<std::string> NotesOf(const TestResult& result, const PooledSample& sample) {
    const auto note = [](int id) { return std::string{Text(id)}; };
    if (!result.Computed()) return {note(StrTwoNotComputed)};
    if (result.test == TwoTest::CoxF) return {note(StrTwoNoteCoxF)};
    if (result.test == TwoTest::CoxMantel) return {note(StrTwoNoteHypergeometric)};
    std::vector<std::string> notes{note(StrTwoNotePermutational)};
    if (!result.ByGehan()) return notes;
    if (result.test == TwoTest::PetoPeto) notes.push_back(note(StrTwoNoteGehanInstead));
    notes.push_back(note(StrTwoNoteCorrection) + FormatNumber(ContinuityCorrection(sample.Total())) + ".");
    return notes;
}

SummaryRow SummaryOf(const TestResult& result) {
    SummaryRow row = std::visit([](const auto& numbers) { return RowOf(numbers); }, result.numbers);
    if (result.Computed()) row.p = result.p;
    return row;
}

} // namespace ozm::survival
