#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/SurvivalModule.h"
#include "host/session/TypeLibraryText.h"

namespace korvana::cli {
namespace {

class TypelibCommand final : public Command {
public:
    void declare(CLI::App& /*app*/) override {}

    int run(Console& console) override {
        const Analysis analysis = loadSurvivalModule();
        const ozm::ModuleHandle resources = analysis->GetLibInstance();
        if (resources == nullptr || resources->typeLibrary == nullptr)
            throw ModuleError("the module has no type library");
        console.out << typeLibraryText(*resources->typeLibrary);
        return ExitResults;
    }
};

} // namespace

std::unique_ptr<Command> makeTypelibCommand() {
    return std::make_unique<TypelibCommand>();
}

} // namespace korvana::cli
