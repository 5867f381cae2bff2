#include "apps/cli/commands/CovariateOptions.h"

#include "apps/cli/CodeChecks.h"
#include "apps/cli/DataOptions.h"
#include "apps/cli/Lists.h"
#include "apps/cli/TimesAndCodes.h"
#include "apps/cli/UsageError.h"
#include "host/data/Codes.h"
#include "host/data/DataError.h"
#include "host/data/Describe.h"
#include "host/data/IndicatorVariables.h"
#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace korvana::cli {
namespace {

const std::string option = "--covariates";
constexpr std::string_view groups = ":cat";

/// Where ":cat" or ":cat=CODE" begins in an entry; npos: it is a name alone.
std::size_t placeOfGroups(const std::string& entry) {
    for (std::size_t at = entry.find(groups); at != std::string::npos; at = entry.find(groups, at + 1)) {
        const std::size_t end = at + groups.size();
        if (end == entry.size() || entry[end] == '=') return at;
    }
    return std::string::npos;
}

} // namespace

void CovariateOptions::declare(CLI::App& app) {
    app.add_option(
           option, list_,
           "the covariates: numbers, or V:cat for a variable of groups, which stands for an indicator "
           "of each code but the first (V:cat=CODE names the code without one); 40 at most")
        ->type_name("V[,V...]")
        ->group(TimesAndCodesOptions::helpGroup);
}

void CovariateOptions::check() const {
    if (list_.empty())
        throw UsageError("--covariates is missing: name the variables whose effect on survival is asked for",
                         true);
}

void CovariateOptions::name(const DataSet& data, int variable0) {
    if (std::find(named_.begin(), named_.end(), variable0 + 1) != named_.end())
        throw UsageError(option + ": '" + data.variable(variable0).name + "' is named twice");
    named_.push_back(variable0 + 1);
}

void CovariateOptions::addNumbers(const DataSet& data, const std::string& name) {
    const int variable = variableOf(data, option, name);
    const std::string& known = data.variable(variable).name;
    this->name(data, variable);
    refuseTexts(data, option, {variable},
                "a covariate has numbers; for an indicator of each text but the first write " + name +
                    ":cat (" + name + ":cat=TEXT names another one to compare with)");
    covariates_.push_back({variable, known});
}

void CovariateOptions::addGroups(const ActiveData& active, const std::string& name,
                                 const std::string& reference) {
    const DataSet& data = active.dataSet();
    const int variable = variableOf(data, option, name);
    const std::string entry = option + " " + name + std::string{groups};
    this->name(data, variable);
    const int limit = static_cast<int>(most) + 1;
    const DistinctValues selected = distinctCodes(data, variable, active.mask(), limit);
    const DistinctValues known =
        counting_.empty() ? selected : distinctCodes(data, variable, counting_, limit);
    if (known.moreThanLimit)
        throw UsageError(entry + ": '" + data.variable(variable).name + "' has more than " +
                         std::to_string(most + 1) +
                         " codes, and their indicators count as covariates, of "
                         "which there may be " +
                         std::to_string(most) +
                         "; name it without :cat if it has numbers, or make fewer groups of it by --define");
    if (known.values.size() < 2)
        throw UsageError(entry + ": there are not two groups to compare among the cases that count; " +
                         codesOf(active, variable, counting_));
    Factor factor{variable, known.values.front().value, {}, covariates_.size(), {}};
    for (const DistinctValue& each : selected.values)
        if (std::ranges::none_of(known.values,
                                 [&](const DistinctValue& one) { return one.value == each.value; }))
            factor.absent.push_back(each.value);
    if (!reference.empty()) {
        const std::optional<double> code = resolveCode(data, variable, reference);
        const auto found = std::find_if(known.values.begin(), known.values.end(),
                                        [&](const DistinctValue& each) { return code == each.value; });
        if (found == known.values.end())
            throw UsageError(entry + "=" + reference + ": no case that counts has this code; " +
                             codesOf(active, variable, counting_));
        factor.reference = found->value;
    }
    for (const DistinctValue& each : known.values) {
        if (each.value == factor.reference) continue;
        factor.codes.push_back(each.value);
        covariates_.push_back({-1, indicatorOf(data, variable, each.value).name});
    }
    factors_.push_back(std::move(factor));
}

bool CovariateOptions::mayHaveGroups() const {
    return list_.find(groups) != std::string::npos;
}

std::vector<CovariateOptions::Entry> CovariateOptions::entries(const DataSet& data) const {
    const auto isName = [&](const std::string& text) { return data.find(text).has_value(); };
    // A name may itself hold a comma.
    const auto texts = isName(list_) ? std::vector{list_} : splitList(option, list_);
    std::vector<Entry> all;
    for (const std::string& text : texts) {
        const std::size_t at = isName(text) ? std::string::npos : placeOfGroups(text);
        if (at == std::string::npos) {
            all.push_back({text, false, {}});
            continue;
        }
        const std::size_t end = at + groups.size();
        if (end + 1 == text.size()) throw UsageError(option + " " + text + ": a code is missing after the =");
        all.push_back({text.substr(0, at), true, end < text.size() ? text.substr(end + 1) : ""});
    }
    return all;
}

void CovariateOptions::leaveOutIncomplete(const DataSet& data, const std::vector<Entry>& entries) {
    for (const Entry& entry : entries)
        if (const auto variable = data.find(entry.name))
            for (int i = 0; i < data.caseCount(); ++i)
                if (data.isMissing(*variable, i)) counting_[static_cast<std::size_t>(i)] = 0;
}

