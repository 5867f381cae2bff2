#include "apps/cli/CommandApp.h"

#include "apps/cli/Help.h"
#include "apps/cli/Lists.h"
#include "apps/cli/commands/Commands.h"
#include "host/results/WriteBook.h"

namespace korvana::cli {
namespace {

/// Choices of options that are the same in all commands.
std::vector<std::string> commonChoices(const std::string& option) {
    if (option == "format") return splitList("--format", knownFormats());
    if (option == "separator") return {"comma", "semicolon", "tab", "pipe"};
    if (option == "decimal") return {"point", "comma"};
    if (option == "dates") return {"dmy", "mdy", "ymd"};
    return {};
}

} // namespace

CommandApp makeApp(const CommandEntry& entry) {
    CommandApp made{entry.name, entry.summary, entry.make(),
                    std::make_unique<CLI::App>(entry.summary, std::string{"korvana "} + entry.name)};
    made.app->formatter(std::make_shared<HelpFormatter>());
    made.app->set_help_flag("-h,--help", "this text")->group("Other");
    made.command->declare(*made.app);
    return made;
}

std::vector<CommandApp> makeApps() {
    std::vector<CommandApp> all;
    for (const CommandEntry& entry : commands())
        all.push_back(makeApp(entry));
    return all;
}

Values valuesOf(const CommandApp& command, const CLI::Option& option) {
    Values values;
    if (option.get_items_expected_max() == 0) return values;
    const std::string& name = option.get_positional() ? option.get_name(true) : option.get_lnames().front();
    const std::string type = option.get_type_name();
    values.list = type.find(',') != std::string::npos;
    values.choices = command.command->choices(name);
    if (values.choices.empty()) values.choices = commonChoices(name);
    values.kind = !values.choices.empty()                                          ? Values::Kind::Choice
                  : name == "DATA" || name == "SCRIPT" || type.starts_with("FILE") ? Values::Kind::File
                  : type == "DIR"                                                  ? Values::Kind::Folder
                  : type == "V" || type.starts_with("V[") || type.starts_with("V,") || type == "V=CODE" ||
                          type.starts_with("V=X")
                      ? Values::Kind::Variable
                      : Values::Kind::Any;
    return values;
}

std::string shortHelp(const CLI::Option& option) {
    const std::string& text = option.get_description();
    return text.substr(0, text.find_first_of(":;["));
}

} // namespace korvana::cli
