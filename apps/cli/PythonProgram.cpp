#include "apps/cli/PythonProgram.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace korvana::cli {
namespace {

namespace fs = std::filesystem;

/// A variable of the environment that is set and not empty.
std::optional<std::string> environment(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody sets it meanwhile
    if (value == nullptr || *value == '\0') return std::nullopt;
    return value;
}

std::string interpreter() {
    if (const auto named = environment("KORVANA_PYTHON")) return *named;
    if (const auto active = environment("VIRTUAL_ENV"))
        return (fs::path(*active) / "bin" / "python3").string();
    std::error_code ignored;
    return fs::exists(KORVANA_PYTHON, ignored) ? KORVANA_PYTHON : "python3";
}

/// Where the package is: of a build, or installed.
std::optional<fs::path> packageFolder() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    for (const char* const place : {"../python", "../lib/korvana/python"}) {
        fs::path folder = (program.parent_path() / place).lexically_normal();
        if (fs::exists(folder / "korvana" / "__init__.py", error)) return folder;
    }
    return std::nullopt;
}

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> list;
    for (std::string& word : words)
        list.push_back(word.data());
    list.push_back(nullptr);
    return list;
}

[[noreturn]] void throwNoPython(const std::string& python, int error) {
    throw std::runtime_error("scripts need Python 3, and '" + python +
                             "' cannot be started: " + std::strerror(error) +
                             "; install python3, or name it by the environment variable KORVANA_PYTHON");
}

/// Whether the interpreter has a package of its own, installed by pip.
bool hasPackage(const std::string& python) {
    std::vector<std::string> words{
        python, "-c", "import importlib.util, sys; sys.exit(importlib.util.find_spec('korvana') is None)"};
    pid_t child = 0;
    if (const int error =
            ::posix_spawnp(&child, python.c_str(), nullptr, nullptr, pointers(words).data(), ::environ);
        error != 0)
        throwNoPython(python, error);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {}
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

void becomePython(const std::vector<std::string>& arguments) {
    const std::string python = interpreter();
    if (const auto folder = packageFolder()) {
        const auto others = environment("PYTHONPATH");
        const std::string path = folder->string() + (others ? ":" + *others : "");
        ::setenv("PYTHONPATH", path.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    } else if (!hasPackage(python)) {
        throw std::runtime_error("the Python package korvana is missing: it is neither beside this program "
                                 "nor installed for '" +
                                 python + "'; 'pip install' it from the sources, or build with it");
    }
    std::vector<std::string> words{python};
    words.insert(words.end(), arguments.begin(), arguments.end());
    ::execvp(python.c_str(), pointers(words).data());
    throwNoPython(python, errno);
}

} // namespace korvana::cli
