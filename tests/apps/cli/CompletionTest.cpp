#include "apps/cli/CommandApp.h"
#include "tests/apps/cli/Cli.h"

#include <array>
#include <cstdio>

namespace korvana::cli {
namespace {

/// The output of a shell command.
std::string printed(const std::string& command) {
    std::string text;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return "no shell";
    std::array<char, 4096> room{};
    for (std::size_t n = 0; (n = fread(room.data(), 1, room.size(), pipe)) > 0;)
        text.append(room.data(), n);
    pclose(pipe);
    return text;
}

struct CompletionTest : CliTest {
    CompletionTest() { std::filesystem::create_symlink(program, folder / "korvana"); }

    std::string script(const std::string& shell) { return file(shell, succeed("completion " + shell).out); }
    /// The command with the program in the path.
    [[nodiscard]] std::string here(const std::string& command) const {
        return printed("PATH=" + folder.string() + ":$PATH && " + command);
    }
    /// What bash offers for the last of these words, one per line.
    std::string offered(const std::vector<std::string>& words) {
        std::string call = ". ./bash; COMP_WORDS=(";
        for (const std::string& word : words)
            call += " '" + word + "'";
        call += "); COMP_CWORD=" + std::to_string(words.size() - 1) +
                "; _korvana; printf '%s\n' \"${COMPREPLY[@]}\"";
        return here("bash -c \"$(cat " + file("call", call) + ")\"");
    }
    static bool there(const std::string& shell) { return has(printed("command -v " + shell), "/" + shell); }

    const std::filesystem::path program =
        std::filesystem::read_symlink("/proc/self/exe").parent_path() / "korvana";
    const std::string data =
        file("trial.csv", "time,arm,\"white cells\",$(touch evil),`touch evil`\n1,2,3,4,5\n");
};

TEST_F(CompletionTest, EveryOptionStandsInEveryScriptAndInTheManual) {
    for (const char* what : {"bash", "zsh", "fish", "manual"}) {
        const std::string text = run(std::string{"completion "} + what).out;
        for (const CommandApp& command : makeApps()) {
            EXPECT_TRUE(has(text, command.name) || has(text, "kaplan\\-meier")) << what << command.name;
            for (const CLI::Option* option : command.app->get_options()) {
                if (option->get_positional() || option->get_lnames().front() == "help") continue;
                std::string name = option->get_lnames().front();
                if (what == std::string{"manual"})
                    for (std::size_t at = 0; (at = name.find('-', at)) != std::string::npos; at += 2)
                        name.insert(at, "\\");
                EXPECT_TRUE(has(text, name)) << what << ": " << name;
            }
        }
    }
}

/// Each fixed value offered for an option passes the option's own check.
TEST_F(CompletionTest, FixedValuesAreThoseThatTheOptionsTake) {
    int tried = 0;
    for (const CommandApp& command : makeApps()) {
        for (const CLI::Option* option : command.app->get_options()) {
            if (option->get_positional()) continue;
            const std::string name = "--" + option->get_lnames().front();
            for (const std::string& value : valuesOf(command, *option).choices) {
                const std::string err = runWords({command.name, data, name, value, "-o", "o"}).err;
                EXPECT_FALSE(has(err, name + " is ") || has(err, name + ":")) << name << " " << value << err;
                ++tried;
            }
        }
    }
    EXPECT_GT(tried, 20);
}

TEST_F(CompletionTest, BashOffersWhatFits) {
    script("bash");
    EXPECT_EQ(offered({"korvana", "kap"}), "kaplan-meier\n");
    EXPECT_EQ(offered({"korvana", "info", "--sel"}), "--select\n");
    EXPECT_EQ(offered({"korvana", "kaplan-meier", "trial.csv", "--time", "t"}), "time\n");
    EXPECT_EQ(offered({"korvana", "kaplan-meier", "trial.csv", "--time", "time,a"}), "time,arm\n");
    EXPECT_EQ(offered({"korvana", "kaplan-meier", "trial.csv", "--weight", "wh"}), "white\\ cells\n");
    EXPECT_EQ(offered({"korvana", "kaplan-meier", "--format", "=", "js"}), "json\n");
    EXPECT_EQ(offered({"korvana", "kaplan-meier", "--outputs", "summary,perc"}), "summary,percentiles\n");
    EXPECT_EQ(offered({"korvana", "info", "tri"}), "trial.csv\n");
    EXPECT_EQ(offered({"korvana", "cox-time", "trial.csv", "--expressions", "tri"}), "trial.csv\n");
    EXPECT_TRUE(has(offered({"korvana", "info", "trial.csv", "--weight", ""}), "touch"));
    EXPECT_FALSE(std::filesystem::exists(folder / "evil")) << "names out of a file were executed";
}

TEST_F(CompletionTest, ZshTakesTheScript) {
    if (!there("zsh")) GTEST_SKIP() << "zsh is not installed";
    EXPECT_EQ(here("zsh -n " + script("zsh")), "");
    EXPECT_EQ(here("zsh -fc 'autoload -U compinit && compinit -D && . ./zsh && print $_comps[korvana]'"),
              "_korvana\n");
}

TEST_F(CompletionTest, FishOffersWhatFits) {
    if (!there("fish")) GTEST_SKIP() << "fish is not installed";
    script("fish");
    const auto asked = [&](const std::string& line) {
        return here("HOME=" + folder.string() + " fish -c 'source fish; complete -C \"" + line + "\"'");
    };
    EXPECT_TRUE(has(asked("korvana kap"), "kaplan-meier\tProduct-limit"));
    EXPECT_TRUE(has(asked("korvana info --sel"), "--select\t"));
    EXPECT_TRUE(has(asked("korvana kaplan-meier trial.csv --time time,a"), "time,arm"));
    EXPECT_TRUE(has(asked("korvana kaplan-meier --format js"), "json"));
    EXPECT_FALSE(std::filesystem::exists(folder / "evil")) << "names out of a file were executed";
}

TEST_F(CompletionTest, TheManualPageIsWellFormed) {
    if (!there("groff") && !there("mandoc")) GTEST_SKIP() << "neither groff nor mandoc is installed";
    const std::string page = script("manual");
    if (there("groff")) {
        EXPECT_EQ(here("groff -man -ww -Tutf8 -z " + page), "");
    }
    if (there("mandoc")) {
        EXPECT_EQ(here("mandoc -Tlint -W warning " + page + " | grep -v 'missing date'"), "");
    }
}

TEST_F(CompletionTest, VariablesComeFromTheBeginningOfAFile) {
    std::string big = "first,second\n";
    for (int i = 0; i < 50'000; ++i)
        big += std::to_string(i) + ",2\n";
    EXPECT_EQ(run("completion variables " + file("big.csv", big + "broken\n")).out, "first\nsecond\n");
    EXPECT_EQ(run("completion variables none.csv").out, "");
}

} // namespace
} // namespace korvana::cli
