#include "apps/cli/CommandApp.h"
#include "tests/apps/cli/Cli.h"

#include <sstream>

namespace korvana::cli {
namespace {

struct UsageTest : CliTest {
    /// The error of a call that is to end with 2 and to print nothing.
    std::string usageError(const std::vector<std::string>& arguments) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.code, ExitUsage) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_TRUE(outcome.err.starts_with("korvana: ")) << outcome.err;
        return outcome.err;
    }
    /// The same for a call of the analysis over the little file, with these options.
    std::string refused(std::vector<std::string> options) {
        options.insert(options.begin(), {"kaplan-meier", data});
        return usageError(options);
    }
    const std::string data = file("little.csv", "weeks,status,sex,start\n5,1,m,1995-01-01\n7,0,f,1995-02-01\n"
                                                "9,1,m,1996-01-01\n9,2,f,1996-01-05\n");
};

TEST_F(UsageTest, HelpAndVersion) {
    EXPECT_EQ(run({}).code, ExitUsage);
    EXPECT_TRUE(has(run({}).err, "kaplan-meier"));
    EXPECT_EQ(run({"--help"}).out, run({"help"}).out);
    EXPECT_TRUE(run({"--version"}).out.starts_with("korvana "));
    const Outcome help = run({"kaplan-meier", "--help"});
    EXPECT_EQ(help.code, ExitResults);
    EXPECT_EQ(run({"help", "kaplan-meier"}).out, help.out);
    EXPECT_TRUE(has(help.out, "--no-header") && has(help.out, "percentiles")) << help.out;
}

TEST_F(UsageTest, WhatIsUnknownIsNamedWithTheNearest) {
    EXPECT_EQ(usageError({"kaplan-meir"}), "korvana: there is no command 'kaplan-meir' (did you mean "
                                           "'kaplan-meier'?); 'korvana --help' lists them\n");
    EXPECT_TRUE(has(usageError({"kapln"}), "(did you mean 'kaplan-meier'?)"));
    EXPECT_TRUE(has(usageError({"info", "--sekect", "x"}), "no option --sekect (did you mean '--select'?)"));
    EXPECT_TRUE(has(usageError({"kaplan-meier", data, "more.csv"}), "'more.csv' is one argument too many"));
    EXPECT_TRUE(has(refused({"--time", "week"}), "--censor is missing"));
    EXPECT_TRUE(has(refused({"--time", "week", "--censor", "status"}), "did you mean 'weeks'"));
    EXPECT_TRUE(
        has(refused({"--outputs", "sumary"}), "(did you mean 'summary'?); known are summary, percentiles"));
    EXPECT_TRUE(has(refused({"-o", "d", "--format", "doc"}), "unknown format 'doc'; known are json, txt"));
    EXPECT_TRUE(has(refused({"--format", "csv"}), "needs -o DIR"));
    EXPECT_TRUE(has(refused({"-o", "d", "--format", "svg,pdf", "--outputs", "summary,percentiles"}),
                    "--format svg,pdf is for charts, and --outputs summary,percentiles makes none"));
    EXPECT_TRUE(has(refused({"--complete"}), "--complete"));
    EXPECT_TRUE(has(usageError({"kaplan-meier", "--time", "weeks"}), "Name a data file"));
}

/// An empty shell variable must not analyse everyone: whatever option and command it stands in.
TEST_F(UsageTest, EveryOptionRefusesAnEmptyValue) {
    int tried = 0;
    for (const CommandApp& command : makeApps()) {
        for (const CLI::Option* option : command.app->get_options()) {
            if (option->get_positional()) {
                const std::string error = usageError({command.name, ""});
                EXPECT_TRUE(has(error, "an argument is empty")) << command.name;
                EXPECT_EQ(has(error, "bash, zsh or fish"), command.name == std::string{"completion"})
                    << error;
                continue;
            }
            if (option->get_items_expected_max() == 0) continue;
            const std::string name = "--" + option->get_lnames().front();
            const std::vector<std::vector<std::string>> ways{
                {name, ""}, {name + "="}, {name, "  "}, {name + "= "}};
            for (const auto& way : ways) {
                if (name == "--separator" && has(way.back(), " ")) continue;
                std::vector<std::string> call{command.name, data};
                call.insert(call.end(), way.begin(), way.end());
                EXPECT_TRUE(has(usageError(call), name + " has an empty value")) << command.name << way[0];
                ++tried;
            }
        }
    }
    EXPECT_GT(tried, 50);
}

