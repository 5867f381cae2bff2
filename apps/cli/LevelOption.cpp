#include "apps/cli/LevelOption.h"

#include "apps/cli/UsageError.h"
#include "host/data/NumberText.h"

namespace korvana::cli {

void LevelOption::declare(CLI::App& app) {
    app.add_option("--level", level_, "confidence level of limits, from 0 to 1 [0.95]")
        ->type_name("P")
        ->group("Output");
}

void LevelOption::check(Ends ends) const {
    if (level_.empty()) return;
    const NumberText number = readNumber(level_);
    const bool within = ends == Ends::Included ? number.value >= 0.0 && number.value <= 1.0
                                               : number.value > 0.0 && number.value < 1.0;
    if (number.form != NumberForm::Finite || !within)
        throw UsageError(std::string{"--level is a number "} +
                         (ends == Ends::Included ? "from 0 to 1" : "between 0 and 1") +
                         ", such as 0.95, not '" + level_ + "'");
}

void LevelOption::put(Script& script) const {
    if (!level_.empty()) script.put("ConfidenceLevel", readNumber(level_).value);
}

} // namespace korvana::cli
