#include "tests/apps/cli/Cli.h"

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
