// Whole runs of the command line: the first line of the input is the arguments, separated by tabs, the rest
// is the data file. DATA stands for its path. Every run ends with a documented exit code and says why; its
// files are complete and agree in every format.

#include "apps/cli/Run.h"
#include "host/data/TextEncoding.h"
#include "host/session/ModuleLibrary.h"
#include "tests/fuzz/Scratch.h"
#include "tests/support/CsvGrid.h"

#include <cstdint>
#include <dlfcn.h>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

namespace korvana::fuzz {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using test::CsvGrid;

constexpr std::size_t longestArguments = 2000;

/// The words of a line. None leads out of the folder of the run.
std::vector<std::string> argumentsOf(std::string_view line) {
    std::vector<std::string> words;
    std::string word;
    for (const char c : line) {
        if (c == '\t') {
            words.push_back(std::move(word));
            word.clear();
        } else if (c != '\0') {
            word += c == '/' && word.find_first_not_of("./") == std::string::npos ? '_' : c;
        }
    }
    words.push_back(std::move(word));
    for (std::string& each : words) {
        if (each == "DATA") each = "data.csv";
        const bool outside = each.find("/") != std::string::npos || each.find("..") != std::string::npos;
        const bool path = each.find("=") == std::string::npos || each.starts_with("-");
        if (outside && path) each = "outside";
    }
    return words;
}

std::string read(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>{in}, {}};
}

bool isPlain(std::string_view text) {
    for (const char c : text)
        if (static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t') return false;
    return isUtf8(text);
}

/// Whether a table of results.json holds the cells of a CSV file. Texts are not compared: line breaks in them
/// are written differently.
bool sameCells(const Json& sheet, const CsvGrid& grid) {
    const Json& rows = sheet.at("rows");
    if (rows.size() + 1 != grid.size()) return false;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const Json& cells = rows[r].at("cells");
        const std::vector<std::string>& fields = grid[r + 1];
        if (fields.size() < cells.size()) return false;
        const std::size_t heading = fields.size() - cells.size();
        for (std::size_t c = 0; c < cells.size(); ++c) {
            const std::string& field = fields[heading + c];
            if (cells[c].is_null() != field.empty() && !cells[c].is_string()) return false;
            if (cells[c].is_number() && std::strtod(field.c_str(), nullptr) != cells[c].get<double>())
                return false;
        }
    }
    return true;
}

void checkFiles(const fs::path& folder, const std::string& call) {
    Json results;
    std::vector<CsvGrid> grids;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file() || entry.path().filename() == "data.csv") continue;
        const std::string ending = entry.path().extension();
        require(entry.path().filename().string().find(".part") == std::string::npos,
                "nothing half-made stays", entry.path().string());
        require(entry.file_size() > 0, "a file is not empty", entry.path().string());
        if (ending == ".json") results = Json::parse(read(entry.path()), nullptr, false);
        if (ending == ".csv") grids.push_back(test::readCsvGrid(read(entry.path())));
    }
    require(!results.is_discarded(), "results.json is JSON", call);
    if (results.is_null()) return;
    for (const CsvGrid& grid : grids) {
        bool found = false;
        for (const Json& sheet : results.at("spreadsheets"))
            found = found || sameCells(sheet, grid);
        require(found, "a CSV file holds a table of results.json", call);
    }
}

} // namespace
} // namespace korvana::fuzz

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    // Unloading the module would lose the fuzzer's counters of it.
    for (const auto& module : korvana::findModules())
        if (dlopen(module.c_str(), RTLD_NOW | RTLD_NODELETE) == nullptr) return 1;
    std::filesystem::current_path(korvana::fuzz::scratch().folder());
    return std::freopen("/dev/null", "r", stdin) == nullptr ? 1 : 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace korvana;
    using namespace korvana::fuzz;
    const std::string_view input(reinterpret_cast<const char*>(bytes), size);
    const std::string_view line = input.substr(0, std::min(input.find('\n'), longestArguments));
    const std::string call(line);
    scratch().clear();
    scratch().write("data.csv", input.substr(std::min(line.size() + 1, size)));

    std::ostringstream out;
    std::ostringstream err;
    cli::Console console{out, err, false};
    const int exit = cli::run(argumentsOf(line), console);
    require(exit >= 0 && exit <= 2, "the exit code is one of the manual's", call);
    require(exit == 0 || !err.str().empty(), "who refuses says why", call);
    require(isPlain(err.str()), "standard error is plain UTF-8", err.str());
    require(isPlain(out.str()), "standard output is plain UTF-8", out.str());
    if (out.str().starts_with('{')) require(Json::accept(out.str()), "JSON on standard output is JSON", call);
    checkFiles(scratch().folder(), call);
    return 0;
}
