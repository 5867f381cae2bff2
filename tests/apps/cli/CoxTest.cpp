#include "tests/apps/cli/Cli.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>

namespace korvana::cli {
namespace {

using nlohmann::json;

struct CoxTest : CliTest {
    const std::string call = "cox " + example("veteran.csv") +
                             " --time time --censor status --complete 1 --censored 0 --covariates ";

    json book(const std::string& more) const {
        const Outcome outcome = succeed(call + more + " --format json");
        return outcome.code == ExitResults ? json::parse(outcome.out) : json();
    }
    static int lines(const std::string& text, const std::string& part) {
        int count = 0;
        for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
            ++count;
        return count;
    }
};

TEST_F(CoxTest, WhatIsWrongWithCovariatesIsSaidWithTheWayOut) {
    refuses("cox veteran.csv --time time --censor status --complete 1 --censored 0",
            {{"", "--covariates is missing"}});
    refuses(
        call.substr(0, call.size() - 1),
        {{"celltype", "for an indicator of each text but the first write celltype:cat"},
         {"karno,KARNO", "'karno' is named twice"},
         {"celltype:cat,celltype:cat=large", "'celltype' is named twice"},
         {"trt:cat,1", "'trt' is named twice"},
         {"karno,time", "variable 'time' is given twice"},
         {"trt:cat --strata trt", "variable 'trt' is given twice"},
         {"karn", "(did you mean 'karno'?)"},
         {"celltype:catx", "there is no variable 'celltype:catx'"},
         {"celltype:cat=", "a code is missing after the ="},
         {"celltype:cat=big", "no case that counts has this code; 'celltype' has 1 'adeno' (27 cases)"},
         {"\"celltype:cat --select trt<0\"", "there is no variable"},
         {"celltype:cat --select trt=1.5", "holds for none"},
         {"trt:cat --select trt=1",
          "there are not two groups to compare among the cases that count; 'trt' has 1 (69 cases)"},
         {"time:cat", "'time' has more than 41 codes"},
         {"karno:cat,age:cat", "there may be 40 covariates, not 50; each indicator counts as one"},
         {"celltype:cat --define \"`celltype=LARGE` = 1\"", "there is already a variable 'celltype=LARGE'"}});
    std::string names = "x1";
    std::string many = "t,s,x1";
    for (int k = 2; k <= 41; ++k) {
        names += ",x" + std::to_string(k);
        many += ",x" + std::to_string(k);
    }
    std::string row = "1,1";
    for (int k = 1; k <= 41; ++k)
        row += ",1";
    file("many.csv", many + "\n" + row + "\n");
    refuses("cox many.csv --time t --censor s --complete 1 --censored 0 --covariates",
            {{names, "there may be 40 covariates, not 41\n"}});
}

TEST_F(CoxTest, WhatIsWrongWithTheEstimationIsSaidWithTheWayOut) {
    refuses(call + "karno,celltype:cat",
            {{"--start 1,2",
              "--start gives 2 values for 4 covariates; give one for each of karno, celltype=large"},
             {"--start 1,x,3,4", "--start takes numbers, not 'x'"},
             {"--strata-codes 1", "--strata-codes needs --strata"},
             {"--separate", "--separate needs --strata"},
             {"--level 1", "--level is a number between 0 and 1"},
             {"--at karno", "--at is COVARIATE=VALUE"},
             {"--at age=60", "'age' is no covariate; the covariates are karno, celltype=large"},
             {"--at karno=high", "'high' is not a number"},
             {"--at karno=1,karno=2", "'karno' is given twice"},
             {"--at celltype=adeno,celltype=large=1", "'celltype=large' is given twice"},
             {"--at celltype=big", "no case that counts has this code; 'celltype' has 1 'adeno'"}});
    for (const char* bad : {"0.000009", "0", "-1", "1", "1e999", "x"})
        refuses(call + "karno", {{std::string{"--criterion "} + bad, "from 0.00001 to below 1"}});
    for (const char* bad : {"2", "201", "3.5", "x"})
        refuses(call + "karno", {{std::string{"--max-iterations "} + bad, "whole number from 3 to 200"}});
}

TEST_F(CoxTest, IterationsRunOutUnlessTheyGoOn) {
    const std::string few = call + "karno --max-iterations 3 --criterion 0.00001 ";
    const Outcome ended = run(few);
    EXPECT_EQ(ended.code, ExitRefused);
    EXPECT_EQ(ended.out, "");
    EXPECT_TRUE(has(ended.err, "The iteration did not converge.")) << ended.err;
    EXPECT_TRUE(has(ended.err, "\n     4 -485.32 ")) << "the last lines\n" << ended.err;
    EXPECT_TRUE(has(ended.err, "--continue goes on")) << ended.err;
    const Outcome more = succeed(few + "--continue");
    // Not a terminal: no lines; a note, as the number of the summary is that of the last run.
    EXPECT_TRUE(has(more.err, "note: The iterations were continued beyond their maximum: ")) << more.err;
    EXPECT_EQ(std::ranges::count(more.err, '\n'), 1) << more.err;
    EXPECT_FALSE(has(more.out, "Log-Likelihood  Parameters")) << "they are asked for by --verbose";
    const json lines = json::parse(succeed(few + "--continue --format json").out)["iterations"];
    const Outcome told = succeed(few + "--continue --verbose");
    ASSERT_GT(lines.size(), 10U);
    for (const json& line : lines)
        EXPECT_TRUE(has(told.err, " s] " + line.get<std::string>() + "\n")) << line;
    EXPECT_TRUE(has(more.out, "Convergence criterion:   1e-05")) << more.out;

    terminal = true;
    EXPECT_TRUE(has(succeed(call + "karno").err, "\r"));
    EXPECT_FALSE(has(succeed(call + "karno --verbose").err, "\r")) << "one report of the progress is enough";
    terminal = false;

    // Where there is no maximum it goes on until the information vanishes.
    file("grows.csv", "t,s,x,y\n1,1,0,1\n2,0,1,2\n3,1,0,4\n4,0,1,3\n5,1,0,2\n6,0,1,7\n7,0,0,1\n8,0,1,6\n");
    const Outcome grows = run("cox grows.csv --time t --censor s --complete 1 --censored 0 --covariates x,y "
                              "--continue --max-iterations 3");
    EXPECT_EQ(grows.code, ExitRefused);
    EXPECT_TRUE(has(grows.err, "'x' grows without bound")) << grows.err;
    EXPECT_TRUE(has(grows.err, "message 21108")) << grows.err;
}

/// The estimates of a run, by covariate: beta and its standard error.
std::map<std::string, std::pair<double, double>> estimates(const json& book) {
    std::map<std::string, std::pair<double, double>> found;
    for (const json& sheet : book["spreadsheets"])
        if (sheet["title"] == "Parameter Estimates")
            for (const json& row : sheet["rows"])
                found[row["heading"]] = {row["cells"][0], row["cells"][1]};
    return found;
}

double cell(const json& book, const std::string& title, const std::string& heading) {
    for (const json& sheet : book["spreadsheets"])
        if (sheet["title"] == title)
            for (const json& row : sheet["rows"])
                if (row["heading"] == heading) return row["cells"][0];
    ADD_FAILURE() << title << ", " << heading;
    return NAN;
}

TEST_F(CoxTest, PublishedResultsComeOut) {
    const json full = book("trt,celltype:cat,karno,diagtime,age,prior --criterion 0.00001");
    EXPECT_NEAR(estimates(full)["karno"].first, -0.0326217, 1e-6);
    EXPECT_NEAR(estimates(full)["karno"].second, 0.0055052, 1e-6);
    EXPECT_NEAR(cell(full, "Fit of the Model", "Log-likelihood of null model"), -505.884, 5e-4);
    EXPECT_NEAR(cell(full, "Fit of the Model", "Log-likelihood of final solution"), -475.179, 1e-3);
    const auto of = [this](const std::string& data, const std::string& options) {
        return json::parse(succeed("cox " + example(data) +
                                   " --complete 1 --censored 0 --format json "
                                   "--criterion 0.00001 " +
                                   options)
                               .out);
    };
    const json aml = of("aml.csv", "--time time --censor status --covariates group:cat");
    EXPECT_NEAR(estimates(aml)["group=Nonmaintained"].first, 0.9042, 1e-4);
    EXPECT_NEAR(estimates(aml)["group=Nonmaintained"].second, 0.5122, 1e-4);
    const std::string strata = "--time weeks --censor relapse --strata sex --covariates logwbc,group:cat=";
    const json leukaemia = of("leukaemia-wbc.csv", strata + "6-MP");
    EXPECT_NEAR(estimates(leukaemia)["group=placebo"].first, 0.930965, 2e-5);
    EXPECT_NEAR(estimates(leukaemia)["logwbc"].first, 1.390239, 2e-5);
    EXPECT_NEAR(estimates(of("leukaemia-wbc.csv", strata + "placebo"))["group=6-MP"].first, -0.930965, 2e-5);
}

/// Indicators are what one would define by hand, and the choice of the reference changes no fit.
TEST_F(CoxTest, GroupsAreTakenApartIntoIndicators) {
    const auto named = [&](const std::string& more) {
        const Outcome outcome = runWords([&] {
            std::vector<std::string> all = words(call + more + " --format json --criterion 0.00001");
            all.insert(all.end(), {"--select", "celltype <> 'squamous'"});
            return all;
        }());
        EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
        return json::parse(outcome.out);
    };
    const auto first = estimates(named("karno,celltype:cat"));
    ASSERT_EQ(first.size(), 3U) << "no case has squamous";
    const auto other = estimates(named("celltype:cat=smallcell,karno"));
    EXPECT_NEAR(other.at("celltype=large").first,
                first.at("celltype=large").first - first.at("celltype=smallcell").first, 1e-4);
    EXPECT_NEAR(other.at("karno").first, first.at("karno").first, 1e-5);
    const auto byHand = estimates(named("karno,large,small --define \"large = celltype = 'large'\" --define "
                                        "\"small = celltype = 3\""));
    EXPECT_EQ(byHand.at("small"), first.at("celltype=smallcell"));
    EXPECT_EQ(byHand.at("large"), first.at("celltype=large"));

    file("gaps.csv",
         "t,s,g\n5,1,1.5\n3,1,-2\n8,1,1.5\n7,0,\n9,1,-2\n2,0,1.5\n4,1,9\n1,1,-2\n6,1,1.5\n,1,4\n");
    const Outcome gaps = succeed("cox gaps.csv --time t --censor s --complete 1 --censored 0 --missing g=9 "
                                 "--covariates g:cat --outputs means --format json");
    const json sheet = json::parse(gaps.out)["spreadsheets"][0];
    EXPECT_EQ(sheet["rows"].size(), 1U);
    EXPECT_EQ(sheet["rows"][0]["heading"], "g=1.5");
    EXPECT_EQ(sheet["rows"][0]["cells"][2], 7) << "missing stays missing";
    EXPECT_TRUE(has(gaps.err, "compared with '-2': g=1.5. No case that counts has '4'.")) << gaps.err;
    // Strata are taken into account, too.
    file("strata.csv",
         "t,s,g,h\n1,1,b,1\n2,1,a,1\n3,0,b,1\n4,1,b,2\n5,1,a,2\n6,1,a,1\n7,0,a,2\n4,1,A0,3\n5,0,A0,3\n");
    const Outcome strata = succeed("cox strata.csv --time t --censor s --complete 1 --censored 0 --strata h "
                                   "--strata-codes 1,2 --covariates g:cat --outputs summary");
    EXPECT_TRUE(has(strata.err, "compared with 'a': g=b. No case that counts has 'A0'.")) << strata.err;
}

TEST_F(CoxTest, OutputsAreThoseThatTheOptionsAskFor) {
    const auto titles = [](const json& book, const char* kind) {
        std::string all;
        for (const json& output : book[kind])
            all += output["title"].get<std::string>() + "; ";
        return all;
    };
    const auto made = [&](const std::string& more) {
        succeed(call + more + " -o out --format json");
        return json::parse(read("out/results.json"));
    };
    const json plain = made("karno,celltype:cat");
    EXPECT_FALSE(has(titles(plain, "spreadsheets"), "Stratified"));
    EXPECT_FALSE(has(titles(plain, "charts"), "Given Values"));
    EXPECT_EQ(lines(titles(plain, "charts"), "Scaled Schoenfeld"), 4);

    const json all = made("karno,celltype:cat --strata trt --level 0.9 --at karno=60,celltype=large --at "
                          "\"karno=1e1, celltype=smallcell=0.5\"");
    EXPECT_EQ(lines(titles(all, "spreadsheets"), "Stratified Analysis"), 2);
    EXPECT_EQ(lines(titles(all, "charts"), "Survival Function at Given Values"), 2);
    std::vector<json> given;
    for (const json& chart : all["charts"])
        if (has(chart["title"], "Given Values")) given.push_back(chart["origin"]["settings"]);
    ASSERT_EQ(given.size(), 2U);
    EXPECT_EQ(given[0]["CovariateValues"], json({60, 1, 0, 0}));
    EXPECT_EQ(given[1]["CovariateValues"], json({10, nullptr, 0.5, nullptr}));
    EXPECT_EQ(given[0]["ConfidenceLevel"], 0.9);
    // On the screen the strata are compared, too.
    EXPECT_TRUE(has(succeed(call + "karno --strata trt").out, "Test of Equal Coefficients"));
    EXPECT_FALSE(has(succeed(call + "karno").out, "Equal Coefficients"));
}

TEST_F(CoxTest, SettingsReachTheEstimation) {
    const auto settings = [](const json& book, const std::string& id) {
        for (const json& dialog : book["runs"][0]["dialogs"])
            if (dialog["id"] == id) return dialog["settings"];
        return json();
    };
    EXPECT_TRUE(settings(book("karno"), "SurRegressionEstimation").is_null()) << "not asked for";
    const json given = book("karno,age --criterion 0.01 --max-iterations 150 --start -0.03,1e-2");
    const json estimation = settings(given, "SurRegressionEstimation");
    EXPECT_NEAR(estimation["ConvergenceCriterion"].get<double>(), 0.01, 1e-9);
    EXPECT_EQ(estimation["MaxNumberOfIterations"], 150);
    EXPECT_EQ(estimation["StartValues"], json({-0.03, 0.01}));
    EXPECT_LT(given["iterations"].size(), book("karno,age")["iterations"].size());

    file("holes.csv", "t,s,x\n5,1,1\n3,1,\n8,1,2\n7,0,4\n9,1,1\n2,0,5\n4,1,3\n1,1,6\n6,1,\n");
    const std::string holes = "cox holes.csv --time t --censor s --complete 1 --censored 0 --covariates x "
                              "--format json ";
    const auto valid = [&](const std::string& more) {
        return cell(json::parse(succeed(holes + more).out), "Fit of the Model", "Valid observations");
    };
    EXPECT_EQ(valid(""), 7);
    EXPECT_EQ(valid("--mean-substitution"), 9);
}

} // namespace
} // namespace korvana::cli
