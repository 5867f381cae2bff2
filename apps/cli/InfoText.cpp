#include "apps/cli/InfoText.h"

#include "apps/cli/Console.h"
#include "host/data/DayNumber.h"
#include "host/data/Describe.h"
#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"
#include "host/results/Utf8.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace korvana::cli {
namespace {

constexpr int mostDistinct = 1000;     // counted
constexpr std::size_t mostListed = 12; // an unlabelled variable with more values is a scale, not codes
constexpr std::size_t lineWidth = 100;
constexpr std::size_t longestName = 40; // bytes
constexpr std::size_t longestLabel = 60;

std::string valueText(const Variable& variable, double value) {
    const std::string date = variable.kind == VariableKind::Date ? isoDateText(value) : std::string{};
    return date.empty() ? numberText(value) : date;
}

std::string rangeText(const Variable& variable, const VariableSummary& summary) {
    if (summary.validCount == 0 || variable.kind == VariableKind::Text) return "--";
    return valueText(variable, summary.min) + " to " + valueText(variable, summary.max);
}

std::string distinctText(const DistinctValues& distinct) {
    return distinct.moreThanLimit ? "> " + std::to_string(mostDistinct)
                                  : std::to_string(distinct.values.size());
}

bool hasCodes(const Variable& variable, const DistinctValues& distinct) {
    const bool labelled = variable.kind == VariableKind::Text || !variable.valueLabels.empty();
    return labelled || (variable.kind == VariableKind::Number && !distinct.moreThanLimit &&
                        !distinct.values.empty() && distinct.values.size() <= mostListed);
}

void writePadded(std::ostream& out, const std::string& text, std::size_t width, bool left) {
    const std::size_t own = textWidth(text);
    const std::string padding(width > own ? width - own : 0, ' ');
    out << (left ? text + padding : padding + text);
}

/// Writes words in lines, indented under the first one.
void writeWrapped(std::ostream& out, const std::string& head, const std::vector<std::string>& words) {
    std::string line = head;
    const std::size_t indent = textWidth(head);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string word = words[i] + (i + 1 < words.size() ? "," : "");
        if (textWidth(line) > indent && textWidth(line) + 1 + textWidth(word) > lineWidth) {
            out << line << '\n';
            line.assign(indent, ' ');
        }
        line += (textWidth(line) > indent ? " " : "") + word;
    }
    out << line << '\n';
}

std::vector<std::string> codeWords(const Variable& variable, const DistinctValues& distinct) {
    std::vector<std::string> words;
    for (const DistinctValue& value : distinct.values) {
        if (words.size() == mostListed) break;
        std::string word = valueText(variable, value.value);
        if (!value.label.empty() && value.label != word)
            word += " '" + brief(value.label, longestLabel) + "'";
        words.push_back(word + " (" + std::to_string(value.count) + ")");
    }
    if (distinct.moreThanLimit)
        words.push_back("more than " + std::to_string(mostDistinct) + " values");
    else if (distinct.values.size() > mostListed)
        words.push_back("and " + std::to_string(distinct.values.size() - mostListed) + " more");
    return words;
}

std::string title(const ActiveData& data) {
    const int all = data.dataSet().caseCount();
    std::string text = oneLine(data.dataSet().fileName()) + ": " + std::to_string(all) +
                       (all == 1 ? " case, " : " cases, ") + std::to_string(data.dataSet().variableCount()) +
                       (data.dataSet().variableCount() == 1 ? " variable" : " variables");
    return text;
}

std::vector<VariableSummary> describeAll(const ActiveData& data) {
    std::vector<VariableSummary> summaries;
    summaries.reserve(static_cast<std::size_t>(data.dataSet().variableCount()));
    for (int i = 0; i < data.dataSet().variableCount(); ++i)
        summaries.push_back(describeVariable(data.dataSet(), i, data.mask(), mostDistinct));
    return summaries;
}

} // namespace