/// What goes wrong with options in general, tried with every option.
TEST_F(UsageTest, EveryOptionSaysWhatItLacksOrHasTooMuch) {
    for (const CommandApp& command : makeApps()) {
        for (const CLI::Option* option : command.app->get_options()) {
            if (option->get_positional()) continue;
            const std::string name = "--" + option->get_lnames().front();
            if (option->get_items_expected_max() == 0) {
                EXPECT_TRUE(has(usageError({command.name, name + "=maybe"}),
                                name + " takes no value; leave out '=maybe'"));
                continue;
            }
            EXPECT_TRUE(has(usageError({command.name, name}), name + " needs a value: " + name + " "));
            EXPECT_TRUE(has(usageError({command.name, name, "--help", "x"}), "--help, is no value"));
            if (option->get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll) continue;
            EXPECT_TRUE(has(usageError({command.name, name, "a", name + "=b"}),
                            name + " is given twice, with 'a' and with 'b'"));
        }
    }
}

TEST_F(UsageTest, WordsThatTheShellTookApartArePutTogether) {
    EXPECT_TRUE(
        has(refused({"--time", "start,", "stop", "--censor", "status"}),
            "--time start, stop: a list has no blanks, or stands in quotes; write --time start,stop"));
    EXPECT_TRUE(
        has(usageError({"kaplan-meier", "--time", "start", ",stop", data}), "write --time start,stop"));
    EXPECT_TRUE(has(usageError({"kaplan-meier", "--time", "weeks", "status", data}),
                    "'status' behind --time weeks belongs to nothing"));
    EXPECT_TRUE(has(refused({"--select", "weeks", "=", "3", "--quiet"}), "--select \"weeks = 3\""));
    EXPECT_TRUE(has(usageError({"info", data, data}), "is one argument too many besides"));
    EXPECT_TRUE(
        has(usageError({"info", "--", data, "b.csv"}), "besides '" + data + "'; korvana info takes one"));
    EXPECT_TRUE(has(refused({"--time", "start", "--time", "stop"}), "start,stop: time variables: one"));
    EXPECT_TRUE(has(usageError({"typelib", data}), "it takes none"));
    EXPECT_TRUE(has(refused({"\u2014time", "weeks"}), "begins with two hyphens: --time"));
}

TEST_F(UsageTest, WhatFollowsTwoHyphensIsAFile) {
    const auto before = std::filesystem::current_path();
    file("-x.csv", "a\n1\n");
    std::filesystem::current_path(folder);
    EXPECT_TRUE(has(usageError({"info", "-x.csv"}), "for the file of this name write ./-x.csv"));
    EXPECT_TRUE(has(run({"info", "--", "-x.csv"}).out, "-x.csv: 1 case"));
    EXPECT_TRUE(has(run({"info", "--json", "--", "-x.csv"}).out, "\"cases\": 1"));
    EXPECT_TRUE(has(usageError({"info", "--", "--json"}), "--json: there is no such file"));
    EXPECT_TRUE(has(usageError({"info", "--", "-x.csv", "--json"}), "'--json' stands behind --"));
    std::filesystem::current_path(before);
}

TEST_F(UsageTest, OnlyNearNamesAreSuggested) {
    for (const char* strange : {"--strata", "--foo", "--x", "--covariates", "--json-lines"})
        EXPECT_FALSE(has(refused({strange, "x"}), "did you mean")) << refused({strange, "x"});
    EXPECT_TRUE(has(refused({"--sel", "x"}), "did you mean '--select'?"));
    EXPECT_TRUE(has(refused({"--outp", "x"}), "did you mean '--outputs', '--output'?"));
    EXPECT_TRUE(has(refused({"-time", "x"}), "did you mean '--time'?"));
    EXPECT_TRUE(has(refused({"--Censr=x"}), "did you mean '--censor'?"));
    EXPECT_TRUE(has(usageError({data}), "'korvana info " + data + "' shows what is in it"));
    EXPECT_TRUE(has(usageError({"--time", "x"}), "the command comes first"));
    EXPECT_TRUE(has(usageError({" "}), "the command is empty"));
}

