#include "apps/cli/Completion.h"

#include "host/data/ByteSource.h"
#include "host/data/DataError.h"
#include "host/data/DelimitedReader.h"
#include "host/results/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace korvana::cli {
namespace {

/// A text as one word of a shell.
std::string quoted(std::string_view text) {
    std::string word = "'";
    for (const char c : text)
        word += c == '\'' ? std::string{"'\\''"} : std::string(1, c);
    return word + "'";
}

std::string joinedBy(const std::vector<std::string>& words, std::string_view between) {
    std::string text;
    for (const std::string& word : words)
        text.append(text.empty() ? "" : between).append(word);
    return text;
}

/// "-o" and "--output"
std::vector<std::string> namesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames())
        names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        names.push_back("--" + name);
    return names;
}

std::string commandNames(const std::vector<CommandApp>& commands) {
    std::vector<std::string> names;
    for (const CommandApp& command : commands)
        names.emplace_back(command.name);
    return joinedBy(names, " ");
}

std::vector<const CLI::Option*> optionsOf(const CommandApp& command, bool positional) {
    const CLI::App& app = *command.app;
    return app.get_options([&](const CLI::Option* o) { return o->get_positional() == positional; });
}

/// What a shell offers for each kind of value; choices are passed as they are.
struct Offers {
    std::string choice;
    std::string variable;
    std::string folder;
    std::string file;
    std::string other;

    [[nodiscard]] std::string of(const Values& values) const {
        const std::array<const std::string*, 6> byKind{&other, &other, &choice, &variable, &folder, &file};
        return *byKind.at(static_cast<std::size_t>(values.kind));
    }
};

/// The call of the function in the script below that offers the values.
std::string bashOffer(const Values& values) {
    const std::string list = values.list ? " ," : " ''";
    return Offers{"_korvana_offer" + list + " " + joinedBy(values.choices, " "), "_korvana_variables" + list,
                  "_korvana_files -d", "_korvana_files -f", ":"}
        .of(values);
}

// Names of variables come from files: nothing here expands them, and what is put into the line is quoted.
constexpr const char* bashFunctions = R"bash(# bash completion of korvana; 'korvana completion bash' writes it
_korvana_offer() { # SEPARATOR WORD...: the words that continue what is typed, after the last separator
  local separator=$1 before= last=$current word
  shift
  if [[ -n $separator && $current == *"$separator"* ]]; then
    before=${current%"$separator"*}$separator
    last=${current##*"$separator"}
  fi
  for word; do
    [[ $word == "$last"* ]] || continue
    word=$(printf %q "$before$word")
    COMPREPLY+=("${word//\\,/,}")
  done
}
_korvana_files() { # -f or -d
  local word
  while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen "$1" -- "$current")
  compopt -o filenames 2>/dev/null
}
_korvana_variables() { # SEPARATOR
  local word file= names=()
  for word in "${COMP_WORDS[@]:2}"; do
    word=${word/#\~\//$HOME/}
    if [[ -f $word ]]; then file=$word; break; fi
  done
  [[ -n $file ]] || return 0
  while IFS= read -r word; do names+=("$word"); done < <("${COMP_WORDS[0]}" completion variables "$file" 2>/dev/null)
  _korvana_offer "$1" "${names[@]}"
}
)bash";

/// The beginning of a file, up to the end of a line: a big file would delay typing.
class Beginning final : public ByteSource {
public:
    explicit Beginning(ByteSource& whole) : name_(whole.name()), text_(64 << 10, ' ') {
        const std::size_t room = text_.size();
        text_.resize(whole.readFully(text_));
        if (text_.size() == room) text_.resize(text_.rfind('\n') + 1);
    }

    std::size_t read(std::span<char> room) override {
        const std::size_t count = std::min(room.size(), text_.size() - at_);
        std::copy_n(text_.begin() + static_cast<std::ptrdiff_t>(at_), count, room.begin());
        at_ += count;
        return count;
    }
    void rewind() override { at_ = 0; }
    void checkUnchanged() const override {}
    [[nodiscard]] std::size_t size() const override { return text_.size(); }
    [[nodiscard]] const std::string& name() const override { return name_; }

private:
    std::string name_;
    std::string text_;
    std::size_t at_ = 0;
};

void writeBashCommand(const CommandApp& command, std::ostream& out) {
    std::vector<std::string> names;
    out << "    " << command.name << ")\n      case $previous in\n";
    for (const CLI::Option* option : optionsOf(command, false)) {
        const Values values = valuesOf(command, *option);
        const std::vector<std::string> own = namesOf(*option);
        names.insert(names.end(), own.begin(), own.end());
        if (values.kind != Values::Kind::None)
            out << "        " << joinedBy(own, "|") << ") " << bashOffer(values) << "; return ;;\n";
    }
    out << "      esac\n      if [[ $current == -* ]]; then _korvana_offer '' " << joinedBy(names, " ")
        << "\n";
    const auto places = optionsOf(command, true);
    out << "      else "
        << (places.empty() ? std::string{":"} : bashOffer(valuesOf(command, *places.front()))) << "; fi ;;\n";
}

std::string zshAction(const Values& values) {
    const std::string choices = joinedBy(values.choices, " ");
    return Offers{values.list ? "{_values -s , value " + choices + "}" : "(" + choices + ")",
                  "_korvana_variables", "_directories", "_files", ""}
        .of(values);
}

/// A text inside a specification of _arguments.
std::string zshText(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (std::string_view("[]:\\").find(c) != std::string_view::npos) escaped += '\\';
        escaped += c;
    }
    return escaped;
}

