#include "tests/apps/cli/Cli.h"

#include <nlohmann/json.hpp>

namespace korvana::cli {
namespace {

struct DefineTest : CliTest {
    DefineTest() {
        // A trial in days with several codes for dead, and the same prepared by hand.
        file("raw.csv", "days,status,arm,n\n30,2,a,1\n61,1,a,2\n91,3,b,1\n122,2,b,1\n152,1,b,1\n-9,2,a,1\n");
        file("hand.csv",
             "months,dead,group,twice\n1,1,1,2\n2.0333333333333332,0,1,4\n3.0333333333333332,1,2,2\n"
             "4.0666666666666664,1,2,2\n5.0666666666666664,0,2,2\n,1,1,2\n");
    }
};

/// Computed variables work like variables of the file, and give the same numbers as a prepared file.
TEST_F(DefineTest, ServesLikeAVariableOfTheFile) {
    const std::string definitions =
        " --define \"months = days / 30\" --define \"dead = status = 2 or status = 3\" "
        "--define \"group = if(arm = 'a', 1, 2)\" --define \"twice = n * 2\" --missing days=-9 ";
    const std::string analysis = " --time months --censor dead --complete 1 --censored 0 --format json ";
    const std::vector<std::pair<std::string, std::string>> calls{
        {"kaplan-meier ", "--weight twice --select \"twice * dead >= 0 and months < 5\""},
        {"kaplan-meier ", "--missing months=1"},
        {"two-sample ", "--group group --group1 1 --group2 2"},
    };
    for (const auto& [command, options] : calls) {
        const Outcome computed = succeed(command + "raw.csv" + definitions + analysis + options);
        const Outcome prepared = succeed(command + "hand.csv" + analysis + options);
        EXPECT_EQ(nlohmann::json::parse(computed.out)["spreadsheets"],
                  nlohmann::json::parse(prepared.out)["spreadsheets"])
            << command << options;
        EXPECT_TRUE(has(computed.out, "Computed: months = days / 30.")) << computed.out;
    }
}

TEST_F(DefineTest, WhatIsWrongNamesTheOptionAndThePlace) {
    refuses("info raw.csv --define",
            {{"\"days / 30\"", "korvana: --define: 'days / 30' has no NAME = before it"},
             {"\"days = 1\"", "--define: there is already a variable 'days'"},
             {"\"x = dayz\"", "--define x: expression \"dayz\", character 1: there is no variable"},
             // A definition may use earlier ones, not later ones.
             {"\"b = a\" --define \"a = 1\"", "no variable 'a'"}});
}

} // namespace
} // namespace korvana::cli
