#include "apps/cli/OutputOptions.h"

#include "apps/cli/UsageError.h"
#include "host/data/TextEncoding.h"
#include "host/results/JsonWriter.h"
#include "host/results/OutputFile.h"
#include "host/results/RecordedScript.h"
#include "host/results/ResultsFolder.h"
#include "host/results/TextWriter.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace korvana::cli {
namespace {

constexpr const char* formatsOfDirectory = "txt,json,csv,html,svg,png,py";

FormatSet only(OutputFormat format) {
    return FormatSet{}.add(format);
}

} // namespace

void OutputOptions::declare(CLI::App& app) {
    const std::string group = "Output";
    app.add_option("-o,--output", directory_,
                   "write files into this directory; without it the report goes to standard output")
        ->type_name("DIR")
        ->group(group);
    app.add_option("--format", format_,
                   "the files to write: " + knownFormats() + " [" + formatsOfDirectory +
                       "]; without -o either txt or json")
        ->type_name("F[,F...]")
        ->group(group);
    app.add_option("--record", record_,
                   "write a Python script that makes these results again; 'korvana run FILE.py' runs it")
        ->type_name("FILE.py")
        ->group(group);
    app.add_flag("-q,--quiet", quiet_, "no progress, no notes and no list of files on standard error")
        ->group(group);
}

void OutputOptions::check(const std::string& dataFile) {
    try {
        if (!record_.empty()) checkScriptFile(record_, dataFile);
    } catch (const std::runtime_error& error) {
        throw UsageError(std::string("--record: ") + error.what());
    }
    try {
        formats_ = parseFormats(!format_.empty() ? format_ : toFiles() ? formatsOfDirectory : "txt");
    } catch (const std::invalid_argument& error) {
        throw UsageError(std::string{"--format: "} + error.what());
    }
    if (!toFiles() && formats_ != only(OutputFormat::Txt) && formats_ != only(OutputFormat::Json))
        throw UsageError("--format " + format_ + " needs -o DIR; standard output takes either txt or json");
    if (!toFiles()) return;
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_type type = fs::symlink_status(directory_, error).type();
    if (type == fs::file_type::none) // a missing one is no error here
        throw UsageError("--output: '" + directory_ + "' cannot be used: " + error.message() +
                         "; name another folder");
    std::error_code unknown;
    if (type != fs::file_type::not_found && !fs::is_directory(directory_, unknown))
        throw UsageError("--output: '" + directory_ + "' is there and no folder; name another one");
    refuseToReplaceOthers(directory_, certainFileNames(formats_));
}

void OutputOptions::checkWithoutChart(const std::string& outputs) const {
    for (const OutputFormat other : {OutputFormat::Json, OutputFormat::Txt, OutputFormat::Csv,
                                     OutputFormat::Html, OutputFormat::Xlsx, OutputFormat::Py})
        if (formats_.has(other)) return;
    throw UsageError("--format " + format_ + " is for charts, and --outputs " + outputs +
                     " makes none; choose another --format or other --outputs");
}

void OutputOptions::record(const ResultsBook& book, const std::shared_ptr<const RunOrigin>& run,
                           Console& console) const {
    if (record_.empty()) return;
    writeFile(record_, recordedScript(book, {}, run));
    if (!quiet_) console.err << "wrote " << withEscapes(record_) << '\n';
}

int OutputOptions::write(const ResultsBook& book, Console& console) const {
    const bool textOut = !toFiles() && formats_.has(OutputFormat::Txt);
    // Even though the report shows them: it may be redirected to a file.
    if (!quiet_)
        for (const std::string& note : book.notes)
            console.say("note: " + note);
    if (textOut) {
        writeText(book, console.out, {.messages = false, .iterations = false});
        return ExitResults;
    }
    if (!toFiles()) {
        writeJson(book, console.out);
        return ExitResults;
    }
    std::vector<std::string> problems;
    try {
        for (const auto& file : writeBook(book, directory_, formats_, &problems))
            if (!quiet_) console.err << "wrote " << withEscapes(file.string()) << '\n';
    } catch (const NothingToWrite& error) {
        throw UsageError(std::string{error.what()} + "; choose another --format or other --outputs");
    }
    for (const std::string& problem : problems)
        console.say(problem);
    return problems.empty() ? ExitResults : ExitUsage;
}

} // namespace korvana::cli
