#include "tests/apps/cli/Cli.h"

#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

namespace korvana::cli {
namespace {

using nlohmann::json;

struct RegressionTest : CliTest {
    const std::string leukaemia = example("leukaemia-6mp.csv") +
                                  " --time weeks --censor relapse --complete 1 --censored 0 --covariates "
                                  "group:cat=placebo ";
    const std::string codes = " --complete 1 --censored 0 --criterion 0.00001 --continue ";
    /// Two cases with a time of 0, which has no logarithm.
    const std::string zero = file("zero.csv", "t,s,x\n5,1,1\n3,1,2.5\n0,1,2\n7,0,4\n9,1,1\n2,0,5\n4,1,3\n"
                                              "0,0,6\n6,1,1\n") +
                             " --time t --censor s --complete 1 --censored 0 --covariates x ";

    json book(const std::string& options) const {
        const Outcome outcome = succeed("regression " + options + " --format json");
        return outcome.code == ExitResults ? json::parse(outcome.out) : json();
    }
    static std::vector<std::string> titles(const json& book, const char* kind) {
        std::vector<std::string> all;
        for (const json& output : book[kind])
            all.push_back(output["title"]);
        return all;
    }
};

/// The rows of a sheet, by their headings.
std::map<std::string, json> rows(const json& book, const std::string& title) {
    std::map<std::string, json> found;
    for (const json& sheet : book["spreadsheets"])
        if (sheet["title"] == title)
            for (const json& row : sheet["rows"])
                found[row["heading"]] = row["cells"];
    EXPECT_FALSE(found.empty()) << title;
    return found;
}

struct Published {
    const char* parameter;
    double estimate;
    double error; ///< 0: not published
};
void holds(const json& book, const std::vector<Published>& published, double within) {
    const auto found = rows(book, "Parameter Estimates");
    for (const Published& each : published) {
        EXPECT_NEAR(found.at(each.parameter)[0].get<double>(), each.estimate, within) << each.parameter;
        // Not every source has the error.
        const double error = found.at(each.parameter)[1];
        EXPECT_NEAR(error, each.error > 0.0 ? each.error : error, within) << each.parameter;
    }
}

TEST_F(RegressionTest, PublishedResultsComeOut) {
    const json exponential = book(leukaemia + "--model exponential --criterion 0.00001");
    holds(exponential, {{"group=6-MP", 1.526614, 0.398410}}, 1.5e-6);
    EXPECT_NEAR(rows(exponential, "Fit of the Model")["Log-likelihood of null model"][0].get<double>(),
                -116.7667, 5e-5);
    EXPECT_NEAR(rows(exponential, "Fit of the Model")["Log-likelihood of final solution"][0].get<double>(),
                -108.5240, 5e-5);
    holds(book(example("leukaemia-ag.csv") + " --model exponential --time weeks --censor died --complete 1 "
                                             "--censored 0 --criterion 0.00001 --define lnwbc=ln(wbc) "
                                             "--covariates ag:cat=absent,lnwbc"),
          {{"Constant", 5.815475, 1.263173},
           {"ag=present", 1.017627, 0.363664},
           {"lnwbc", -0.304406, 0.124356}},
          1e-6);
    // The steps of EM are small before it is at its maximum.
    const double emTolerance = 2e-5;
    holds(book(leukaemia + "--model lognormal --criterion 0.00001"),
          {{"Constant", 1.825121, 0.201605}, {"group=6-MP", 1.346847, 0.316498}, {"Sigma", 0.923869, 0}},
          emTolerance);
    holds(book(example("motorettes.csv") + " --model normal --time log10hours --censor failed" + codes +
               "--covariates reciprocal"),
          {{"Constant", -6.01925, 0}, {"reciprocal", 4.31125, 0}, {"Sigma", 0.259183, 0}}, emTolerance);
    holds(book(example("galaxies.csv") +
               " --model normal --define \"t = 40 - y\" --time t --censor detected" + codes +
               "--covariates x"),
          {{"Constant", 40 - 0.1703, 0}, {"x", -1.0519, 0}, {"Sigma", 0.3687, 0}}, 1e-4);
}

TEST_F(RegressionTest, WhatIsWrongIsSaidWithTheWayOut) {
    refuses("regression " + leukaemia,
            {{"", "--model is missing: exponential, lognormal or normal, or all of them (all)"},
             {"--model weibull", "or all of them (all), not 'weibull'"},
             {"--model Normal", "(did you mean 'normal'"},
             {"--model all --start 1,2", "--start needs one model"},
             {"--model exponential --continue", "--max-iterations allows up to 200"},
             {"--model exponential --start 1",
              "for 2 parameters; give one for each of group=6-MP and Constant\n"},
             {"--model normal --start 1,2", "give one for each of group=6-MP, Constant and Sigma\n"},
             {"--model normal --strata pair", "--strata"}});
    const Outcome few = run("regression " + leukaemia + "--model exponential --max-iterations 3");
    EXPECT_EQ(few.code, ExitRefused);
    EXPECT_TRUE(has(few.err, "message 21119: Too many iterations")) << few.err;
    EXPECT_TRUE(has(few.err, "--max-iterations N, up to 200")) << few.err;
    const Outcome em = run("regression " + leukaemia + "--model normal --max-iterations 3");
    EXPECT_EQ(em.code, ExitRefused);
    EXPECT_TRUE(has(em.err, "--continue goes on")) << em.err;
    const Outcome normal = run("regression " + leukaemia + "--model normal --outputs forest");
    EXPECT_EQ(normal.code, ExitRefused);
    EXPECT_TRUE(has(normal.err, "not of Normal regression")) << normal.err;
}

/// A start is taken: from the estimates there is little left to do.
TEST_F(RegressionTest, StartValuesAreInTheOrderOfTheTable) {
    for (const char* model : {"exponential", "lognormal", "normal"}) {
        const std::string call = leukaemia + "--model " + model;
        const json plain = book(call);
        std::string start;
        for (const json& row : plain["spreadsheets"].back()["rows"])
            start += (start.empty() ? "" : ",") + row["cells"][0].dump();
        const auto iterations = [](const json& book) {
            return rows(book, "Fit of the Model")["Iterations"][0].get<int>();
        };
        EXPECT_LE(iterations(book(call + " --start " + start)), 2) << model << " " << start;
        EXPECT_GT(iterations(plain), 3) << model;
    }
}

TEST_F(RegressionTest, AllModelsAreToldApartAndCompared) {
    succeed("regression " + leukaemia +
            "--model all --at group=6-MP --at group=placebo -o out --format json,csv");
    const json whole = json::parse(read("out/results.json"));
    EXPECT_EQ(whole["status"], 0);
    const std::vector<std::string> models{"exponential", "lognormal", "normal"};
    std::set<std::string> named;
    for (const char* kind : {"reports", "spreadsheets", "charts"})
        for (const std::string& title : titles(whole, kind))
            EXPECT_TRUE(named.insert(kind + title).second || has(title, "Given Values")) << title;
    for (const std::string& model : models) {
        EXPECT_TRUE(std::filesystem::exists("out/parameter-estimates-" + model + ".csv"));
        // Each is what the model alone gives.
        const json alone = book(leukaemia + "--model " + model);
        EXPECT_EQ(rows(whole, "Parameter Estimates, " + model), rows(alone, "Parameter Estimates"));
    }
    EXPECT_EQ(whole["charts"].size(), 3U * 3 + 2 + 3 * 2) << "plots 1 to 3, forests of two, two --at of each";
    const auto compared = rows(whole, "Comparison of Parametric Models");
    ASSERT_EQ(compared.size(), 3U);
    EXPECT_NEAR(compared.at("Exponential regression")[0].get<double>(), -108.52405, 1e-4);
    EXPECT_NEAR(compared.at("Lognormal regression")[0].get<double>(), -106.70462, 1e-4);
    EXPECT_EQ(compared.at("Lognormal regression")[3], 0) << "the best";
    EXPECT_EQ(whole["runs"].size(), 4U);
    EXPECT_EQ(whole["runs"][2]["name"], "normal");

    // The settings of one model are none of the next.
    for (const json& chart : whole["charts"]) {
        const bool given = has(chart["title"], "Given Values");
        EXPECT_EQ(chart["origin"]["settings"]["CovariateValues"].empty(), !given) << chart["title"];
    }
    EXPECT_TRUE(
        has(succeed("regression " + leukaemia + "--model all").out, "\nComparison of Parametric Models"));
    EXPECT_FALSE(has(succeed("regression " + leukaemia + "--model normal").out, "Comparison"));
}

/// Each model that is estimated when the iterations go on is in the comparison, which asks nobody.
TEST_F(RegressionTest, ContinuedModelsAreCompared) {
    const json whole =
        book(leukaemia + "--model all --outputs summary,comparison --continue --max-iterations 6");
    for (const auto& [model, cells] : rows(whole, "Comparison of Parametric Models"))
        EXPECT_TRUE(cells[0].is_number()) << model << cells;
    // What does not apply to the model is not named with its results.
    const json& settings = whole["runs"][1]["dialogs"][1]["settings"];
    EXPECT_TRUE(settings.contains("MeanSubstitutionOfMD")) << settings;
    EXPECT_FALSE(settings.contains("EqualCoefficientsDifferentBaselineH0")) << settings;
}

/// What goes on during an estimation is said once, although it heads the lines of its iterations, too.
TEST_F(RegressionTest, PhasesOfAnEstimationAreToldOnce) {
    const std::string told = succeed("regression " + leukaemia + "--model lognormal --verbose").err;
    const auto phase = told.find(" s] Estimating null model\n");
    ASSERT_NE(phase, std::string::npos) << told;
    EXPECT_EQ(told.find("Estimating null model", phase + 10), std::string::npos) << told;
    EXPECT_TRUE(has(told.substr(phase), " s]    1 ")) << told;
}

TEST_F(RegressionTest, AModelThatCannotBeFittedKeepsNoOtherFromIt) {
    const Outcome outcome = run("regression " + zero + "--model all -o out --format json");
    EXPECT_EQ(outcome.code, ExitRefused);
    EXPECT_TRUE(has(outcome.err,
                    "lognormal: message 21129: Cannot compute log-likelihood for this model.\n  The "
                    "survival time 0 of case 3 has no logarithm; cases with such a time: 2."))
        << outcome.err;
    const json whole = json::parse(read("out/results.json"));
    EXPECT_EQ(whole["status"], 1);
    ASSERT_EQ(whole["messages"].size(), 1U);
    EXPECT_EQ(whole["messages"][0]["text"], "lognormal: Cannot compute log-likelihood for this model.");
    EXPECT_FALSE(rows(whole, "Parameter Estimates, normal").empty());
    const auto compared = rows(whole, "Comparison of Parametric Models");
    EXPECT_TRUE(has(compared.at("Lognormal regression").back(), "case 3 has no logarithm"));
    EXPECT_TRUE(compared.at("Lognormal regression")[0].is_null());
    // The first model fails, and then all of them.
    const Outcome later = run("regression " + zero + "--model all --max-iterations 5 --continue");
    EXPECT_EQ(later.code, ExitRefused);
    EXPECT_TRUE(has(later.out, "Parameter Estimates, normal")) << later.err;
    const Outcome none = run("regression " + zero + "--model all --max-iterations 3 -o none");
    EXPECT_EQ(none.code, ExitRefused);
    EXPECT_EQ(none.out, "");
    EXPECT_FALSE(std::filesystem::exists("none"));
}

} // namespace
} // namespace korvana::cli
