#include "apps/cli/PythonProgram.h"
#include "apps/cli/UsageError.h"
#include "apps/cli/commands/Commands.h"
#include "host/data/NumberText.h"

#include <filesystem>
#include <system_error>

namespace korvana::cli {
namespace {

class RunCommand final : public Command {
public:
    void declare(CLI::App& app) override {
        app.add_option("SCRIPT", script_, "the Python script; - for standard input")->type_name("");
        app.add_option("ARGS", rest_, "what the script gets as its arguments")->type_name("")->expected(-1);
        app.footer("Example: korvana run script.py FOLDER\n\n"
                   "'import korvana' finds the package of this program. The exit code is the\n"
                   "script's; 2 where there is no script, no Python or no package. Python is the one\n"
                   "named by the environment variable KORVANA_PYTHON, else that of an active virtual\n"
                   "environment, else the one that the package was built for.");
    }

    bool takeAsGiven(const std::vector<std::string>& given) override {
        // Options before the script are this command's, those after it the script's.
        const bool named = !given.empty() && !trimmed(given.front()).empty();
        if (!named || (given.front().size() > 1 && given.front().starts_with('-') && given.front() != "--"))
            return false;
        given_.assign(given.begin() + (given.front() == "--" ? 1 : 0), given.end());
        return true;
    }

    int run(Console& console) override {
        if (given_.empty() || given_.front().empty())
            throw UsageError("which script? Name a Python script", true);
        const std::string& script = given_.front();
        std::error_code error;
        if (const auto status = std::filesystem::status(script, error); script != "-") {
            if (!std::filesystem::exists(status)) throw UsageError("there is no script '" + script + "'");
            if (std::filesystem::is_directory(status))
                throw UsageError("'" + script + "' is a folder; name a script in it");
        }
        console.out.flush();
        // A script whose name begins with a hyphen is no option of Python's.
        if (script != "-" && script.starts_with('-')) given_.front().insert(0, "./");
        becomePython(given_);
    }

private:
    std::string script_;
    std::vector<std::string> rest_;
    std::vector<std::string> given_;
};

} // namespace

std::unique_ptr<Command> makeRunCommand() {
    return std::make_unique<RunCommand>();
}

} // namespace korvana::cli