TEST_F(UsageTest, ValuesStandBehindABlankOrASign) {
    const std::string expected = run({"info", data, "--select", "weeks>=7", "--json"}).out;
    EXPECT_TRUE(has(expected, "\"selected\": 3"));
    EXPECT_EQ(run({"info", "--select=weeks>=7", "--json", "--json", data}).out, expected);
    EXPECT_EQ(run({"info", "--select", "weeks>=7", "--json", "--", data}).out, expected);
    const std::string out = folder / "o";
    for (const auto& way : std::vector<std::vector<std::string>>{
             {"-o", out}, {"-o" + out}, {"-qo", out}, {"-q", "-o=" + out}, {"--output=" + out}}) {
        std::vector<std::string> call{"kaplan-meier", data, "--time",     "weeks", "--censor", "status",
                                      "--complete",   "1",  "--censored", "0",     "--format", "json"};
        call.insert(call.end(), way.begin(), way.end());
        EXPECT_EQ(run(call).code, ExitResults) << way[0];
        EXPECT_TRUE(std::filesystem::exists(out + "/results.json")) << way[0];
        std::filesystem::remove_all(out);
    }
}

TEST_F(UsageTest, VariablesAndLevel) {
    EXPECT_TRUE(has(refused({"--censor", "status"}), "--time is missing"));
    EXPECT_TRUE(has(refused({"--time", "weeks,status,sex", "--censor", "4"}),
                    "--time names 3 variables; it takes one"));
    EXPECT_TRUE(has(refused({"--time", "weeks,weeks", "--censor", "2"}), "'weeks' is given twice"));
    EXPECT_TRUE(has(refused({"--time", "1", "--censor", "weeks"}), "'weeks' is given twice"));
    EXPECT_TRUE(has(refused({"--time", "sex", "--censor", "2"}), "'sex' holds texts"));
    EXPECT_TRUE(has(refused({"--time", "weeks,", "--censor", "2"}), "an entry of the list is empty"));
    for (const char* level : {"95", "-0.1", "high", "nan", "1.0000001", "0,95"})
        EXPECT_TRUE(has(refused({"--level", level}), "--level is a number from 0 to 1")) << level;
}

TEST_F(UsageTest, CodesAreListedWhereOneIsMissingOrMatchesNothing) {
    const std::vector<std::string> base{"--time", "weeks", "--censor", "status"};
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.begin(), base.begin(), base.end());
        return refused(more);
    };
    const std::string codes = "'status' has 0 (1 case), 1 (2 cases), 2 (1 case)";
    EXPECT_TRUE(has(with({}), "--complete and --censored are missing"));
    EXPECT_TRUE(has(with({}), codes));
    EXPECT_TRUE(has(with({"--complete", "1"}), "--censored is missing"));
    EXPECT_TRUE(
        has(with({"--complete", "1", "--censored", "7"}), "--censored 7: no case has this code; " + codes));
    EXPECT_TRUE(has(with({"--complete", "7", "--censored", "-8"}), "--complete 7: no case has this code"));
    EXPECT_TRUE(
        has(with({"--complete", "dead", "--censored", "0"}), "'dead' is neither a number nor a value label"));
    EXPECT_TRUE(has(with({"--complete", "1", "--select", "weeks > 6"}),
                    "'status' has 0 (1 case), 1 (1 case), 2 (1 case)"))
        << "counted after selection";
    EXPECT_TRUE(
        has(refused({"--time", "weeks", "--censor", "sex"}), "'sex' has 1 'f' (2 cases), 2 'm' (2 cases)"));
}

