#include "tests/apps/cli/Cli.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

namespace korvana::cli {
namespace {

using nlohmann::json;

struct CoxTimeTest : CliTest {
    const std::string veteran =
        example("veteran.csv") + " --time time --censor status --complete 1 --censored 0 ";
    const std::string sixMp =
        example("leukaemia-6mp.csv") + " --time weeks --censor relapse --complete 1 --censored 0 ";

    Outcome runWith(const std::string& begin, const std::vector<std::string>& covariates) const {
        std::vector<std::string> all = words("cox-time " + begin);
        for (const std::string& covariate : covariates)
            all.insert(all.end(), {"--covariate", covariate});
        return runWords(all);
    }
    json book(const std::string& begin, const std::vector<std::string>& covariates) const {
        const Outcome outcome = runWith(begin + " --criterion 0.00001 --format json", covariates);
        EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
        return outcome.code == ExitResults ? json::parse(outcome.out) : json();
    }
    /// The first cells of a sheet, by the headings of their rows.
    static std::map<std::string, double> firstCells(const json& book, const std::string& title) {
        std::map<std::string, double> found;
        for (const json& sheet : book["spreadsheets"])
            if (sheet["title"] == title)
                for (const json& row : sheet["rows"])
                    if (row["cells"][0].is_number()) found[row["heading"]] = row["cells"][0];
        EXPECT_FALSE(found.empty()) << title;
        return found;
    }
    static std::map<std::string, double> estimates(const json& book) {
        return firstCells(book, "Parameter Estimates");
    }
};

TEST_F(CoxTimeTest, WhatIsWrongWithExpressionsIsSaidWithTheWayOut) {
    EXPECT_TRUE(has(runWith(veteran, {}).err, "--covariate is missing: define covariates"));
    const std::string wide(61, '1');
    const std::vector<std::pair<std::vector<std::string>, std::string>> table{
        {{"karno"}, "'karno' has no NAME = before it"},
        {{"x<=2"}, "has no NAME = before it"},
        {{"x==2"}, "has no NAME = before it"},
        {{"x="}, "nothing follows 'x ='"},
        {{";x=1"}, "cannot begin with ';'"},
        {{"ninechars=1"}, "the name 'ninechars' has 9 characters, and there may be 8"},
        {{"x=" + wide}, "the expression of 'x' has 61 characters, and there may be 60"},
        {{"\xff\xfe=karno"}, "the name '\\xFF\\xFE' is not UTF-8"},
        {{"kT=karno", "KT=trt"}, "two covariates have the name 'KT'"},
        {{"a=karno", "x=karn*log(T_)"},
         "--covariate x: expression \"karn*log(T_)\", character 1: there is no"},
        {{"x=celltype"}, "--covariate x: 'celltype' holds texts, a covariate has numbers"},
        {{"x=log(T_)+v40"}, "character 9: there is no variable 'v40': the data have 8 variables, v1 to v8"},
        {{"x=karno*)T_"}, "character 7: a variable, a number or ( is expected here, not ')'"}};
    for (const auto& [covariates, said] : table) {
        const Outcome outcome = runWith(veteran, covariates);
        EXPECT_EQ(outcome.code, ExitUsage) << said;
        EXPECT_TRUE(has(outcome.err, said)) << said << "\n" << outcome.err;
    }
    const std::vector<std::string> many(41, "x=1");
    EXPECT_EQ(runWith(veteran, many).code, ExitUsage);
    EXPECT_TRUE(has(runWith(veteran + "--separate", {"x=karno"}).err, "--separate needs --strata"));
    for (const char* given : {"x=\u00e4\u00f6\u00fc\u00e4\u00f6\u00fc\u00e4\u00f6\u00fc", "x=karn"})
        EXPECT_FALSE(has(runWith(veteran, {given}).err, "and there may be")) << "characters, not bytes";
}

TEST_F(CoxTimeTest, PublishedResultsComeOut) {
    const auto lungs =
        estimates(book(veteran, {"trt=trt", "prior=v8", "karno=Karno", "karnoT=\"karno\"*log(T_+20)"}));
    EXPECT_NEAR(lungs.at("trt"), .015216, 2e-5);
    EXPECT_NEAR(lungs.at("prior"), -.009435, 2e-5);
    EXPECT_NEAR(lungs.at("karno"), -.123653, 2e-5);
    EXPECT_NEAR(lungs.at("karnoT"), .021118, 2e-5);

    const json sixMercaptopurine =
        book(sixMp, {"Rx=group = 'placebo'", "RxT=if(group = 'placebo', T_ - 10, 0)"});
    EXPECT_NEAR(estimates(sixMercaptopurine).at("Rx"), 1.514858, 1e-5);
    EXPECT_NEAR(estimates(sixMercaptopurine).at("RxT"), -.008135, 1e-5);
    EXPECT_NEAR(firstCells(sixMercaptopurine, "Fit of the Model").at("Log-likelihood of final solution"),
                -86.3708, 1e-4);
}

TEST_F(CoxTimeTest, WithoutTheTimeItIsTheModelOfFixedCovariates) {
    const json fixed = json::parse(
        succeed("cox " + veteran + "--criterion 0.00001 --covariates karno,age --strata trt --format json")
            .out);
    const json byExpressions = book(veteran + "--strata trt", {"karno=karno", "age=v7"});
    for (const auto& [name, estimate] : estimates(fixed))
        EXPECT_NEAR(estimates(byExpressions).at(name), estimate, 1e-9 * std::abs(estimate)) << name;
}

TEST_F(CoxTimeTest, FilesOfExpressions) {
    const std::vector<std::string> covariates{"karno=karno", "karnoT=karno * log(T_ + 20)"};
    const json given = book(veteran + "--save-expressions all.ini", covariates);
    EXPECT_EQ(read("all.ini"), "[Expressions]\nHowManyExpressions=2\nkarno=karno\n"
                               "karnoT=karno * log(T_ + 20)\n");
    EXPECT_EQ(estimates(book(veteran + "--expressions all.ini", {})), estimates(given));
    file("edited.ini", "\xEF\xBB\xBF; mine\r\n\r\n[ EXPRESSIONS ]\r\nhowmanyexpressions = 2\r\n# age=age\r\n"
                       "  karno = v5 \r\nkarnoT=karno\r\n\r\n[Other]\r\nx=1\r\n");
    EXPECT_EQ(estimates(book(veteran + "--expressions edited.ini", {"KARNOT=karno*log(T_+20)"})),
              estimates(given))
        << "what is given takes the place of what is in the file";
    for (const auto& [text, said] :
         {std::pair{std::string{"[Expressions]\nHowManyExpressions=0\n"}, "no expressions"},
          {std::string{"\x7f\x45LF"}, "no expressions"},
          {"[Expressions]\nHowManyExpressions=1\nx=age+" + std::string(60, '1'), "too long"}}) {
        const Outcome outcome = run("cox-time " + veteran + "--expressions " + file("bad.ini", text));
        EXPECT_EQ(outcome.code, ExitUsage) << text;
        EXPECT_TRUE(has(outcome.err, said)) << outcome.err;
        EXPECT_TRUE(has(outcome.err, "--expressions bad.ini: ")) << outcome.err;
        EXPECT_EQ(outcome.out, "");
    }
    refuses("cox-time " + veteran, {{"--expressions none.ini", "none.ini cannot be read"},
                                    {"--covariate x=karno --save-expressions none/x.ini", "none/x.ini"},
                                    {"--covariate x=karno --outputs plot-1", "there is no 'plot-1'"}});
}

TEST_F(CoxTimeTest, FilesThatAreNoneOfCovariatesAreNotWrittenTo) {
    const std::string begin = "cox-time " + veteran + "--covariate x=karno --save-expressions ";
    succeed("cox-time " + veteran + "--covariate x=karno -o run --format json");
    std::filesystem::create_symlink("veteran.csv", "link.csv");
    for (const std::string& name :
         {std::string{"veteran.csv"}, std::string{"link.csv"}, std::string{"run/results.json"},
          file("a.gz", std::string{"\x1f\x8b\x08\x00", 4})}) {
        const std::string content = read(name);
        refuses(begin, {{name, "cannot write '" + name + "': "}});
        EXPECT_EQ(read(name), content);
    }
    refuses(begin, {{"veteran.csv", "it is the data file"}});
    file("mine.ini", "; mine\r\n[Other]\r\nx=\xE9\r\n[Expressions]\r\nold=1");
    succeed(begin + "mine.ini");
    EXPECT_EQ(read("mine.ini"),
              "; mine\r\n[Other]\r\nx=\xE9\r\n[Expressions]\r\nHowManyExpressions=1\r\nx=karno");
}

TEST_F(CoxTimeTest, ExpressionsOfFilesAreCheckedAsThoseGivenBeforeAnythingIsWritten) {
    for (const auto& [expression, said] :
         {std::pair{"karn*T_", "character 1: there is no variable 'karn'"},
          std::pair{"karno*)T_", "character 7: a variable, a number or ( is expected here, not ')'"},
          std::pair{"celltype", "'celltype' holds texts"}}) {
        file("bad.ini", "[Expressions]\nHowManyExpressions=2\nage=age\nk=" + std::string{expression} + "\n");
        refuses("cox-time " + veteran + "--expressions bad.ini --save-expressions new.ini -o run",
                {{"", said}, {"", "--expressions bad.ini, k: "}});
        EXPECT_FALSE(std::filesystem::exists("new.ini") || std::filesystem::exists("run"));
        succeed("cox-time " + veteran + "--expressions bad.ini --covariate K=karno");
    }
    refuses("cox-time " + veteran + "--covariate x=karno --start 1,2 --save-expressions new.ini",
            {{"", "--start"}});
    EXPECT_FALSE(std::filesystem::exists("new.ini"));
}

TEST_F(CoxTimeTest, ATerminalShowsHowFarAnEvaluationIs) {
    std::string data = "t,e,x\n";
    for (int i = 1; i <= 1500; ++i)
        data +=
            std::to_string(i) + "," + std::to_string(i % 3 > 0) + "," + std::to_string(i * i % 101) + "\n";
    file("many.csv", data);
    terminal = true;
    const Outcome outcome = runWith("many.csv --time t --censor e --complete 1 --censored 0",
                                    {"x=x", "xT=x*log(T_)", "xR=x*sqrt(T_)", "wide=x/(1+T_)"});
    EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
    const std::regex shown("(.*)  Iteration ([0-9]+) ([0-9]+) %");
    std::map<int, std::vector<int>> shares;
    std::istringstream lines(outcome.err);
    for (std::string line; std::getline(lines, line, '\r');) {
        EXPECT_LE(line.size(), 81U) << line; // with what erases the line before
        if (std::smatch found; std::regex_match(line, found, shown))
            shares[std::stoi(found[2])].push_back(std::stoi(found[3]));
    }
    EXPECT_EQ(shares.begin()->first, 1);
    EXPECT_GT(shares.size(), 3U) << "each evaluation";
    for (const auto& [iteration, moving] : shares) {
        EXPECT_TRUE(std::ranges::is_sorted(moving)) << iteration;
        EXPECT_GT(moving.back(), 80) << iteration;
    }
    EXPECT_TRUE(outcome.err.ends_with("\r\x1b[K")) << "nothing of it is left";
}

} // namespace
} // namespace korvana::cli
