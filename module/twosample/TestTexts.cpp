#include "module/twosample/TestTexts.h"

#include "module/resources/Resources.h"
#include "module/resources/StringIds.h"
#include "module/survdata/ReportLines.h"

#include <cmath>

namespace ozm::survival {
namespace {

double Wide(float value) {
    return static_cast<double>(value);
}

std::vector<Statistic> OfScores(const ScoreStatistic& s) {
    return {{"WW", StrTwoColScoreSum1, StrTwoColScoreSum2, Wide(s.scoreSum)},
            {"Sum", StrTwoColScoreSum1, StrTwoColSquares2, Wide(s.sumOfSquares)},
            {"Var", StrTwoColVariance, 0, Wide(s.variance)},
            {"z", StrTwoColStatistic1, StrTwoColStatistic2, Wide(s.z)}};
}

} // namespace

std::string Statistic::InReport() const {
    if (heading1 != StrTwoColP) return std::string{symbol} + " = " + FormatNumber(value, 7);
    const std::string p = FormatProbability(value);
    return std::string{symbol} + (p.starts_with('<') ? " " : " = ") + p;
}

int TitleOf(TwoTest test) {
    switch (test) {
    case TwoTest::Gehan:
        break;
    case TwoTest::CoxF:
        return StrTwoCoxF;
    case TwoTest::CoxMantel:
        return StrTwoCoxMantel;
    case TwoTest::LogRank:
        return StrTwoLogRank;
    case TwoTest::PetoPeto:
        return StrTwoPetoPeto;
    }
    return StrTwoGehan;
}

std::vector<Statistic> StatisticsOf(const TestResult& result) {
    std::vector<Statistic> line;
    if (result.test == TwoTest::CoxF) {
        const CoxFStatistic& f = result.coxF;
        line = {{"T1", StrTwoColT1, 0, Wide(f.scoreSum1)},
                {"T2", StrTwoColT2, 0, Wide(f.scoreSum2)},
                {"F", StrTwoColF, 0, Wide(f.f)},
                {"df 1", StrTwoColDf1, 0, Wide(f.numeratorDf)},
                {"df 2", StrTwoColDf2, 0, Wide(f.denominatorDf)}};
    } else if (result.test == TwoTest::CoxMantel) {
        const CoxMantelStatistic& c = result.coxMantel;
        line = {{"I", StrTwoColI, 0, Wide(c.information)},
                {"U", StrTwoColU, 0, Wide(c.excess)},
                {"C", StrTwoColC, 0, Wide(c.c)}};
    } else if (result.ByGehan()) {
        line = OfScores(result.gehan.corrected);
        line.push_back({"z without correction", StrTwoColUncorrected1, StrTwoColUncorrected2,
                        Wide(result.gehan.uncorrected)});
    } else {
        line = OfScores(result.scoreTest);
    }
    line.push_back({"p", StrTwoColP, 0, result.p});
    return line;
}

std::vector<std::string> NotesOf(const TestResult& result, const GroupCounts& counts) {
    if (result.test == TwoTest::CoxF) return {std::string{Text(StrTwoNoteCoxF)}};
    if (result.test == TwoTest::CoxMantel) return {std::string{Text(StrTwoNoteHypergeometric)}};
    std::vector<std::string> notes{std::string{Text(StrTwoNotePermutational)}};
    if (result.gehanInstead) notes.emplace_back(Text(StrTwoNoteGehanInstead));
    if (result.ByGehan())
        notes.push_back(std::string{Text(StrTwoNoteCorrection)} + FormatNumber(ContinuityCorrection(counts)) +
                        ".");
    return notes;
}

std::string VarianceForm(const TestResult& result) {
    if (result.test == TwoTest::CoxF) return {};
    return std::string{Text(result.test == TwoTest::CoxMantel ? StrTwoHypergeometric : StrTwoPermutational)};
}

SummaryRow SummaryOf(const TestResult& result) {
    SummaryRow row;
    row.statistic = Wide(result.Statistic());
    if (result.test == TwoTest::CoxF) {
        row.df1 = Wide(result.coxF.numeratorDf);
        row.df2 = Wide(result.coxF.denominatorDf);
    } else if (result.test == TwoTest::CoxMantel) {
        row.scoreSum = Wide(result.coxMantel.excess);
        row.variance = Wide(result.coxMantel.information);
    } else {
        const ScoreStatistic& s = result.ByGehan() ? result.gehan.corrected : result.scoreTest;
        row.scoreSum = Wide(s.scoreSum);
        row.variance = Wide(s.variance);
    }
    return row;
}

} // namespace ozm::survival
