#include "tests/apps/cli/Cli.h"

#include "tests/support/Golden.h"

#include <nlohmann/json.hpp>
#include <set>

namespace korvana::cli {
namespace {

using nlohmann::json;

struct KaplanMeierTest : CliTest {
    Outcome analyse(const std::string& data, std::vector<std::string> more = {}) {
        std::vector<std::string> arguments{"kaplan-meier", data,         "--time", "time",       "--censor",
                                           "status",       "--complete", "1",      "--censored", "0"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
    json results(const std::string& data, std::vector<std::string> more = {}) {
        more.insert(more.end(), {"--format", "json"});
        const Outcome outcome = analyse(data, more);
        EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
        return json::parse(outcome.out);
    }
    /// A column of the product-limit table by its headings' first line.
    static std::vector<double> column(const json& book, const std::string& heading) {
        for (const json& sheet : book["spreadsheets"]) {
            if (!has(sheet["title"], "Product-limit")) continue;
            for (std::size_t c = 0; c < sheet["columns"].size(); ++c) {
                if (!has(sheet["columns"][c][0], heading)) continue;
                std::vector<double> cells;
                for (const json& row : sheet["rows"])
                    cells.push_back(row["cells"][c].is_number() ? row["cells"][c].get<double>() : NAN);
                return cells;
            }
        }
        ADD_FAILURE() << "no column " << heading;
        return {};
    }
};

TEST_F(KaplanMeierTest, PublishedDataGiveThePublishedEstimate) {
    const auto golden = golden::Table::read("kaplan-meier-aml.csv").where("of", "all");
    const json book = results(example("aml.csv"));
    EXPECT_EQ(book["analysis"], "Kaplan-Meier");
    EXPECT_EQ(book["source"], "aml.csv");
    const auto times = column(book, "Time");
    const auto survival = column(book, "Cumulatv");
    ASSERT_EQ(times.size(), 23U);
    const auto goldenTimes = golden.numbers("time");
    const auto goldenSurvival = golden.numbers("survival");
    const auto events = golden.numbers("n.event");
    std::size_t eventTimes = 0;
    std::size_t compared = 0;
    for (std::size_t g = 0; g < goldenTimes.size(); ++g) {
        if (events[g] == 0) continue;
        ++eventTimes;
        // Of tied events the last row shows the estimate after all of them.
        for (std::size_t i = times.size(); i-- > 0;)
            if (times[i] == goldenTimes[g] && !std::isnan(survival[i])) {
                EXPECT_NEAR(survival[i], goldenSurvival[g], 1e-12) << "time " << times[i];
                ++compared;
                break;
            }
    }
    EXPECT_GT(eventTimes, 0U);
    EXPECT_EQ(compared, eventTimes);
}

TEST_F(KaplanMeierTest, TheReportGoesToStandardOutputAndNothingElseDoes) {
    const Outcome outcome = analyse(example("aml.csv"));
    EXPECT_EQ(outcome.code, ExitResults);
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(outcome.out.starts_with("Kaplan-Meier\n============\nData: aml.csv\n")) << outcome.out;
    EXPECT_TRUE(has(outcome.out, "uncensored:    18")) << outcome.out;
    EXPECT_TRUE(has(outcome.out, "Percentiles"));
    EXPECT_FALSE(has(outcome.out, "Chart:"));
    EXPECT_FALSE(has(analyse(example("aml.csv"), {"--outputs", "summary"}).out, "Percentiles"));
    const json charts = results(example("aml.csv"), {"--outputs", "plot-3,plot-1"})["charts"];
    ASSERT_EQ(charts.size(), 2U);
    EXPECT_TRUE(has(charts[0]["title"], "Survival Function"));
}

TEST_F(KaplanMeierTest, WritesFilesIntoADirectory) {
    const std::filesystem::path target = folder / "out";
    const Outcome outcome = analyse(example("aml.csv"), {"-o", target});
    EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    std::set<std::string> endings;
    for (const auto& entry : std::filesystem::directory_iterator(target)) {
        endings.insert(entry.path().extension());
        EXPECT_GT(entry.file_size(), 0U) << entry.path();
        EXPECT_TRUE(has(outcome.err, "wrote " + entry.path().string() + "\n")) << entry.path();
    }
    EXPECT_EQ(endings, (std::set<std::string>{".txt", ".json", ".csv", ".html", ".svg", ".png"}));
    EXPECT_EQ(json::parse(read(target / "results.json"))["charts"].size(), 3U);

    const Outcome quiet = analyse(example("aml.csv"), {"-o", target, "--quiet", "--format", "xlsx"});
    EXPECT_EQ(quiet.err, "");
    std::set<std::string> left;
    for (const auto& entry : std::filesystem::directory_iterator(target))
        left.insert(entry.path().filename());
    EXPECT_EQ(left, (std::set<std::string>{"results.xlsx", ".korvana-files.json"}))
        << "a folder holds one run";
}

TEST_F(KaplanMeierTest, OfManyObservationsTheCurveIsThePictureUnlessAskedOtherwise) {
    std::string rows = "time,status\n";
    for (int i = 1; i <= 32000; ++i)
        rows += std::to_string(i) + ",1\n";
    const auto charts = [&](const std::string& data, std::vector<std::string> more) {
        more.insert(more.end(), {"-o", folder / "charts", "--format", "json"});
        const Outcome outcome = analyse(data, more);
        EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
        const bool quiet = more[0] == "-q";
        EXPECT_EQ(outcome.err.empty(), quiet) << outcome.err;
        EXPECT_EQ(has(outcome.err, "message 20250"), !quiet && more[0] == "--outputs" && more[1] == "plot-1");
        std::vector<std::string> titles;
        const json results = json::parse(read(folder / "charts" / "results.json"));
        for (const json& chart : results["charts"])
            titles.push_back(chart["title"]);
        return titles;
    };
    const std::vector<std::string> plots = charts(file("few.csv", rows), {});
    ASSERT_EQ(plots.size(), 3U);
    EXPECT_EQ(plots[0], "Survival Function");
    const std::string many = file("many.csv", rows + "32001,0\n");
    EXPECT_EQ(charts(many, {}), std::vector<std::string>{"Survival Curve"});
    EXPECT_EQ(charts(many, {"--outputs", "plot-1"}), std::vector<std::string>{"Survival Function"});
    EXPECT_EQ(charts(many, {"-q", "--outputs", "plot-1"}), std::vector<std::string>{"Survival Function"});
    EXPECT_EQ(charts(example("aml.csv"), {"--outputs", "all"}).size(), 4U);
}

TEST_F(KaplanMeierTest, TheLevelNamesTheColumns) {
    const auto headings = [&](const char* level) {
        return results(example("aml.csv"), {"--outputs", "percentiles", "--level", level})["spreadsheets"]
            .back()["columns"]
            .dump();
    };
    EXPECT_TRUE(has(headings("0.9"), "90% lower")) << headings("0.9");
    EXPECT_TRUE(has(headings("0.975"), "97.5% upper"));
    EXPECT_EQ(analyse(example("aml.csv"), {"--level", "1"}).code, ExitResults);
}

TEST_F(KaplanMeierTest, SelectionWeightsMissingCodesAndLabels) {
    const auto times = [&](const std::vector<std::string>& more) {
        return column(results(example("aml.csv"), more), "Time").size();
    };
    EXPECT_EQ(times({"--select", "group = 'Maintained'"}), 11U);
    EXPECT_EQ(times({"--missing", "time=13"}), 21U);
    const std::string weighted = file("w.csv", "time,status,w\n1,1,3\n2,0,1\n3,1,0.5\n4,1,2\n");
    EXPECT_EQ(column(results(weighted, {"--weight", "w"}), "Time").size(), 7U);
    const json book = results(weighted, {"--weight", "w", "--select", "time < 4"});
    EXPECT_EQ(book["notes"].size(), 3U) << book["notes"]; // weights, selection, and that 0.5 counts once

    const std::string labels = file("l.csv", "time,status\n1,dead\n2,alive\n3,dead\n");
    const std::vector<std::string> base{"kaplan-meier", labels, "--time", "time", "--censor", "status"};
    std::vector<std::string> byLabel = base;
    byLabel.insert(byLabel.end(), {"--complete", "dead", "--censored", "alive"});
    std::vector<std::string> byCode = base;
    byCode.insert(byCode.end(), {"--complete", "2", "--censored", "1"});
    EXPECT_EQ(run(byLabel).code, ExitResults);
    EXPECT_EQ(run(byLabel).out, run(byCode).out);
}

TEST_F(KaplanMeierTest, WhatIsLeftOutIsToldOnStandardErrorAndInEveryReport) {
    const std::string data =
        file("odd.csv", "time,status,w\n1,1,1\n2,0,0\n,1,1\n-4,1,1\n2e15,1,1\n6,2,1\n7,,1\n8,1,1\n9,0,2.1\n");
    const std::vector<std::string> notes{
        "Cases weighted by 'w'.",
        "5 of 9 cases left out: 2 with no value of 'status', 1 with no value of 'time', 1 with a value of "
        "'time' "
        "beyond 1e15, 1 with a negative survival time.",
        "1 case with a weight of 0 or less in 'w' counts once.",
        "1 case with a weight in 'w' that is no whole number counts as often as the next one says (2.1 would "
        "count three times)."};
    const std::vector<std::string> options{"--weight", "w", "--missing", "status=2"};
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.end(), options.begin(), options.end());
        return analyse(data, more);
    };
    const Outcome asJson = with({"--format", "json"});
    EXPECT_EQ(json::parse(asJson.out)["notes"], json(notes));
    const Outcome asText = with({"--outputs", "summary"});
    const Outcome quiet = with({"-q"});
    for (const std::string& note : notes) {
        EXPECT_TRUE(has(asJson.err, "korvana: note: " + note + "\n")) << asJson.err;
        EXPECT_TRUE(has(asText.err, "korvana: note: " + note + "\n")) << asText.err;
        EXPECT_TRUE(has(asText.out, note)) << asText.out;
        EXPECT_TRUE(has(quiet.out, note)) << quiet.out;
    }
    EXPECT_EQ(quiet.err, "");
    const Outcome none = analyse(data, {"--select", "time < 0"});
    EXPECT_EQ(none.code, ExitRefused);
    EXPECT_TRUE(has(none.err, "1 with a negative survival time")) << none.err;
}

TEST_F(KaplanMeierTest, DatesAndCommasInNames) {
    const std::string dates =
        file("d.csv", "begin,end,status,\"a,b\"\n1995-01-01,1995-01-11,1,5\n1995-01-01,1995-02-01,0,6\n"
                      "1995-03-01,1995-03-08,1,7\n");
    const std::vector<std::string> rest{"--censor",   "status", "--complete", "1",
                                        "--censored", "0",      "--format",   "json"};
    std::vector<std::string> two{"kaplan-meier", dates, "--time", "begin,end"};
    two.insert(two.end(), rest.begin(), rest.end());
    const Outcome outcome = run(two);
    ASSERT_EQ(outcome.code, ExitResults) << outcome.err;
    EXPECT_EQ(column(json::parse(outcome.out), "Time"), (std::vector<double>{7, 10, 31}));
    EXPECT_TRUE(has(outcome.err,
                    "note: Two time variables are start and end: the survival time is 'end' - 'begin'.\n"))
        << outcome.err;
    std::vector<std::string> comma{"kaplan-meier", dates, "--time", "a,b"};
    comma.insert(comma.end(), rest.begin(), rest.end());
    EXPECT_EQ(column(json::parse(run(comma).out), "Time"), (std::vector<double>{5, 6, 7}));
}

TEST_F(KaplanMeierTest, ARefusalCarriesItsNumber) {
    const Outcome few = analyse(example("aml.csv"), {"--select", "time < 6"});
    EXPECT_EQ(few.code, ExitRefused);
    EXPECT_EQ(few.out, "");
    EXPECT_TRUE(few.err.starts_with("korvana: message 14152: Fewer than two valid cases.\n")) << few.err;
    const Outcome same = run({"kaplan-meier", example("aml.csv"), "--time", "time", "--censor", "status",
                              "--complete", "1", "--censored", "1", "--quiet"});
    EXPECT_EQ(same.code, ExitRefused);
    EXPECT_TRUE(has(same.err, "message 12298: ") && has(same.err, "0 (5 cases), 1 (18 cases)")) << same.err;
    EXPECT_FALSE(std::filesystem::exists(folder / "none"));
    EXPECT_EQ(analyse(example("aml.csv"), {"--select", "time < 6", "-o", folder / "none"}).code, ExitRefused);
    EXPECT_FALSE(std::filesystem::exists(folder / "none"));
}

TEST_F(KaplanMeierTest, ACodeThatNoCaseHasIsANoteWhenAllHaveTheOther) {
    const Outcome all = analyse(example("aml.csv"), {"--select", "status = 1", "--format", "json"});
    EXPECT_EQ(all.code, ExitResults) << all.err;
    EXPECT_TRUE(has(all.err, "korvana: note: --censored 0: no case has this code of 'status'.\n")) << all.err;
    EXPECT_TRUE(has(json::parse(all.out)["notes"].dump(), "no case has this code"));
    EXPECT_EQ(analyse(example("aml.csv"), {"--select", "status = 1", "--format", "json", "-q"}).err, "");
}

TEST_F(KaplanMeierTest, ProgressOnlyOnATerminal) {
    terminal = true;
    const Outcome shown = analyse(example("aml.csv"));
    EXPECT_TRUE(has(shown.err, "\r\x1b[KReading ")) << shown.err;
    EXPECT_TRUE(shown.err.ends_with("\r\x1b[K")) << "the line is erased at the end";
    EXPECT_FALSE(has(shown.err, "\n"));
    EXPECT_FALSE(has(shown.out, "\x1b"));
    EXPECT_EQ(analyse(example("aml.csv"), {"-q"}).err, "");
}

} // namespace
} // namespace korvana::cli
