#include "apps/desktop/results/OutputExport.h"

#include <algorithm>

namespace korvana::desktop {

ResultsBook withEdits(const ResultsBook& book, const std::map<std::size_t, ChartEdits>& edits,
                      const std::vector<std::size_t>& removed) {
    ResultsBook copy = book;
    for (const auto& [place, changes] : edits) {
        if (place >= copy.outputs.size()) continue;
        auto* chart = std::get_if<Chart>(&copy.outputs[place]);
        if (chart == nullptr) continue;
        chart->info = edited(chart->info, changes);
    }
    for (auto place = removed.rbegin(); place != removed.rend(); ++place)
        copy.outputs.erase(copy.outputs.begin() + static_cast<std::ptrdiff_t>(*place));
    return copy;
}

std::vector<std::string> filesToWrite(const ResultsBook& book, const std::map<std::size_t, ChartEdits>& edits,
                                      const std::vector<std::size_t>& removed, FormatSet formats) {
    ResultsBook titles; // names depend on titles alone
    for (std::size_t place = 0; place < book.outputs.size(); ++place) {
        if (std::binary_search(removed.begin(), removed.end(), place)) continue;
        const ResultsBook::Output& output = book.outputs[place];
        if (const auto* sheet = std::get_if<Spreadsheet>(&output))
            titles.append(Spreadsheet{}).title = sheet->title;
        if (const auto* chart = std::get_if<Chart>(&output)) {
            const auto edit = edits.find(place);
            titles.append(Chart{}).info.title =
                edit != edits.end() && edit->second.title ? *edit->second.title : chart->info.title;
        }
    }
    std::vector<std::string> files;
    const auto whole = [&](OutputFormat format, const char* name) {
        if (formats.has(format)) files.emplace_back(name);
    };
    whole(OutputFormat::Txt, "report.txt");
    whole(OutputFormat::Json, "results.json");
    whole(OutputFormat::Html, "report.html");
    whole(OutputFormat::Xlsx, "results.xlsx");
    whole(OutputFormat::Py, "script.py");
    const std::vector<std::string> names = fileNames(titles);
    for (std::size_t place = 0; place < names.size(); ++place) {
        using enum OutputFormat;
        const bool table = std::holds_alternative<Spreadsheet>(titles.outputs[place]);
        for (const OutputFormat format : table ? std::vector{Csv} : std::vector{Svg, Png, Pdf})
            if (formats.has(format)) files.push_back(names[place] + "." + endingOf(format));
    }
    return files;
}

} // namespace korvana::desktop
