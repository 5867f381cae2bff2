#include "host/data/ComputedVariable.h"

#include "host/data/DataError.h"
#include "host/data/Expression.h"
#include "host/data/ExpressionFunctions.h"
#include "host/data/ExpressionNames.h"
#include "host/data/ExpressionTokens.h"
#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"
#include "host/data/ReadData.h"
#include "host/data/TextEncoding.h"
#include "host/data/Workers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace korvana {
namespace {

constexpr std::string_view form = "a new variable is NAME = EXPRESSION, such as 'months = days / 30.4375'";

/// Whether a name can be used in an expression without backquotes.
bool isPlainName(std::string_view name) {
    if (trimmed(name) != name) return false; // a byte order mark, which names may contain
    try {
        const std::vector<Token> tokens = tokenize(name);
        return tokens.size() == 2 && tokens[0].kind == TokenKind::Name && tokens[0].text == name;
    } catch (const ExpressionError&) {
        return false;
    }
}

[[noreturn]] void refuseName(std::string_view name, std::string_view why) {
    throw DataError(
        std::string("a new variable cannot be called '").append(brief(name)).append("': ").append(why));
}

void refuseWordOfExpressions(std::string_view name) {
    if (const std::string_view word = wordOfExpressions(name); !word.empty())
        refuseName(name, std::string("it is ").append(word).append(" of expressions"));
}

/// Refuses what cannot be a name, however it is written.
void refuseUnusable(std::string_view name) {
    if (trimmed(name).empty()) throw DataError("a new variable needs a name");
    if (trimmed(name) != name) refuseName(name, "leave out the blanks around the name");
    if (!isUtf8(name)) refuseName(name, "the name is not valid UTF-8");
    if (std::any_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }))
        refuseName(name, "leave out line breaks and other control characters");
    if (readNumber(name).form != NumberForm::None)
        refuseName(name, "it would be taken for the number of a variable; put a letter before it");
    refuseWordOfExpressions(name);
}

std::string quotedName(std::string_view name) {
    std::string text = "`";
    for (const char c : name)
        text.append(c == '`' ? 2 : 1, c);
    return text + "`";
}

/// Reads the name in backquotes at the beginning of a text; returns where the rest begins.
std::size_t takeQuotedName(std::string_view text, std::string& name) {
    for (std::size_t at = 1; at < text.size(); ++at) {
        if (text[at] == '`') {
            if (at + 1 == text.size() || text[at + 1] != '`') return at + 1;
            ++at; // doubled: means itself
        }
        name += text[at];
    }
    throw DataError(std::string("the closing ` of the name is missing; ").append(form));
}

/// What was found in some of the cases.
struct Outcome {
    std::int64_t notFinite = 0;
    std::size_t firstNotFinite = 0;
};

Outcome evaluateCases(const Expression& expression, const DataSet& data, std::size_t begin, std::size_t end,
                      double* cells, const std::stop_token& stop) {
    constexpr std::size_t casesBetweenQuestions = 4096;
    CaseInputs values(expression, data);
    Outcome found;
    for (std::size_t first = begin; first < end; first += casesBetweenQuestions) {
        if (stop.stop_requested()) throw ReadingStopped();
        const std::size_t last = std::min(end, first + casesBetweenQuestions);
        if (expression.evaluate(values.from(first), {cells + first, last - first}) == 0) continue;
        for (std::size_t i = first; i < last; ++i)
            if (std::isnan(cells[i]) && !values.anyMissing(i) && found.notFinite++ == 0)
                found.firstNotFinite = i;
    }
    return found;
}

std::string noteOf(const DataSet& data, const Definition& definition, const Outcome& outcome) {
    std::string note = "Computed: " + definitionText(definition) + ".";
    if (outcome.notFinite == 0) return note;
    note.append(" ")
        .append(std::to_string(outcome.notFinite))
        .append(outcome.notFinite == 1 ? " case has" : " cases have")
        .append(" no finite result, which counts as missing: ")
        .append(outcome.notFinite == 1 ? "case " : "first case ")
        .append(std::to_string(outcome.firstNotFinite + 1));
    if (data.hasCaseNames())
        note.append(" (").append(data.caseName(static_cast<int>(outcome.firstNotFinite))).append(")");
    return note + ".";
}

} // namespace