TEST_F(UsageTest, DataThatCannotBeUsedAreNamedByPlace) {
    EXPECT_TRUE(has(usageError({"info", folder / "none.csv"}), "none.csv: there is no such file"));
    EXPECT_TRUE(has(usageError({"info", folder}), folder.string()));
    const std::string bad = file("bad.csv", "a,b\n1,2\n1,2,3\n");
    EXPECT_TRUE(has(usageError({"info", bad}), "bad.csv:3:")) << usageError({"info", bad});
    EXPECT_TRUE(has(usageError({"info", data, "--select", "weeks >"}), "weeks >"));
    EXPECT_TRUE(has(usageError({"info", data, "--select", "weeks > 99"}),
                    "holds for none of the 4 cases; 'weeks' has 5 (1 case), 7 (1 case), 9 (2 cases)\n"));
    EXPECT_TRUE(
        has(usageError({"info", data, "--select", "sex='x'"}), "it has 1 'f' (2 cases), 2 'm' (2 cases)"));
    EXPECT_TRUE(has(usageError({"info", data, "--weight", "sex"}), "--weight: ") &&
                has(usageError({"info", data, "--weight", "sex"}), "'sex' holds texts"));
    EXPECT_TRUE(has(usageError({"info", data, "--missing", "weeks"}), "--missing is VARIABLE=CODE"));
    EXPECT_TRUE(has(usageError({"info", data, "--missing", "weks=9"}), "did you mean 'weeks'"));
    EXPECT_TRUE(
        has(usageError({"info", data, "--missing", "sex=x"}), "neither a number nor a value label of 'sex'"));
    // What the message says to write does what was meant.
    EXPECT_TRUE(has(usageError({"info", data, "--missing", "1=9", "--missing", "weeks=7"}),
                    "--define \"weeks_2 = if(weeks = 7, 9, weeks)\" --missing \"weeks_2=9\"\n"));
    EXPECT_TRUE(has(
        run({"info", data, "--define", "weeks_2 = if(weeks = 7, 9, weeks)", "--missing", "weeks_2=9"}).out,
        "weeks_2  number      1        3"));
    EXPECT_TRUE(has(usageError({"info", data, "--separator", "word"}), "comma, semicolon, tab, pipe"));
    EXPECT_TRUE(has(usageError({"info", data, "--header", "--no-header"}), "contradict"));
}

TEST_F(UsageTest, AVariableThatIsNotThereComesWithWhatTheLayoutMakesOfIt) {
    const std::string tilde = file("tilde.csv", "time~s\n1~1\n2~0\n");
    const std::string first = file("first.csv", "time,s,7\n1,1,2\n2,0,2\n");
    for (const std::vector<std::string>& options : std::vector<std::vector<std::string>>{
             {"--time", "time", "--censor", "s"}, {"--select", "time > 1"}, {"--weight", "time"}}) {
        const auto error = [&](const std::string& path) {
            std::vector<std::string> call{"kaplan-meier", path};
            call.insert(call.end(), options.begin(), options.end());
            return usageError(call);
        };
        EXPECT_TRUE(has(error(tilde), "there is no variable 'time'") && has(error(tilde), "--separator '~'"))
            << error(tilde);
        EXPECT_TRUE(has(error(first), "(--header)")) << error(first);
    }
    const std::string wrong =
        usageError({"kaplan-meier", data, "--separator", ";", "--time", "weeks", "--censor", "s"});
    EXPECT_TRUE(has(wrong, "the only one is 'weeks,status,sex,start'") && has(wrong, "--separator ','"))
        << wrong;
}

TEST_F(UsageTest, TimesThatAreTextsAreToldWithTheCellThatMakesThemSo) {
    const std::string typo = file("typo.csv", "t,s\n1,1\n2,0\n3l,1\n4,1\n");
    const std::string error = usageError({"kaplan-meier", typo, "--time", "t", "--censor", "s"});
    EXPECT_TRUE(has(error, "'t' holds texts")) << error;
    EXPECT_TRUE(has(error, "typo.csv: variable 't': 1 of 4 cells is not a number (first: '3l', line 4)"))
        << error;
}

