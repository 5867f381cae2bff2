#include "host/session/ActiveData.h"

#include "host/data/CaseWeights.h"
#include "host/data/DataError.h"
#include "host/data/Expression.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <utility>

namespace korvana {
namespace {

std::string cases(int count) {
    return std::to_string(count) + (count == 1 ? " case" : " cases");
}

} // namespace

void ActiveData::open(DataSet data) {
    std::vector<Cells> columns;
    columns.reserve(static_cast<std::size_t>(data.variableCount()));
    for (int i = 0; i < data.variableCount(); ++i)
        columns.push_back({data.column(i).data(), data.variable(i).missingCode});
    data_ = std::move(data);
    std::error_code error;
    const std::filesystem::path file{data_.path()};
    place_ = std::filesystem::exists(file, error) ? std::filesystem::absolute(file, error).string() : "";
    columns_ = std::move(columns);
    selection_ = {};
    condition_.clear();
    weightVariable_ = 0;
    ++generation_;
    descriptions_ = 0;
    changes_.clear();
    missingAtFirst_.clear();
    for (int i = 0; i < data_.variableCount(); ++i)
        if (const Variable& variable = data_.variable(i); !std::isnan(variable.missingCode))
            missingAtFirst_.push_back({variable.name, variable.missingCode});
}

int ActiveData::computedBefore(int variable0) const {
    int count = 0;
    for (int i = 0; i < variable0; ++i)
        count += data_.variable(i).expression.empty() ? 0 : 1;
    return count;
}

/// Changes of one variable between the same computations are one.
void ActiveData::keepChange(Description change) {
    const auto same = std::ranges::find_if(changes_, [&change](const Description& earlier) {
        return earlier.variable == change.variable && earlier.after == change.after;
    });
    if (same == changes_.end()) {
        changes_.push_back(std::move(change));
        return;
    }
    if (change.label) same->label = std::move(change.label);
    if (change.missingCode) same->missingCode = change.missingCode;
    if (change.labels) same->labels = std::move(change.labels);
}

void ActiveData::select(std::string_view condition) {
    selection_ = condition.empty() ? CaseSelection{} : selectCases(data_, condition);
    condition_ = condition;
}

void ActiveData::select(std::string condition, CaseSelection selection) {
    selection_ = std::move(selection);
    condition_ = std::move(condition);
}

void ActiveData::describe(int variable0, std::string label, double missingCode,
                          std::vector<ValueLabel> valueLabels) {
    Variable& variable = data_.variable(variable0);
    const auto exchange = [&] {
        variable.label.swap(label);
        std::swap(variable.missingCode, missingCode);
        variable.valueLabels.swap(valueLabels);
        columns_[static_cast<std::size_t>(variable0)].missingCode = variable.missingCode;
    };
    exchange();
    try {
        const std::string condition = condition_;
        select(condition);
    } catch (...) {
        exchange();
        throw;
    }
    ++descriptions_;
    // What was there before is in the arguments now.
    Description change{.variable = variable.name, .after = computedBefore(data_.variableCount())};
    if (variable.label != label) change.label = variable.label;
    if (variable.missingCode != missingCode && !(std::isnan(variable.missingCode) && std::isnan(missingCode)))
        change.missingCode = variable.missingCode;
    const auto same = [](const ValueLabel& one, const ValueLabel& other) {
        return one.value == other.value && one.text == other.text;
    };
    if (!std::ranges::equal(variable.valueLabels, valueLabels, same)) {
        change.labels.emplace();
        for (const ValueLabel& each : variable.valueLabels)
            change.labels->emplace_back(each.value, each.text);
    }
    if (change.label || change.missingCode || change.labels) keepChange(std::move(change));
}

DataState ActiveData::state() const {
    DataState state;
    state.file = data_.path();
    state.place = place_;
    state.generation = generation_;
    state.descriptions = descriptions_;
    state.cases = data_.caseCount();
    state.selectedCases = selectedCount();
    state.condition = condition_;
    if (weightVariable_ > 0) state.weightVariable = data_.variable(weightVariable_ - 1).name;
    return state;
}

void ActiveData::define(const Definition& definition) {
    define(computeVariable(data_, definition));
}

void ActiveData::define(ComputedVariable computed) {
    columns_.reserve(columns_.size() + 1);
    if (!computed.note.empty()) data_.addNote(std::move(computed.note));
    data_.addVariable(std::move(computed.variable), std::move(computed.cells));
    const int last = data_.variableCount() - 1;
    columns_.push_back({data_.column(last).data(), data_.variable(last).missingCode});
}

void ActiveData::undefine(int variable0) {
    const Variable& variable = data_.variable(variable0);
    const std::string name = variable.name;
    const auto refuse = [&name](const std::string& why) { throw DataError("'" + name + "' stays: " + why); };
    // Variables after it move up, so that v9 would mean another one.
    enum class Use { None, Itself, LaterByNumber };
    const auto useIn = [this, variable0](const std::string& expression) {
        Use use = Use::None;
        if (expression.empty()) return use;
        const Expression compiled(expression, data_);
        const std::vector<int>& used = compiled.referencedVariables();
        for (std::size_t k = 0; k < used.size() && use != Use::Itself; ++k)
            use = used[k] == variable0 + 1                             ? Use::Itself
                  : used[k] > variable0 && compiled.isNamedByNumber(k) ? Use::LaterByNumber
                                                                       : use;
        return use;
    };
    const std::string byNumber =
        " has a later variable by its number, which would change; write its name there";
    if (variable.expression.empty()) refuse("it was read from the file, not computed");
    if (weightVariable_ == variable0 + 1) refuse("it weights the cases; choose other case weights first");
    if (const Use use = useIn(condition_); use != Use::None)
        refuse("the selection of cases" + (use == Use::Itself ? " uses it; change that first" : byNumber));
    for (int other = 0; other < data_.variableCount(); ++other) {
        const Use use = other == variable0 ? Use::None : useIn(data_.variable(other).expression);
        if (use == Use::None) continue;
        const std::string theOther = "'" + data_.variable(other).name + "'";
        refuse(use == Use::Itself ? theOther + " is computed from it; remove that first"
                                  : "the definition of " + theOther + byNumber);
    }

    const int ordinal = computedBefore(variable0);
    std::erase_if(changes_, [&name](const Description& change) { return change.variable == name; });
    for (Description& change : changes_)
        if (change.after > ordinal) --change.after;
    std::erase_if(missingAtFirst_, [&name](const MissingCode& code) { return code.variable == name; });
    data_.removeVariable(variable0, "Computed: " + definitionText({name, variable.expression}) + ".");
    columns_.erase(columns_.begin() + variable0);
    if (weightVariable_ > variable0 + 1) --weightVariable_;
}

int ActiveData::selectedCount() const {
    return selection_.mask.empty() ? data_.caseCount() : selection_.selectedCount;
}

void ActiveData::weightBy(std::string_view nameOrNumber1) {
    weightVariable_ = nameOrNumber1.empty() ? 0 : resolveWeights(data_, nameOrNumber1).variable + 1;
}

std::vector<std::string> ActiveData::notes() const {
    std::vector<std::string> notes = data_.notes();
    if (!condition_.empty()) {
        std::string note = "Selected " + std::to_string(selectedCount()) + " of " + cases(data_.caseCount()) +
                           ": " + condition_ + ".";
        if (selection_.missingCount > 0)
            note += " " + cases(selection_.missingCount) + " left out: a value of the condition is missing.";
        notes.push_back(std::move(note));
    }
    if (weightVariable_ > 0) {
        // The analysis itself explains the effect of unusual weights.
        notes.push_back("Cases weighted by '" + data_.variable(weightVariable_ - 1).name + "'.");
    }
    return notes;
}

} // namespace korvana
