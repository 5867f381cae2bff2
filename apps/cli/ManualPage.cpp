#include "apps/cli/ManualPage.h"

#include <string>
#include <string_view>

namespace korvana::cli {
namespace {

/// A text in the language of man(7): hyphens are kept as typed, and no line is taken for a request.
std::string manText(std::string_view text) {
    std::string escaped;
    bool begins = true;
    for (const char c : text) {
        if (begins && (c == '.' || c == '\'')) escaped += "\\&";
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else if (c == '"')
            escaped += "\\(dq";
        else
            escaped += c;
        begins = c == '\n';
    }
    return escaped;
}

/// ".TP" and the names of an option: "-o, --output DIR".
std::string heading(const CLI::Option& option) {
    std::string names;
    for (const std::string& name : option.get_snames())
        names.append(names.empty() ? "" : ", ").append("\\fB\\-" + name + "\\fR");
    for (const std::string& name : option.get_lnames())
        names.append(names.empty() ? "" : ", ").append("\\fB\\-\\-" + manText(name) + "\\fR");
    if (option.get_positional()) names = "\\fI" + manText(option.get_name(true)) + "\\fR";
    if (option.get_items_expected_max() > 0 && !option.get_type_name().empty())
        names += " \\fI" + manText(option.get_type_name()) + "\\fR";
    return ".TP\n" + names + "\n";
}

void writeCommand(const CommandApp& command, std::ostream& out) {
    out << ".SS korvana " << manText(command.name) << '\n' << manText(command.summary) << ".\n";
    for (const bool positional : {true, false})
        for (const CLI::Option* option : command.app->get_options(
                 [&](const CLI::Option* o) { return o->get_positional() == positional; }))
            if (positional || option->get_lnames().front() != "help")
                out << heading(*option) << manText(option->get_description()) << '\n';
}

} // namespace

void writeManualPage(const std::vector<CommandApp>& commands, std::ostream& out) {
    out << ".TH KORVANA 1 \"\" \"korvana " KORVANA_VERSION "\" \"User Commands\"\n"
           ".SH NAME\nkorvana \\- survival analysis on the command line\n"
           ".SH SYNOPSIS\n";
    for (const CommandApp& command : commands) {
        out << ".B korvana " << manText(command.name) << '\n';
        for (const CLI::Option* option :
             command.app->get_options([](const CLI::Option* o) { return o->get_positional(); }))
            out << ".RI [ " << manText(option->get_name(true)) << " ]\n";
        out << ".RI [ OPTIONS ]\n.br\n";
    }
    out << ".B korvana \\-\\-version\n"
           ".SH DESCRIPTION\n"
           "Reads a data file, runs one analysis of survival times, and writes its report to standard output "
           "or all\n"
           "of its results to files in a folder. Messages, notes and progress go to standard error.\n"
           ".PP\n"
           "Variables are given by name or by number, codes as value labels or as numbers. The value of an "
           "option\n"
           "stands behind it or behind =. What follows \\fB\\-\\-\\fR is a file, whatever it looks like.\n"
           ".SH COMMANDS\n";
    for (const CommandApp& command : commands)
        writeCommand(command, out);
    out << ".SH EXIT STATUS\n"
           ".TP\n0\nresults\n"
           ".TP\n1\nthe analysis refused the data; standard error has its message\n"
           ".TP\n2\nwrong usage, data that cannot be read, results that cannot be written, or too little "
           "memory\n"
           ".TP\n130\nstopped by Ctrl\\-C; nothing is written\n"
           ".TP\n143, 129\nstopped by SIGTERM or SIGHUP\n"
           ".SH ENVIRONMENT\n"
           ".TP\n\\fBKORVANA_MODULE\\fR\nthe file of the module with the analyses, or its folder\n"
           ".SH EXAMPLES\n.nf\n";
    for (const CommandApp& command : commands) {
        const std::string footer = command.app->get_footer();
        constexpr std::string_view sign = "Example: ";
        if (footer.starts_with(sign))
            out << manText(footer.substr(sign.size(), footer.find('\n') - sign.size())) << '\n';
    }
    out << ".fi\n";
}

} // namespace korvana::cli
