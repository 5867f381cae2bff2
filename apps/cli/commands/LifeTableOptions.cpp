#include "apps/cli/commands/LifeTableOptions.h"

#include "apps/cli/DataOptions.h"
#include "apps/cli/Lists.h"
#include "apps/cli/TimesAndCodes.h"
#include "apps/cli/UsageError.h"
#include "host/data/NumberText.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace korvana::cli {
namespace {

constexpr const char* tableForm =
    "three variables: the lower limit of each interval, the number withdrawn and the number dying";

void checkRange(const std::string& option, const std::string& text, double least, double greatest,
                bool whole) {
    if (text.empty()) return;
    const NumberText number = readNumber(text);
    if (number.form == NumberForm::Finite && number.value >= least && number.value <= greatest &&
        (!whole || number.value == std::floor(number.value)))
        return;
    throw UsageError(option + " is a " + (whole ? "whole " : "") + "number from " + numberText(least) +
                     " to " + numberText(greatest) + ", not '" + text + "'");
}

/// The places of the listed names among those that the option takes, from 1; all of them without a list.
std::vector<int> places(const std::string& option, const std::string& list) {
    const auto known = LifeTableFitOptions::choices(option);
    std::vector<int> places;
    for (const std::size_t place : chooseFrom("--" + option, list.empty() ? "all" : list, known))
        places.push_back(static_cast<int>(place) + 1);
    return places;
}

/// A list of numbers, separated by blanks, as the results dialog reads it.
std::string numbers(const std::string& option, const std::string& list, const char* wanted,
                    const std::function<bool(double)>& fits) {
    std::string blanks;
    if (list.empty()) return blanks;
    for (const std::string& entry : splitList(option, list)) {
        const NumberText number = readNumber(entry);
        if (number.form != NumberForm::Finite || !fits(number.value))
            throw UsageError(option + " takes " + wanted + ", not '" + entry + "'");
        blanks += (blanks.empty() ? "" : " ") + numberText(number.value);
    }
    return blanks;
}

} // namespace

void LifeTableInputOptions::declare(CLI::App& app) {
    const std::string group = "Life table";
    app.add_option("--intervals", intervals_, "number of intervals, from 3 to 30 [12]")
        ->type_name("N")
        ->group(group);
    app.add_option("--step", step_, "or their width: there must be 4 to 29 of it up to the largest time")
        ->type_name("X")
        ->group(group);
    app.add_flag("--no-correction", noCorrection_,
                 "an interval without a death, or that nobody survives, is taken as it is, not given half "
                 "a death or half a survivor")
        ->group(group);
    app.add_option("--table", table_,
                   std::string{"the data are a table already, a row per interval; "} + tableForm)
        ->type_name("V,V,V")
        ->group(group);
    app.add_option("--entering", entering_,
                   "with --table: the number entering the first interval, from 5 to 99999999 [all that are "
                   "withdrawn or die]")
        ->type_name("N")
        ->group(group);
}

void LifeTableInputOptions::check(const std::vector<std::string>& forCases) const {
    std::vector<std::string> others = forCases;
    if (!intervals_.empty()) others.emplace_back("--intervals");
    if (!step_.empty()) others.emplace_back("--step");
    if (isTable() && !others.empty())
        throw UsageError("--table excludes " + joined(others) +
                         ": a table has its intervals, and no single cases");
    if (!isTable() && !entering_.empty())
        throw UsageError("--entering needs --table: cases are counted by the program");
    if (!intervals_.empty() && !step_.empty())
        throw UsageError("--intervals and --step exclude each other: give the number of intervals or their "
                         "width");
    checkRange("--intervals", intervals_, 3, 30, true);
    checkRange("--step", step_, 1e-8, 1e7, false);
    checkRange("--entering", entering_, 5, 99'999'999, true);
}

std::vector<int> LifeTableInputOptions::tableVariables(const DataSet& data) const {
    std::vector<int> variables0;
    for (const std::string& name : splitList("--table", table_))
        variables0.push_back(variableOf(data, "--table", name));
    if (variables0.size() != 3)
        throw UsageError("--table names " + std::to_string(variables0.size()) +
                         (variables0.size() == 1 ? " variable" : " variables") + "; it takes " + tableForm);
    refuseTexts(data, "--table", variables0, "a table has numbers");
    std::vector<int> variables;
    for (const int variable : variables0)
        variables.push_back(variable + 1);
    refuseTwice(data, variables);
    return variables;
}

std::vector<std::pair<const char*, ozm::AutomationValue>> LifeTableInputOptions::members() const {
    std::vector<std::pair<const char*, ozm::AutomationValue>> members;
    members.emplace_back("CorrectIntervalsContainingNoTerminations", !noCorrection_);
    if (!entering_.empty())
        members.emplace_back("NumberEnteringFirstInterval", static_cast<int>(readNumber(entering_).value));
    if (!intervals_.empty())
        members.emplace_back("NumberOfIntervals", static_cast<int>(readNumber(intervals_).value));
    if (!step_.empty()) {
        members.emplace_back("UseUserDefinedStepSize", true);
        members.emplace_back("StepSize", readNumber(step_).value);
    }
    return members;
}

void LifeTableFitOptions::declare(CLI::App& app) {
    const std::string group = "Fitted distributions";
    app.add_option("--distribution", distributionList_,
                   "the models of the outputs hazard, survival and density and of their plots: exponential, "
                   "linear-hazard, gompertz, weibull [all]")
        ->type_name("D[,D...]")
        ->group(group);
    app.add_option("--weighting", weightingList_,
                   "the weights of the fits in plot-models: 1 (equal), 2 (1 / variance), 3 (exposed x width) "
                   "[all]")
        ->type_name("W[,W...]")
        ->group(group);
    app.add_option("--survival", survivalList_, "the proportions of survival-times [.75,.5,.25]")
        ->type_name("P[,P...]")
        ->group(group);
    app.add_option("--times", timesList_, "the times of survival-at-times [the starts of the intervals]")
        ->type_name("T[,T...]")
        ->group(group);
}

std::vector<std::string_view> LifeTableFitOptions::choices(std::string_view option) {
    if (option == "distribution") return {"exponential", "linear-hazard", "gompertz", "weibull"};
    if (option == "weighting") return {"1", "2", "3"};
    return {};
}

void LifeTableFitOptions::check() {
    distributions_ = places("distribution", distributionList_);
    weightings_ = places("weighting", weightingList_);
    proportions_ = numbers("--survival", survivalList_, "proportions surviving, between 0 and 1",
                           [](double p) { return p > 0.0 && p < 1.0; });
    times_ = numbers("--times", timesList_, "times of 0 or more", [](double t) { return t >= 0.0; });
}

} // namespace korvana::cli
