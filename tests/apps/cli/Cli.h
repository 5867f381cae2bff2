#pragma once
// Runs commands in this process, with their streams captured, in a folder of their own.

#include "apps/cli/Run.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace korvana::cli {

struct Outcome {
    int code = -1;
    std::string out;
    std::string err;
};

inline bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// The words of a line, between blanks or in double quotes.
inline std::vector<std::string> words(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> all;
    for (std::string word; in >> std::quoted(word);)
        all.push_back(word);
    return all;
}

struct CliTest : ::testing::Test {
    CliTest() {
        std::filesystem::create_directory(folder);
        std::filesystem::current_path(folder);
    }
    ~CliTest() override {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(folder);
    }

    Outcome runWords(const std::vector<std::string>& arguments) const {
        std::ostringstream out;
        std::ostringstream err;
        Console console{out, err, terminal};
        const int code = cli::run(arguments, console);
        return {code, out.str(), err.str()};
    }
    Outcome run(const std::string& line) const { return runWords(words(line)); }
    /// The same, for a call that must succeed.
    Outcome succeed(const std::string& line) const {
        Outcome outcome = run(line);
        EXPECT_EQ(outcome.code, ExitResults) << line << "\n" << outcome.err;
        return outcome;
    }

    /// The error of a call that must end with 2 and print nothing.
    std::string usageError(const std::vector<std::string>& arguments) const {
        const Outcome outcome = runWords(arguments);
        EXPECT_EQ(outcome.code, ExitUsage) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_TRUE(outcome.err.starts_with("korvana: ")) << outcome.err;
        return outcome.err;
    }
    /// Tries arguments after `begin` that must be refused, each with a part of its error.
    void refuses(const std::string& begin,
                 const std::vector<std::pair<std::string, std::string>>& ends) const {
        for (const auto& [end, said] : ends) {
            const std::string error = usageError(words(begin + " " + end));
            EXPECT_TRUE(has(error, said)) << end << "\n" << error;
        }
    }

    /// Writes a file into the folder and returns its name.
    static std::string file(const std::string& name, const std::string& text) {
        std::ofstream(name, std::ios::binary) << text;
        return name;
    }
    static std::string read(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>{in}, {}};
    }
    /// Puts an example into the folder and returns its name.
    static std::string example(const std::string& name) {
        return file(name, read(std::string{KORVANA_SOURCE_DIR} + "/examples/data/" + name));
    }

    const std::filesystem::path before = std::filesystem::current_path();
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("korvana-cli-" + std::to_string(getpid()));
    bool terminal = false;
};

} // namespace korvana::cli
