#include "tests/apps/cli/Cli.h"

#include <nlohmann/json.hpp>

namespace korvana::cli {
namespace {

using nlohmann::json;

struct LifeTableTest : CliTest {
    static std::string angina() { return "life-table " + example("angina.csv"); }
    static std::string table() { return angina() + " --table lower,withdrawn,dying "; }
    static std::string veteran() {
        return "life-table " + example("veteran.csv") +
               " --time time --censor status --complete 1 --censored 0 ";
    }
    json book(const std::string& call) const { return json::parse(succeed(call + " --format json").out); }
    /// A column of the first spreadsheet with a title that begins so.
    static std::vector<json> column(const json& book, const std::string& title, const std::string& id) {
        std::vector<json> cells;
        for (const json& sheet : book["spreadsheets"]) {
            if (!sheet["title"].get<std::string>().starts_with(title)) continue;
            const json& ids = sheet["columnIds"];
            const auto place = static_cast<std::size_t>(std::find(ids.begin(), ids.end(), id) - ids.begin());
            for (const json& row : sheet["rows"])
                cells.push_back(row["cells"].at(place));
            break;
        }
        return cells;
    }
    static std::vector<std::string> titles(const json& outputs, const std::string& begin) {
        std::vector<std::string> found;
        for (const json& output : outputs)
            if (const std::string title = output["title"]; title.starts_with(begin)) found.push_back(title);
        return found;
    }
};

/// To the digits of the published table.
TEST_F(LifeTableTest, TheMenWithAnginaSurviveAsPublished) {
    const json book = this->book(table() + "--entering 2418 --no-correction --outputs summary");
    const auto agrees = [&](const char* id, std::size_t from, const std::vector<double>& published) {
        const std::vector<json> cells = column(book, "Life Table", id);
        ASSERT_EQ(cells.size(), 16U) << id;
        for (std::size_t i = 0; i < published.size(); ++i)
            EXPECT_NEAR(cells[from + i].get<double>(), published[i], 5.1e-5) << id << from + i;
    };
    agrees("cumulativeSurviving", 1, {.8114, .7170, .6524, .5786, .5193});
    agrees("cumulativeSurviving", 15, {.1429});
    agrees("survivingError", 1, {.0080, .0092, .0097, .0101, .0103});
    agrees("survivingError", 15, {.0133});
    agrees("hazard", 0, {.2082, .1235, .0944, .1199, .1080});
    agrees("density", 0, {.1886, .0944});
    EXPECT_EQ(column(book, "Life Table", "exposed")[1], 1942.5);
    EXPECT_TRUE(book["messages"].empty());
}

/// Cases, and the table that they give, are the same life table, as is one out of order.
TEST_F(LifeTableTest, ATableOfTheSameCountsGivesTheSame) {
    const json cases = book(veteran() + "--intervals 9 --outputs summary");
    const auto start = column(cases, "Life Table", "start");
    const auto withdrawn = column(cases, "Life Table", "withdrawn");
    const auto dying = column(cases, "Life Table", "dying");
    ASSERT_EQ(start.size(), 9U);
    std::string text = "dead,from,gone\n";
    for (std::size_t i = 0; i < start.size(); ++i) {
        const std::size_t row = (i * 5 + 3) % start.size();
        text += dying[row].dump() + "," + start[row].dump() + "," + withdrawn[row].dump() + "\n";
    }
    const json table =
        book("life-table " + file("counts.csv", text) + " --table from,gone,dead --outputs summary");
    const auto rows = [](const json& book) { return book["spreadsheets"][0]["rows"]; };
    EXPECT_EQ(rows(table), rows(cases));
    EXPECT_TRUE(has(table["notes"].dump(), "137 enter the first interval")) << table["notes"];
    EXPECT_FALSE(
        has(book("life-table counts.csv --table 2,3,1 --entering 137 --outputs summary")["notes"].dump(),
            "enter"));
}

TEST_F(LifeTableTest, IntervalsByTheirNumberOrWidth) {
    const auto width = [&](const std::string& more) {
        return column(book(veteran() + "--outputs summary " + more), "Life Table", "width")[0].get<double>();
    };
    EXPECT_DOUBLE_EQ(width(""), 999.0 / 11);
    EXPECT_DOUBLE_EQ(width("--intervals 30"), 999.0 / 29);
    EXPECT_EQ(width("--step 100"), 100.0);
    const Outcome adjusted = succeed(veteran() + "--outputs summary --step 1");
    EXPECT_TRUE(has(adjusted.err,
                    "message 20614: Invalid number of intervals; stepsize adjusted.\n  The largest "
                    "survival time, 999, is 999 steps of 1;"))
        << adjusted.err;
    const auto dead = [&](const std::string& more) {
        return column(book(veteran() + "--outputs summary " + more), "Life Table", "proportionDead")[7];
    };
    EXPECT_EQ(dead(""), 0.25) << "half a death of two";
    EXPECT_EQ(dead("--no-correction"), 0.0);
}

/// An option is refused before the data are read: there are none.
TEST_F(LifeTableTest, WhatContradictsOrIsOutOfRangeIsRefusedAtOnce) {
    refuses("life-table none.csv",
            {{"", "by --time, or the three of a table by --table"},
             {"--table a,b,c --time t --complete 1 --intervals 5",
              "--table excludes --time, --complete and --intervals"},
             {"--table a,b,c --step 5", "--table excludes --step: a table has its intervals"},
             {"--time t --entering 100", "--entering needs --table"},
             {"--time t --intervals 5 --step 1", "--intervals and --step exclude each other"},
             {"--time t --intervals 3.5", "--intervals is a whole number from 3 to 30, not '3.5'"},
             {"--time t --intervals 31", "--intervals is a whole number from 3 to 30"},
             {"--time t --step 0", "--step is a number from 1e-08 to 10000000, not '0'"},
             {"--time t --step x", "--step is a number"},
             {"--table a,b,c --entering 4", "--entering is a whole number from 5 to 99999999"},
             {"--table a,b,c --entering 1e8", "--entering is a whole number from 5 to 99999999"},
             {"--time t --distribution weibul", "there is no 'weibul' (did you mean 'weibull'?)"},
             {"--time t --weighting 1,4", "--weighting: there is no '4'; known are 1, 2 and 3, or all"},
             {"--time t --survival .5,1", "--survival takes proportions surviving, between 0 and 1, not '1'"},
             {"--time t --times 1,-2", "--times takes times of 0 or more, not '-2'"},
             {"--time t --times 1,,2", "--times: an entry of the list is empty"},
             {"--time t --level 1", "--level is a number between 0 and 1"}});
    refuses(angina(),
            {{"--table lower,dying", "--table names 2 variables; it takes three variables: the lower limit"},
             {"--table lower,dying,lower", "variable 'lower' is given twice"},
             {"--table lower,gone,dying", "--table: angina.csv: there is no variable 'gone'"}});
    refuses("life-table " + example("veteran.csv"),
            {{"--table time,celltype,age", "--table: 'celltype' holds texts, a table has numbers"},
             {"--time time", "--censor is missing"}});
}

/// Every output of one model is made for each, or for those that are named, and knows for which.
TEST_F(LifeTableTest, FunctionsAndPlotsOfAllModelsOrOfSome) {
    const std::vector<std::string> models{"Exponential", "Linear Hazard", "Gompertz", "Weibull"};
    const auto named = [](const std::string& begin, const std::vector<std::string>& ends) {
        std::vector<std::string> all;
        for (const std::string& end : ends)
            all.push_back(begin + end);
        return all;
    };
    const json all = book(table() + "--outputs all");
    for (const auto& [outputs, title] : {std::pair{"spreadsheets", "Estimates of Hazard Function, Model: "},
                                         {"spreadsheets", "Estimates of Survival Function; Model: "},
                                         {"spreadsheets", "Estimates of Prob. Density Function; Model: "},
                                         {"charts", "LS Estimates of Hazard Function Model: "},
                                         {"charts", "LS Estimates of Survival Function Model: "},
                                         {"charts", "LS Estimates of Probability Density Model: "}})
        EXPECT_EQ(titles(all[outputs], title), named(title, models));
    EXPECT_EQ(titles(all["charts"], "Fitted"), named("Fitted Survival Functions, Weight ", {"1", "2", "3"}));
    EXPECT_EQ(all["status"], 0);

    const json some = book(table() + "--distribution weibull,exponential --weighting 3 --outputs all");
    const std::string hazard = "Estimates of Hazard Function, Model: ";
    EXPECT_EQ(titles(some["spreadsheets"], hazard), named(hazard, {"Exponential", "Weibull"}));
    EXPECT_EQ(titles(some["charts"], "Fitted"), named("Fitted Survival Functions, Weight ", {"3"}));
    EXPECT_EQ(column(some, hazard + "Weibull", "weight2"), column(all, hazard + "Weibull", "weight2"));
    std::vector<std::string> settings;
    for (const json& sheet : some["spreadsheets"])
        if (sheet["title"].get<std::string>().starts_with(hazard))
            settings.push_back(sheet["origin"]["settings"]["Distribution"]["name"]);
    EXPECT_EQ(settings, (std::vector<std::string>{"scSurExponential", "scSurWeibull"}));
}

/// On the screen are the table, the fits and their ranking, and what an option asks for.
TEST_F(LifeTableTest, WhatAnOptionIsAboutIsShown) {
    const auto shown = [&](const std::string& more) {
        return titles(book(table() + more)["spreadsheets"], "");
    };
    const std::size_t usual = shown("").size();
    EXPECT_EQ(usual, 6U) << "life table, four models, ranking";
    EXPECT_EQ(shown("--distribution gompertz").size(), usual + 3);
    EXPECT_EQ(shown("--survival .9").size(), usual + 1);
    EXPECT_EQ(shown("--times 1").size(), usual + 1);
    EXPECT_EQ(shown("--times 1 --outputs summary").size(), 1U);

    const json book = this->book(table() + "--survival .9,.1 --times 0,7.5,1e3 --level .9");
    const auto proportions = column(book, "Survival Times", "surviving");
    ASSERT_EQ(proportions.size(), 24U);
    EXPECT_EQ(proportions[0], 0.9);
    EXPECT_EQ(proportions[1], 0.1);
    const auto times = column(book, "Survival at", "time");
    ASSERT_EQ(times.size(), 36U);
    EXPECT_EQ(times[1], 7.5);
    EXPECT_EQ(column(book, "Survival at", "surviving")[0], 1.0);
    EXPECT_TRUE(has(book["spreadsheets"].dump(), "90% lower")) << "the level of the limits";
}

TEST_F(LifeTableTest, WithoutFitsThereIsTheTable) {
    const Outcome outcome = succeed(veteran() + "--step 100 --no-correction --outputs all --format json");
    EXPECT_TRUE(has(outcome.err, "message 20611: At least one model is inadequate")) << outcome.err;
    EXPECT_TRUE(
        has(outcome.err, "No model can be fitted: the hazard of the interval from 600 has no variance."))
        << outcome.err;
    const std::string failed = "message 20617: Parameter estimation failed";
    EXPECT_TRUE(has(outcome.err, failed)) << outcome.err;
    EXPECT_EQ(outcome.err.find(failed), outcome.err.rfind(failed)) << "said once, not of each output:\n"
                                                                   << outcome.err;
    const json book = json::parse(outcome.out);
    EXPECT_EQ(book["status"], 1);
    EXPECT_TRUE(book["charts"].empty());
    EXPECT_EQ(column(book, "Life Table", "hazard").size(), 10U);
}

TEST_F(LifeTableTest, ATableHasNoWeights) {
    const json plain = book(table() + "--outputs summary");
    const Outcome weighted = succeed(table() + "--weight dying --outputs summary --format json");
    const json book = json::parse(weighted.out);
    EXPECT_EQ(book["spreadsheets"][0]["rows"], plain["spreadsheets"][0]["rows"]);
    EXPECT_TRUE(has(weighted.err, "message 20616: Case weights not allowed when reading tables"))
        << weighted.err;
    ASSERT_EQ(book["messages"].size(), 1U) << "a reader of the results must know, too";
    EXPECT_EQ(book["messages"][0]["id"], 20616);
    EXPECT_EQ(book["runs"][0]["data"]["weightVariable"], "");
    ASSERT_EQ(book["runs"][0]["dialogs"].size(), 2U);
    EXPECT_TRUE(has(book["runs"][0]["dialogs"][0].dump(), "Life tables & Distributions"));
    EXPECT_EQ(book["runs"][0]["dialogs"][1]["id"], "SurLifeTableTable");
}

} // namespace
} // namespace korvana::cli
