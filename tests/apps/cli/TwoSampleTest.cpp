#include "tests/apps/cli/Cli.h"

#include "tests/support/Golden.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace korvana::cli {
namespace {

using nlohmann::json;
using Arguments = std::vector<std::string>;

struct TwoSampleTest : CliTest {
    Outcome compare(Arguments data, const Arguments& more) {
        data.insert(data.begin(), "two-sample");
        data.insert(data.end(), {"--complete", "1", "--censored", "0"});
        data.insert(data.end(), more.begin(), more.end());
        return run(data);
    }
    /// The published data with both groups named.
    Outcome compare(const Arguments& more) {
        Arguments all{"--group", "group", "--group1", "6-MP", "--group2", "placebo"};
        all.insert(all.end(), more.begin(), more.end());
        return compare(leukaemia, all);
    }

    const Arguments leukaemia{example("leukaemia-6mp.csv"), "--time", "weeks", "--censor", "relapse"};
};

TEST_F(TwoSampleTest, PublishedDataGiveTheNumbersOfTheDefinitions) {
    const struct {
        const char* name;
        const char* title;
        std::vector<const char*> columns; // of the statistics, as the golden file names them
    } tests[] = {{"gehan",
                  "Gehan's Wilcoxon Test",
                  {"score_sum", "sum_of_squares", "variance", "statistic", "uncorrected", "p"}},
                 {"cox-f", "Cox's F-Test", {"t1", "t2", "f", "df1", "df2", "p"}},
                 {"cox-mantel", "Cox-Mantel Test", {"i", "u", "c", "p"}},
                 {"log-rank", "Log-Rank Test", {"score_sum", "sum_of_squares", "variance", "statistic", "p"}},
                 {"peto",
                  "Peto & Peto's Wilcoxon Test",
                  {"score_sum", "sum_of_squares", "variance", "statistic", "p"}}};
    const auto golden = golden::Table::read("two-sample.csv").where("data", "leukaemia-6mp");
    for (const auto& test : tests) {
        const Outcome outcome = compare({"--outputs", test.name, "--format", "json"});
        ASSERT_EQ(outcome.code, ExitResults) << outcome.err;
        const json sheets = json::parse(outcome.out)["spreadsheets"];
        ASSERT_EQ(sheets.size(), 2U) << test.name;
        EXPECT_EQ(sheets[1]["title"], test.title + std::string{", Statistics"});
        const json& cells = sheets[1]["rows"][0]["cells"];
        ASSERT_EQ(cells.size(), test.columns.size()) << test.name;
        for (std::size_t c = 0; c < cells.size(); ++c) {
            const auto value =
                golden.where("test", test.name).where("quantity", test.columns[c]).numbers("value");
            // Cells hold single-precision numbers.
            EXPECT_NEAR(cells[c].get<double>(), value[0], 2e-6 * std::abs(value[0]))
                << test.name << ": " << test.columns[c];
        }
    }
}

TEST_F(TwoSampleTest, TheReportShowsSummaryAndLifeTables) {
    const Outcome outcome = compare({});
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
}

TEST_F(TwoSampleTest, FilesHoldAllOutputsAndPlotsAreTwoCharts) {
    const json plots = json::parse(compare({"--outputs", "plots", "--format", "json"}).out);
    EXPECT_TRUE(plots["spreadsheets"].empty());
    ASSERT_EQ(plots["charts"].size(), 2U);
    EXPECT_EQ(plots["charts"][1]["yAxis"], "Cumulative Proportion Surviving");
    EXPECT_TRUE(has(plots["charts"][1]["series"][1]["legend"], "placebo"));

    EXPECT_EQ(compare({"-o", folder / "out", "--format", "json,svg", "-q"}).code, ExitResults);
    const json all = json::parse(read(folder / "out" / "results.json"));
    EXPECT_EQ(all["spreadsheets"].size(), 12U); // summary, two of each test, life tables
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "out"), {}), 3);
}

