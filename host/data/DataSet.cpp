#include "host/data/DataSet.h"

#include "host/data/DataError.h"
#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"

#include <charconv>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace korvana {

DataSet::DataSet(std::string path, int caseCount) : path_(std::move(path)), caseCount_(caseCount) {
    if (caseCount < 0) throw std::invalid_argument("a data set cannot have a negative number of cases");
}

std::string DataSet::fileName() const {
    return std::filesystem::path(path_).filename().string();
}

std::span<const double> DataSet::column(int index0) const {
    return columns_.at(static_cast<std::size_t>(index0)).cells(static_cast<std::size_t>(caseCount_));
}

void DataSet::addVariable(Variable variable, Column column) {
    columns_.reserve(columns_.size() + 1); // so that the two lists cannot end up of different length
    variables_.push_back(std::move(variable));
    columns_.push_back(std::move(column));
}

void DataSet::removeVariable(int index0, std::string_view noteBeginning) {
    (void)variable(index0); // throws when there is none
    variables_.erase(variables_.begin() + index0);
    columns_.erase(columns_.begin() + index0);
    std::erase_if(notes_,
                  [noteBeginning](const std::string& note) { return note.starts_with(noteBeginning); });
}

std::optional<int> DataSet::find(std::string_view nameOrNumber1) const {
    std::optional<int> found;
    bool unique = true;
    for (int i = 0; i < variableCount(); ++i) {
        if (variable(i).name == nameOrNumber1) return i;
        if (!equalIgnoringCase(variable(i).name, nameOrNumber1)) continue;
        unique = unique && !found.has_value();
        found = i;
    }
    if (found.has_value() && unique) return found;
    int number = 0;
    const char* const end = nameOrNumber1.data() + nameOrNumber1.size();
    const auto read = std::from_chars(nameOrNumber1.data(), end, number);
    if (read.ec == std::errc() && read.ptr == end && number >= 1 && number <= variableCount())
        return number - 1;
    return std::nullopt;
}

int DataSet::require(std::string_view nameOrNumber1) const {
    if (const auto index = find(nameOrNumber1)) return *index;
    bool ambiguous = false;
    for (const Variable& each : variables_)
        ambiguous = ambiguous || equalIgnoringCase(each.name, nameOrNumber1);
    std::string text(ambiguous ? "several variables differ from '" : "there is no variable '");
    text.append(nameOrNumber1);
    if (ambiguous) {
        text.append("' only in capital letters; write the name as it is in the data");
    } else {
        text.append("'").append(didYouMean(nearestNames(nameOrNumber1)));
        if (variableCount() == 1)
            text.append("; the only one is '").append(variable(0).name).append("'");
        else
            text.append("; name one of the ")
                .append(std::to_string(variableCount()))
                .append(" variables, or give its number");
    }
    throw DataError(path_, 0, 0, text + layoutRemarks());
}

void DataSet::addNote(std::string note, bool layout) {
    if (layout) layoutNotes_.push_back(note);
    notes_.push_back(std::move(note));
}

std::string DataSet::layoutRemarks() const {
    std::string text;
    for (const std::string& note : layoutNotes_)
        text.append("\n").append(path_).append(": ").append(note);
    return text;
}

std::vector<std::string> DataSet::nearestNames(std::string_view name, int most) const {
    std::vector<std::string_view> names;
    for (const Variable& each : variables_)
        names.emplace_back(each.name);
    return nearestOf(name, names, static_cast<std::size_t>(most > 0 ? most : 0));
}

std::string_view DataSet::caseName(int case0) const {
    if (!hasCaseNames()) return {};
    const auto place = static_cast<std::size_t>(case0);
    const std::uint64_t begin = place == 0 ? 0 : caseNames_.ends.at(place - 1);
    return std::string_view(caseNames_.text).substr(begin, caseNames_.ends.at(place) - begin);
}

void DataSet::setCaseNames(CaseNames names) {
    if (names.ends.size() != static_cast<std::size_t>(caseCount_))
        throw std::invalid_argument("a data set needs one name per case");
    caseNames_ = std::move(names);
}

} // namespace korvana
