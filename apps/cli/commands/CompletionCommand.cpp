#include "apps/cli/Completion.h"
#include "apps/cli/ManualPage.h"
#include "apps/cli/UsageError.h"
#include "apps/cli/commands/Commands.h"

namespace korvana::cli {
namespace {

/// Prints the completion scripts and the manual page, which are made from the options.
class CompletionCommand final : public Command {
public:
    void declare(CLI::App& app) override {
        app.add_option("SHELL", shell_,
                       "bash, zsh or fish: the script that makes this shell complete commands and "
                       "options; manual: the manual page; variables: the names of the variables "
                       "in a data file, one per line")
            ->type_name("");
        app.add_option("DATA", data_, "the data file, for variables")->type_name("");
        app.footer("Example: korvana completion bash > ~/.local/share/bash-completion/completions/korvana");
    }

    [[nodiscard]] std::vector<std::string> choices(const std::string& option) const override {
        if (option != "SHELL") return {};
        return {"bash", "zsh", "fish", "manual", "variables"};
    }

    int run(Console& console) override {
        if (shell_ == "bash") {
            writeBashCompletion(makeApps(), console.out);
        } else if (shell_ == "zsh") {
            writeZshCompletion(makeApps(), console.out);
        } else if (shell_ == "fish") {
            writeFishCompletion(makeApps(), console.out);
        } else if (shell_ == "manual") {
            writeManualPage(makeApps(), console.out);
        } else if (shell_ == "variables") {
            if (data_.empty()) throw UsageError("which data? Name a data file", true);
            writeVariableNames(data_, console.out);
        } else {
            throw UsageError(
                (shell_.empty() ? std::string{"which shell? "} : "'" + shell_ + "' is not known; ") +
                    "there are bash, zsh and fish, manual, and variables",
                true);
        }
        return ExitResults;
    }

private:
    std::string shell_;
    std::string data_;
};

} // namespace

std::unique_ptr<Command> makeCompletionCommand() {
    return std::make_unique<CompletionCommand>();
}

} // namespace korvana::cli