TEST_F(TwoSampleTest, GroupsByLabelOrNumberAndTheOrderOfThem) {
    const auto groups = [&](const char* one, const char* two) {
        return compare(leukaemia, {"--group", "group", "--group1", one, "--group2", two}).out;
    };
    EXPECT_TRUE(has(groups("6-MP", "placebo"), "\nLog-Rank Test                -3.903387 "));
    EXPECT_EQ(groups("1", "2"), groups("6-MP", "placebo"));
    EXPECT_TRUE(has(groups("placebo", "1"), "\nLog-Rank Test                 3.903387 "));
}

TEST_F(TwoSampleTest, CasesOfOtherGroupsAreANote) {
    const Outcome outcome =
        compare({example("veteran.csv"), "--time", "time", "--censor", "status"},
                {"--group", "celltype", "--group1", "squamous", "--group2", "large", "--format", "json"});
    const std::string note =
        "75 of 137 cases left out: 75 with another code of 'celltype' than 'squamous' or 'large'.";
    EXPECT_EQ(outcome.err, "korvana: note: " + note + "\n");
    EXPECT_EQ(json::parse(outcome.out)["notes"], json{note});
    EXPECT_TRUE(has(outcome.out, "Total number of valid observations: 62"));
}

TEST_F(TwoSampleTest, WhatIsMissingOrMatchesNothingIsNamed) {
    const std::string codes = "'group' has 1 '6-MP' (21 cases), 2 'placebo' (21 cases)\n";
    const auto refused = [&](const Arguments& more, const std::string& why) {
        const Outcome outcome = compare(leukaemia, more);
        EXPECT_EQ(outcome.code, ExitUsage) << why;
        EXPECT_TRUE(outcome.err.starts_with("korvana: " + why)) << outcome.err;
    };
    refused({}, "--group is missing: ");
    refused({"--group", "group"},
            "--group1 and --group2 are missing: give the codes of the two groups; " + codes);
    refused({"--group", "group", "--group2", "2"}, "--group1 is missing: ");
    refused({"--group", "group", "--group1", "1", "--group2", "7"},
            "--group2 7: no case has this code; " + codes);
    refused({"--group", "group", "--group1", "6MP", "--group2", "2"},
            "--group1: '6MP' is neither a number nor a value label; " + codes);
    for (const std::string twice : {"relapse", "weeks"})
        refused({"--group", twice, "--group1", "0", "--group2", "1"},
                "variable '" + twice + "' is given twice\n");
}

TEST_F(TwoSampleTest, ARefusalCarriesItsNumber) {
    const auto refused = [](const Outcome& outcome, const std::string& message, const std::string& detail) {
        EXPECT_EQ(outcome.code, ExitRefused);
        EXPECT_EQ(outcome.out, "");
        EXPECT_TRUE(outcome.err.starts_with("korvana: message " + message)) << outcome.err;
        EXPECT_TRUE(has(outcome.err, detail)) << outcome.err;
    };
    refused(compare({"--select", "pair = 1"}), "14245: Fewer than two valid cases.\n",
            "Group 1: 1 uncensored, 0 censored. Group 2: 1 uncensored, 0 censored.\n");
    const auto compareFile = [&](const std::string& cases, const char* outputs = "summary,life-tables") {
        return compare(
            {file("data.csv", "time,status,arm\n" + cases), "--time", "time", "--censor", "status"},
            {"--group", "arm", "--group1", "1", "--group2", "2", "--outputs", outputs});
    };
    std::string most = "1,1,2\n";
    for (int i = 0; i < 2000; ++i)
        most += "5,1,1\n";
    EXPECT_EQ(compareFile(most).code, ExitResults);
    // No life table of two cases each; the summary stands all the same.
    const std::string twoEach = "1,1,1\n2,1,1\n3,1,2\n4,0,2\n";
    EXPECT_EQ(compareFile(twoEach).code, ExitResults);
    refused(compareFile(twoEach, "life-tables,plots"), "20274: Fewer than 3 valid cases.",
            "Output: Life table: proportion surviving by group (ProportionSurvivingByGroup).\n");
    refused(compareFile(most + "6,1,1\n"), "14243: Too many datapoints", "takes at most 2000 uncensored");
}

} // namespace
} // namespace korvana::cli
