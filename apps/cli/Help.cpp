#include "apps/cli/Help.h"

#include <sstream>

namespace korvana::cli {
namespace {

constexpr std::size_t nameWidth = 24;
constexpr std::size_t textWidth = 54;

std::string wrapped(const std::string& text) {
    std::istringstream words(text);
    std::string lines;
    std::size_t length = 0;
    for (std::string word; words >> word; length += word.size()) {
        if (length > 0 && length + 1 + word.size() > textWidth) {
            lines += '\n';
            length = 0;
        } else if (length > 0) {
            lines += ' ';
            ++length;
        }
        lines += word;
    }
    return lines;
}

} // namespace

HelpFormatter::HelpFormatter() {
    column_width(nameWidth);
}

std::string HelpFormatter::make_usage(const CLI::App* app, std::string name) const {
    for (const CLI::Option* option :
         app->get_options([](const CLI::Option* o) { return o->get_positional(); }))
        name += " " + option->get_name(true);
    return "\nUsage: " + name + " [OPTIONS]\n";
}

std::string HelpFormatter::make_option_desc(const CLI::Option* option) const {
    return wrapped(option->get_description());
}

std::string HelpFormatter::make_group(std::string group, bool isPositional,
                                      std::vector<const CLI::Option*> options) const {
    if (isPositional) group = options.front()->get_name(true) == "DATA" ? "Data file" : "Arguments";
    std::string text = "\n" + group + ":\n";
    for (const CLI::Option* option : options)
        text += make_option(option, isPositional);
    return text;
}

} // namespace korvana::cli
