#include "host/session/SessionRouting.h"

#include "host/data/FileName.h"
#include "host/results/DataFile.h"
#include "host/results/SaveOutputs.h"
#include "support/dialogs/CAnalysisDialog.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <stdexcept>

namespace korvana {
namespace {

/// The two words that a member with a choice knows.
using Words = std::array<std::string_view, 2>;
constexpr Words selectionWords{"include", "exclude"};
constexpr Words placeWords{"book and file", "book"};
constexpr Words numberWords{"full", "shown"};

[[noreturn]] void refuse(const std::string& why) {
    throw std::invalid_argument(why);
}

const std::string& textOf(const ozm::AutomationValue& value) {
    if (const auto* text = std::get_if<std::string>(&value.value)) return *text;
    refuse("a text is expected");
}

bool isSecond(const Words& words, const ozm::AutomationValue& value) {
    const std::string& text = textOf(value);
    if (text != words[0] && text != words[1])
        refuse("'" + text + "' is neither '" + std::string{words[0]} + "' nor '" + std::string{words[1]} +
               "'");
    return text == words[1];
}

const ozm::AutomationValue::List& listOf(const ozm::AutomationValue& value, const char* what) {
    if (const auto* list = std::get_if<ozm::AutomationValue::List>(&value.value)) return *list;
    refuse(std::string{"a list of "} + what + " is expected");
}

std::vector<std::string> textsOf(const ozm::AutomationValue& value) {
    std::vector<std::string> texts;
    for (const ozm::AutomationValue& each : listOf(value, "texts")) {
        const auto* text = std::get_if<std::string>(&each.value);
        if (text == nullptr) refuse("a list of texts is expected");
        texts.push_back(*text);
    }
    return texts;
}

ozm::AutomationValue::List codesOf(const ozm::AutomationValue& value) {
    const ozm::AutomationValue::List& codes = listOf(value, "codes");
    for (const ozm::AutomationValue& each : codes)
        if (!std::holds_alternative<int>(each.value) && !std::holds_alternative<double>(each.value) &&
            !std::holds_alternative<std::string>(each.value))
            refuse("a code is a number or a text");
    return codes;
}

/// Actions of the dialog that are not of every dialog.
std::vector<std::string> actionsOf(const ozm::CAnalysisDialog& dialog, const ozm::AutomationValue& value) {
    std::vector<std::string> names = textsOf(value);
    std::string known;
    if (dialog.Interface() != nullptr)
        for (const ozm::AutomationMember& member : dialog.Interface()->members)
            if (member.kind == ozm::MemberKind::Action)
                known.append(known.empty() ? "" : ", ").append(member.name);
    for (const std::string& name : names) {
        const ozm::AutomationMember* member =
            dialog.Interface() != nullptr ? dialog.Interface()->Find(name) : nullptr;
        if (member == nullptr || member->kind != ozm::MemberKind::Action)
            refuse("'" + name + "' is no action of this dialog; " +
                   (known.empty() ? "it has none" : "it has " + known));
    }
    return names;
}

std::string fileOf(const ozm::AutomationValue& value, const std::filesystem::path& dataFile) {
    const std::string& name = textOf(value);
    if (name.empty()) return name;
    const std::filesystem::path file{name};
    if (hasNul(file)) refuse("'" + shownName(file) + "': " + nulInName);
    (void)formatOfFile(file);
    std::error_code error;
    if (const auto folder = file.parent_path();
        !folder.empty() && !std::filesystem::is_directory(folder, error))
        refuse("'" + folder.string() + "' is no directory");
    if (std::filesystem::is_directory(file, error)) refuse("'" + name + "' is a directory");
    refuseDataFile(file, dataFile);
    return name;
}

ozm::AutomationValue listOf(const std::vector<std::string>& texts) {
    return ozm::AutomationValue::List(texts.begin(), texts.end());
}

ozm::AutomationValue wordOf(const Words& words, bool second) {
    return std::string{words[second ? 1 : 0]};
}

} // namespace

bool SessionRouting::DialogRoute::takes(std::string_view action) const {
    if (!toFile || file.empty()) return false;
    const bool named = std::ranges::find(actions, action) != actions.end();
    return allButThese ? !named : named || actions.empty();
}

ozm::AutomationValue SessionRouting::Get(const ozm::CAnalysisDialog& dialog, std::string_view member) {
    const auto found = routes_.find(&dialog);
    const DialogRoute route = found != routes_.end() ? found->second : DialogRoute{};
    if (member == "ResultsSelection") return listOf(route.actions);
    if (member == "ResultsSelectionOption") return wordOf(selectionWords, route.allButThese);
    if (member == "ResultsVariables") return listOf(route.part.variables);
    if (member == "ResultsOption") return wordOf(placeWords, !route.toFile);
    if (member == "ResultsCodes") return route.part.codes;
    if (member == "ResultsSaveFileName") return route.file;
    if (member == "ResultsValues") return wordOf(numberWords, route.part.rounded);
    if (member == "ResultsOutputFields") return listOf(route.part.fields);
    refuse("this host does not know '" + std::string{member} + "'");
}

void SessionRouting::Put(const ozm::CAnalysisDialog& dialog, std::string_view member,
                         const ozm::AutomationValue& value) {
    DialogRoute& route = routes_[&dialog];
    if (member == "ResultsSelection") {
        route.actions = actionsOf(dialog, value);
    } else if (member == "ResultsSelectionOption") {
        route.allButThese = isSecond(selectionWords, value);
    } else if (member == "ResultsVariables") {
        route.part.variables = textsOf(value);
    } else if (member == "ResultsOption") {
        route.toFile = !isSecond(placeWords, value);
    } else if (member == "ResultsCodes") {
        route.part.codes = codesOf(value);
    } else if (member == "ResultsSaveFileName") {
        route.file = fileOf(value, parts_.data.state().where());
        route.saved = {};
    } else if (member == "ResultsValues") {
        route.part.rounded = isSecond(numberWords, value);
    } else if (member == "ResultsOutputFields") {
        route.part.fields = textsOf(value);
    } else {
        refuse("this host does not know '" + std::string{member} + "'");
    }
}

void SessionRouting::Route(const ozm::CAnalysisDialog& dialog, std::string_view action) {
    const auto found = routes_.find(&dialog);
    if (found == routes_.end() || !found->second.takes(action)) return;
    DialogRoute& route = found->second;
    const ResultsBook& book = *parts_.book;
    std::vector<ResultsBook::Output> made;
    bool tables = false; // one of them is a spreadsheet
    std::string lacking; // the columns of spreadsheets that have none of the fields
    for (std::size_t place = parts_.firstOutputOfCommand(); place < book.outputs.size(); ++place) {
        const auto* sheet = std::get_if<Spreadsheet>(&book.outputs[place]);
        if (sheet == nullptr) {
            made.push_back(book.outputs[place]);
        } else if (auto part = partOf(*sheet, route.part)) {
            made.emplace_back(*std::move(part));
            tables = true;
        } else {
            for (const Spreadsheet::Column& column : sheet->columns)
                lacking.append(lacking.empty() ? "" : ", ")
                    .append(column.id.empty() ? column.readableHeading() : column.id);
        }
    }
    if (made.empty() && lacking.empty()) return; // nothing was made
    const std::string kept = "the output is in the book, but ";
    if (!tables && !lacking.empty()) // a name is wrong, which must not pass in silence
        refuse(kept + "not in '" + route.file +
               "': it has none of the columns of ResultsOutputFields; it has " + lacking);

    ResultsBook& saved = route.saved;
    const std::size_t before = saved.outputs.size();
    saved.outputs.insert(saved.outputs.end(), std::make_move_iterator(made.begin()),
                         std::make_move_iterator(made.end()));
    saved.analysis = book.analysis;
    saved.status = book.status;
    saved.source = book.source;
    saved.messages = book.messages;
    saved.iterations = book.iterations;
    saved.notes = book.notes;
    try {
        saveOutputs(saved, route.file);
    } catch (const NothingToWrite&) { // NOLINT(bugprone-empty-catch): a table for a file of pictures, or so
    } catch (const std::exception& failure) {
        saved.outputs.erase(saved.outputs.begin() + static_cast<std::ptrdiff_t>(before), saved.outputs.end());
        refuse(kept + failure.what());
    }
}

} // namespace korvana