Definition readDefinition(std::string_view text) {
    const std::string_view all = trimmed(text);
    Definition found;
    std::size_t at = 0;
    const bool quoted = all.starts_with('`');
    if (quoted) {
        at = takeQuotedName(all, found.name);
        while (at < all.size() && (all[at] == ' ' || all[at] == '\t'))
            ++at;
    } else {
        at = std::min(all.find('='), all.size());
        found.name = trimmed(all.substr(0, at));
    }
    const std::string_view rest = all.substr(at);
    if (!rest.starts_with('=') || rest.starts_with("==") || found.name.empty())
        throw DataError(
            std::string("'").append(brief(all)).append("' has no NAME = before it; ").append(form));
    refuseWordOfExpressions(found.name);
    if (!quoted && !isPlainName(found.name)) {
        refuseUnusable(found.name);
        refuseName(found.name,
                   "a name with blanks or signs belongs in backquotes: " + brief(quotedName(found.name)));
    }
    found.expression = trimmed(rest.substr(1));
    if (found.expression.empty())
        throw DataError(std::string("nothing follows '").append(found.name).append(" ='; ").append(form));
    return found;
}

std::string nameInExpression(std::string_view name) {
    return isPlainName(name) && wordOfExpressions(name).empty() ? std::string{name} : quotedName(name);
}

std::string definitionText(const Definition& definition) {
    return nameInExpression(definition.name) + " = " + definition.expression;
}

void requireNewName(const DataSet& data, std::string_view name) {
    refuseUnusable(name);
    for (int i = 0; i < data.variableCount(); ++i)
        if (equalIgnoringCase(data.variable(i).name, name))
            throw DataError(std::string("there is already a variable '")
                                .append(data.variable(i).name)
                                .append("'; choose another name"));
    bool known = false; // data that have such names go by them
    for (int i = 0; i < data.variableCount(); ++i)
        known = known || variableNumberIn(data.variable(i).name);
    if (!known && variableNumberIn(name))
        refuseName(name, "expressions take it for the number of a variable; choose another letter");
}

ComputedVariable computeVariable(const DataSet& data, const Definition& definition,
                                 const std::stop_token& stop) {
    requireNewName(data, definition.name);
    if (data.variableCount() >= maxVariables)
        throw DataError("the data have " + std::to_string(maxVariables) +
                        " variables, and more than that cannot be handled");
    const auto cases = static_cast<std::size_t>(data.caseCount());
    const Expression first(definition.expression, data); // before any memory is taken

    ComputedVariable computed;
    computed.cells = Column(cases);
    // Each thread has its own expression, as evaluating changes it; for few cases that is not worthwhile.
    constexpr std::size_t fewestPerThread = 100'000;
    const std::size_t threads = std::clamp<std::size_t>(cases / fewestPerThread, 1, usableCores());
    std::vector<Outcome> outcomes(threads);
    forEachInOrder(threads, static_cast<unsigned>(threads), [&](std::size_t part) {
        const std::size_t begin = cases / threads * part;
        const std::size_t end = part + 1 == threads ? cases : begin + cases / threads;
        if (part == 0) {
            outcomes[part] = evaluateCases(first, data, begin, end, computed.cells.data(), stop);
        } else {
            const Expression own(definition.expression, data);
            outcomes[part] = evaluateCases(own, data, begin, end, computed.cells.data(), stop);
        }
    });
    Outcome all;
    for (const Outcome& each : outcomes) {
        if (all.notFinite == 0) all.firstNotFinite = each.firstNotFinite;
        all.notFinite += each.notFinite;
    }
    computed.variable.name = definition.name;
    computed.variable.label = definition.expression;
    computed.variable.expression = definition.expression;
    computed.note = noteOf(data, definition, all);
    return computed;
}

void defineVariable(DataSet& data, const Definition& definition, const std::stop_token& stop) {
    ComputedVariable computed = computeVariable(data, definition, stop);
    data.addNote(std::move(computed.note));
    data.addVariable(std::move(computed.variable), std::move(computed.cells));
}

} // namespace korvana
