#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/results/OutputOrigin.h"
#include "host/results/Spreadsheet.h"
#include "support/CChartInfo.h"

namespace korvana {

/// Text for people, line by line.
struct Report {
    std::string title;
    std::vector<std::string> lines;
    std::shared_ptr<const OutputOrigin> origin{}; ///< nullptr: unknown
};

struct Chart {
    ozm::CChartInfo info;
    std::shared_ptr<const OutputOrigin> origin{}; ///< nullptr: unknown
};

/// A message of the analysis or the host.
struct ResultMessage {
    enum class Severity : std::uint8_t { Note, Warning, Error };
    int id = 0; ///< the module's number of the text, 0 for a message of the host
    std::string text;
    std::string detail; ///< may be empty
    Severity severity = Severity::Note;
};

struct ResultsBook;

/// Names of a book's outputs for programs, in their order: the action that made each, with a number from the
/// second of a kind on; of a run with a name this and a slash before it. Unique among outputs of a kind, and
/// the same in every such run; empty where the action is unknown.
[[nodiscard]] std::vector<std::string> outputIds(const ResultsBook& book);

/// The results of one run of an analysis. A plain value: every writer reads it, none changes it. Texts should
/// be UTF-8; writers replace what is not.
struct ResultsBook {
    using Output = std::variant<Report, Spreadsheet, Chart>;

    std::string analysis;
    int status = 0;     ///< 0: each output that was asked for was made; 1: at least one was not
    std::string source; ///< name of the data file
    std::vector<ResultMessage> messages;
    std::deque<Output> outputs;          ///< in the order produced; appending does not move the others
    std::vector<std::string> iterations; ///< the protocol of an iterative fit
    std::vector<std::string> notes;      ///< the host's own remarks, for example about the data

    /// Appends without copying what is moved in; the reference is valid as long as the book.
    template <class T>
    T& append(T output) {
        return std::get<T>(outputs.emplace_back(std::in_place_type<T>, std::move(output)));
    }

    /// The origin of an output, or nullptr.
    [[nodiscard]] static const std::shared_ptr<const OutputOrigin>& originOf(const Output& output) {
        return std::visit(
            [](const auto& one) -> const std::shared_ptr<const OutputOrigin>& { return one.origin; }, output);
    }

    /// Whether people find the output in a report anyway (a spreadsheet that repeats one).
    [[nodiscard]] static bool repeatsReport(const Output& output) {
        const auto* sheet = std::get_if<Spreadsheet>(&output);
        return sheet != nullptr && sheet->repeatsReport;
    }

    /// The spreadsheet appended last, or nullptr.
    [[nodiscard]] Spreadsheet* lastSpreadsheet() {
        const auto last = std::find_if(outputs.rbegin(), outputs.rend(), [](const Output& output) {
            return std::holds_alternative<Spreadsheet>(output);
        });
        return last == outputs.rend() ? nullptr : &std::get<Spreadsheet>(*last);
    }

    /// The outputs of one kind, in their order.
    template <class T>
    [[nodiscard]] std::vector<const T*> all() const {
        std::vector<const T*> found;
        for (const Output& output : outputs)
            if (const T* one = std::get_if<T>(&output)) found.push_back(one);
        return found;
    }
};

} // namespace korvana
