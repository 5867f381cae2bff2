#include "apps/cli/commands/EstimationOptions.h"

#include "apps/cli/Lists.h"
#include "apps/cli/Script.h"
#include "apps/cli/UsageError.h"
#include "host/data/NumberText.h"

#include <cmath>

namespace korvana::cli {

void EstimationOptions::declare(CLI::App& app) {
    const std::string group = "Estimation";
    app.add_option("--criterion", criterion_,
                   std::string{"convergence criterion, from 0.00001 to below 1; "} + help_.criterion +
                       " [0.0001]")
        ->type_name("X")
        ->group(group);
    app.add_option("--max-iterations", iterations_, "the most iterations, from 3 to 200 [50]")
        ->type_name("N")
        ->group(group);
    app.add_option("--start", start_, help_.start)->type_name("B[,B...]")->group(group);
    app.add_flag("--continue", continue_, help_.goesOn)->group(group);
}

void EstimationOptions::check() {
    if (!criterion_.empty()) {
        const NumberText number = readNumber(criterion_);
        if (number.form != NumberForm::Finite || number.value < 0.00001 || number.value >= 1.0)
            throw UsageError("--criterion is a number from 0.00001 to below 1, such as 0.0001, not '" +
                             criterion_ + "'");
    }
    if (!iterations_.empty()) {
        const NumberText number = readNumber(iterations_);
        if (number.form != NumberForm::Finite || number.value < 3 || number.value > 200 ||
            number.value != std::floor(number.value))
            throw UsageError("--max-iterations is a whole number from 3 to 200, not '" + iterations_ + "'");
    }
    if (start_.empty()) return;
    for (const std::string& entry : splitList("--start", start_)) {
        const NumberText number = readNumber(entry);
        if (number.form != NumberForm::Finite) throw UsageError("--start takes numbers, not '" + entry + "'");
        startValues_.push_back(number.value);
    }
}

void EstimationOptions::checkStart(const std::vector<std::string>& covariates,
                                   const std::vector<std::string>& further) const {
    std::vector<std::string> parameters = covariates;
    parameters.insert(parameters.end(), further.begin(), further.end());
    if (start_.empty() || startValues_.size() == parameters.size()) return;
    throw UsageError("--start gives " + std::to_string(startValues_.size()) +
                     (startValues_.size() == 1 ? " value" : " values") + " for " +
                     std::to_string(parameters.size()) + (further.empty() ? " covariate" : " parameter") +
                     (parameters.size() == 1 ? "" : "s") + "; give one for each of " + joined(parameters));
}

bool EstimationOptions::forDialog() const {
    return !criterion_.empty() || !iterations_.empty() || !start_.empty() || continue_;
}

bool EstimationOptions::goesOn() {
    if (continue_ && continued_ < mostContinued) {
        ++continued_;
        return true;
    }
    usedUp_ = true;
    return false;
}

std::string EstimationOptions::advice() const {
    if (!usedUp_) return {};
    if (continued_ > 0)
        return "it went on " + std::to_string(continued_) +
               " times; try other covariates, or a larger --criterion";
    return "--max-iterations allows up to 200 iterations, and --continue goes on where they end; neither "
           "helps a "
           "coefficient that grows without bound";
}

void EstimationOptions::put(ozm::AutomationObject& dialog) const {
    // Going on raises the number in the dialog, which is not meant for the next run.
    if (!iterations_.empty() || continue_)
        cli::put(dialog, "MaxNumberOfIterations",
                 iterations_.empty() ? defaultIterations : static_cast<int>(readNumber(iterations_).value));
    if (!criterion_.empty()) cli::put(dialog, "ConvergenceCriterion", readNumber(criterion_).value);
    if (!start_.empty())
        cli::put(dialog, "StartValues", ozm::AutomationValue::List(startValues_.begin(), startValues_.end()));
}

} // namespace korvana::cli
