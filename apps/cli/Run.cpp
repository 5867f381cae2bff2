#include "apps/cli/Run.h"

#include "apps/cli/Arguments.h"
#include "apps/cli/CommandApp.h"
#include "apps/cli/UsageError.h"
#include "apps/cli/commands/Commands.h"
#include "host/data/DataError.h"
#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <new>
#include <system_error>
#include <utility>

namespace korvana::cli {
namespace {

void overview(std::ostream& out) {
    out << "Usage: korvana COMMAND ...\n\nCommands:\n";
    for (const CommandEntry& entry : commands())
        out << "  " << std::left << std::setw(16) << entry.name << entry.summary << '\n';
    out << "\nOptions:\n"
           "  -h, --help      this text; 'korvana COMMAND --help' for the options of a command\n"
           "  --version       the version\n"
           "\nExit codes: 0 results; 1 the analysis refused the data; 2 wrong usage,\n"
           "data that cannot be read, results that cannot be written, or too little memory;\n"
           "130 stopped by Ctrl-C, 143 and 129 by SIGTERM and SIGHUP.\n";
}

const CommandEntry& find(const std::string& name) {
    std::vector<std::string_view> names;
    if (trimmed(name).empty())
        throw UsageError(
            "the command is empty (a variable of the shell may be without a value); 'korvana --help' "
            "lists the commands");
    for (const CommandEntry& entry : commands()) {
        if (name == entry.name) return entry;
        names.emplace_back(entry.name);
    }
    std::error_code ignored;
    if (name.starts_with('-'))
        throw UsageError("the command comes first, then its options: korvana COMMAND " + name +
                         " ...; 'korvana --help' lists the commands");
    if (std::filesystem::exists(name, ignored))
        throw UsageError("the command comes first, then the data file: 'korvana info " + name +
                         "' shows what is in it; 'korvana --help' lists the commands");
    throw UsageError("there is no command '" + name + "'" + didYouMean(nearestOf(name, names, 3)) +
                     "; 'korvana --help' lists them");
}

/// Any other error of the options library is a fault of the declarations; its text is shown unchanged.
int runCommand(const CommandEntry& entry, const std::vector<std::string>& given, Console& console) {
    const CommandApp made = makeApp(entry);
    if (made.command->takeAsGiven(given)) return made.command->run(console);
    Arguments arguments = readArguments(*made.app, given);
    if (arguments.help) {
        console.out << made.app->help();
        return ExitResults;
    }
    std::reverse(arguments.uniform.begin(), arguments.uniform.end());
    try {
        made.app->parse(std::move(arguments.uniform));
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what(), true);
    }
    return made.command->run(console);
}

int dispatch(const std::vector<std::string>& arguments, Console& console) {
    if (arguments.empty()) {
        overview(console.err);
        return ExitUsage;
    }
    const std::string& first = arguments.front();
    if (first == "--version") {
        console.out << "korvana " KORVANA_VERSION "\n";
        return ExitResults;
    }
    if (first == "--help" || first == "-h" || (first == "help" && arguments.size() == 1)) {
        overview(console.out);
        return ExitResults;
    }
    if (first == "help") return runCommand(find(arguments[1]), {"--help"}, console);
    return runCommand(find(first), {arguments.begin() + 1, arguments.end()}, console);
}

} // namespace

int run(const std::vector<std::string>& arguments, Console& console) {
    try {
        const int code = dispatch(arguments, console);
        console.out.flush();
        if (code == ExitResults && !console.out)
            throw std::runtime_error("standard output cannot be written");
        return code;
    } catch (const UsageError& error) {
        console.say(error.what());
        if (error.seeHelp()) console.err << "Options: korvana " << arguments.front() << " --help\n";
    } catch (const std::bad_alloc&) {
        console.say("not enough memory");
    } catch (const std::exception& error) {
        console.say(error.what());
    }
    return ExitUsage;
}

} // namespace korvana::cli
