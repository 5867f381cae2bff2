#include "tests/apps/cli/Cli.h"
#include "tests/support/Golden.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>

namespace korvana::cli {
namespace {

using nlohmann::json;

struct KSampleTest : CliTest {
    Outcome compare(const std::string& more) const {
        return run("k-sample " + example("veteran.csv") +
                   " --time time --censor status --complete 1 --censored 0 " + more);
    }
    static json cells(const json& book, const std::string& title, std::size_t row) {
        for (const json& sheet : book["spreadsheets"])
            if (sheet["title"] == title) return sheet["rows"][row]["cells"];
        return {};
    }
};

TEST_F(KSampleTest, TheOrderOfCodesIsTheOrderOfGroups) {
    const Outcome given = compare("--group celltype --codes squamous,smallcell,adeno,large --format json");
    ASSERT_EQ(given.code, ExitResults) << given.err;
    const json book = json::parse(given.out);
    const std::vector<std::pair<std::string, double>> sums{
        {"squamous", 890}, {"smallcell", -1278}, {"adeno", -697}, {"large", 1085}};
    for (std::size_t g = 0; g < sums.size(); ++g) {
        const json row = cells(book, "Summary statistics for each group", g);
        EXPECT_EQ(row[1], sums[g].first);
        EXPECT_EQ(row[2], sums[g].second);
    }
    EXPECT_NEAR(cells(book, "Comparison of Several Groups, Test", 0)[0].get<double>(), 19.4405, 5e-5);
    // Without codes all of them, ascending: the same but for the order, and but for the trend by order.
    const json all = json::parse(compare("--group celltype --format json").out);
    EXPECT_EQ(cells(all, "Summary statistics for each group", 0)[1], "adeno");
    const std::string tests = "Log-Rank, Tarone-Ware and Peto & Peto Tests";
    EXPECT_NEAR(cells(all, tests, 0)[0].get<double>(), cells(book, tests, 0)[0].get<double>(), 1e-9);
    EXPECT_GT(std::abs(cells(all, tests, 0)[3].get<double>() - cells(book, tests, 0)[3].get<double>()), 0.1);
    EXPECT_NEAR(cells(all, tests, 0)[5].get<double>(), cells(book, tests, 0)[5].get<double>(), 1e-9);
}

/// Each cell of the tables, by what it is called.
TEST_F(KSampleTest, EveryCellIsTheOneThatItsColumnNames) {
    const json book = json::parse(
        compare("--group celltype --codes squamous,smallcell,adeno,large --outputs all --format json").out);
    const golden::Table golden = golden::Table::read("k-sample.csv").where("data", "veteran");
    int compared = 0;
    const auto agrees = [&](const char* title, std::size_t row, const std::string& column,
                            const std::string& test, const std::string& quantity) {
        for (const json& sheet : book["spreadsheets"]) {
            if (sheet["title"] != title) continue;
            const json& ids = sheet["columnIds"];
            const auto place = std::find(ids.begin(), ids.end(), column) - ids.begin();
            const json& cell = sheet["rows"][row]["cells"][static_cast<std::size_t>(place)];
            const double value = golden.where("test", test).where("quantity", quantity).numbers("value")[0];
            ASSERT_TRUE(cell.is_number()) << title << column;
            EXPECT_NEAR(cell.get<double>(), value, 1e-10 * std::abs(value)) << title << ", " << column << row;
            ++compared;
        }
    };
    const char* const trials = "Log-Rank, Tarone-Ware and Peto & Peto Tests";
    const char* const byGroup = "Observed and Expected Failures, Median Survival Time";
    const std::vector<std::string> tests{"log-rank", "tarone-ware", "peto"};
    const std::vector<std::string> endings{"", "TaroneWare", "PetoPeto"};
    for (std::size_t row = 0; row < 3; ++row)
        for (const auto& [column, quantity] : {std::pair{"chiSquare", "chisq"},
                                               {"p", "p"},
                                               {"trendByOrderChiSquare", "order_chisq"},
                                               {"trendByOrderP", "order_p"}})
            agrees(trials, row, column, tests[row], quantity);
    for (std::size_t g = 0; g < 4; ++g) {
        const std::string number = std::to_string(g + 1);
        agrees("Summary statistics for each group", g, "sumOfScores", "gehan", "sum" + number);
        for (const std::size_t t : {0U, 2U}) {
            agrees(byGroup, g, "observed" + endings[t], tests[t], "observed" + number);
            agrees(byGroup, g, "expected" + endings[t], tests[t], "expected" + number);
        }
        agrees(byGroup, g, "median", "median", "median" + number);
        agrees(byGroup, g, "medianLower", "median", "0.95LCL" + number);
        agrees(byGroup, g, "medianUpper", "median", "0.95UCL" + number);
    }
    for (std::size_t row = 0; row < 5; ++row) { // the last is of all
        const std::string number = std::to_string(row < 4 ? row + 1 : 0);
        agrees("Descriptive statistics for each group", row, "median", "times", "median" + number);
        agrees("Descriptive statistics for each group", row, "mean", "times", "mean" + number);
        agrees("Descriptive statistics for each group", row, "standardDeviation", "times", "sd" + number);
    }
    std::size_t row = 0;
    for (int g = 1; g < 4; ++g)
        for (int h = g + 1; h <= 4; ++h, ++row) {
            const std::string pair = std::to_string(g) + "-" + std::to_string(h);
            agrees("Pairwise Comparisons, Log-Rank Test", row, "p", "pairs", "p" + pair);
            agrees("Pairwise Comparisons, Log-Rank Test", row, "pHolm", "pairs", "holm" + pair);
        }
    const char* const test = "Comparison of Several Groups, Test";
    agrees(test, 0, "statistic", "gehan", "chisq");
    agrees(test, 0, "pExact", "gehan", "p");
    EXPECT_EQ(compared, 12 + 4 * 8 + 15 + 12 + 2);
    // p beside it is the approximation: close, but another number.
    const json cells = KSampleTest::cells(book, test, 0);
    EXPECT_NE(cells[2], cells[4]);
    EXPECT_NEAR(cells[2].get<double>(), cells[4].get<double>(), 4e-7);
    const json squamous = KSampleTest::cells(book, "Summary statistics for each group", 0);
    EXPECT_NEAR(squamous[4].get<double>(), 100.0 * 31 / 35, 1e-12);
    EXPECT_NEAR(squamous[6].get<double>(), 100.0 * 4 / 35, 1e-12);
}

/// A group's curve is the estimate of its cases alone; two groups' life tables are those of two samples.
TEST_F(KSampleTest, CurvesAndLifeTablesAreThoseOfTheOtherAnalyses) {
    const std::string data =
        example("veteran.csv") + " --time time --censor status --complete 1 --censored 0";
    const json book = json::parse(
        run("k-sample " + data + " --group celltype --codes large,smallcell --outputs all --format json")
            .out);
    std::map<std::string, std::vector<json>> curves;
    for (const json& sheet : book["spreadsheets"])
        if (sheet["title"] == "Cumulative Proportion Surviving (Kaplan-Meier)")
            for (const json& row : sheet["rows"]) // time, mark, survival, standard error
                curves[row["cells"][1]].push_back(
                    {row["cells"][2], row["cells"][3], row["cells"][4], row["cells"][5]});
    for (const std::string type : {"large", "smallcell"}) {
        const json alone =
            json::parse(runWords({"kaplan-meier", example("veteran.csv"), "--time", "time", "--censor",
                                  "status", "--complete", "1", "--censored", "0", "--select",
                                  "celltype = '" + type + "'", "--outputs", "summary", "--format", "json"})
                            .out);
        std::vector<json> rows;
        for (const json& row : alone["spreadsheets"][1]["rows"])
            rows.push_back({row["cells"][0], row["cells"][1], row["cells"][2], row["cells"][3]});
        EXPECT_EQ(curves[type], rows) << type;
    }
    const json two = json::parse(
        run("two-sample " + data +
            " --group celltype --group1 large --group2 smallcell --outputs life-tables --format json")
            .out);
    const json& both = two["spreadsheets"][0]["rows"];
    for (std::size_t g = 0; g < 2; ++g) {
        std::vector<std::vector<json>> own;
        std::vector<std::vector<json>> others;
        for (const json& sheet : book["spreadsheets"])
            if (sheet["title"].get<std::string>().starts_with("Life Table for Group " +
                                                              std::to_string(2 + g)))
                for (const json& row : sheet["rows"])
                    own.emplace_back(row["cells"].begin(), row["cells"].end());
        for (std::size_t row = 0; row < own.size(); ++row) {
            others.push_back({both[row]["cells"][0]});
            for (std::size_t c = 0; c < 5; ++c)
                others.back().push_back(both[row]["cells"][1 + 2 * c + g]);
        }
        EXPECT_GT(own.size(), 6U);
        EXPECT_EQ(own, others);
    }
    // The plot draws them: of each group a step function, then its complete and its censored observations.
    for (const json& chart : book["charts"]) {
        if (chart["title"] != "Cumulative Proportion Surviving (Kaplan-Meier)") continue;
        const json& series = chart["series"];
        std::vector<json> complete;
        std::vector<json> censored;
        for (const json& row : curves["large"])
            (row[1] == "+" ? censored : complete).push_back(row[0]);
        EXPECT_EQ(std::vector<json>(series[1]["x"].begin(), series[1]["x"].end()), complete);
        EXPECT_EQ(std::vector<json>(series[2]["x"].begin(), series[2]["x"].end()), censored);
        EXPECT_EQ(series[1]["y"][0], curves["large"][0][2]);
    }
}

/// Beyond |Z| = 3.1 both probabilities have floors; the exact one has none.
TEST_F(KSampleTest, TwoGroupsFarApart) {
    std::string text = "t,c,g\n";
    for (int i = 1; i <= 40; ++i)
        text += std::to_string(i) + ",1," + std::to_string(i <= 20 ? 1 : 2) + "\n";
    file("apart.csv", text);
    const std::string call = "k-sample apart.csv --time t --censor c --complete 1 --censored 0 --group g ";
    const json book = json::parse(run(call + "--outputs summary,scores --format json").out);
    const json row = cells(book, "Comparison of Several Groups, Test", 0);
    // S = -400, sum of squares (1^2 + 3^2 + ... + 39^2) 2 = 21320, SD = sqrt(400 21320 / 1560).
    const double z = -399.0 / std::sqrt(400.0 * 21320 / 1560);
    EXPECT_NEAR(row[0].get<double>(), z, 1e-12);
    EXPECT_EQ(row[2], 0.002);
    EXPECT_EQ(row[3], 0.001);
    EXPECT_NEAR(row[4].get<double>() / std::erfc(-z / std::sqrt(2.0)), 1.0, 1e-12);
    for (const json& sheet : book["spreadsheets"])
        if (sheet["title"] == "Scores") {
            EXPECT_EQ(sheet["notes"][2], "Z = -5.396493               p = 0.002");
        }
    EXPECT_TRUE(has(run(call).out, "         Z = -5.396493               p = 0.002\n"));
}

/// Values that are equal as codes are one group, and a label may hold commas.
TEST_F(KSampleTest, CodesAsTheyOccur) {
    std::string text = "t,c,g,l\n";
    for (int i = 1; i <= 12; ++i)
        text += std::to_string(i) + ",1," +
                (i % 3 == 0   ? "0.30000000000000004"
                 : i % 3 == 1 ? "0.3"
                              : "0.7") +
                ",\"" + (i % 2 == 0 ? "a,b" : "c") + "\"\n";
    file("codes.csv", text);
    const std::string call = "k-sample codes.csv --time t --censor c --complete 1 --censored 0 --group ";
    const Outcome close = run(call + "g");
    EXPECT_EQ(close.code, ExitResults) << close.err;
    EXPECT_TRUE(has(close.out, "g    2 Groups") && has(close.out, "     0.3         8 ")) << close.out;
    const Outcome commas = runWords({"k-sample", "codes.csv", "--time", "t", "--censor", "c", "--complete",
                                     "1", "--censored", "0", "--group", "l", "--codes", "\"a,b\", c"});
    EXPECT_EQ(commas.code, ExitResults) << commas.err;
    EXPECT_TRUE(has(commas.out, "p to all")) << "the probability without floors stands in the report";
}

TEST_F(KSampleTest, WhatCannotBeComparedIsNamed) {
    const std::string begin =
        "k-sample " + example("veteran.csv") + " --time time --censor status --complete 1 --censored 0";
    refuses(begin, {{"", "--group is missing"},
                    {"--group status", "'status' is given twice"},
                    {"--group celltype --codes squamous,,large", "--codes: an entry of the list is empty"},
                    {"--group celltype --codes squamous,tiny",
                     "--codes: 'tiny' is neither a number nor a value label"}});
    const auto refused = [this](const std::string& more, const std::string& said) {
        const Outcome outcome = compare(more);
        EXPECT_EQ(outcome.code, ExitRefused) << more;
        EXPECT_EQ(outcome.out, "");
        EXPECT_TRUE(has(outcome.err, said)) << outcome.err;
    };
    refused("--group celltype --codes large", "Two groups or more are needed.");
    refused("--group celltype --codes large,2", "A code of the grouping variable was given twice.");
    refused("--group celltype --codes large,9", "Without an uncensored case: 9 (0 censored).");
    EXPECT_TRUE(has(compare("--group celltype --codes large,9").err,
                    "warning: --codes 9: no case has this code; 'celltype' has"));
    std::string many = "t,c,g\n";
    for (int i = 1; i <= 300; ++i)
        many += std::to_string(i) + ",1," + std::to_string(i) + "\n";
    file("many.csv", many);
    const Outcome outcome = run("k-sample many.csv --time t --censor c --complete 1 --censored 0 --group g");
    EXPECT_EQ(outcome.code, ExitRefused);
    EXPECT_TRUE(has(outcome.err, "There are more than 250 groups.")) << outcome.err;
}

} // namespace
} // namespace korvana::cli
