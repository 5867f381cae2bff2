#include "tests/apps/cli/Cli.h"

#include <nlohmann/json.hpp>

namespace korvana::cli {
namespace {

struct DefineTest : CliTest {
    /// A trial in days with several codes for dead.
    const std::string raw = file("raw.csv", "days,status,arm,n\n30,2,a,1\n61,1,a,2\n91,3,b,1\n122,2,b,1\n"
                                            "152,1,b,1\n-9,2,a,1\n");
    /// The same as somebody would prepare it by hand.
    const std::string byHand = file("hand.csv", "months,dead,group,twice\n1,1,1,2\n2.0333333333333332,0,1,4\n"
                                                "3.0333333333333332,1,2,2\n4.0666666666666664,1,2,2\n"
                                                "5.0666666666666664,0,2,2\n,1,1,2\n");
    const std::vector<std::string> definitions{"--define",  "months = days / 30",
                                               "--define",  "dead = status = 2 or status = 3",
                                               "--define",  "group = if(arm = 'a', 1, 2)",
                                               "--define",  "twice = n * 2",
                                               "--missing", "days=-9"};
    const std::vector<std::string> analysis{"--time", "months",     "--censor", "dead",     "--complete",
                                            "1",      "--censored", "0",        "--format", "json"};
};

/// Computed variables serve wherever variables of the file do, and give the numbers of a prepared file.
TEST_F(DefineTest, ServesLikeAVariableOfTheFile) {
    const std::vector<std::vector<std::string>> calls{
        {"kaplan-meier"},
        {"kaplan-meier", "--weight", "twice", "--select", "twice * dead >= 0 and months < 5"},
        {"two-sample", "--group", "group", "--group1", "1", "--group2", "2"},
        {"kaplan-meier", "--missing", "months=1"},
    };
    for (const auto& call : calls) {
        std::vector<std::string> here{call[0], raw};
        std::vector<std::string> there{call[0], byHand};
        for (const auto& part : {std::vector<std::string>(call.begin() + 1, call.end()), analysis}) {
            here.insert(here.end(), part.begin(), part.end());
            there.insert(there.end(), part.begin(), part.end());
        }
        here.insert(here.end(), definitions.begin(), definitions.end());
        const Outcome computed = run(here);
        const Outcome prepared = run(there);
        ASSERT_EQ(computed.code, ExitResults) << computed.err;
        ASSERT_EQ(prepared.code, ExitResults) << prepared.err;
        EXPECT_EQ(nlohmann::json::parse(computed.out)["spreadsheets"],
                  nlohmann::json::parse(prepared.out)["spreadsheets"])
            << call[0] << " " << call.back();
        EXPECT_TRUE(has(computed.out, "Computed: months = days / 30.")) << computed.out;
    }
}

TEST_F(DefineTest, InfoShowsWhatWasComputed) {
    const Outcome outcome =
        run({"info", raw, "--define", "late=days > 60", "--define", "both = late * status"});
    EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
    EXPECT_TRUE(has(outcome.out, "Computed: late = days > 60.\nComputed: both = late * status.\n"))
        << outcome.out;
    EXPECT_TRUE(has(outcome.out, " 6  both    number      6        0       4  0 to 3     late * status\n"))
        << outcome.out;
}

TEST_F(DefineTest, WhatIsWrongNamesTheOptionAndThePlace) {
    const auto refused = [&](const std::string& text) {
        const Outcome outcome = run({"info", raw, "--define", text});
        EXPECT_EQ(outcome.code, ExitUsage);
        return outcome.err;
    };
    EXPECT_TRUE(has(refused("days / 30"), "korvana: --define: 'days / 30' has no NAME = before it"))
        << refused("days / 30");
    EXPECT_TRUE(has(refused("days = 1"), "--define: there is already a variable 'days'"));
    EXPECT_TRUE(
        has(refused("x = dayz"), "--define x: expression \"dayz\", character 1: there is no variable"))
        << refused("x = dayz");
    EXPECT_TRUE(has(run({"info", raw, "--define", "b = a", "--define", "a = 1"}).err, "no variable 'a'"))
        << "a definition may use earlier ones, not later ones";
}

} // namespace
} // namespace korvana::cli