void writeInfo(const ActiveData& active, std::ostream& out) {
    const DataSet& data = active.dataSet();
    const std::vector<VariableSummary> summaries = describeAll(active);
    out << title(active) << '\n';
    for (const std::string& note : active.notes())
        out << withShortQuotes(oneLine(note)) << '\n';

    constexpr std::size_t columns = 8;
    using Row = std::array<std::string, columns>;
    constexpr std::array<bool, columns> left{false, true, true, false, false, false, true, true};
    std::vector<Row> rows{{"No", "Name", "Kind", "Cases", "Missing", "Values", "Range", "Label"}};
    for (int i = 0; i < data.variableCount(); ++i) {
        const Variable& variable = data.variable(i);
        const VariableSummary& summary = summaries[static_cast<std::size_t>(i)];
        rows.push_back({std::to_string(i + 1), brief(variable.name, longestName), kindName(variable.kind),
                        std::to_string(summary.validCount), std::to_string(summary.missingCount),
                        distinctText(summary.distinct), rangeText(variable, summary),
                        brief(variable.label, longestLabel)});
    }
    std::array<std::size_t, columns> widths{};
    for (const Row& row : rows)
        for (std::size_t c = 0; c < columns; ++c)
            widths[c] = std::max(widths[c], textWidth(row[c]));
    const bool labels =
        std::any_of(rows.begin() + 1, rows.end(), [](const Row& row) { return !row.back().empty(); });
    out << '\n';
    for (const Row& row : rows) {
        const std::size_t last = labels ? columns - 1 : columns - 2;
        for (std::size_t c = 0; c < last; ++c) {
            writePadded(out, row[c], widths[c], left[c]);
            out << "  ";
        }
        out << row[last] << '\n';
    }

    bool first = true;
    for (int i = 0; i < data.variableCount(); ++i) {
        const Variable& variable = data.variable(i);
        const VariableSummary& summary = summaries[static_cast<std::size_t>(i)];
        std::vector<std::string> words;
        if (hasCodes(variable, summary.distinct)) words = codeWords(variable, summary.distinct);
        if (!std::isnan(variable.missingCode))
            words.push_back("missing-data code " + valueText(variable, variable.missingCode));
        if (words.empty()) continue;
        if (first) out << "\nCodes (cases)\n";
        first = false;
        std::string head = "  " + brief(variable.name, longestName);
        const std::size_t width = std::min<std::size_t>(widths[1], 20) + 2;
        head.append(textWidth(head) < width ? width - textWidth(head) : 0, ' ');
        writeWrapped(out, head + "  ", words);
    }
}

void writeInfoJson(const ActiveData& active, std::ostream& out) {
    using Json = nlohmann::ordered_json;
    const DataSet& data = active.dataSet();
    const std::vector<VariableSummary> summaries = describeAll(active);
    Json all{{"source", oneLine(data.fileName())},
             {"cases", data.caseCount()},
             {"selected", active.selectedCount()},
             {"notes", Json::array()},
             {"variables", Json::array()}};
    for (const std::string& note : active.notes())
        all["notes"].push_back(oneLine(note));
    for (int i = 0; i < data.variableCount(); ++i) {
        const Variable& variable = data.variable(i);
        const VariableSummary& summary = summaries[static_cast<std::size_t>(i)];
        Json one{{"number", i + 1},
                 {"name", oneLine(variable.name)},
                 {"label", oneLine(variable.label)},
                 {"kind", kindName(variable.kind)},
                 {"cases", summary.validCount},
                 {"missing", summary.missingCount},
                 {"min", summary.min},
                 {"max", summary.max}};
        if (!std::isnan(variable.missingCode)) one["missingCode"] = variable.missingCode;
        if (hasCodes(variable, summary.distinct)) {
            one["codes"] = Json::array();
            for (const DistinctValue& value : summary.distinct.values)
                one["codes"].push_back(
                    {{"code", value.value}, {"label", oneLine(value.label)}, {"cases", value.count}});
        }
        all["variables"].push_back(std::move(one));
    }
    out << all.dump(1) << '\n';
}

} // namespace korvana::cli
