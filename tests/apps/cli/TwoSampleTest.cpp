#include "tests/apps/cli/Cli.h"

#include "tests/support/Golden.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace korvana::cli {
namespace {

using nlohmann::json;

struct TwoSampleTest : CliTest {
    Outcome compare(const std::string& variables, const std::string& more) const {
        return run("two-sample " + variables + " --complete 1 --censored 0 " + more);
    }
    /// The published data with both groups named.
    Outcome compare(const std::string& more) const {
        return compare(leukaemia, "--group group --group1 6-MP --group2 placebo " + more);
    }

    const std::string leukaemia = example("leukaemia-6mp.csv") + " --time weeks --censor relapse";
};

TEST_F(TwoSampleTest, PublishedDataGiveTheNumbersOfTheDefinitions) {
    // Of each test its title and its statistics, as the golden file names them.
    const std::map<std::string, std::pair<std::string, std::string>> tests{
        {"gehan", {"Gehan's Wilcoxon Test", "score_sum sum_of_squares variance statistic uncorrected p"}},
        {"cox-f", {"Cox's F-Test", "t1 t2 f df1 df2 p"}},
        {"cox-mantel", {"Cox-Mantel Test", "i u c p"}},
        {"log-rank", {"Log-Rank Test", "score_sum sum_of_squares variance statistic p"}},
        {"peto", {"Peto & Peto's Wilcoxon Test", "score_sum sum_of_squares variance statistic p"}}};
    const auto golden = golden::Table::read("two-sample.csv").where("data", "leukaemia-6mp");
    for (const auto& [name, shown] : tests) {
        const json sheets = json::parse(compare("--outputs " + name + " --format json").out)["spreadsheets"];
        ASSERT_EQ(sheets.size(), 2U) << name;
        EXPECT_EQ(sheets[1]["title"], shown.first + ", Statistics");
        const json& cells = sheets[1]["rows"][0]["cells"];
        const std::vector<std::string> columns = words(shown.second);
        ASSERT_EQ(cells.size(), columns.size()) << name;
        for (std::size_t c = 0; c < cells.size(); ++c) {
            const auto value = golden.where("test", name).where("quantity", columns[c]).numbers("value");
            // Cells hold single-precision numbers.
            EXPECT_NEAR(cells[c].get<double>(), value[0], 2e-6 * std::abs(value[0])) << name << columns[c];
        }
    }
}

TEST_F(TwoSampleTest, TheReportShowsSummaryAndLifeTables) {
    const Outcome outcome = compare("");
    EXPECT_EQ(outcome.code, ExitResults);
    EXPECT_EQ(outcome.err, "");
    for (const char* part :
         {"Comparing two samples\n=====================\nData: leukaemia-6mp.csv\n",
          "Uncensored:      9 ( 42.86%)             21 (100.00%)\n",
          "\nLog-Rank Test                -3.903387 ", "\nLife Table for Group 1 and Group 2\n",
          "Group 1: Code 1 (6-MP)    Group 2: Code 2 (placebo)\n"})
        EXPECT_TRUE(has(outcome.out, part)) << part << "is missing in\n" << outcome.out;
    EXPECT_FALSE(has(outcome.out, "Scores\n---"));
    EXPECT_FALSE(has(outcome.out, "Chart:"));
    EXPECT_EQ(compare(leukaemia, "--group group --group1 1 --group2 2").out, outcome.out);
    const Outcome other = compare(leukaemia, "--group group --group1 placebo --group2 1");
    EXPECT_TRUE(has(other.out, "\nLog-Rank Test                 3.903387 ")) << other.out;
}

TEST_F(TwoSampleTest, FilesHoldAllOutputsAndPlotsAreTwoCharts) {
    const json plots = json::parse(compare("--outputs plots --format json").out);
    EXPECT_TRUE(plots["spreadsheets"].empty());
    ASSERT_EQ(plots["charts"].size(), 2U);
    EXPECT_EQ(plots["charts"][1]["yAxis"], "Cumulative Proportion Surviving");
    EXPECT_TRUE(has(plots["charts"][1]["series"][1]["legend"], "placebo"));

    EXPECT_EQ(compare("-o out --format json -q").code, ExitResults);
    EXPECT_EQ(json::parse(read("out/results.json"))["spreadsheets"].size(), 12U)
        << "summary, two of each test, life tables";
}

TEST_F(TwoSampleTest, CasesOfOtherGroupsAreANote) {
    const Outcome outcome = compare(example("veteran.csv") + " --time time --censor status",
                                    "--group celltype --group1 squamous --group2 large --format json");
    const std::string note =
        "75 of 137 cases left out: 75 with a code of 'celltype' other than 'squamous' or 'large'.";
    EXPECT_EQ(outcome.err, "korvana: note: " + note + "\n");
    EXPECT_EQ(json::parse(outcome.out)["notes"], json{note});
    EXPECT_TRUE(has(outcome.out, "Total number of valid observations: 62"));
}

TEST_F(TwoSampleTest, WhatIsMissingOrMatchesNothingIsNamed) {
    const std::string codes = "'group' has 1 '6-MP' (21 cases), 2 'placebo' (21 cases)\n";
    refuses(
        "two-sample " + leukaemia + " --complete 1 --censored 0",
        {{"", "--group is missing: "},
         {"--group group", "--group1 and --group2 are missing: give the codes of the two groups; " + codes},
         {"--group group --group2 2", "--group1 is missing: "},
         {"--group group --group1 1 --group2 7", "--group2 7: no case has this code; " + codes},
         {"--group weeks --group1 0 --group2 1", "variable 'weeks' is given twice\n"}});
}

TEST_F(TwoSampleTest, OutputsThatCannotBeMadeAreNamedAndTheOthersStand) {
    file("four.csv", "time,status,arm\n1,1,1\n2,1,1\n3,1,2\n4,0,2\n");
    const auto outputs = [&](const std::string& names) {
        return compare("four.csv --time time --censor status",
                       "--group arm --group1 1 --group2 2 --outputs " + names);
    };
    const Outcome some = outputs("summary,life-tables --format json");
    EXPECT_EQ(some.code, ExitResults);
    const json book = json::parse(some.out);
    EXPECT_EQ(book["status"], 1);
    EXPECT_EQ(book["messages"][0]["id"], 20274);
    EXPECT_EQ(json::parse(outputs("summary --format json").out)["status"], 0);
    const Outcome refused = outputs("life-tables,plots");
    EXPECT_EQ(refused.code, ExitRefused);
    EXPECT_EQ(refused.out, "");
    EXPECT_TRUE(refused.err.starts_with("korvana: message 20274: Fewer than 3 valid cases.")) << refused.err;
    EXPECT_TRUE(
        has(refused.err, "Output: Life table: proportion surviving by group (ProportionSurvivingByGroup).\n"))
        << refused.err;
}

} // namespace
} // namespace korvana::cli
