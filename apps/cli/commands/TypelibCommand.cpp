#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/SurvivalModule.h"
#include "host/session/TypeLibraryIdl.h"
#include "host/session/TypeLibraryText.h"

namespace korvana::cli {
namespace {

class TypelibCommand final : public Command {
public:
    void declare(CLI::App& app) override {
        app.add_flag("--idl", idl_, "Print it as an interface definition, for an IDL compiler");
    }

    int run(Console& console) override {
        const Analysis analysis = loadSurvivalModule();
        const ozm::ModuleHandle resources = analysis->GetLibInstance();
        if (resources == nullptr || resources->typeLibrary == nullptr)
            throw ModuleError("the module has no type library");
        const ozm::TypeLibrary& library = *resources->typeLibrary;
        console.out << (idl_ ? typeLibraryIdl(library) : typeLibraryText(library));
        return ExitResults;
    }

private:
    bool idl_ = false;
};

} // namespace

std::unique_ptr<Command> makeTypelibCommand() {
    return std::make_unique<TypelibCommand>();
}

} // namespace korvana::cli
