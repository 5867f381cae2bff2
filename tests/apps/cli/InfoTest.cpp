#include "tests/apps/cli/Cli.h"

#include <nlohmann/json.hpp>

namespace korvana::cli {
namespace {

struct InfoTest : CliTest {
    const std::string data =
        file("mixed.csv",
             "id,größe,day,sex,left\n1,1.5,1995-03-01,m,-9\n2,,1995-01-31,f,3\n3,2.25,1996-02-29,m,\n");
};

TEST_F(InfoTest, DescribesEveryVariable) {
    const Outcome outcome = succeed("info mixed.csv --missing left=-9");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "mixed.csv: 3 cases, 5 variables\n"
                           "\n"
                           "No  Name   Kind    Cases  Missing  Values  Range\n"
                           " 1  id     number      3        0       3  1 to 3\n"
                           " 2  größe  number      2        1       2  1.5 to 2.25\n"
                           " 3  day    date        3        0       3  1995-01-31 to 1996-02-29\n"
                           " 4  sex    text        3        0       2  --\n"
                           " 5  left   number      1        2       1  3 to 3\n"
                           "\n"
                           "Codes (cases)\n"
                           "  id     1 (1), 2 (1), 3 (1)\n"
                           "  größe  1.5 (1), 2.25 (1)\n"
                           "  sex    1 'f' (1), 2 'm' (2)\n"
                           "  left   3 (1), missing-data code -9\n");
    const auto json = nlohmann::json::parse(run("info mixed.csv --json").out);
    EXPECT_EQ(json["cases"], 3);
    EXPECT_EQ(json["variables"][1]["name"], "größe");
    EXPECT_EQ(json["variables"][1]["missing"], 1);
    EXPECT_EQ(json["variables"][3]["codes"][1]["label"], "m");
    EXPECT_EQ(json["variables"][3]["codes"][1]["cases"], 2);
}

TEST_F(InfoTest, ReadsAsItIsTold) {
    file("odd.txt", "day|size\n1/2/1995|1,5\n3/2/1995|2.5\n");
    const Outcome told = succeed("info odd.txt --decimal comma --dates dmy --separator pipe");
    EXPECT_TRUE(has(told.out, "1995-02-01 to 1995-02-03")) << told.out;
    EXPECT_TRUE(has(told.out, "(first: '2.5', line 3); read as text codes")) << told.out;
}

TEST_F(InfoTest, CountsTheSelectedCasesAndShowsWhatWasComputed) {
    const std::string out = run("info mixed.csv --select \"sex = 'm'\" --weight id --define late=id>1 "
                                "--define \"both = late * id\"")
                                .out;
    EXPECT_TRUE(has(out, "Selected 2 of 3 cases: sex = 'm'.\nCases weighted by 'id'.\n")) << out;
    EXPECT_TRUE(has(out, "Computed: late = id>1.\nComputed: both = late * id.\n")) << out;
    EXPECT_TRUE(has(out, " 2 'm' (2)\n")) << out;
    EXPECT_TRUE(has(out, " 7  both   number      2        0       2  0 to 3                    late * id\n"))
        << out;
}

TEST_F(InfoTest, CodesKeepTheDigitsThatTellThemApart) {
    const std::string codes = "s,t\n0.123456789,1\n0.123456788,2\n1000000001,3\n1000000002,4\n1e-7,5\n";
    const std::string listed = "1e-07 (1), 0.123456788 (1), 0.123456789 (1), 1000000001 (1), 1000000002 (1)";
    const Outcome info = succeed("info " + file("near.csv", codes) + " --missing t=0.30000000000000004");
    EXPECT_TRUE(has(info.out, listed)) << info.out;
    EXPECT_TRUE(has(info.out, "missing-data code 0.30000000000000004")) << info.out;
    EXPECT_TRUE(has(usageError(words("kaplan-meier near.csv --time t --censor s --complete 7 --censored "
                                     "0.123456787")),
                    "--complete 7: no case has this code; 's' has 1e-07 (1 case), 0.123456788 (1 case), "
                    "0.123456789 (1 case)"));
}

TEST_F(InfoTest, LongListsAreCutAndWrapped) {
    std::string text = "name\n";
    for (int i = 0; i < 30; ++i)
        text += "somebody number " + std::to_string(100 + i) + "\n";
    const std::string out = run("info " + file("names.csv", text)).out;
    EXPECT_TRUE(has(out, "and 18 more\n")) << out;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 100U) << line;
}

} // namespace
} // namespace korvana::cli
