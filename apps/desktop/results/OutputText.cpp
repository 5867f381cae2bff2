#include "apps/desktop/results/OutputText.h"

#include <QCoreApplication>
#include <algorithm>
#include <sstream>
#include <type_traits>
#include <utility>

#include "apps/desktop/CommandText.h"
#include "host/results/OriginText.h"
#include "host/results/TextWriter.h"
#include "host/results/Utf8.h"

namespace korvana::desktop {
namespace {

QString translated(const char* text) {
    return QCoreApplication::translate("Workbook", text);
}

void addHeading(std::vector<std::string>& lines, const char* heading) {
    const std::string text = translated(heading).toStdString();
    lines.emplace_back();
    lines.push_back(text);
    lines.emplace_back(textWidth(text), '-');
}

template <class T>
void keepFirst(std::vector<T>& all, const std::vector<T>& from, std::size_t count) {
    all.assign(from.begin(), from.begin() + static_cast<std::ptrdiff_t>(std::min(count, from.size())));
}

Spreadsheet firstRows(const Spreadsheet& sheet, std::size_t count) {
    Spreadsheet first;
    first.title = sheet.title;
    first.notes = sheet.notes;
    first.footnotes = sheet.footnotes;
    keepFirst(first.rowHeadings, sheet.rowHeadings, count);
    for (const Spreadsheet::Column& column : sheet.columns) {
        Spreadsheet::Column& kept = first.columns.emplace_back(
            Spreadsheet::Column{column.heading1, column.heading2, column.format, {}});
        std::visit(
            [&](const auto& cells) {
                std::decay_t<decltype(cells)> few;
                if constexpr (std::is_same_v<decltype(few), Spreadsheet::Dictionary>) {
                    few.texts = cells.texts;
                    keepFirst(few.index, cells.index, count);
                } else {
                    keepFirst(few, cells, count);
                }
                kept.cells = std::move(few);
            },
            column.cells);
    }
    return first;
}

/// The name of the output and, where it is known, the time of day.
std::string outputLine(const ResultsBook& book, std::size_t place) {
    const std::string name = tellingName(book, place).toStdString();
    const auto& origin = ResultsBook::originOf(book.outputs[place]);
    return origin == nullptr ? name : timeOfDay(*origin) + "  " + name;
}

/// The settings of the run, taken from the first output that has them: they are the same for all.
void addSettings(std::vector<std::string>& lines, const ResultsBook& book) {
    for (const ResultsBook::Output& output : book.outputs) {
        const auto& origin = ResultsBook::originOf(output);
        if (origin == nullptr || origin->run == nullptr) continue;
        addHeading(lines, "Settings");
        for (std::string& line : originLines(*origin->run))
            lines.push_back(std::move(line));
        return;
    }
}

} // namespace

QString outputName(const ResultsBook& book, std::size_t place) {
    const ResultsBook::Output& output = book.outputs[place];
    std::string title;
    const char* kind = "Report";
    if (const auto* report = std::get_if<Report>(&output)) title = report->title;
    if (const auto* sheet = std::get_if<Spreadsheet>(&output)) {
        title = sheet->title;
        kind = "Table";
    }
    if (const auto* chart = std::get_if<Chart>(&output)) {
        title = chart->info.title;
        kind = "Chart";
    }
    const QString name = QString::fromStdString(oneLine(title)).simplified();
    return name.isEmpty() ? QStringLiteral("%1 %2").arg(translated(kind)).arg(place + 1) : name;
}

QString tellingName(const ResultsBook& book, std::size_t place) {
    const QString name = outputName(book, place);
    const QString own = ownSettings(book, place);
    return own.isEmpty() ? name : name + QStringLiteral("  [%1]").arg(own);
}

QString ownSettings(const ResultsBook& book, std::size_t place) {
    const auto& origin = ResultsBook::originOf(book.outputs[place]);
    if (origin == nullptr) return {};
    std::vector<const OutputOrigin*> alike;
    for (const ResultsBook::Output& output : book.outputs)
        if (const auto& other = ResultsBook::originOf(output); other != nullptr && other->id == origin->id)
            alike.push_back(other.get());
    return QString::fromStdString(oneLine(differingSettings(*origin, alike)));
}

QString originText(const ResultsBook& book, std::size_t place) {
    const auto& origin = ResultsBook::originOf(book.outputs[place]);
    if (origin == nullptr) return {};
    std::string line = timeOfDay(*origin);
    if (origin->run == nullptr) return QString::fromStdString(line);
    line += " | " + originLine(*origin->run);
    QStringList remarks;
    for (const std::string& remark : origin->run->remarks)
        remarks += QString::fromStdString(oneLine(remark));
    QString first = QString::fromStdString(oneLine(line));
    if (const QString own = ownSettings(book, place); !own.isEmpty()) first += QStringLiteral(" | ") + own;
    return remarks.isEmpty() ? first : first + QLatin1Char('\n') + remarks.join(QLatin1Char(' '));
}

QString originDetails(const ResultsBook::Output& output) {
    const auto& origin = ResultsBook::originOf(output);
    if (origin == nullptr) return {};
    QStringList lines;
    for (const std::string& line : originLines(*origin))
        lines += QString::fromStdString(oneLine(line));
    return lines.join(QLatin1Char('\n'));
}

std::vector<std::string> runLines(const ResultsBook& book, const std::vector<std::size_t>& leftOut) {
    std::vector<std::string> lines;
    lines.push_back(book.analysis.empty() ? translated("Results").toStdString() : book.analysis);
    lines.emplace_back(textWidth(lines.front()), '=');
    if (!book.source.empty())
        lines.push_back(
            translated("Data: %1").arg(QString::fromStdString(oneLine(book.source))).toStdString());
    if (book.status != 0)
        lines.push_back(
            translated("Not every output that was asked for could be made; see the messages.").toStdString());
    for (const std::string& note : book.notes)
        lines.push_back(inCommandsOfTheWindow(QString::fromStdString(note)).toStdString());
    addSettings(lines, book);
    if (!book.messages.empty()) addHeading(lines, "Messages");
    for (const ResultMessage& message : book.messages) {
        lines.push_back(messageText(message));
        if (!message.detail.empty()) lines.push_back("  " + message.detail);
    }
    if (book.outputs.size() > leftOut.size()) addHeading(lines, "Outputs");
    for (std::size_t place = 0; place < book.outputs.size(); ++place)
        if (std::find(leftOut.begin(), leftOut.end(), place) == leftOut.end())
            lines.push_back(outputLine(book, place));
    if (!book.iterations.empty()) addHeading(lines, "Iterations");
    lines.insert(lines.end(), book.iterations.begin(), book.iterations.end());
    return lines;
}

std::vector<std::string> sheetLines(const Spreadsheet& sheet, std::size_t mostRows) {
    const std::size_t rows = sheet.rowCount();
    std::ostringstream out;
    if (rows > mostRows) {
        writeText(firstRows(sheet, mostRows), out);
    } else {
        writeText(sheet, out);
    }
    std::vector<std::string> lines;
    std::istringstream in(out.str());
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    if (rows > mostRows) {
        lines.emplace_back();
        lines.push_back(translated("The first %1 of %2 rows; export the table to have all of them.")
                            .arg(mostRows)
                            .arg(rows)
                            .toStdString());
    }
    return lines;
}

} // namespace korvana::desktop
