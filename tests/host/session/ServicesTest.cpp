#include "host/session/SessionServices.h"

#include "tests/host/session/TinyAnalysis.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>

namespace korvana {
namespace {

struct ServicesTest : ::testing::Test {
    ServicesTest() {
        DataSet data = tiny::DataOf({{1, NAN, 3, 3}, {2, 2, -9, 1}});
        data.variable(1).missingCode = -9;
        data.variable(1).label = "Second";
        data.variable(1).valueLabels = {{1, "alive"}, {2, "dead"}};
        parts.data.open(std::move(data));
    }
    SessionParts parts;
    SessionServices host{parts, {}};
};

TEST_F(ServicesTest, CasesComeSelectedAndBounded) {
    double values[2] = {-1, -1};
    const int both[] = {2, 1};
    EXPECT_EQ(host.Data().cstart(1, values, both), ozm::UseCase);
    EXPECT_EQ(values[0], 2.0);
    EXPECT_EQ(values[1], 1.0);
    host.Data().cstart(2, values, both);
    EXPECT_TRUE(std::isnan(values[1]));
    host.Data().cstart(3, values, both);
    EXPECT_TRUE(std::isnan(values[0])) << "the missing code is no value";
    parts.data.describe(1, "Second", NAN, {});
    host.Data().cstart(3, values, both);
    EXPECT_EQ(values[0], -9.0) << "the code was taken back";
    parts.data.describe(1, "Second", -9, {});

    for (const int wrong : {0, -1, 5, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_EQ(host.Data().cstart(wrong, values, both), ozm::StopReading) << wrong;
    for (const int wrong : {0, -7, 3, std::numeric_limits<int>::max()}) {
        const int list[] = {wrong};
        EXPECT_EQ(host.Data().cstart(1, values, list), ozm::StopReading) << wrong;
        double code = 0;
        EXPECT_NE(host.Data().getmd5(wrong, code), 0);
        EXPECT_TRUE(std::isnan(code));
        std::string name = "kept";
        EXPECT_NE(host.Variables().getvn5(wrong, name), 0);
        EXPECT_EQ(host.Variables().VariableLabel(wrong), "");
    }
    double code = 0;
    EXPECT_EQ(host.Data().getmd5(2, code), 0);
    EXPECT_EQ(code, -9.0);

    parts.data.select("x1 = 3");
    values[0] = 77;
    EXPECT_EQ(host.Data().cstart(1, values, both), ozm::SkipCase);
    EXPECT_EQ(values[0], 77.0) << "untouched";
    EXPECT_EQ(host.Data().cstart(4, values, both), ozm::UseCase);
    EXPECT_THROW(parts.data.select("x1 ="), std::exception);
    EXPECT_EQ(parts.data.selectedCount(), 2) << "the selection before stays";
    EXPECT_EQ(host.Data().ss_nb(), 4);
}

TEST_F(ServicesTest, ManyCasesComeAsSingleOnes) {
    parts.data.select("x1 != 2");
    const int lists[][2] = {{2, 1}, {1, 1}, {1, 3}, {0, 1}};
    for (const auto& list : lists) {
        for (const int first : {-1, 0, 1, 2, 4, 5, std::numeric_limits<int>::max()}) {
            short answers[5]{};
            double values[10]{};
            host.Data().cstarts(first, answers, values, list);
            short answer = ozm::UseCase;
            for (std::size_t place = 0; place < 5; ++place) {
                double single[2]{};
                if (answer != ozm::StopReading)
                    answer = host.Data().cstart(first + static_cast<int>(place), single, list);
                ASSERT_EQ(answers[place], answer) << first << ' ' << place;
                if (answers[place] != ozm::UseCase) continue;
                for (std::size_t k = 0; k < 2; ++k)
                    EXPECT_EQ(std::bit_cast<std::uint64_t>(values[5 * k + place]),
                              std::bit_cast<std::uint64_t>(single[k]));
            }
        }
    }
}

TEST_F(ServicesTest, VariablesLabelsAndCodes) {
    ozm::VariableService& variables = host.Variables();
    EXPECT_EQ(variables.FindVariable("X2"), 2);
    EXPECT_EQ(variables.FindVariable("none"), 0);
    std::string text = "dead";
    double value = 0;
    EXPECT_EQ(variables.vvlcod8(2, ozm::LabelLookup::CodeOfText, text, value), 1);
    EXPECT_EQ(value, 2.0);
    value = 1;
    EXPECT_EQ(variables.vvlcod8(2, ozm::LabelLookup::TextOfCode, text, value), 1);
    EXPECT_EQ(text, "alive");
    value = 5;
    EXPECT_EQ(variables.vvlcod8(2, ozm::LabelLookup::TextOfCode, text, value), 0);
    EXPECT_EQ(text, "alive") << "untouched";

    std::vector<ozm::CodeCount> codes;
    EXPECT_EQ(variables.ReadDataToGetDefaultCodes(2, {}, codes), 2);
    ASSERT_EQ(codes.size(), 2U);
    EXPECT_EQ(codes[1].text, "dead");
    EXPECT_EQ(codes[1].cases, 2);
    EXPECT_EQ(variables.ReadDataToGetDefaultCodes(2, {1}, codes), 2) << "counts what it does not gather";
    ASSERT_EQ(codes.size(), 1U);
    EXPECT_EQ(codes[0].text, "alive");
    parts.data.select("x2 = 2");
    EXPECT_EQ(variables.ReadDataToGetDefaultCodes(2, {}, codes), 1);
    EXPECT_LT(variables.ReadDataToGetDefaultCodes(9, {}, codes), 0);
}

struct ReportTest : ServicesTest {
    std::string written() {
        report.type();
        const auto* last = std::get_if<Report>(&parts.book->outputs.back());
        std::string text = last->title + "|";
        for (const std::string& line : last->lines)
            text += line + "|";
        return text;
    }
    ozm::ReportService& report = host.Report();
};

TEST_F(ReportTest, LinesTitlesAndPositions) {
    report.prttop();
    report.newline(2);
    report.writst(5, "TitleXX");
    report.newline(2);
    report.writst(99, "a");
    report.writch('b');
    report.newline(0);
    report.writst(-1, "never");
    report.writst(1, "c   ");
    report.newline(1);
    EXPECT_EQ(written(), "Title||abc|");

    report.prttop();
    report.cupst(3, 4, 1, "x");
    report.cupst(1, 1, 0, "Head");
    report.cup(3, 2);
    report.writst(1, "y");
    report.writst(3, "zzz");
    report.newline(1);
    report.writst(3, "end");
    EXPECT_EQ(written(), "Head|| yzzz|end|");

    report.cupst(1, 1, 0, "Überschrift"); // positions count characters
    report.cup(1, 2);
    report.writst(1, "Ü");
    report.cup(1, 12);
    report.writst(2, "äöü");
    EXPECT_EQ(written(), "ÜÜerschriftäö|");
}

TEST_F(ReportTest, NothingWrittenAndWildPositions) {
    report.type();
    report.prttop();
    report.newline(3);
    report.writst(2, "  ");
    report.type();
    EXPECT_TRUE(parts.book->outputs.empty());
    for (const int wild : {std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 0}) {
        report.cup(wild, 1);
        report.cup(1, wild);
        report.cupst(1, 1, 0, "t");
        if (wild > 0) report.newline(wild);
    }
    EXPECT_EQ(written(), "t|");
    report.writst(4, "left");
    report.prttop();
    EXPECT_EQ(parts.book->outputs.size(), 2U) << "opening a block closes the one before";
}

TEST_F(ServicesTest, SheetsAndChartsOfWrongShapeAreRefused) {
    const double three[] = {1, NAN, 1.0 / 3};
    const std::string texts[] = {"a", "b"};
    ozm::SheetSpec sheet;
    EXPECT_NE(host.Sheets().looka4(sheet), 0);
    EXPECT_NE(host.Sheets().RenameColumn(0, "a", "b"), 0);
    sheet.columns.push_back({"c", "", ozm::CellFormat::fixed(1), std::span<const double>(three)});
    sheet.columns.push_back({"d", "", {}, std::span<const std::string>(texts)});
    EXPECT_NE(host.Sheets().looka4(sheet), 0);
    sheet.columns.pop_back();
    sheet.rowHeadings = {"only one"};
    EXPECT_NE(host.Sheets().table4(sheet), 0);
    sheet.rowHeadings.clear();
    EXPECT_EQ(host.Sheets().table4(sheet), 0);
    EXPECT_EQ(host.Sheets().looka4(sheet), 0);
    ASSERT_EQ(parts.book->outputs.size(), 2U);
    EXPECT_EQ(std::get<Spreadsheet>(parts.book->outputs[0]).cellText(2, 0), "0.333333");
    EXPECT_EQ(std::get<Spreadsheet>(parts.book->outputs[1]).cellText(2, 0), "0.3");
    for (const int wrong : {1, -1})
        EXPECT_NE(host.Sheets().RenameColumn(wrong, "a", "b"), 0);

    ozm::CChartInfo chart;
    EXPECT_NE(host.Charts().NewGeneralMultipleChartLongEx(chart), 0);
    chart.series.emplace_back().x = {1, 2};
    chart.series.back().y = {1};
    EXPECT_NE(host.Charts().NewGeneralMultipleChartLongEx(chart), 0);
    host.Charts().c_gr0(chart);
    EXPECT_TRUE(chart.series.empty());
    const float x[] = {1, 2};
    EXPECT_NE(host.Charts().MakeScatterplot(x, std::span(x).first(1), "t", "x", "y"), 0);
    EXPECT_EQ(host.Charts().MakeScatterplot(x, x, "t", "x", "y"), 0);
    EXPECT_EQ(std::get<Chart>(parts.book->outputs.back()).info.series[0].x, (std::vector<double>{1, 2}));
}

TEST_F(ServicesTest, StopRequestsAndProgress) {
    struct Processing final : SessionObserver {
        void processEvents() override { ++calls; }
        void progress(unsigned done, unsigned units) override { shares.push_back(100 * done / units); }
        int calls = 0;
        std::vector<unsigned> shares;
    } window;
    parts.observers.add(window);
    ozm::ProgressService& progress = host.Progress();
    EXPECT_FALSE(progress.pcancel() || progress.IsExternallyCancelled() ||
                 progress.Iterations().WasCanceled());
    const std::atomic<unsigned>* const word = progress.StopWord();
    EXPECT_EQ(*word, 0U);
    parts.stops->askForEvents();
    EXPECT_NE(*word, 0U);
    EXPECT_FALSE(progress.pcancel());
    EXPECT_FALSE(progress.pcancel());
    EXPECT_EQ(window.calls, 1);
    EXPECT_EQ(*word, 0U) << "events were processed";
    parts.stops->cancel();
    EXPECT_NE(*word, 0U);
    EXPECT_FALSE(progress.IsExternallyCancelled());
    EXPECT_TRUE(progress.pcancel());
    EXPECT_FALSE(progress.pcancel()) << "one Cancel stops one computation";
    parts.stops->requestStop();
    EXPECT_FALSE(progress.pcancel());
    EXPECT_TRUE(progress.IsExternallyCancelled());

    progress.dstart(10);
    for (int i = 0; i < 3; ++i)
        progress.termom(4);
    progress.dstart(10);
    progress.termom(1);
    EXPECT_EQ(window.shares, (std::vector<unsigned>{40, 80, 100, 10}));
}

TEST_F(ServicesTest, FormulasTakeValuesByAscendingReference) {
    ozm::ExpressionService& formulas = host.Expressions();
    std::unique_ptr<ozm::CompiledExpression> compiled;
    std::string error;
    const std::string extra[] = {"T_"};
    ASSERT_EQ(formulas.COMP("T_ * 100 + x2 * 10 + x1", extra, compiled, error), 0) << error;
    const auto references = compiled->References();
    EXPECT_EQ(std::vector<int>(references.begin(), references.end()), (std::vector<int>{1, 2, 3}));
    double result = 0;
    EXPECT_EQ(formulas.RunSpreadsheetFormula(std::vector<double>{1, 2, 3}, *compiled, result), 0);
    EXPECT_EQ(result, 321.0);
    EXPECT_NE(formulas.RunSpreadsheetFormula(std::vector<double>{1, -9, 3}, *compiled, result), 0)
        << "-9 is no value of x2";
    EXPECT_EQ(result, 0.0);
    EXPECT_EQ(formulas.RunSpreadsheetFormula(std::vector<double>{-9, 2, 3}, *compiled, result), 0);
    EXPECT_NE(formulas.RunSpreadsheetFormula(std::vector<double>{1, 2}, *compiled, result), 0);

    EXPECT_NE(formulas.COMP("x1 + nobody", {}, compiled, error), 0);
    EXPECT_EQ(compiled, nullptr);
    EXPECT_NE(error.find("nobody"), std::string::npos) << error;

    struct Stranger final : ozm::CompiledExpression {
        std::span<const int> References() const override { return {}; }
    } stranger;
    EXPECT_NE(formulas.RunSpreadsheetFormula({}, stranger, result), 0);
    EXPECT_LT(formulas.RunSpreadsheetFormulas({}, stranger, {}), 0);
}

TEST_F(ServicesTest, ManyCasesAtOnceGiveWhatEachGivesByItself) {
    ozm::ExpressionService& formulas = host.Expressions();
    const std::string extra[] = {"T_"};
    std::mt19937 random(1);
    for (const char* text : {"x1 * T_ + x2", "T_ / x1", "log(x2 - x1) + T_", "if(missing(x2), 1, x1) * T_",
                             "T_", "7", "if(x1 > T_, x2, T_)", "max(x1, T_, x2) - (x1 - (x2 - (T_ - x1)))",
                             "not x1 < x2 or T_ and x2", "(T_ + 1) ^ 2 / 3"}) {
        std::unique_ptr<ozm::CompiledExpression> compiled;
        std::string error;
        ASSERT_EQ(formulas.COMP(text, extra, compiled, error), 0) << error;
        constexpr std::size_t cases = 700; // more than are computed at a time
        const double seldom[] = {0, -9, NAN, 1e308, -1, 2.5};
        std::vector<std::vector<double>> cells;
        for (const int reference : compiled->References()) {
            auto& column = cells.emplace_back(reference == 3 ? 1 : cases); // one time for all
            for (double& cell : column)
                cell = seldom[random() % std::size(seldom)];
        }
        const std::vector<std::span<const double>> columns(cells.begin(), cells.end());
        std::vector<double> results(cases, -77);
        const int failures = formulas.RunSpreadsheetFormulas(columns, *compiled, results);
        int expectedFailures = 0;
        for (std::size_t i = 0; i < cases; ++i) {
            std::vector<double> values;
            for (const auto& column : cells)
                values.push_back(column[column.size() == 1 ? 0 : i]);
            double one = 0;
            const bool failed = formulas.RunSpreadsheetFormula(values, *compiled, one) != 0;
            expectedFailures += failed ? 1 : 0;
            EXPECT_TRUE(failed ? std::isnan(results[i]) : results[i] == one) << text << ", case " << i;
        }
        EXPECT_EQ(failures, expectedFailures) << text;
        if (columns.empty()) continue;
        const std::vector<double> before = {1, 2, 3};
        std::vector<double> kept = before;
        EXPECT_LT(
            formulas.RunSpreadsheetFormulas(std::span{columns}.first(columns.size() - 1), *compiled, kept),
            0);
        cells[0].resize(2);
        const std::vector<std::span<const double>> wrong(cells.begin(), cells.end());
        EXPECT_LT(formulas.RunSpreadsheetFormulas(wrong, *compiled, kept), 0);
        EXPECT_EQ(kept, before);
    }
}

} // namespace
} // namespace korvana
