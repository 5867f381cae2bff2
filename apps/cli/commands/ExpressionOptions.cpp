#include "apps/cli/commands/ExpressionOptions.h"

#include "apps/cli/TimesAndCodes.h"
#include "apps/cli/UsageError.h"
#include "host/data/Expression.h"
#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"

#include <algorithm>

namespace korvana::cli {
namespace {

const std::string option = "--covariate";
constexpr const char* namesMember = "TimeDependentCovariateNames";
constexpr const char* expressionsMember = "TimeDependentCovariateExpressions";

std::size_t charactersOf(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }));
}

void requireRoom(const std::string& what, const std::string& text, std::size_t most, const char* instead) {
    if (const std::size_t length = charactersOf(text); length > most)
        throw UsageError(option + ": " + what + " has " + std::to_string(length) +
                         " characters, and there may be " + std::to_string(most) + "; " + instead);
}

std::vector<std::string> textsOf(const ozm::AutomationValue& value) {
    std::vector<std::string> texts;
    if (const auto* list = std::get_if<ozm::AutomationValue::List>(&value.value))
        for (const ozm::AutomationValue& each : *list)
            if (const auto* text = std::get_if<std::string>(&each.value)) texts.push_back(*text);
    return texts;
}

} // namespace

void ExpressionOptions::declare(CLI::App& app) {
    app.add_option(option, texts_,
                   "a covariate: a name of up to 8 characters, and an expression of up to 60 over the "
                   "variables and the time T_, e.g. 'karnoT = karno * log(T_ + 20)'; may be repeated, 40 at "
                   "most")
        ->type_name("NAME=EXPR")
        ->allow_extra_args(false)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group(TimesAndCodesOptions::helpGroup);
    app.add_option(
           "--expressions", fileToOpen_,
           "a file of covariates, as --save-expressions writes it; those of --covariate are added, or "
           "take the place of one with the same name")
        ->type_name("FILE.INI")
        ->group(TimesAndCodesOptions::helpGroup);
    app.add_option("--save-expressions", fileToSave_, "write the covariates to a file")
        ->type_name("FILE.INI")
        ->group("Output");
}

ExpressionOptions::Defined ExpressionOptions::read(const std::string& text) {
    constexpr std::string_view form = "a covariate is NAME=EXPRESSION, such as 'karnoT = karno * log(T_)'";
    const std::size_t equals = text.find('=');
    const std::string name{trimmed(std::string_view(text).substr(0, equals))};
    const bool compares = equals + 1 < text.size() && text[equals + 1] == '=';
    if (equals == std::string::npos || compares || name.empty() ||
        std::string_view("<>!").find(name.back()) != std::string_view::npos)
        throw UsageError(option + ": '" + brief(text, 80) + "' has no NAME = before it; " +
                         std::string(form));
    const std::string expression{trimmed(std::string_view(text).substr(equals + 1))};
    if (expression.empty())
        throw UsageError(option + ": nothing follows '" + brief(name) + " ='; " + std::string(form));
    if (std::string_view("[;#").find(name.front()) != std::string_view::npos)
        throw UsageError(option + ": the name '" + brief(name) + "' cannot begin with '" + name.front() +
                         "', which has a meaning in files of covariates");
    if (!isUtf8(name))
        throw UsageError(option + ": the name '" + withEscapes(name) +
                         "' is not UTF-8; use a terminal that is, or other letters");
    requireRoom("the name '" + brief(name) + "'", name, longestName, "shorten it");
    requireRoom("the expression of '" + name + "'", expression, longestExpression,
                "leave out blanks, or compute a part without T_ as a variable by --define");
    return {name, expression};
}

void ExpressionOptions::check() {
    if (texts_.empty() && fileToOpen_.empty())
        throw UsageError("--covariate is missing: define covariates, such as 'karnoT = karno * log(T_)', or "
                         "name a file of them by --expressions",
                         true);
    for (const std::string& text : texts_) {
        const Defined covariate = read(text);
        for (const Defined& other : given_)
            if (equalIgnoringCase(other.name, covariate.name))
                throw UsageError(option + ": two covariates have the name '" + covariate.name + "'");
        given_.push_back(covariate);
    }
    if (given_.size() > most)
        throw UsageError(option + ": there may be " + std::to_string(most) + " covariates, not " +
                         std::to_string(given_.size()));
}

void ExpressionOptions::check(const DataSet& data) const {
    for (const Defined& covariate : given_)
        check(covariate, option + " " + covariate.name, data);
}

void ExpressionOptions::check(const Defined& covariate, const std::string& source, const DataSet& data) try {
    const NamedInput time[] = {{"T_", data.variableCount() + 1}};
    const Expression understood(covariate.expression, data, time);
    const auto variable = data.find(covariate.expression);
    if (variable && data.variable(*variable).kind == VariableKind::Text)
        throw UsageError(source + ": '" + covariate.expression +
                         "' holds texts, a covariate has numbers; for an indicator compare it with one "
                         "of them, as in " +
                         covariate.expression + " = 'TEXT'");
} catch (const ExpressionError& error) {
    throw UsageError(source + ": " + error.what());
}

void ExpressionOptions::openFile(Script& script) {
    const std::size_t before = script.messages().size();
    if (!script.pressWithFile("OpenExpressions", fileToOpen_))
        throw UsageError("--expressions " + fileToOpen_ +
                         ": no covariates can be taken from the file, so that nothing is computed");
    const bool cut =
        std::any_of(script.messages().begin() + static_cast<std::ptrdiff_t>(before), script.messages().end(),
                    [](const ResultMessage& m) { return m.severity == ResultMessage::Severity::Warning; });
    if (cut)
        throw UsageError("--expressions " + fileToOpen_ +
                         ": not all of the file was taken as it stands, so that nothing is computed; "
                         "shorten it");
    names_ = textsOf(script.get(namesMember));
    expressions_ = textsOf(script.get(expressionsMember));
}

void ExpressionOptions::merge(const Defined& covariate) {
    const auto same = std::ranges::find_if(
        names_, [&](const std::string& name) { return equalIgnoringCase(name, covariate.name); });
    if (same != names_.end()) {
        expressions_[static_cast<std::size_t>(same - names_.begin())] = covariate.expression;
        return;
    }
    names_.push_back(covariate.name);
    expressions_.push_back(covariate.expression);
}

void ExpressionOptions::put(Script& script) {
    if (!fileToOpen_.empty()) openFile(script);
    for (const Defined& covariate : given_)
        merge(covariate);
    if (!fileToOpen_.empty())
        for (std::size_t k = 0; k < names_.size() && k < expressions_.size(); ++k)
            check({names_[k], expressions_[k]}, "--expressions " + fileToOpen_ + ", " + brief(names_[k]),
                  script.data());
    if (names_.size() > most)
        throw UsageError("--covariate and --expressions: there may be " + std::to_string(most) +
                         " covariates, not " + std::to_string(names_.size()));
    using List = ozm::AutomationValue::List;
    if (!given_.empty()) {
        script.put(namesMember, List(names_.begin(), names_.end()));
        script.put(expressionsMember, List(expressions_.begin(), expressions_.end()));
    }
}

void ExpressionOptions::save(Script& script) const {
    if (!fileToSave_.empty() && !script.pressWithFile("SaveExpressions", fileToSave_))
        throw UsageError("--save-expressions " + fileToSave_ +
                         ": the covariates are not written, so that nothing is computed");
}

} // namespace korvana::cli
