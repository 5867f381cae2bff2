#include "host/results/SaveOutputs.h"

#include <deque>
#include <stdexcept>
#include <string>

#include "host/results/ChartDrawing.h"
#include "host/results/CsvWriter.h"
#include "host/results/DataFile.h"
#include "host/results/HtmlWriter.h"
#include "host/results/JsonWriter.h"
#include "host/results/OutputFile.h"
#include "host/results/RecordedScript.h"
#include "host/results/TextWriter.h"
#include "host/results/XlsxWriter.h"

namespace korvana {
namespace {

/// The files of one call.
class Files {
public:
    Files(const ResultsBook& book, std::filesystem::path first) : book_(book), first_(std::move(first)) {}

    PendingFile& add() {
        std::filesystem::path name = first_;
        if (!pending_.empty())
            name.replace_filename(first_.stem().string() + "-" + std::to_string(pending_.size() + 1) +
                                  first_.extension().string());
        refuseDataFile(name, book_);
        return pending_.emplace_back(name);
    }
    template <class Write>
    void add(Write write) {
        OutputFile file(add());
        write(file.stream());
        file.close();
    }
    std::vector<std::filesystem::path> commit() {
        std::vector<std::filesystem::path> files;
        for (PendingFile& each : pending_) {
            each.commit();
            files.push_back(each.target());
        }
        return files;
    }

private:
    const ResultsBook& book_;
    std::filesystem::path first_;
    std::deque<PendingFile> pending_;
};

void addCharts(Files& files, const ResultsBook& book, PictureFormat format,
               const std::filesystem::path& file) {
    for (const Chart* chart : book.all<Chart>()) {
        const Picture drawn = drawChart(chart->info, format);
        if (!drawn.drawn()) throw std::runtime_error("cannot draw '" + file.string() + "': " + drawn.error);
        files.add([&drawn](std::ostream& out) { out << drawn.bytes; });
    }
}

} // namespace

OutputFormat formatOfFile(const std::filesystem::path& file) {
    const std::string suffix = file.extension().string();
    const FormatSet named =
        suffix.size() > 1 && suffix.find(',') == std::string::npos
            ? parseFormats(suffix.substr(1))
            : throw std::invalid_argument(
                  "'" + file.string() + "' has no suffix that names its format; known are " + knownFormats());
    for (std::size_t place = 0; place < outputFormatCount; ++place)
        if (named.has(static_cast<OutputFormat>(place))) return static_cast<OutputFormat>(place);
    throw std::invalid_argument("unknown format of '" + file.string() + "'");
}

std::vector<std::filesystem::path> saveOutputs(const ResultsBook& book, const std::filesystem::path& file) {
    Files files(book, file);
    switch (formatOfFile(file)) {
    case OutputFormat::Json:
        files.add([&](std::ostream& out) { writeJson(book, out, {file.filename().string()}); });
        break;
    case OutputFormat::Txt:
        files.add([&](std::ostream& out) { writeText(book, out); });
        break;
    case OutputFormat::Html:
        files.add([&](std::ostream& out) {
            if (const auto problems = writeHtml(book, out); !problems.empty())
                throw std::runtime_error("cannot draw all charts of '" + file.string() +
                                         "': " + problems.front());
        });
        break;
    case OutputFormat::Xlsx:
        writeXlsx(book, files.add());
        break;
    case OutputFormat::Py:
        files.add([&](std::ostream& out) { out << recordedScript(book); });
        break;
    case OutputFormat::Csv:
        for (const Spreadsheet* sheet : book.all<Spreadsheet>())
            files.add([sheet](std::ostream& out) { writeCsv(*sheet, out); });
        break;
    case OutputFormat::Svg:
        addCharts(files, book, PictureFormat::Svg, file);
        break;
    case OutputFormat::Png:
        addCharts(files, book, PictureFormat::Png, file);
        break;
    case OutputFormat::Pdf:
        addCharts(files, book, PictureFormat::Pdf, file);
        break;
    }
    std::vector<std::filesystem::path> written = files.commit();
    if (written.empty())
        throw NothingToWrite("nothing to write into '" + file.string() +
                             "': among the outputs is none for it");
    return written;
}

} // namespace korvana
