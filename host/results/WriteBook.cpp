#include "host/results/WriteBook.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

#include "host/results/ChartDrawing.h"
#include "host/results/CsvWriter.h"
#include "host/results/DataFile.h"
#include "host/results/HtmlWriter.h"
#include "host/results/JsonWriter.h"
#include "host/results/RecordedScript.h"
#include "host/results/ResultsFolder.h"
#include "host/results/TextWriter.h"
#include "host/results/XlsxWriter.h"

namespace korvana {
namespace {

constexpr std::array<std::pair<std::string_view, OutputFormat>, outputFormatCount> formatTexts{
    {{"json", OutputFormat::Json},
     {"txt", OutputFormat::Txt},
     {"csv", OutputFormat::Csv},
     {"html", OutputFormat::Html},
     {"xlsx", OutputFormat::Xlsx},
     {"svg", OutputFormat::Svg},
     {"png", OutputFormat::Png},
     {"pdf", OutputFormat::Pdf},
     {"py", OutputFormat::Py}}};

constexpr std::array<std::pair<OutputFormat, PictureFormat>, 3> pictureFormats{
    {{OutputFormat::Svg, PictureFormat::Svg},
     {OutputFormat::Png, PictureFormat::Png},
     {OutputFormat::Pdf, PictureFormat::Pdf}}};

constexpr std::size_t longestName = 60;

constexpr const char* reportText = "report.txt";
constexpr const char* reportHtml = "report.html";
constexpr const char* resultsXlsx = "results.xlsx";
constexpr const char* scriptPy = "script.py";

std::string_view ending(OutputFormat format) {
    return formatTexts[static_cast<std::size_t>(format)].first;
}

std::string slug(std::string_view text) {
    std::string name;
    for (const char c : text) {
        const bool upper = c >= 'A' && c <= 'Z';
        if (upper || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
            name += upper ? static_cast<char>(c - 'A' + 'a') : c;
        } else if (!name.empty() && name.back() != '-') {
            name += '-';
        }
    }
    if (name.ends_with('-')) name.pop_back();
    return name;
}

/// The first of its words.
std::string cut(const std::string& name, std::size_t most) {
    if (name.size() <= most) return name;
    const std::size_t word = name.rfind('-', most);
    return name.substr(0, word == std::string::npos || word < most / 2 ? most : word);
}

/// A title as the name of a file. Of one that is too long the part after the last comma is kept: it tells
/// outputs of a kind apart.
std::string stemOf(std::string_view title, std::string_view otherwise) {
    const std::string name = slug(title);
    const std::size_t comma = title.rfind(", ");
    if (name.size() > longestName && comma != std::string_view::npos) {
        const std::string tail = "-" + slug(title.substr(comma));
        if (tail.size() < longestName / 2)
            return cut(slug(title.substr(0, comma)), longestName - tail.size()) + tail;
    }
    return name.empty() ? std::string(otherwise) : cut(name, longestName);
}

/// `write` is called with a stream.
template <class Write>
void fill(PendingFile& pending, Write write) {
    OutputFile file(pending);
    write(file.stream());
    file.close();
}

void writeCharts(const ResultsBook& book, const std::vector<std::string>& names, FormatSet formats,
                 ResultsFolder& folder, std::vector<std::string>& failures) {
    for (std::size_t place = 0; place < book.outputs.size(); ++place) {
        const auto* chart = std::get_if<Chart>(&book.outputs[place]);
        if (chart == nullptr) continue;
        for (const auto& [format, picture] : pictureFormats) {
            if (!formats.has(format)) continue;
            const std::string name = names[place] + "." + std::string(ending(format));
            const Picture drawn = drawChart(chart->info, picture);
            if (drawn.drawn()) {
                fill(folder.add(name), [&drawn](std::ostream& out) { out << drawn.bytes; });
            } else {
                failures.push_back("cannot draw '" + (folder / name).string() + "': " + drawn.error);
            }
        }
    }
}

std::string listOf(FormatSet formats) {
    std::string list;
    for (const auto& [name, format] : formatTexts)
        if (formats.has(format)) list.append(list.empty() ? "" : ", ").append(name);
    return list;
}

/// The other formats write a file for every book.
[[noreturn]] void throwNothingToWrite(const std::filesystem::path& directory, FormatSet formats) {
    const bool tables = formats.has(OutputFormat::Csv);
    const bool charts = formats != FormatSet{}.add(OutputFormat::Csv);
    throw NothingToWrite("nothing to write into '" + directory.string() + "': among the outputs is no " +
                         (tables && charts ? "table or chart"
                          : tables         ? "table"
                                           : "chart") +
                         " for " + listOf(formats));
}

/// A table of an earlier run may be the data of this one.
void refuseToLoseData(const ResultsBook& book, const std::filesystem::path& directory,
                      const std::vector<std::string>& names) {
    const FolderChanges changes = changesIn(directory, names);
    for (const auto& lost : {changes.replaced, changes.removed})
        for (const std::string& name : lost)
            refuseDataFile(directory / name, book);
}

} // namespace

std::string knownFormats() {
    return listOf(FormatSet::all());
}

FormatSet parseFormats(std::string_view list) {
    FormatSet formats;
    while (!list.empty()) {
        const std::size_t comma = std::min(list.find(','), list.size());
        std::string name(list.substr(0, comma));
        list.remove_prefix(std::min(comma + 1, list.size()));
        std::erase(name, ' ');
        std::transform(name.begin(), name.end(), name.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
        const auto* known = std::find_if(formatTexts.begin(), formatTexts.end(),
                                         [&name](const auto& format) { return format.first == name; });
        if (known == formatTexts.end())
            throw std::invalid_argument("unknown format '" + name + "'; known are " + knownFormats());
        formats.add(known->second);
    }
    if (formats.empty()) throw std::invalid_argument("no format given; known are " + knownFormats());
    return formats;
}

std::vector<std::string> fileNames(const ResultsBook& book) {
    std::vector<std::string> names(book.outputs.size());
    const auto nameKind = [&](std::size_t kind, const auto& stemOf) {
        std::map<std::string, int> uses;
        for (const ResultsBook::Output& output : book.outputs)
            if (output.index() == kind) ++uses[stemOf(output)];
        // A name that only one output has is kept, whatever the others are called.
        std::set<std::string> taken;
        for (const auto& [stem, count] : uses)
            if (count == 1) taken.insert(stem);
        for (std::size_t place = 0; place < names.size(); ++place) {
            if (book.outputs[place].index() != kind) continue;
            const std::string stem = stemOf(book.outputs[place]);
            names[place] = stem;
            if (uses[stem] == 1) continue;
            int number = 0;
            do {
                names[place] = stem + "-" + std::to_string(++number);
            } while (!taken.insert(names[place]).second);
        }
    };
    // Tables and charts have different endings, so they may share a name.
    nameKind(1, [](const ResultsBook::Output& output) {
        return stemOf(std::get<Spreadsheet>(output).title, "table");
    });
    nameKind(2, [](const ResultsBook::Output& output) {
        return stemOf(std::get<Chart>(output).info.title, "chart");
    });
    return names;
}

std::vector<std::string> certainFileNames(FormatSet formats) {
    std::vector<std::string> names;
    if (formats.has(OutputFormat::Txt)) names.emplace_back(reportText);
    names.emplace_back(formats.has(OutputFormat::Json) ? resultsJson : fileList);
    if (formats.has(OutputFormat::Xlsx)) names.emplace_back(resultsXlsx);
    if (formats.has(OutputFormat::Html)) names.emplace_back(reportHtml);
    if (formats.has(OutputFormat::Py)) names.emplace_back(scriptPy);
    return names;
}

std::vector<std::filesystem::path> writeBook(const ResultsBook& book, const std::filesystem::path& path,
                                             FormatSet formats, std::vector<std::string>* problems,
                                             OthersFiles others) {
    ResultsFolder folder(path, others);
    const std::vector<std::string> names = fileNames(book);
    std::vector<std::string> tableFiles;
    if (formats.has(OutputFormat::Txt))
        fill(folder.add(reportText), [&book](std::ostream& out) { writeText(book, out); });
    PendingFile* const json =
        formats.has(OutputFormat::Json) ? &folder.add(std::string(resultsJson)) : nullptr;
    if (formats.has(OutputFormat::Csv)) {
        for (std::size_t place = 0; place < book.outputs.size(); ++place) {
            const auto* sheet = std::get_if<Spreadsheet>(&book.outputs[place]);
            if (sheet == nullptr) continue;
            tableFiles.push_back(names[place] + ".csv");
            fill(folder.add(tableFiles.back()), [sheet](std::ostream& out) { writeCsv(*sheet, out); });
        }
    } else if (formats.has(OutputFormat::Xlsx) || formats.has(OutputFormat::Json)) {
        tableFiles.assign(book.outputs.size(), formats.has(OutputFormat::Xlsx) ? std::string(resultsXlsx)
                                                                               : std::string(resultsJson));
    }
    if (formats.has(OutputFormat::Xlsx)) writeXlsx(book, folder.add(resultsXlsx));
    if (formats.has(OutputFormat::Py))
        fill(folder.add(scriptPy), [&book](std::ostream& out) { out << recordedScript(book); });
    std::vector<std::string> failures;
    if (formats.has(OutputFormat::Html)) {
        const HtmlOptions options{HtmlOptions{}.mostRows, tableFiles};
        std::vector<std::string> reasons;
        fill(folder.add(reportHtml), [&](std::ostream& out) { reasons = writeHtml(book, out, options); });
        if (!reasons.empty())
            failures.push_back("cannot draw all charts of 'report.html': " + reasons.front());
    }
    writeCharts(book, names, formats, folder, failures);
    // Last, as it lists the pictures.
    if (json != nullptr) fill(*json, [&](std::ostream& out) { writeJson(book, out, folder.names()); });
    std::vector<std::filesystem::path> files;
    if (!folder.names().empty()) {
        refuseToLoseData(book, path, folder.names());
        files = folder.commit();
    } else if (failures.empty()) {
        throwNothingToWrite(path, formats);
    }
    if (problems != nullptr) {
        problems->insert(problems->end(), failures.begin(), failures.end());
    } else if (!failures.empty()) {
        throw std::runtime_error(failures.front());
    }
    return files;
}

} // namespace korvana
