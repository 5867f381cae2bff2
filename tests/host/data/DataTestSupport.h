#pragma once

#include "host/data/DataError.h"
#include "host/data/DataSet.h"
#include "host/data/DelimitedReader.h"
#include "host/data/NumberText.h"
#include "host/data/ReadData.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <unistd.h>

namespace korvana::test {

/// A file that exists for one test.
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

/// A text that comes a few bytes at a time, as from a slow pipe.
class TextSource final : public ByteSource {
public:
    /// @param most  bytes at a time
    explicit TextSource(std::string_view text, std::size_t most = std::string_view::npos)
        : text_(text), most_(most) {}

    std::size_t read(std::span<char> room) override {
        const std::string_view part = text_.substr(at_, std::min(room.size(), most_));
        std::copy(part.begin(), part.end(), room.begin());
        at_ += part.size();
        return part.size();
    }
    void rewind() override { at_ = 0; }
    void checkUnchanged() const override {}
    std::size_t size() const override { return most_ < text_.size() ? 0 : text_.size(); }
    const std::string& name() const override { return name_; }

private:
    std::string name_ = "data.csv";
    std::string_view text_;
    std::size_t most_;
    std::size_t at_ = 0;
};

inline DataSet readTuned(std::string_view content, const ReaderTuning& tuning,
                         const ReadOptions& options = {}) {
    TextSource source(content);
    return readDelimited(source, options, tuning);
}

/// A data set as one text: "name kind: cell cell ... | name kind: ..."; texts and dates as such, a missing
/// cell as -, case names last.
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

/// Divides the work in several ways: data, notes or message must be the same.
inline void expectTheSameFromSeveral(const std::string& text, const ReadOptions& options) {
    const auto outcome = [&](const ReaderTuning& tuning) {
        std::string said;
        try {
            const DataSet data = readTuned(text, tuning, options);
            said = dump(data);
            for (const std::string& note : data.notes())
                said += "\n" + note;
        } catch (const DataError& error) {
            said = error.what();
        }
        return said;
    };
    const std::string alone = outcome({1, 1U << 20U});
    for (const std::size_t chunk : {1U, 5U, 13U})
        EXPECT_EQ(outcome({2, chunk}), alone) << "chunks of " << chunk;
}

} // namespace korvana::test
