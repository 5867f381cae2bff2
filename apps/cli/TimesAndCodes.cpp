#include "apps/cli/TimesAndCodes.h"

#include "apps/cli/CodeChecks.h"
#include "apps/cli/DataOptions.h"
#include "apps/cli/Lists.h"
#include "apps/cli/UsageError.h"

#include <algorithm>
#include <utility>

namespace korvana::cli {
namespace {

constexpr const char* timeForms =
    "one (survival times), two (start and end, dates or numbers: the survival time is the second minus the "
    "first) or six (month, day and year of start, then of end)";

/// The variables that --time names: a name may itself hold a comma.
std::vector<int> timeVariables(const DataSet& data, const std::string& list) {
    if (const auto whole = data.find(list)) return {*whole};
    std::vector<int> times;
    for (const std::string& name : splitList("--time", list))
        times.push_back(variableOf(data, "--time", name));
    return times;
}

/// The reader's note on a variable (the cell that is no number, and its line), without the name.
std::string noteOn(const DataSet& data, const std::string& name) {
    const std::string begin = "variable '" + name + "': ";
    for (const std::string& note : data.notes())
        if (note.starts_with(begin)) return "\n" + data.path() + ": " + note;
    return {};
}

/// A code that no case has is an error if none has the other one either. If some have, the analysis is valid,
/// and the user is warned where it may be a mistake.
void checkCodes(const ActiveData& data, int censor, TimesAndCodes& result) {
    if (result.complete == result.censored) return; // the analysis reports it
    const double codes[] = {result.complete, result.censored};
    const CodesFound found = findCodes(data, censor, codes);
    const char* const options[] = {"--complete", "--censored"};
    for (std::size_t k = 0; k < 2; ++k) {
        if (found.each[k]) continue;
        if (!found.others) {
            result.remarks.push_back({.text = noCaseHas(options[k], codes[k]) + " of '" +
                                              data.dataSet().variable(censor).name + "'.",
                                      .detail = {}});
            continue;
        }
        std::string fault = noCaseHas(options[k], codes[k]) + "; " + codesOf(data, censor);
        if (!found.each[1 - k]) throw UsageError(fault);
        result.remarks.push_back({0, std::move(fault), {}, ResultMessage::Severity::Warning});
    }
}

} // namespace

void refuseTwice(const DataSet& data, std::vector<int> variables) {
    std::sort(variables.begin(), variables.end());
    const auto twice = std::adjacent_find(variables.begin(), variables.end());
    if (twice != variables.end())
        throw UsageError("variable '" + data.variable(*twice - 1).name + "' is given twice");
}

void refuseTexts(const DataSet& data, const std::string& option, const std::vector<int>& variables0,
                 const std::string& wanted) {
    for (const int variable : variables0)
        if (const std::string& name = data.variable(variable).name;
            data.variable(variable).kind == VariableKind::Text)
            throw UsageError(option + ": '" + name + "' holds texts, " + wanted + noteOn(data, name) +
                             data.layoutRemarks());
}

void TimesAndCodesOptions::declare(CLI::App& app) {
    const std::string group = helpGroup;
    app.add_option("--time", times_, std::string{"time variables: "} + timeForms)
        ->type_name("V[,V...]")
        ->group(group);
    app.add_option("--censor", censor_, "variable that tells complete from censored observations")
        ->type_name("V")
        ->group(group);
    app.add_option("--complete", complete_, "its code for complete observations (the event was seen)")
        ->type_name("CODE")
        ->group(group);
    app.add_option("--censored", censored_, "its code for censored observations")
        ->type_name("CODE")
        ->group(group);
}

std::vector<std::string> TimesAndCodesOptions::given() const {
    std::vector<std::string> names;
    for (const auto& [name, text] : {std::pair{"--time", &times_},
                                     {"--censor", &censor_},
                                     {"--complete", &complete_},
                                     {"--censored", &censored_}})
        if (!text->empty()) names.emplace_back(name);
    return names;
}

TimesAndCodes TimesAndCodesOptions::resolve(const ActiveData& active) const {
    const DataSet& data = active.dataSet();
    if (times_.empty()) throw UsageError("--time is missing: name the variable with the times", true);
    if (censor_.empty())
        throw UsageError("--censor is missing: name the variable with the censoring indicator", true);
    const std::vector<int> variables = timeVariables(data, times_);
    if (const auto n = variables.size(); n != 1 && n != 2 && n != 6)
        throw UsageError("--time names " + std::to_string(n) + " variables; it takes " + timeForms);
    refuseTexts(data, "--time", variables, "times are numbers or dates (YYYY-MM-DD)");
    TimesAndCodes result;
    for (const int time : variables)
        result.times.push_back(time + 1);
    const int censor = variableOf(data, "--censor", censor_);
    result.censor = censor + 1;
    std::vector<int> all = result.times;
    all.push_back(result.censor);
    refuseTwice(data, std::move(all));

    const std::vector<double> codes =
        resolveCodes(active, censor, {{"--complete", complete_}, {"--censored", censored_}},
                     "the code of complete and the code of censored observations");
    result.complete = codes[0];
    result.censored = codes[1];
    checkCodes(active, censor, result);
    return result;
}

} // namespace korvana::cli