/// --verbose adds to standard error alone, and tells what was read and made.
TEST_F(UsageTest, VerboseTellsWhatIsReadAndDone) {
    const std::vector<std::string> call{"kaplan-meier", data,         "--time",   "weeks",        "--censor",
                                        "status",       "--complete", "1",        "--censored",   "0",
                                        "--format",     "json",       "--define", "m = weeks / 4"};
    std::vector<std::string> verbose = call;
    verbose.emplace_back("--verbose");
    const Outcome told = run(verbose);
    EXPECT_EQ(told.code, ExitResults);
    EXPECT_EQ(told.out, run(call).out);
    for (const char* part : {"Read ", "4 cases, 5 variables (3 of numbers, 1 of texts, 1 of dates)",
                             "Layout: 4 columns separated by ',', a line of names", "Computed: m = weeks / 4",
                             "Made Summary", "Done"})
        EXPECT_TRUE(has(told.err, part)) << part << told.err;
    EXPECT_FALSE(has(run(call).err, "Made Summary"));
}

/// Files of anybody's are found before anything is computed, and stay.
TEST_F(UsageTest, NobodyElsesFileIsReplaced) {
    std::filesystem::create_directory(folder / "theirs");
    const std::string theirs = file("theirs/report.txt", "theirs");
    const std::string error = refused({"--time", "unknown", "-o", folder / "theirs"});
    EXPECT_TRUE(has(error, "'" + theirs + "' is there already and was not written by an earlier run"))
        << error;
    EXPECT_EQ(read(theirs), "theirs");
}

TEST_F(UsageTest, NamesAndCellsOfAnyLengthAreShownBriefly) {
    const std::string name(70'000, 'n');
    const std::string cell = "a\nb" + std::string(70'000, 'x');
    const std::string odd =
        file("odd.csv", "t,s," + name + "\n1,1,\"" + cell + "\"\n2,0,\"c\nd\"\n3,1,e\n4,1,e\n");
    for (const auto& call : std::vector<std::vector<std::string>>{
             {"info"},
             {"info", "--select", "`" + name + "` = 'q'"},
             {"kaplan-meier", "--time", "3", "--censor", "2"},
             {"kaplan-meier", "--time", "1", "--censor", "3"},
             {"kaplan-meier", "--time", "1", "--censor", "3", "--complete", "3", "--censored", "3"},
             {"kaplan-meier", "--time", "1", "--censor", "3", "--complete", "1", "--censored", "2"}}) {
        std::vector<std::string> arguments = call;
        arguments.insert(arguments.begin() + 1, odd);
        const Outcome outcome = run(arguments);
        std::istringstream lines(outcome.err + (outcome.code == 0 && call[0] != "info" ? "" : outcome.out));
        for (std::string line; std::getline(lines, line);)
            EXPECT_LE(line.size(), 700U) << line;
    }
    // A label is given as it is shown.
    for (const char* given : {"c\nd", "c\\nd"})
        EXPECT_EQ(
            run({"kaplan-meier", odd, "--time", "1", "--censor", "3", "--complete", "e", "--censored", given})
                .code,
            ExitResults)
            << given;
}

TEST_F(UsageTest, NothingFromAFileReachesTheTerminalRaw) {
    const std::string evil = file("evil.csv", "t,\x1b[31mstatus\n1,2\n3,4\n");
    const Outcome outcome = run({"kaplan-meier", evil, "--time", "t", "--censor", "2"});
    EXPECT_EQ(outcome.code, ExitUsage);
    EXPECT_FALSE(has(outcome.err + run({"info", evil}).out, "\x1b"));
}

TEST_F(UsageTest, AModuleThatIsNotThereIsNamed) {
    setenv("KORVANA_MODULE", "/nowhere/module.so", 1);
    const std::string error = usageError({"typelib"});
    unsetenv("KORVANA_MODULE");
    EXPECT_TRUE(has(error, "/nowhere/module.so: not there")) << error;
    const Outcome found = run({"typelib"});
    EXPECT_EQ(found.code, ExitResults) << found.err;
    EXPECT_TRUE(has(found.out, "interface SurKaplanMeierResults : OzmAnalysisDialog"));
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
