#include "host/results/JoinedRuns.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace korvana {
namespace {

using Run = std::shared_ptr<const RunOrigin>;

std::string& titleOf(ResultsBook::Output& output) {
    if (auto* report = std::get_if<Report>(&output)) return report->title;
    if (auto* sheet = std::get_if<Spreadsheet>(&output)) return sheet->title;
    return std::get<Chart>(output).info.title;
}

using Origin = std::shared_ptr<const OutputOrigin>;

/// Outputs of a run share its origin, and those of one press theirs, also the named ones.
struct Named {
    std::map<Run, Run> runs;
    std::map<Origin, Origin> origins;
};

void nameRun(ResultsBook::Output& output, const std::string& name, Named& named) {
    std::visit(
        [&](auto& one) {
            if (one.origin == nullptr || one.origin->run == nullptr) return;
            Origin& its = named.origins[one.origin];
            if (its != nullptr) {
                one.origin = its;
                return;
            }
            Run& run = named.runs[one.origin->run];
            if (run == nullptr) {
                auto copy = std::make_shared<RunOrigin>(*one.origin->run);
                copy->name = name;
                run = std::move(copy);
            }
            auto origin = std::make_shared<OutputOrigin>(*one.origin);
            origin->run = run;
            its = std::move(origin);
            one.origin = its;
        },
        output);
}

/// "Lognormal Regression Results" of the run "lognormal".
bool tells(std::string title, const std::string& name) {
    std::ranges::transform(title, title.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return title.starts_with(name);
}

using Titles = std::map<std::string, std::set<std::string>>; ///< with the names of the runs that have them

Titles titlesOf(std::vector<NamedBook>& runs) {
    Titles titles;
    for (NamedBook& run : runs)
        for (ResultsBook::Output& output : run.book.outputs)
            titles[titleOf(output)].insert(run.name);
    return titles;
}

void nameEverything(NamedBook& run, const Titles& titles) {
    Named named;
    for (ResultsBook::Output& output : run.book.outputs) {
        std::string& title = titleOf(output);
        if (titles.at(title).size() > 1 || !tells(title, run.name))
            title += title.empty() ? run.name : ", " + run.name;
        nameRun(output, run.name, named);
    }
    for (ResultMessage& message : run.book.messages)
        message.text.insert(0, run.name + ": ");
    if (!run.book.iterations.empty()) run.book.iterations.insert(run.book.iterations.begin(), run.name);
}

bool has(const std::vector<std::string>& notes, const std::string& note) {
    return std::ranges::find(notes, note) != notes.end();
}

void joinNotes(const std::vector<NamedBook>& runs, std::vector<std::string>& notes) {
    for (const NamedBook& run : runs)
        for (const std::string& note : run.book.notes) {
            const bool isOfAll =
                run.name.empty() || std::ranges::all_of(runs, [&](const NamedBook& other) {
                    return other.name.empty() || other.book.outputs.empty() || has(other.book.notes, note);
                });
            std::string text = isOfAll ? note : run.name + ": " + note;
            if (!has(notes, text)) notes.push_back(std::move(text));
        }
}

template <class T>
void moveTo(T& whole, T& part) {
    std::move(part.begin(), part.end(), std::back_inserter(whole));
}

} // namespace

ResultsBook joinedRuns(std::vector<NamedBook> runs) {
    ResultsBook whole;
    joinNotes(runs, whole.notes);
    const Titles titles = titlesOf(runs);
    for (NamedBook& run : runs) {
        if (!run.name.empty()) nameEverything(run, titles);
        if (whole.analysis.empty()) whole.analysis = run.book.analysis;
        if (whole.source.empty()) whole.source = run.book.source;
        whole.status = std::max(whole.status, run.book.status);
        moveTo(whole.messages, run.book.messages);
        moveTo(whole.outputs, run.book.outputs);
        moveTo(whole.iterations, run.book.iterations);
    }
    return whole;
}

} // namespace korvana