void CovariateOptions::prepare(ActiveData& active, std::vector<std::uint8_t> counting, bool complete) {
    counting_ = std::move(counting);
    const std::vector<Entry> all = entries(active.dataSet());
    if (!counting_.empty() && complete) leaveOutIncomplete(active.dataSet(), all);
    for (const Entry& entry : all) {
        if (entry.isGroups)
            addGroups(active, entry.name, entry.reference);
        else
            addNumbers(active.dataSet(), entry.name);
    }
    if (covariates_.size() > most)
        throw UsageError(option + ": there may be " + std::to_string(most) + " covariates, not " +
                         std::to_string(covariates_.size()) +
                         (factors_.empty() ? "" : "; each indicator counts as one"));
    for (const Factor& factor : factors_)
        addIndicators(active, factor);
}

void CovariateOptions::addIndicators(ActiveData& active, const Factor& factor) {
    std::string note = noteOn(active.dataSet(), factor);
    for (std::size_t k = 0; k < factor.codes.size(); ++k) {
        try {
            ComputedVariable computed = computeVariable(
                active.dataSet(), indicatorOf(active.dataSet(), factor.variable0, factor.codes[k]));
            computed.note = std::exchange(note, {}); // one for all of them
            active.define(std::move(computed));
        } catch (const DataError& error) {
            throw UsageError(option + " " + active.dataSet().variable(factor.variable0).name +
                             std::string{groups} + ": " + error.what() +
                             ", or make the indicators by --define");
        }
        covariates_[factor.first + k].variable0 = active.dataSet().variableCount() - 1;
    }
}

std::string CovariateOptions::noteOn(const DataSet& data, const Factor& factor) const {
    const Variable& variable = data.variable(factor.variable0);
    const std::string code = numberText(factor.reference);
    std::vector<std::string> names;
    for (std::size_t k = 0; k < factor.codes.size(); ++k)
        names.push_back(covariates_[factor.first + k].name);
    std::string note = "Indicators of the codes of '" + variable.name + "', compared with '" +
                       withEscapes(variable.labelOf(factor.reference).value_or(code)) +
                       "': " + joined(names) + ".";
    std::vector<std::string> absent;
    for (const double each : factor.absent)
        absent.push_back("'" + withEscapes(variable.labelOf(each).value_or(numberText(each))) + "'");
    if (!absent.empty()) note += " No case that counts has " + joined(absent) + ".";
    return note;
}

std::vector<int> CovariateOptions::variables() const {
    std::vector<int> all;
    for (const Covariate& each : covariates_)
        all.push_back(each.variable0 + 1);
    return all;
}

std::vector<std::string> CovariateOptions::names() const {
    std::vector<std::string> all;
    for (const Covariate& each : covariates_)
        all.push_back(each.name);
    return all;
}

const CovariateOptions::Factor* CovariateOptions::factorOf(const DataSet& data,
                                                           const std::string& name) const {
    const auto variable = data.find(name);
    for (const Factor& factor : factors_)
        if (variable == factor.variable0) return &factor;
    return nullptr;
}

std::vector<double> CovariateOptions::valuesAt(const ActiveData& active, const std::string& text) const {
    const DataSet& data = active.dataSet();
    std::vector<double> values(covariates_.size(), std::numeric_limits<double>::quiet_NaN());
    const auto set = [&](std::size_t place, double value) {
        if (!std::isnan(values[place]))
            throw UsageError("--at " + text + ": '" + covariates_[place].name + "' is given twice");
        values[place] = value;
    };
    for (const std::string& part : splitList("--at", text)) {
        const std::size_t last = part.rfind('=');
        if (last == std::string::npos || last == 0 || last + 1 == part.size())
            throw UsageError("--at is COVARIATE=VALUE, or several of them with commas, not '" + part + "'");
        // The name of an indicator holds a sign of equality itself.
        const std::string name{trimmed(part.substr(0, last))};
        const auto variable = data.find(name);
        const auto found = std::find_if(covariates_.begin(), covariates_.end(),
                                        [&](const Covariate& each) { return variable == each.variable0; });
        if (found != covariates_.end()) {
            const auto value = resolveCode(data, *variable, part.substr(last + 1));
            if (!value)
                throw UsageError("--at " + part + ": '" + part.substr(last + 1) + "' is not a number");
            set(static_cast<std::size_t>(found - covariates_.begin()), *value);
            continue;
        }
        const std::size_t first = part.find('=');
        const Factor* factor = factorOf(data, std::string{trimmed(part.substr(0, first))});
        if (factor == nullptr) {
            std::vector<std::string> known = names();
            throw UsageError("--at " + part + ": '" + name + "' is no covariate" +
                             didYouMean(nearestOf(name, {known.begin(), known.end()}, 2)) +
                             "; the covariates are " + joined(known));
        }
        const auto code = resolveCode(data, factor->variable0, part.substr(first + 1));
        const bool isCode =
            std::find(factor->codes.begin(), factor->codes.end(), code) != factor->codes.end();
        if (!isCode && code != factor->reference)
            throw UsageError("--at " + part + ": no case that counts has this code; " +
                             codesOf(active, factor->variable0, counting_));
        for (std::size_t k = 0; k < factor->codes.size(); ++k)
            set(factor->first + k, factor->codes[k] == code ? 1.0 : 0.0);
    }
    return values;
}

} // namespace korvana::cli
