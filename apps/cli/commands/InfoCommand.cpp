#include "apps/cli/DataOptions.h"
#include "apps/cli/InfoText.h"
#include "apps/cli/VerboseLog.h"
#include "apps/cli/commands/Commands.h"

namespace korvana::cli {
namespace {

class InfoCommand final : public Command {
public:
    void declare(CLI::App& app) override {
        data_.declare(app);
        app.add_flag("--json", json_, "as JSON");
        log_.declare(app);
    }

    int run(Console& console) override {
        ActiveData data;
        log_.begin(console);
        log_.tell("Reading " + data_.source());
        data_.open(data);
        log_.tellData(data);
        if (json_)
            writeInfoJson(data, console.out);
        else
            writeInfo(data, console.out);
        return ExitResults;
    }

private:
    DataOptions data_;
    VerboseLog log_;
    bool json_ = false;
};

} // namespace

std::unique_ptr<Command> makeInfoCommand() {
    return std::make_unique<InfoCommand>();
}

} // namespace korvana::cli