void writeZshCommand(const CommandApp& command, std::ostream& out) {
    out << "    " << command.name << ")\n      _arguments -s";
    for (const CLI::Option* option : optionsOf(command, false)) {
        const Values values = valuesOf(command, *option);
        const bool many = option->get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
        const std::vector<std::string> names = namesOf(*option);
        for (const std::string& name : names) {
            std::string spec = many ? "*" : "(" + joinedBy(names, " ") + ")";
            spec += name;
            if (values.kind != Values::Kind::None) spec += name.starts_with("--") ? "=" : "+";
            spec += "[" + zshText(shortHelp(*option)) + "]";
            if (values.kind != Values::Kind::None)
                spec += ":" + zshText(option->get_type_name()) + ":" + zshAction(values);
            out << " \\\n        " << quoted(spec);
        }
    }
    for (const CLI::Option* option : optionsOf(command, true))
        out << " \\\n        "
            << quoted(":" + option->get_name(true) + ":" + zshAction(valuesOf(command, *option)));
    out << "\n      ;;\n";
}

} // namespace

void writeVariableNames(const std::string& path, std::ostream& out) {
    if (path == "-") return; // standard input has no data while one types
    try {
        const std::unique_ptr<ByteSource> whole = openSource(path);
        Beginning beginning(*whole);
        const DataSet data = readDelimited(beginning);
        for (int i = 0; i < data.variableCount(); ++i)
            out << oneLine(data.variable(i).name) << '\n';
    } catch (const DataError&) { // nothing to offer
    }
}

void writeBashCompletion(const std::vector<CommandApp>& commands, std::ostream& out) {
    out << bashFunctions
        << "_korvana() {\n"
           "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
           "  COMPREPLY=()\n"
           "  # bash takes --name=value for three words\n"
           "  if [[ $current == = ]]; then current=\n"
           "  elif [[ $previous == = ]]; then previous=${COMP_WORDS[COMP_CWORD-2]}; fi\n"
           "  if ((COMP_CWORD == 1)); then _korvana_offer '' "
        << commandNames(commands)
        << " help --help --version; return; fi\n"
           "  case ${COMP_WORDS[1]} in\n    help) _korvana_offer '' "
        << commandNames(commands) << " ;;\n";
    for (const CommandApp& command : commands)
        writeBashCommand(command, out);
    out << "  esac\n}\ncomplete -F _korvana korvana\n";
}

void writeZshCompletion(const std::vector<CommandApp>& commands, std::ostream& out) {
    out << "#compdef korvana\n# zsh completion of korvana; 'korvana completion zsh' writes it\n"
           "_korvana_variables() {\n"
           "  local word\n  local -a names\n"
           "  for word in ${words[2,-1]}; do\n"
           "    word=${(Q)word}\n    word=${word/#\\~\\//$HOME/}\n"
           "    if [[ -f $word ]]; then\n"
           "      names=(${(f)\"$(_call_program variables ${(q)korvana} completion variables ${(q)word} "
           "2>/dev/null)\"})\n"
           "      break\n    fi\n  done\n"
           "  compset -P '*,'\n"
           "  compadd -S '' -a names\n"
           "}\n"
           "_korvana() {\n"
           "  local korvana=$words[1]\n"
           "  if ((CURRENT == 2)); then\n"
           "    local -a commands=(";
    for (const CommandApp& command : commands)
        out << "\n      " << quoted(std::string{command.name} + ":" + zshText(command.summary));
    out << ")\n    _describe command commands\n    return\n  fi\n"
           "  shift words\n  ((CURRENT--))\n"
           "  case $words[1] in\n";
    for (const CommandApp& command : commands)
        writeZshCommand(command, out);
    out << "  esac\n}\n"
           "if [[ $funcstack[1] == _korvana ]]; then _korvana \"$@\"; else compdef _korvana korvana; fi\n";
}

void writeFishCompletion(const std::vector<CommandApp>& commands, std::ostream& out) {
    out << "# fish completion of korvana; 'korvana completion fish' writes it\n"
           "function __korvana_variables\n"
           "  set -l words (commandline -opc)\n"
           "  for word in $words[3..-1]\n"
           "    if test -f $word\n"
           "      $words[1] completion variables $word 2>/dev/null\n"
           "      return\n    end\n  end\nend\n"
           "function __korvana_list\n"
           "  set -l before (string match -r '^.*,' -- (commandline -ct | string replace -r '^--[^=]*=' "
           "''))\n"
           "  for word in $argv\n    echo -- \"$before$word\"\n  end\nend\n"
           "complete -c korvana -f\n";
    for (const CommandApp& command : commands)
        out << "complete -c korvana -n __fish_use_subcommand -a " << command.name << " -d "
            << quoted(command.summary) << '\n';
    for (const CommandApp& command : commands) {
        const std::string here =
            std::string{"complete -c korvana -n '__fish_seen_subcommand_from "} + command.name + "'";
        for (const bool positional : {false, true}) {
            for (const CLI::Option* option : optionsOf(command, positional)) {
                const Values values = valuesOf(command, *option);
                out << here;
                if (!positional) {
                    for (const std::string& name : option->get_snames())
                        out << " -s " << name;
                    for (const std::string& name : option->get_lnames())
                        out << " -l " << name;
                    out << " -d " << quoted(shortHelp(*option));
                }
                const std::string choices = joinedBy(values.choices, " ");
                const bool takesOwn = values.kind != Values::Kind::None && !positional;
                out << Offers{(positional ? " -a " : " -x -a ") +
                                  cli::quoted(values.list ? "(__korvana_list " + choices + ")" : choices),
                              " -x -a '(__korvana_list (__korvana_variables))'",
                              " -x -a '(__fish_complete_directories)'", " -F", takesOwn ? " -x" : ""}
                           .of(values)
                    << '\n';
            }
        }
    }
}

} // namespace korvana::cli
