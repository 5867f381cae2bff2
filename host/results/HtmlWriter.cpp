#include "host/results/HtmlWriter.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "host/results/ChartDrawing.h"
#include "host/results/HtmlTable.h"
#include "host/results/TextWriter.h"
#include "host/results/Utf8.h"

namespace korvana {
namespace {

constexpr std::string_view styleSheet = R"css(
:root { color-scheme: light dark; --ink: #1c2330; --soft: #5b6472; --page: #fff; --card: #f6f7f9; --line: #d5d9e0;
  --accent: #0b5fa5; --error: #b3261e; --warning: #8a5a00; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e4e7ec; --soft: #a2abb9; --page: #14171c; --card: #1d2128; --line: #3a414d;
    --accent: #7cb8f0; --error: #ff9a90; --warning: #f0c060; } }
* { box-sizing: border-box; }
body { margin: 0 auto; padding: 2rem 1.25rem 4rem; max-width: 92rem; background: var(--page); color: var(--ink);
  font: 16px/1.5 system-ui, "DejaVu Sans", Verdana, sans-serif; }
h1 { font-size: 1.75rem; line-height: 1.2; margin: 0 0 .25rem; }
h2 { font-size: 1.2rem; margin: 2.5rem 0 .5rem; padding-bottom: .25rem; border-bottom: 1px solid var(--line); }
header p, .note, .more { color: var(--soft); margin: .15rem 0; }
nav ul { padding-left: 1.2rem; columns: 2 20rem; }
a { color: var(--accent); }
pre { margin: .5rem 0; padding: .75rem 1rem; overflow-x: auto; background: var(--card); border-radius: 6px;
  font: 14px/1.45 "DejaVu Sans Mono", Consolas, Menlo, monospace; }
.messages { list-style: none; padding: 0; }
.messages li { margin: .4rem 0; padding: .5rem .8rem; border-left: 4px solid var(--soft); background: var(--card); }
.messages .error { border-color: var(--error); } .messages .warning { border-color: var(--warning); }
.messages strong { color: var(--soft); } .messages .error strong { color: var(--error); }
.messages .warning strong { color: var(--warning); } .messages small { display: block; white-space: pre-line; color: var(--soft); }
.table { overflow-x: auto; margin: .75rem 0; }
table { border-collapse: collapse; font-size: 14px; font-variant-numeric: tabular-nums; }
th, td { padding: .2rem .7rem; text-align: right; white-space: nowrap; }
thead th { vertical-align: bottom; border-bottom: 2px solid var(--line); }
tbody th, .text { text-align: left; } tbody th { font-weight: 600; }
tbody tr:nth-child(even) { background: var(--card); }
details > summary { cursor: pointer; color: var(--accent); margin: .5rem 0; }
figure { margin: .75rem 0; padding: .5rem; background: #fff; border: 1px solid var(--line); border-radius: 6px; }
figure svg { display: block; width: 100%; max-width: 960px; height: auto; margin: 0 auto; }
@media screen and (min-width: 84rem) { .top { columns: 2; column-gap: 1.5rem; } .top section { break-inside: avoid; }
  .top h2 { margin-top: 0; padding-top: 1rem; } .top table { font-size: 12px; } .top th, .top td { padding: .2rem .25rem; } }
@media print { :root { color-scheme: light; --ink: #000; --soft: #444; --page: #fff; --card: #f6f7f9; --line: #bbb; }
  body { max-width: none; padding: 0; font-size: 11pt; } nav { display: none; } pre { white-space: pre-wrap; }
  h2 { break-after: avoid; } figure { break-inside: avoid; } tr { break-inside: avoid; } thead { display: table-header-group; }
  details::details-content { content-visibility: visible; block-size: auto; } summary { display: none; }
  .table { overflow: visible; } table { font-size: 9pt; } th, td { padding: .1rem .4rem; } }
)css";

constexpr std::size_t mostSummaryRows = 6;
constexpr std::size_t mostOpenRows = 12;
constexpr std::size_t mostOpenLines = 40;

class Page {
public:
    Page(const ResultsBook& book, std::ostream& out, const HtmlOptions& options)
        : book_(book), out_(out), options_(options) {
        arrange();
    }

    void write() {
        const std::string title = escaped(shownLine(book_.analysis.empty() ? "Results" : book_.analysis));
        out_ << "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\">\n<head>\n"
             << "<meta charset=\"utf-8\"/>\n"
             << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n<title>" << title
             << "</title>\n<style>" << styleSheet << "</style>\n</head>\n<body>\n<header>\n<h1>" << title
             << "</h1>\n";
        if (!book_.source.empty()) paragraph("Data: " + book_.source);
        for (const std::string& note : book_.notes)
            paragraph(note);
        out_ << "</header>\n";
        writeContents();
        out_ << "<main>\n";
        writeMessages();
        writeTop();
        for (const std::size_t place : rest_)
            writeOutput(place);
        if (!book_.iterations.empty()) {
            out_ << "<section>\n<h2>Iterations</h2>\n";
            writeLines(book_.iterations);
            out_ << "</section>\n";
        }
        out_ << "</main>\n</body>\n</html>\n";
    }

    /// Why charts could not be drawn.
    [[nodiscard]] std::vector<std::string> failures() { return std::move(failures_); }

private:
    /// The first report, which is the summary, the shortest and the essential tables and the charts come
    /// first, then everything else; tables that repeat a report are left out.
    void arrange() {
        bool reported = false;
        for (std::size_t place = 0; place < book_.outputs.size(); ++place) {
            const ResultsBook::Output& output = book_.outputs[place];
            if (ResultsBook::repeatsReport(output)) continue;
            const auto* sheet = std::get_if<Spreadsheet>(&output);
            const bool firstReport = std::holds_alternative<Report>(output) && !reported;
            reported = reported || firstReport;
            if (std::holds_alternative<Chart>(output))
                charts_.push_back(place);
            else if (firstReport ||
                     (sheet != nullptr && (sheet->essential || sheet->rowCount() <= mostSummaryRows)))
                summary_.insert(firstReport ? summary_.begin() : summary_.end(), place);
            else
                rest_.push_back(place);
        }
    }

    [[nodiscard]] static std::string titleOf(const ResultsBook::Output& output) {
        const auto named = [](const std::string& title, const char* otherwise) {
            const std::string line = shownLine(title);
            return escaped(line.empty() ? otherwise : line);
        };
        if (const auto* report = std::get_if<Report>(&output)) return named(report->title, "Report");
        if (const auto* sheet = std::get_if<Spreadsheet>(&output)) return named(sheet->title, "Table");
        return named(std::get<Chart>(output).info.title, "Chart");
    }

    void paragraph(std::string_view text, std::string_view kind = "") {
        out_ << "<p";
        if (!kind.empty()) out_ << " class=\"" << kind << '"';
        out_ << '>' << escaped(text) << "</p>\n";
    }

    void writeContents() {
        if (summary_.size() + charts_.size() + rest_.size() < 3) return;
        out_ << "<nav aria-label=\"Contents\">\n<ul>\n";
        for (const auto* places : {&summary_, &charts_, &rest_}) {
            for (const std::size_t place : *places)
                out_ << "<li><a href=\"#output-" << place + 1 << "\">" << titleOf(book_.outputs[place])
                     << "</a></li>\n";
        }
        out_ << "</ul>\n</nav>\n";
    }

    void writeMessages() {
        if (book_.messages.empty()) return;
        out_ << "<ul class=\"messages\" aria-label=\"Messages\">\n";
        for (const ResultMessage& message : book_.messages) {
            const std::string text = messageText(message);
            const std::size_t colon = text.find(':');
            const bool error = message.severity == ResultMessage::Severity::Error;
            const bool warning = message.severity == ResultMessage::Severity::Warning;
            out_ << "<li class=\""
                 << (error     ? "error"
                     : warning ? "warning"
                               : "remark")
                 << "\"><strong>" << escaped(text.substr(0, colon + 1)) << "</strong>"
                 << escaped(text.substr(colon + 1));
            if (!message.detail.empty()) out_ << "<small>" << escaped(message.detail) << "</small>";
            out_ << "</li>\n";
        }
        out_ << "</ul>\n";
    }

    /// Summary and charts, side by side where there is room.
    void writeTop() {
        if (summary_.empty() && charts_.empty()) return;
        out_ << "<div class=\"top\">\n";
        for (const auto* places : {&summary_, &charts_})
            for (const std::size_t place : *places)
                writeOutput(place);
        out_ << "</div>\n";
    }

    void writeOutput(std::size_t place) {
        const ResultsBook::Output& output = book_.outputs[place];
        out_ << "<section id=\"output-" << place + 1 << "\">\n<h2>" << titleOf(output) << "</h2>\n";
        if (const auto* report = std::get_if<Report>(&output)) writeLines(report->lines);
        if (const auto* sheet = std::get_if<Spreadsheet>(&output)) writeTable(*sheet, place);
        if (const auto* chart = std::get_if<Chart>(&output)) writeChart(*chart);
        out_ << "</section>\n";
    }

    /// What `write` writes, folded if it is long.
    template <class Write>
    void folded(bool fold, const std::string& summary, Write write) {
        if (fold) out_ << "<details>\n<summary>" << escaped(summary) << "</summary>\n";
        write();
        if (fold) out_ << "</details>\n";
    }

    void writeLines(const std::vector<std::string>& lines) {
        folded(lines.size() > mostOpenLines, groupedDigits(lines.size()) + " lines", [&] {
            out_ << "<pre>";
            for (const std::string& line : lines)
                out_ << escaped(oneLine(line)) << '\n';
            out_ << "</pre>\n";
        });
    }

    void writeChart(const Chart& chart) {
        const std::string prefix = "chart-" + std::to_string(++pictures_) + "-";
        const Picture picture = drawChart(chart.info, PictureFormat::Svg, {prefix});
        if (picture.drawn()) {
            out_ << "<figure>" << picture.bytes << "</figure>\n";
        } else {
            paragraph("This chart could not be drawn: " + picture.error, "more");
            failures_.push_back(picture.error);
        }
    }

    void writeTable(const Spreadsheet& sheet, std::size_t place) {
        for (const std::string& note : sheet.notes)
            paragraph(note, "note");
        const std::size_t rows = sheet.rowCount();
        folded(!sheet.essential && rows > mostOpenRows, groupedDigits(rows) + " rows", [&] {
            const std::size_t shown = std::min(rows, options_.mostRows);
            out_ << R"(<div class="table">)";
            writeHtmlTable(sheet, out_, {.mostRows = options_.mostRows});
            out_ << "</div>\n";
            if (shown < rows) tellWhereTheRestIs(shown, rows, tableNumber(place));
        });
        for (const std::string& note : sheet.footnotes)
            paragraph(note, "note");
    }

    /// The number of an output among the book's tables.
    [[nodiscard]] std::size_t tableNumber(std::size_t place) const {
        const auto begin = book_.outputs.begin();
        return static_cast<std::size_t>(
            std::count_if(begin, begin + static_cast<std::ptrdiff_t>(place),
                          [](const auto& output) { return std::holds_alternative<Spreadsheet>(output); }));
    }

    void tellWhereTheRestIs(std::size_t shown, std::size_t rows, std::size_t table) {
        const bool named = table < options_.tableFiles.size() && !options_.tableFiles[table].empty();
        paragraph("The first " + groupedDigits(shown) + " of " + groupedDigits(rows) + " rows are shown; " +
                      (named ? "all of them are in " + options_.tableFiles[table] + "."
                             : "ask for the table as CSV, JSON or XLSX to have all of them."),
                  "more");
    }

    const ResultsBook& book_;
    std::ostream& out_;
    const HtmlOptions& options_;
    // The outputs on the page, in the order of reading.
    std::vector<std::size_t> summary_;
    std::vector<std::size_t> charts_;
    std::vector<std::size_t> rest_;
    std::size_t pictures_ = 0;
    std::vector<std::string> failures_;
};

} // namespace

std::vector<std::string> writeHtml(const ResultsBook& book, std::ostream& out, const HtmlOptions& options) {
    Page page(book, out, options);
    page.write();
    return page.failures();
}

} // namespace korvana
