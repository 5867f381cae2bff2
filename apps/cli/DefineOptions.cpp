#include "apps/cli/DefineOptions.h"

#include "apps/cli/UsageError.h"
#include "host/data/DataError.h"
#include "host/data/Expression.h"

namespace korvana::cli {

void DefineOptions::declare(CLI::App& app, const std::string& group) {
    app.add_option("--define", texts_,
                   "a new variable, computed from those that are there, e.g. \"months = days / 30.4375\" or "
                   "\"dead = status = 2 or status = 3\"; may be repeated")
        ->type_name("NAME=EXPR")
        ->allow_extra_args(false)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group(group);
}

std::vector<Definition> DefineOptions::read() const {
    std::vector<Definition> definitions;
    for (const std::string& text : texts_) {
        try {
            definitions.push_back(readDefinition(text));
        } catch (const DataError& error) {
            throw UsageError(std::string{"--define: "} + error.what());
        }
    }
    return definitions;
}

void define(DataSet& data, const std::vector<Definition>& definitions, const std::function<void()>& afterEach,
            const std::stop_token& stop) {
    for (const Definition& definition : definitions) {
        try {
            defineVariable(data, definition, stop);
        } catch (const DataError& error) {
            throw UsageError(std::string{"--define: "} + error.what());
        } catch (const ExpressionError& error) {
            throw UsageError("--define " + definition.name + ": " + error.what());
        }
        afterEach();
    }
}

} // namespace korvana::cli
