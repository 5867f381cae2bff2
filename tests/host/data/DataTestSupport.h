#pragma once

#include "host/data/DataSet.h"
#include "host/data/DelimitedReader.h"
#include "host/data/NumberText.h"
#include "host/data/ReadData.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <unistd.h>

namespace korvana::test {

/** A file that is there for one test. */
class TemporaryFile {
public:
    explicit TemporaryFile(std::string_view content, std::string_view ending = ".csv") {
        static int count = 0;
        path_ = std::filesystem::temp_directory_path() / ("korvana-data-" + std::to_string(getpid()) + "-" +
                                                          std::to_string(++count) + std::string(ending));
        std::ofstream(path_, std::ios::binary)
            .write(content.data(), static_cast<std::streamsize>(content.size()));
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { std::filesystem::remove(path_); }

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

inline DataSet readText(std::string_view content, const ReadOptions& options = {}) {
    const TemporaryFile file(content);
    return readData(file.path(), options);
}

inline DataSet readTuned(std::string_view content, const ReaderTuning& tuning) {
    const TemporaryFile file(content);
    const FileBytes bytes(file.path());
    return readDelimited(bytes, "data.csv", {}, tuning);
}

/** A data set as one text: "name kind: cell cell ... | name kind: ..."; texts and dates as such, a missing
   cell as -, case names last. */
inline std::string dump(const DataSet& data) {
    std::string text;
    for (int v = 0; v < data.variableCount(); ++v) {
        const Variable& variable = data.variable(v);
        const char kind = variable.kind == VariableKind::Number ? 'N'
                          : variable.kind == VariableKind::Text ? 'T'
                                                                : 'D';
        text.append(v > 0 ? " | " : "").append(variable.name).append(" ").append(1, kind).append(":");
        for (const double cell : data.column(v)) {
            text += ' ';
            if (std::isnan(cell))
                text += '-';
            else if (const auto label = variable.labelOf(cell))
                text.append(*label);
            else
                text += numberText(cell);
        }
    }
    if (data.hasCaseNames()) text += " | names:";
    for (int i = 0; data.hasCaseNames() && i < data.caseCount(); ++i)
        text.append(" ").append(data.caseName(i));
    return text;
}

} // namespace korvana::test
