#include "apps/cli/Run.h"

#include "apps/cli/Command.h"
#include "apps/cli/Help.h"
#include "apps/cli/Lists.h"
#include "apps/cli/UsageError.h"
#include "apps/cli/commands/Commands.h"
#include "host/data/DataError.h"
#include "host/data/NameMatch.h"

#include <iomanip>
#include <new>

namespace korvana::cli {
namespace {

void overview(std::ostream& out) {
    out << "Usage: korvana COMMAND ...\n\nCommands:\n";
    for (const CommandEntry& entry : commands())
        out << "  " << std::left << std::setw(16) << entry.name << entry.summary << '\n';
    out << "\nOptions:\n"
           "  -h, --help      this text; 'korvana COMMAND --help' for the options of a command\n"
           "  --version       the version\n"
           "\nExit codes: 0 results; 1 the analysis refused the data; 2 wrong usage, data that cannot be\n"
           "read or results that cannot be written; 130 stopped by Ctrl-C,\n"
           "143 and 129 by SIGTERM and SIGHUP.\n";
}

const CommandEntry& find(const std::string& name) {
    std::vector<std::string_view> names;
    for (const CommandEntry& entry : commands()) {
        if (name == entry.name) return entry;
        names.emplace_back(entry.name);
    }
    throw UsageError("there is no command '" + name + "'" + didYouMean(nearestOf(name, names, 3)) +
                     "; 'korvana --help' lists them");
}

void refuseUnknown(const CLI::App& app) {
    for (const std::string& rest : app.remaining()) {
        if (!rest.starts_with("-"))
            throw UsageError("'" + rest +
                             "' is one argument too many; several names are separated by commas "
                             "without blanks");
        std::vector<std::string> names;
        for (const CLI::Option* option : app.get_options())
            for (const std::string& name : option->get_lnames())
                names.push_back("--" + name);
        const std::string asked = rest.substr(0, rest.find('='));
        throw UsageError("there is no option " + asked +
                             didYouMean(nearestOf(asked, {names.begin(), names.end()}, 1)),
                         true);
    }
}

int runCommand(const CommandEntry& entry, const std::vector<std::string>& arguments, Console& console) {
    CLI::App app(entry.summary, std::string{"korvana "} + entry.name);
    app.formatter(std::make_shared<HelpFormatter>());
    app.set_help_flag("-h,--help", "this text")->group("Other");
    // Unknown options are looked at here, where the nearest known ones can be named.
    app.allow_extras();
    const auto command = entry.make();
    command->declare(app);
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend() - 1));
    } catch (const CLI::CallForHelp&) {
        console.out << app.help();
        return ExitResults;
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what(), true);
    }
    refuseUnknown(app);
    return command->run(console);
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
    if (first == "help") return runCommand(find(arguments[1]), {arguments[1], "--help"}, console);
    return runCommand(find(first), arguments, console);
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
