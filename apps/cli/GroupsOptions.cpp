#include "apps/cli/GroupsOptions.h"

#include "apps/cli/DataOptions.h"
#include "apps/cli/Lists.h"
#include "apps/cli/UsageError.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace korvana::cli {

void GroupOption::declare(CLI::App& app) {
    app.add_option(option_, variable_, help_)->type_name("V")->group(TimesAndCodesOptions::helpGroup);
}

int GroupOption::resolve(const ActiveData& data, const TimesAndCodes& others) const {
    const std::string option = option_;
    if (variable_.empty()) throw UsageError(option + " is missing: name the " + help_, true);
    const int variable = variableOf(data.dataSet(), option, variable_);
    std::vector<int> all = others.times;
    all.insert(all.end(), {others.censor, variable + 1});
    refuseTwice(data.dataSet(), std::move(all));
    return variable;
}

void TwoGroupsOptions::declare(CLI::App& app) {
    variable_.declare(app);
    for (CodeOption& code : codes_)
        app.add_option(code.name, code.text, "its code for group " + code.name.substr(code.name.size() - 1))
            ->type_name("CODE")
            ->group(TimesAndCodesOptions::helpGroup);
}

Groups TwoGroupsOptions::resolve(const ActiveData& data, const TimesAndCodes& others) const {
    const int variable = variable_.resolve(data, others);
    Groups groups{variable + 1, resolveCodes(data, variable, codes_, "the codes of the two groups")};
    // Equal codes are left to the analysis, which refuses them with a message.
    std::vector<double> sorted = groups.codes;
    std::sort(sorted.begin(), sorted.end());
    if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) return groups;
    const CodesFound found = findCodes(data, variable, groups.codes);
    for (std::size_t k = 0; k < codes_.size(); ++k)
        if (!found.each[k])
            throw UsageError(noCaseHas(codes_[k].name, groups.codes[k]) + "; " + codesOf(data, variable));
    return groups;
}

void GroupCodesOptions::declare(CLI::App& app) {
    variable_.declare(app);
    app.add_option(names_.codesOption, codes_, names_.codesHelp)
        ->type_name("CODE,...")
        ->group(TimesAndCodesOptions::helpGroup);
}

void GroupCodesOptions::check() const {
    if (!isGiven() && !codes_.empty())
        throw UsageError(std::string{names_.codesOption} + " needs " + names_.option +
                         ", the variable that has the codes");
}

Groups GroupCodesOptions::resolve(const ActiveData& data, TimesAndCodes& others) const {
    const int variable = variable_.resolve(data, others);
    Groups groups{variable + 1, {}};
    if (codes_.empty()) return groups;
    std::vector<CodeOption> options;
    for (std::string& code : splitList(names_.codesOption, codes_))
        options.push_back({names_.codesOption, std::move(code)});
    groups.codes = resolveCodes(data, variable, options, "the codes of the groups");
    const CodesFound found = findCodes(data, variable, groups.codes);
    for (std::size_t k = 0; k < options.size(); ++k)
        if (!found.each[k])
            others.remarks.push_back(
                {0,
                 noCaseHas(names_.codesOption, groups.codes[k]) + "; " + codesOf(data, variable),
                 {},
                 ResultMessage::Severity::Warning});
    return groups;
}

} // namespace korvana::cli
