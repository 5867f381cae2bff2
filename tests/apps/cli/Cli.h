#pragma once
// Runs commands in this process, with their streams caught and a folder of their own.

#include "apps/cli/Run.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace korvana::cli {

struct Outcome {
    int code = -1;
    std::string out;
    std::string err;
};

struct CliTest : ::testing::Test {
    CliTest() { std::filesystem::create_directory(folder); }
    ~CliTest() override { std::filesystem::remove_all(folder); }

    Outcome run(const std::vector<std::string>& arguments) {
        std::ostringstream out;
        std::ostringstream err;
        Console console{out, err, terminal};
        const int code = cli::run(arguments, console);
        return {code, out.str(), err.str()};
    }

    /// Writes a data file into the folder and answers its path.
    std::string file(const std::string& name, const std::string& text) const {
        std::ofstream(folder / name, std::ios::binary) << text;
        return folder / name;
    }
    static std::string read(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>{in}, {}};
    }
    static std::string example(const std::string& name) {
        return std::string{KORVANA_SOURCE_DIR} + "/examples/data/" + name;
    }

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("korvana-cli-" + std::to_string(getpid()));
    bool terminal = false;
};

inline bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

} // namespace korvana::cli
