#include "apps/cli/EmbeddedCall.h"

#include "apps/cli/CommandApp.h"
#include "apps/cli/UsageError.h"
#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/SurvivalModule.h"
#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"

#include <algorithm>
#include <memory>
#include <set>
#include <utility>

namespace korvana::cli {
namespace {

/// A command with the options for programs declared.
struct Made {
    CommandApp app;
    AnalysisCommand* analysis = nullptr; ///< nullptr: it runs none
};

Made make(const CommandEntry& entry) {
    Made made{{entry.name, entry.summary, entry.make(), std::make_unique<CLI::App>()}, nullptr};
    made.analysis = dynamic_cast<AnalysisCommand*>(made.app.command.get());
    made.app.app->set_help_flag();
    if (made.analysis != nullptr) made.analysis->declareForPrograms(*made.app.app);
    return made;
}

bool repeats(const CLI::Option& option) {
    return option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
}

bool isFlag(const CLI::Option& option) {
    return option.get_items_expected_max() == 0;
}

bool isList(const CLI::Option& option) {
    return option.get_type_name().find(',') != std::string::npos;
}

ProgramOption described(const CommandApp& app, const CLI::Option& option) {
    return {option.get_lnames().front(),      isFlag(option) ? std::string{} : option.get_type_name(),
            option.get_description(),         option.get_group(),
            valuesOf(app, option).choices,    isFlag(option),
            isList(option) || repeats(option)};
}

/// An entry of a list, in quotes where it could be taken for several or for one in quotes.
std::string entryOf(const std::string& value) {
    if (value.find(',') == std::string::npos && !value.starts_with('"')) return value;
    std::string entry = "\"";
    for (const char each : value)
        entry.append(each == '"' ? 2 : 1, each);
    return entry + '"';
}

/// The option as words of the command line, in one form.
void addWords(const CLI::Option& option, const GivenOption& given, std::vector<std::string>& words) {
    const std::string name = "--" + given.name;
    if (isFlag(option)) {
        if (!given.values.empty()) throw UsageError(name + " takes no value");
        words.push_back(name);
        return;
    }
    if (given.values.empty()) throw UsageError(name + " needs a value");
    for (const std::string& value : given.values)
        if (trimmed(value).empty() && given.name != "separator")
            throw UsageError(name + " has an empty value: give it one, or leave " + name + " out");
    if (repeats(option)) {
        for (const std::string& value : given.values)
            words.push_back(name + "=" + value);
        return;
    }
    std::string text = given.values.front();
    if (given.values.size() > 1 && !isList(option)) throw UsageError(name + " takes one value, not several");
    if (given.values.size() > 1 || (given.areEntries && isList(option))) {
        text = entryOf(text);
        for (std::size_t i = 1; i < given.values.size(); ++i)
            text += "," + entryOf(given.values[i]);
    }
    words.push_back(name + "=" + text);
}

const CommandEntry& entryOfCommand(const std::string& name) {
    std::vector<std::string_view> names;
    for (const CommandEntry& entry : commands()) {
        if (name == entry.name) return entry;
        names.emplace_back(entry.name);
    }
    throw UsageError("there is no command '" + name + "'" + didYouMean(nearestOf(name, names, 3)));
}

const CLI::Option& optionOf(const CLI::App& app, const std::string& name) {
    std::vector<std::string_view> names;
    for (const CLI::Option* option : app.get_options())
        for (const std::string& each : option->get_lnames()) {
            if (each == name) return *option;
            names.emplace_back(each);
        }
    throw UsageError("there is no option --" + name + didYouMean(nearestOf(name, names, 3)));
}

} // namespace

std::vector<ProgramCommand> programCommands() {
    std::vector<ProgramCommand> all;
    for (const CommandEntry& entry : commands()) {
        const Made made = make(entry);
        if (made.analysis == nullptr) continue;
        ProgramCommand command{entry.name, entry.summary, {}, made.analysis->description().outputs};
        for (const CLI::Option* option : made.app.app->get_options())
            if (!option->get_lnames().empty()) command.options.push_back(described(made.app, *option));
        all.push_back(std::move(command));
    }
    return all;
}

ResultsBook callCommand(const std::string& name, const std::string& file,
                        const std::vector<GivenOption>& options, Embedding embedding) {
    // To load it for each call would take longer than a small analysis.
    static const Analysis keepsTheModule = loadSurvivalModule();
    const Made made = make(entryOfCommand(name));
    if (made.analysis == nullptr) throw UsageError("'" + name + "' runs no analysis");
    std::vector<std::string> words;
    std::set<std::string> seen;
    for (const GivenOption& given : options) {
        if (!seen.insert(given.name).second) throw UsageError("--" + given.name + " is given twice");
        addWords(optionOf(*made.app.app, given.name), given, words);
    }
    if (embedding.data)
        for (const char* const ofFiles : {"separator", "header", "no-header"})
            if (seen.contains(ofFiles))
                throw UsageError(std::string{"--"} + ofFiles + " is for files, and the data are in memory");
    if (!file.empty()) words.insert(words.end(), {"--", file});
    std::reverse(words.begin(), words.end());
    try {
        made.app.app->parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
    return made.analysis->call(std::move(embedding));
}

} // namespace korvana::cli
