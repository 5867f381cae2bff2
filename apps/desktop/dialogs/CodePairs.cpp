#include "apps/desktop/dialogs/CodePairs.h"

#include "apps/desktop/WaitCursor.h"
#include "apps/desktop/dialogs/CodeGuess.h"

#include <algorithm>
#include <cmath>

namespace korvana::desktop {
namespace {

/// The codes of a variable that has just two.
std::optional<std::array<ozm::CodeCount, 2>> twoCodes(ozm::CAnalysisSupport& analysis, int variable) {
    const WaitCursor cursor;
    std::vector<ozm::CodeCount> codes;
    const int distinct = analysis.ReadDataToGetDefaultCodes(variable, {.most = 2, .countAll = false}, codes);
    if (distinct != 2 || codes.size() != 2) return std::nullopt;
    return std::array{codes[0], codes[1]};
}

double codeOf(const ozm::CAnalysisDialog& dialog, const ozm::ControlTemplate& field) {
    const auto* code = std::get_if<double>(&dialog.Value(field.id));
    return code != nullptr ? *code : std::numeric_limits<double>::quiet_NaN();
}

} // namespace

CodePairs::CodePairs(const ozm::DialogTemplate& shape) {
    for (const ozm::ControlTemplate& control : shape.controls)
        if (control.kind == ozm::ControlKind::VariableSelection && chooser_ == nullptr) chooser_ = &control;
    if (chooser_ == nullptr) return;
    for (int role = 0; role < static_cast<int>(chooser_->roles.size()); ++role) {
        std::vector<const ozm::ControlTemplate*> fields;
        for (const ozm::ControlTemplate& control : shape.controls)
            if (control.kind == ozm::ControlKind::CodeField && control.codesOfRole == role)
                fields.push_back(&control);
        if (fields.size() == 2) pairs_.push_back({{}, role, {fields[0], fields[1]}});
    }
}

int CodePairs::variableOf(const Pair& pair, const ozm::CAnalysisDialog& dialog) const {
    const auto* lists = std::get_if<ozm::VariableSelection>(&dialog.Value(chooser_->id));
    const auto role = static_cast<std::size_t>(pair.role);
    return lists == nullptr || role >= lists->size() || (*lists)[role].empty() ? 0 : (*lists)[role].front();
}

int CodePairs::partnerOf(int control) const {
    for (const Pair& pair : pairs_)
        for (const std::size_t place : {0U, 1U})
            if (pair.fields[place]->id == control) return pair.fields[1 - place]->id;
    return 0;
}

double CodePairs::filledIn(int control, const ozm::CAnalysisDialog& dialog) const {
    for (const Pair& pair : pairs_)
        for (const std::size_t place : {0U, 1U})
            if (pair.fields[place]->id == control && variableOf(pair, dialog) == pair.variable)
                return pair.filled[place];
    return std::numeric_limits<double>::quiet_NaN();
}

std::vector<CodePairs::Known> CodePairs::known() const {
    return {pairs_.begin(), pairs_.end()};
}

void CodePairs::recall(const std::vector<Known>& known, const ozm::CAnalysisDialog& dialog) {
    for (std::size_t i = 0; i < std::min(known.size(), pairs_.size()); ++i) {
        Pair& pair = pairs_[i];
        if (known[i].variable == 0 || known[i].variable != variableOf(pair, dialog)) continue;
        static_cast<Known&>(pair) = known[i];
        for (const std::size_t place : {0U, 1U})
            if (codeOf(dialog, *pair.fields[place]) != pair.filled[place])
                pair.filled[place] = std::numeric_limits<double>::quiet_NaN();
    }
}

std::vector<CodePairs::Fill> CodePairs::after(ozm::CAnalysisDialog& dialog, int changed,
                                              const std::function<bool(int control)>& untouched) {
    std::vector<Fill> fills;
    for (Pair& pair : pairs_) {
        if (changed == chooser_->id) {
            const int variable = variableOf(pair, dialog);
            if (variable == 0 || variable == pair.variable) continue;
            pair.variable = variable;
            pair.codes = twoCodes(dialog.Analysis(), variable);
            fill(pair, dialog, untouched, fills);
        } else if (changed == pair.fields[0]->id || changed == pair.fields[1]->id) {
            // From now on it counts as entered by the user.
            pair.filled[changed == pair.fields[0]->id ? 0 : 1] = std::numeric_limits<double>::quiet_NaN();
            if (!pair.codes) continue;
            fill(
                pair, dialog, [changed, &untouched](int id) { return id != changed && untouched(id); },
                fills);
        }
    }
    return fills;
}

void CodePairs::fill(Pair& pair, ozm::CAnalysisDialog& dialog,
                     const std::function<bool(int control)>& untouched, std::vector<Fill>& fills) const {
    std::array<double, 2> code{};
    std::array<bool, 2> free{};
    for (const std::size_t place : {0U, 1U}) {
        code[place] = codeOf(dialog, *pair.fields[place]);
        free[place] = untouched(pair.fields[place]->id) &&
                      (std::isnan(code[place]) || code[place] == pair.filled[place]);
    }
    std::array<double, 2> wanted = code;
    if (!pair.codes) { // remove what was filled in for another variable
        for (const std::size_t place : {0U, 1U})
            if (free[place]) wanted[place] = std::numeric_limits<double>::quiet_NaN();
    } else if (free[0] && free[1]) {
        std::string name;
        (void)dialog.Analysis().getvn5(pair.variable, name);
        wanted = guessCodes(pair.fields, *pair.codes, name);
    } else {
        for (const std::size_t place : {0U, 1U}) // the user entered one, the other field gets the other
            for (const std::size_t which : {0U, 1U})
                if (free[place] && code[1 - place] == (*pair.codes)[which].code)
                    wanted[place] = (*pair.codes)[1 - which].code;
    }
    for (const std::size_t place : {0U, 1U}) {
        const bool same =
            wanted[place] == code[place] || (std::isnan(wanted[place]) && std::isnan(code[place]));
        if (!free[place]) continue;
        pair.filled[place] = wanted[place];
        if (!same) fills.push_back({pair.fields[place]->id, wanted[place]});
    }
}

} // namespace korvana::desktop
