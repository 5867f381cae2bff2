#include "apps/cli/CommandApp.h"
#include "tests/apps/cli/Cli.h"

#include <sstream>

namespace korvana::cli {
namespace {

struct UsageTest : CliTest {
    const std::string data = file("little.csv", "weeks,status,sex,start\n5,1,m,1995-01-01\n7,0,f,1995-02-01\n"
                                                "9,1,m,1996-01-01\n9,2,f,1996-01-05\n");
};

TEST_F(UsageTest, HelpAndVersion) {
    EXPECT_EQ(run("").code, ExitUsage);
    EXPECT_TRUE(has(run("").err, "kaplan-meier"));
    EXPECT_EQ(run("--help").out, run("help").out);
    EXPECT_TRUE(run("--version").out.starts_with("korvana "));
    const Outcome help = succeed("kaplan-meier --help");
    EXPECT_EQ(run("help kaplan-meier").out, help.out);
    EXPECT_TRUE(has(help.out, "--no-header") && has(help.out, "percentiles")) << help.out;
}

TEST_F(UsageTest, WhatIsUnknownIsNamedWithTheNearest) {
    refuses("", {{"kaplan-meir", "korvana: there is no command 'kaplan-meir' (did you mean 'kaplan-meier'?); "
                                 "'korvana --help' lists them\n"},
                 {"kapln", "(did you mean 'kaplan-meier'?)"},
                 {"little.csv", "'korvana info little.csv' shows what is in it"},
                 {"--time x", "the command comes first"},
                 {"\" \"", "the command is empty"},
                 {"kaplan-meier --time weeks", "Name a data file"},
                 {"kaplan-meier little.csv more.csv", "'more.csv' is one argument too many"},
                 {"info -- little.csv b.csv", "besides 'little.csv'; korvana info takes one"},
                 {"typelib little.csv", "it takes none"}});
    refuses("kaplan-meier little.csv",
            {{"--time week", "--censor is missing"},
             {"--time week --censor status", "did you mean 'weeks'"},
             {"--outputs sumary", "(did you mean 'summary'?); known are summary, percentiles"},
             {"-o d --format doc", "unknown format 'doc'; known are json, txt"},
             {"--format csv", "needs -o DIR"},
             {"-o d --format svg,pdf --outputs summary,percentiles",
              "--format svg,pdf is for charts, and --outputs summary,percentiles makes none"},
             {"--sel x", "did you mean '--select'?"},
             {"--outp x", "did you mean '--outputs', '--output'?"},
             {"-time x", "did you mean '--time'?"},
             {"--Censr=x", "did you mean '--censor'?"},
             {"\u2014time weeks", "begins with two hyphens: --time"}});
    for (const char* strange : {"--strata", "--foo", "--x", "--covariates", "--json-lines"})
        EXPECT_FALSE(has(usageError({"kaplan-meier", data, strange, "x"}), "did you mean")) << strange;
}

/// General mistakes with options, tried with every option. An empty shell variable must never analyse
/// everyone.
TEST_F(UsageTest, EveryOptionSaysWhatItLacksOrHasTooMuch) {
    int tried = 0;
    for (const CommandApp& command : makeApps()) {
        for (const CLI::Option* option : command.app->get_options()) {
            if (option->get_positional()) {
                const std::string error = usageError({command.name, ""});
                EXPECT_TRUE(has(error, "an argument is empty")) << command.name;
                EXPECT_EQ(has(error, "bash, zsh or fish"), command.name == std::string{"completion"});
                continue;
            }
            const std::string name = "--" + option->get_lnames().front();
            if (option->get_items_expected_max() == 0) {
                EXPECT_TRUE(has(usageError({command.name, name + "=maybe"}),
                                name + " takes no value; leave out '=maybe'"));
                continue;
            }
            const std::vector<std::vector<std::string>> empty{
                {name, ""}, {name + "="}, {name, "  "}, {name + "= "}};
            for (const auto& way : empty) {
                if (name == "--separator" && has(way.back(), " ")) continue;
                std::vector<std::string> call{command.name, data};
                call.insert(call.end(), way.begin(), way.end());
                EXPECT_TRUE(has(usageError(call), name + " has an empty value")) << command.name << way[0];
                ++tried;
            }
            EXPECT_TRUE(has(usageError({command.name, name}), name + " needs a value: " + name + " "));
            EXPECT_TRUE(has(usageError({command.name, name, "--help", "x"}), "--help, is no value"));
            if (option->get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll) continue;
            EXPECT_TRUE(has(usageError({command.name, name, "a", name + "=b"}),
                            name + " is given twice, with 'a' and with 'b'"));
        }
    }
    EXPECT_GT(tried, 50);
}

TEST_F(UsageTest, WordsThatTheShellTookApartArePutTogether) {
    refuses("kaplan-meier",
            {{"little.csv --time start, stop --censor status",
              "--time start, stop: write a list without blanks, or in quotes: --time start,stop"},
             {"--time start ,stop little.csv",
              "--time start ,stop: write a list without blanks, or in quotes: --time start,stop"},
             {"--time weeks status little.csv", "'status' after --time weeks belongs to no option"},
             {"little.csv --select weeks = 3 --quiet", "--select \"weeks = 3\""},
             {"little.csv --time start --time stop", "start,stop: time variables: one"}});
}

TEST_F(UsageTest, WhatFollowsTwoHyphensIsAFile) {
    file("-x.csv", "a\n1\n");
    EXPECT_TRUE(has(run("info -- -x.csv").out, "-x.csv: 1 case"));
    EXPECT_TRUE(has(run("info --json -- -x.csv").out, "\"cases\": 1"));
    refuses("info", {{"-x.csv", "for the file of this name write ./-x.csv"},
                     {"-- --json", "--json: there is no such file"},
                     {"-- -x.csv --json", "'--json' comes after --"}});
}

TEST_F(UsageTest, ValuesStandBehindABlankOrASign) {
    const std::string expected = run("info little.csv --select weeks>=7 --json").out;
    EXPECT_TRUE(has(expected, "\"selected\": 3"));
    EXPECT_EQ(run("info --select=weeks>=7 --json --json little.csv").out, expected);
    for (const std::string way : {"-o out", "-oout", "-qo out", "-q -o=out", "--output=out"}) {
        succeed(
            "kaplan-meier little.csv --time weeks --censor status --complete 1 --censored 0 --format json " +
            way);
        EXPECT_TRUE(std::filesystem::exists("out/results.json")) << way;
        std::filesystem::remove_all("out");
    }
}

/// Paths that the system refuses, each where data are read and where files are written: in plain words.
TEST_F(UsageTest, PathsThatCannotBeAreRefusedInPlainWords) {
    std::filesystem::create_symlink("loop", "loop");
    std::filesystem::create_directory("folder");
    std::string deep = "d";
    for (int i = 0; i < 3000; ++i)
        deep += "/d";
    const std::string name(256, 'n');
    const std::vector<std::string> analysis{"kaplan-meier", data,         "--time", "weeks",      "--censor",
                                            "status",       "--complete", "1",      "--censored", "0"};
    for (const std::string& path : {name, "folder/" + name, name + "/below", deep, std::string("loop"),
                                    std::string("loop/below"), data + "/below", std::string("/proc/new")}) {
        std::vector<std::string> writing = analysis;
        writing.insert(writing.end(), {"-o", path});
        for (const auto& arguments : {writing, {"info", path}}) {
            const Outcome outcome = runWords(arguments);
            EXPECT_EQ(outcome.code, ExitUsage) << path.substr(0, 20);
            EXPECT_TRUE(outcome.err.starts_with("korvana: ")) << outcome.err;
            EXPECT_FALSE(has(outcome.err, "filesystem") || has(outcome.err, "status:")) << outcome.err;
            EXPECT_TRUE(has(outcome.err, path.substr(0, 20))) << outcome.err;
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty("folder"));
}

TEST_F(UsageTest, AVariableHasOneMissingDataCode) {
    const std::string begin = "info little.csv --missing sex=m --missing ";
    for (const char* same : {"sex=m", "3=2", "SEX=2.0"})
        EXPECT_EQ(succeed(begin + same).out, succeed("info little.csv --missing sex=m").out) << same;
    refuses("info little.csv --missing sex=m", {{"--missing sex=f", "not two (m and f)"},
                                                {"--missing sex=m --missing sex=1", "not two (m and 1)"}});
}

TEST_F(UsageTest, VariablesCodesAndLevel) {
    const std::string codes = "'status' has 0 (1 case), 1 (2 cases), 2 (1 case)";
    refuses("kaplan-meier little.csv",
            {{"--censor status", "--time is missing"},
             {"--time weeks,status,sex --censor 4", "--time names 3 variables; it takes one"},
             {"--time weeks,weeks --censor 2", "'weeks' is given twice"},
             {"--time 1 --censor weeks", "'weeks' is given twice"},
             {"--time sex --censor 2", "'sex' holds texts"},
             {"--time weeks, --censor 2", "an entry of the list is empty"},
             {"--time weeks --censor sex", "'sex' has 1 'f' (2 cases), 2 'm' (2 cases)"}});
    refuses("kaplan-meier little.csv --time weeks --censor status",
            {{"", "--complete and --censored are missing"},
             {"", codes},
             {"--complete 1", "--censored is missing"},
             {"--complete 7 --censored -8", "--complete 7: no case has this code"},
             {"--complete dead --censored 0", "'dead' is neither a number nor a value label"},
             // Counted after selection.
             {"--complete 1 --select \"weeks > 6\"", "'status' has 0 (1 case), 1 (1 case), 2 (1 case)"}});
    for (const char* level : {"95", "-0.1", "high", "nan", "inf", "-inf", "1.0000001", "0,95"})
        refuses("kaplan-meier little.csv --level", {{level, "--level is a number from 0 to 1"}});
}

TEST_F(UsageTest, DataThatCannotBeUsedAreNamedByPlace) {
    file("bad.csv", "a,b\n1,2\n1,2,3\n");
    refuses("info", {{".", "."}, {"bad.csv", "bad.csv:3:"}});
    refuses("info little.csv",
            {{"--select \"weeks >\"", "weeks >"},
             {"--select \"weeks > 99\"",
              "holds for none of the 4 cases; 'weeks' has 5 (1 case), 7 (1 case), 9 (2 cases)\n"},
             {"--weight sex", "--weight: "},
             {"--weight sex", "'sex' holds texts"},
             {"--missing weeks", "--missing is VARIABLE=CODE"},
             {"--missing weks=9", "did you mean 'weeks'"},
             {"--missing sex=x", "neither a number nor a value label of 'sex'"},
             {"--missing 1=9 --missing weeks=7",
              "--define \"weeks_2 = if(weeks = 7, 9, weeks)\" --missing \"weeks_2=9\"\n"},
             {"--separator word", "comma, semicolon, tab, pipe"},
             {"--separator blank", "with commas or tabs"},
             {"--dates dym", "--dates is dmy"},
             {"--header --no-header", "contradict"}});
    // The call that the message suggests does what was meant.
    const auto told =
        run("info little.csv --define \"weeks_2 = if(weeks = 7, 9, weeks)\" --missing \"weeks_2=9\"");
    EXPECT_TRUE(has(told.out, "weeks_2  number      1        3")) << told.out;
}

TEST_F(UsageTest, WhatTheLayoutMakesOfVariablesIsTold) {
    file("tilde.csv", "time~s\n1~1\n2~0\n");
    file("first.csv", "time,s,7\n1,1,2\n2,0,2\n");
    for (const std::string options : {" --time time --censor s", " --select \"time > 1\"", " --weight time"})
        refuses("kaplan-meier", {{"tilde.csv" + options, "there is no variable 'time'"},
                                 {"tilde.csv" + options, "--separator '~'"},
                                 {"first.csv" + options, "(--header)"}});
    file("typo.csv", "t,s\n1,1\n2,0\n3l,1\n4,1\n");
    refuses("kaplan-meier",
            {{"little.csv --separator ; --time weeks --censor s", "the only one is 'weeks,status,sex,start'"},
             {"little.csv --separator ; --time weeks --censor s", "--separator ','"},
             {"typo.csv --time t --censor s",
              "typo.csv: variable 't': 1 of 4 cells is not a number (first: '3l', line 4)"}});
}

/// --verbose adds to standard error only, and says what was read and made.
TEST_F(UsageTest, VerboseTellsWhatIsReadAndDone) {
    const std::string call = "kaplan-meier little.csv --time weeks --censor status --complete 1 --censored 0 "
                             "--format json --define \"m = weeks / 4\"";
    const Outcome told = succeed(call + " --verbose");
    const Outcome plain = succeed(call);
    EXPECT_EQ(told.out, plain.out);
    for (const char* part : {"Read ", "4 cases, 5 variables (3 of numbers, 1 of texts, 1 of dates)",
                             "Layout: 4 columns separated by ',', a line of names", "Computed: m = weeks / 4",
                             "Made Summary", "Done"})
        EXPECT_TRUE(has(told.err, part)) << part << told.err;
    EXPECT_FALSE(has(plain.err, "Made Summary"));
}

/// The phases of --timing cover the whole run: together they last as long as it does.
TEST_F(UsageTest, TimingAddsUp) {
    const Outcome timed = succeed("kaplan-meier little.csv --time weeks --censor status --complete 1 "
                                  "--censored 0 --format json --timing");
    std::istringstream lines(timed.err);
    double sum = 0;
    double total = -1;
    int phases = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.size() < 46 || !line.ends_with(" s")) continue;
        const double seconds = std::stod(line.substr(line.rfind(' ', line.size() - 3)));
        if (line.starts_with("total "))
            total = seconds;
        else
            sum += seconds, ++phases;
    }
    EXPECT_GE(phases, 5) << timed.err;
    EXPECT_NEAR(sum, total, 0.001 * (phases + 1)) << timed.err;
    EXPECT_TRUE(has(timed.err, "Reading data file") && has(timed.err, "Writing")) << timed.err;
}

/// Files of others are found before anything is computed, and kept.
TEST_F(UsageTest, NobodyElsesFileIsReplaced) {
    std::filesystem::create_directory("theirs");
    file("theirs/report.txt", "theirs");
    refuses("kaplan-meier little.csv --time unknown -o theirs",
            {{"", "'theirs/report.txt' is there already and was not written by an earlier run"}});
    EXPECT_EQ(read("theirs/report.txt"), "theirs");
}

TEST_F(UsageTest, NamesAndCellsOfAnyKindAreShownBriefly) {
    const std::string name = "\x1b[31m" + std::string(70'000, 'n');
    const std::string cell = "a\nb" + std::string(70'000, 'x');
    file("odd.csv", "t,s," + name + "\n1,1,\"" + cell + "\"\n2,0,\"c\nd\"\n3,1,e\n4,1,e\n");
    const std::string analysis = "kaplan-meier odd.csv --time 1 --censor 3";
    for (const auto& call :
         {std::string{"info odd.csv"}, "info odd.csv --select \"`" + name + "` = 'q'\"",
          std::string{"kaplan-meier odd.csv --time 3 --censor 2"}, analysis,
          analysis + " --complete 3 --censored 3", analysis + " --complete 1 --censored 2"}) {
        const Outcome outcome = run(call);
        EXPECT_FALSE(has(outcome.out + outcome.err, "\x1b"));
        std::istringstream lines(outcome.err + outcome.out);
        for (std::string line; std::getline(lines, line);)
            EXPECT_LE(line.size(), 700U) << line;
    }
    // No invalid byte is passed through.
    const std::string error = usageError({"info", file("b\xE9\x1b.csv", "a,b\ncaf\x81,1\n")});
    EXPECT_TRUE(has(error, "b\\xE9\\x1B.csv:2:1") && has(error, "'caf\\x81'")) << error;
    const Outcome wrote =
        runWords({"kaplan-meier", data, "--time", "weeks", "--censor", "status", "--complete", "1",
                  "--censored", "0", "-o", "o\xCE\x1b", "--format", "json"});
    EXPECT_EQ(wrote.code, ExitResults);
    EXPECT_TRUE(has(wrote.err, "wrote o\\xCE\\x1B/results.json\n")) << wrote.err;
    // A label can be given as it is shown.
    for (const std::string given : {"\"c\nd\"", "c\\nd"})
        succeed(analysis + " --complete e --censored " + given);
}

TEST_F(UsageTest, ScriptsAreRecordedOverNothingElse) {
    const std::string analysis =
        "kaplan-meier little.csv --time weeks --censor status --complete 1 --censored 0";
    const std::string mine = file("mine.py", "print('# Recorded by Korvana Survival')\n");
    std::filesystem::create_symlink("little.csv", "link.py");
    const std::string content = read(data);
    refuses(analysis, {{"--record little.csv", "cannot write 'little.csv': it is the data file"},
                       {"--record link.py", "cannot write 'link.py': it is the data file"},
                       {"--record mine.py", "'mine.py' is there already and is no recorded script"},
                       {"--record .", "'.' is a folder"},
                       {"--record /dev/null", "is no file that can be written to"},
                       {"--record gone/x.py", "there is no folder 'gone'"},
                       {"--format py", "needs -o DIR"}});
    EXPECT_EQ(read(data), content);
    EXPECT_TRUE(read(mine).starts_with("print"));

    file("x.py", "");
    EXPECT_TRUE(has(succeed(analysis + " --record x.py").err, "wrote x.py\n"));
    const std::string script = read("x.py");
    EXPECT_TRUE(has(script, "app.open(DATA)\n")) << script;
    EXPECT_TRUE(has(script, "run.dialog.Variables = [[\"weeks\"], [\"status\"]]\n")) << script;
    succeed(analysis + " --select weeks>1 --record x.py -q");
    EXPECT_TRUE(has(read("x.py"), "app.select(\"weeks>1\")"));
    // It is written with results alone.
    EXPECT_EQ(run(analysis + " --select weeks>5 --record refused.py").code, ExitRefused);
    EXPECT_FALSE(std::filesystem::exists("refused.py"));
    succeed(analysis + " -o out --format py");
    EXPECT_TRUE(read("out/script.py").starts_with(script.substr(0, 30)));
}

TEST_F(UsageTest, ScriptsThatCannotRunAreNamed) {
    refuses("run", {{"", "which script?"},
                    {"gone.py", "there is no script 'gone.py'"},
                    {"-- -x.py", "there is no script '-x.py'"},
                    {"--fast x.py", "there is no option --fast"},
                    {".", "'.' is a folder"}});
    EXPECT_TRUE(has(succeed("run --help").out, "korvana run script.py FOLDER"));
    setenv("KORVANA_PYTHON", "/nowhere/python", 1);
    refuses("run",
            {{"little.csv", "'/nowhere/python' cannot be started: No such file or directory; install"}});
    unsetenv("KORVANA_PYTHON");
}

TEST_F(UsageTest, AModuleThatIsNotThereIsNamed) {
    setenv("KORVANA_MODULE", "/nowhere/module.so", 1);
    refuses("typelib", {{"", "/nowhere/module.so: not there"}});
    unsetenv("KORVANA_MODULE");
    const std::string found = succeed("typelib").out;
    for (const char* part :
         {"enumeration SurResultsForModel\n  1  scSurExponential\n  2  scSurLinearHazard\n",
          "\ninterface OzmAnalysisDialog  KORVANA Dialog\n  Name                    text, read only    Name "
          "of "
          "the dialog's class\n",
          "  ResultsSaveFileName     text               File into which the outputs ",
          "\n+ SurvivalCurve                                      action           Survival curve of all ",
          "\ninterface SurKaplanMeierResults : OzmAnalysisDialog  "})
        EXPECT_TRUE(has(found, part)) << found;
}

TEST_F(UsageTest, AnOutputThatCannotBeWrittenIsAnError) {
    std::ofstream full("/dev/full");
    std::ostringstream err;
    Console console{full, err, false};
    EXPECT_EQ(cli::run({"info", data}, console), ExitUsage);
    EXPECT_EQ(err.str(), "korvana: standard output cannot be written\n");
}

} // namespace
} // namespace korvana::cli
