#include "tests/apps/cli/Cli.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <random>
#include <set>

namespace korvana::cli {
namespace {

using nlohmann::json;

struct KaplanMeierTest : CliTest {
    Outcome analyse(const std::string& data, const std::string& more = {}) const {
        return run("kaplan-meier " + data + " --time time --censor status --complete 1 --censored 0 " + more);
    }
    json results(const std::string& data, const std::string& more = {}) const {
        const Outcome outcome = analyse(data, more + " --format json");
        EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
        return json::parse(outcome.out);
    }
    /// The survival times in the product-limit table.
    static std::vector<double> times(const json& book) {
        std::vector<double> cells;
        for (const json& sheet : book["spreadsheets"])
            for (const json& row : sheet["rows"])
                if (has(sheet["title"], "Product-limit")) cells.push_back(row["cells"][0]);
        return cells;
    }

    const std::string aml = example("aml.csv");
};

TEST_F(KaplanMeierTest, TheReportGoesToStandardOutputAndNothingElseDoes) {
    const Outcome outcome = analyse(aml);
    EXPECT_EQ(outcome.code, ExitResults);
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(outcome.out.starts_with("Kaplan-Meier\n============\nData: aml.csv\n")) << outcome.out;
    EXPECT_TRUE(has(outcome.out, "uncensored:    18")) << outcome.out;
    EXPECT_TRUE(has(outcome.out, "Percentiles"));
    EXPECT_FALSE(has(outcome.out, "Chart:"));
    EXPECT_FALSE(has(analyse(aml, "--outputs summary").out, "Percentiles"));
    const json charts = results(aml, "--outputs plot-3,plot-1")["charts"];
    ASSERT_EQ(charts.size(), 2U);
    EXPECT_TRUE(has(charts[0]["title"], "Survival Function"));
    terminal = true;
    const Outcome shown = analyse(aml);
    EXPECT_EQ(shown.out, outcome.out);
    EXPECT_TRUE(has(shown.err, "\r\x1b[KReading ")) << shown.err;
    EXPECT_TRUE(shown.err.ends_with("\r\x1b[K")) << "the line is erased at the end";
    EXPECT_FALSE(has(shown.err, "\n"));
    EXPECT_EQ(analyse(aml, "-q").err, "");
}

TEST_F(KaplanMeierTest, WritesFilesIntoADirectory) {
    const Outcome outcome = analyse(aml, "-o out");
    EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    std::set<std::string> endings;
    for (const auto& entry : std::filesystem::directory_iterator("out")) {
        endings.insert(entry.path().extension());
        EXPECT_GT(entry.file_size(), 0U) << entry.path();
        EXPECT_TRUE(has(outcome.err, "wrote " + entry.path().string() + "\n")) << outcome.err;
    }
    EXPECT_EQ(endings, (std::set<std::string>{".txt", ".json", ".csv", ".html", ".svg", ".png", ".py"}));
    EXPECT_EQ(json::parse(read("out/results.json"))["charts"].size(), 3U);
    EXPECT_EQ(analyse(aml, "-o out --quiet --format xlsx").err, "");
    EXPECT_FALSE(std::filesystem::exists("out/results.json")) << "a folder holds one run";
}

TEST_F(KaplanMeierTest, OfManyObservationsTheCurveIsThePictureUnlessAskedOtherwise) {
    std::string rows = "time,status\n";
    for (int i = 1; i <= 32000; ++i)
        rows += std::to_string(i) + ",1\n";
    file("few.csv", rows);
    file("many.csv", rows + "32001,0\n");
    std::string said;
    const auto charts = [&](const std::string& data, const std::string& more) {
        const Outcome outcome = analyse(data, more + " -o charts --format json");
        EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
        said = outcome.err;
        std::vector<std::string> titles;
        const json book = json::parse(read("charts/results.json"));
        for (const json& chart : book["charts"])
            titles.push_back(chart["title"]);
        return titles;
    };
    EXPECT_EQ(charts("few.csv", "").size(), 3U);
    EXPECT_EQ(charts("many.csv", ""), std::vector<std::string>{"Survival Curve"});
    EXPECT_FALSE(has(said, "message")) << said;
    EXPECT_EQ(charts("many.csv", "--outputs plot-1"), std::vector<std::string>{"Survival Function    "});
    EXPECT_TRUE(has(said, "message 20250")) << said;
    charts("many.csv", "-q --outputs plot-1");
    EXPECT_EQ(said, "");
    EXPECT_EQ(charts("aml.csv", "--outputs all").size(), 4U);
}

TEST_F(KaplanMeierTest, SelectionWeightsMissingCodesLabelsAndDates) {
    EXPECT_EQ(times(results(aml, "--select \"group = 'Maintained'\"")).size(), 11U);
    EXPECT_EQ(times(results(aml, "--missing time=13")).size(), 21U);
    file("w.csv", "time,status,w\n1,1,3\n2,0,1\n3,1,0.5\n4,1,2\n");
    EXPECT_EQ(times(results("w.csv", "--weight w")).size(), 7U);

    file("l.csv", "begin,end,status,\"a,b\"\n1995-01-01,1995-01-11,dead,5\n1995-01-01,1995-02-01,alive,6\n"
                  "1995-03-01,1995-03-08,dead,7\n");
    const std::string labelled = "kaplan-meier l.csv --censor status --format json --time ";
    const Outcome dates = succeed(labelled + "begin,end --complete dead --censored alive");
    EXPECT_EQ(run(labelled + "begin,end --complete 2 --censored 1").out, dates.out);
    EXPECT_EQ(times(json::parse(dates.out)), (std::vector<double>{7, 10, 31}));
    EXPECT_TRUE(
        has(dates.err, "note: Two time variables are start and end: the survival time is 'end' - 'begin'.\n"))
        << dates.err;
    const Outcome comma = succeed(labelled + "a,b --complete dead --censored alive");
    EXPECT_EQ(times(json::parse(comma.out)), (std::vector<double>{5, 6, 7}));
}

/// For any code and any distance of the other cells, in single precision as in double.
TEST_F(KaplanMeierTest, TheRunLeavesOutAsMissingWhatInfoCallsMissing) {
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> exponent(-12.0, 14.0);
    std::vector<double> codes{99.9, 1e-7, 1e30, 16777217.0, -9.0, 0.1, 999.0, -99.99};
    while (codes.size() < 40)
        codes.push_back(std::pow(10.0, exponent(random)));
    int declared = 0;
    for (const double code : codes) {
        const double single = static_cast<float>(code);
        std::ostringstream rows;
        rows << std::setprecision(17) << "time,status\n1,1\n2,1\n3,1\n4,0\n";
        for (const double cell :
             {code, single, std::nextafter(code, 1e300), std::nextafter(single, -1e300), code})
            rows << cell << "," << declared % 2 << "\n";
        file("coded.csv", rows.str());
        std::ostringstream option;
        option << std::setprecision(17) << "--missing time=" << code;
        const json variable =
            json::parse(succeed("info coded.csv --json " + option.str()).out)["variables"][0];
        const Outcome ran = analyse("coded.csv", option.str());
        EXPECT_EQ(ran.code, ExitResults) << ran.err;
        const std::string left = std::to_string(variable["missing"].get<int>()) + " with no value of 'time'";
        EXPECT_TRUE(has(ran.err, " " + left)) << option.str() << "\n" << ran.err;
        EXPECT_GE(variable["missing"], 2);
        ++declared;
    }
}

TEST_F(KaplanMeierTest, WhatIsLeftOutIsToldOnStandardErrorAndInEveryReport) {
    file("odd.csv", "time,status,w\n1,1,1\n2,0,0\n-4,1,1\n6,2,1\n8,1,1\n9,0,2\n");
    const std::vector<std::string> notes{
        "Selected 6 of 6 cases: w >= 0.", "Cases weighted by 'w'.",
        "2 of 6 cases left out: 1 with no value of 'status', 1 with a negative survival time.",
        "1 case with a weight of 0 or less in 'w' counts once."};
    const std::string options = "--weight w --missing status=2 --select \"w >= 0\" ";
    const Outcome asJson = analyse("odd.csv", options + "--format json");
    EXPECT_EQ(json::parse(asJson.out)["notes"], json(notes));
    const Outcome asText = analyse("odd.csv", options + "--level 1");
    const Outcome quiet = analyse("odd.csv", options + "--level 1 -q");
    for (const std::string& note : notes) {
        EXPECT_TRUE(has(asJson.err, "korvana: note: " + note + "\n")) << asJson.err;
        EXPECT_TRUE(has(asText.err, "korvana: note: " + note + "\n")) << asText.err;
        EXPECT_TRUE(has(asText.out, note)) << asText.out;
    }
    EXPECT_EQ(quiet.out, asText.out);
    EXPECT_EQ(quiet.err, "");
    const Outcome none = analyse("odd.csv", "--select \"time < 0\"");
    EXPECT_EQ(none.code, ExitRefused);
    EXPECT_TRUE(has(none.err, "1 with a negative survival time")) << none.err;
}

TEST_F(KaplanMeierTest, ARefusalCarriesItsNumber) {
    const Outcome few = analyse(aml, "--select \"time < 6\" -o none");
    EXPECT_EQ(few.code, ExitRefused);
    EXPECT_EQ(few.out, "");
    EXPECT_TRUE(few.err.starts_with("korvana: message 14152: Fewer than two valid cases.\n")) << few.err;
    EXPECT_FALSE(std::filesystem::exists("none"));
    const Outcome same = run("kaplan-meier aml.csv --time time --censor status --complete 1 --censored 1 -q");
    EXPECT_EQ(same.code, ExitRefused);
    EXPECT_TRUE(has(same.err, "message 12298: ") && has(same.err, "0 (5 cases), 1 (18 cases)")) << same.err;
}

TEST_F(KaplanMeierTest, ACodeThatNoCaseHasIsToldAndRefusedOnlyWithoutTheOther) {
    const Outcome all = analyse(aml, "--select \"status = 1\" --format json");
    EXPECT_EQ(all.code, ExitResults) << all.err;
    EXPECT_TRUE(has(all.err, "korvana: note: --censored 0: no case has this code of 'status'.\n")) << all.err;
    EXPECT_TRUE(has(json::parse(all.out)["notes"].dump(), "no case has this code"));
    // With cases of neither code it may be a mistake: a warning, even with --quiet.
    file("other.csv", "time,status\n1,1\n2,2\n3,1\n4,2\n5,1\n");
    const Outcome other = analyse("other.csv", "-q --format json");
    EXPECT_EQ(other.code, ExitResults);
    EXPECT_EQ(
        other.err,
        "korvana: warning: --censored 0: no case has this code; 'status' has 1 (3 cases), 2 (2 cases)\n");
    EXPECT_EQ(times(json::parse(other.out)), (std::vector<double>{1, 3, 5}));
    EXPECT_EQ(json::parse(other.out)["messages"][0]["severity"], "warning");
}

} // namespace
} // namespace korvana::cli
