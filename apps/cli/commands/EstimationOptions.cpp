#include "apps/cli/commands/EstimationOptions.h"

#include "apps/cli/Lists.h"
#include "apps/cli/Script.h"
#include "apps/cli/UsageError.h"
#include "host/data/NumberText.h"

#include <cmath>

namespace korvana::cli {

void EstimationOptions::declare(CLI::App& app) {
    const std::string group = "Estimation";
    app.add_option(
           "--criterion", criterion_,
           "convergence criterion, from 0.00001 to below 1; the estimates may be off by about as much, "
           "relative to their size [0.0001]")
        ->type_name("X")
        ->group(group);
    app.add_option("--max-iterations", iterations_, "the most iterations, from 3 to 200 [50]")
        ->type_name("N")
        ->group(group);
    app.add_option("--start", start_, "start values of the coefficients, one for each covariate [0]")
        ->type_name("B[,B...]")
        ->group(group);
    app.add_flag("--continue", continue_,
                 "when the iterations are used up, do 30 more, up to ten times, rather than end without a "
                 "result")
        ->group(group);
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

void EstimationOptions::checkStart(const std::vector<std::string>& parameters) const {
    if (start_.empty() || startValues_.size() == parameters.size()) return;
    throw UsageError("--start gives " + std::to_string(startValues_.size()) +
                     (startValues_.size() == 1 ? " value" : " values") + " for " +
                     std::to_string(parameters.size()) +
                     (parameters.size() == 1 ? " covariate" : " covariates") + "; give one for each of " +
                     joined(parameters));
}

bool EstimationOptions::forDialog() const {
    return !criterion_.empty() || !iterations_.empty() || !start_.empty();
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
    if (!iterations_.empty())
        cli::put(dialog, "MaxNumberOfIterations", static_cast<int>(readNumber(iterations_).value));
    if (!criterion_.empty()) cli::put(dialog, "ConvergenceCriterion", readNumber(criterion_).value);
    if (!start_.empty())
        cli::put(dialog, "StartValues", ozm::AutomationValue::List(startValues_.begin(), startValues_.end()));
}

} // namespace korvana::cli
