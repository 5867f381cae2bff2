// Reading: any bytes are a table, or are refused with a DataError that can be shown. The first byte chooses
// the options.

#include "host/data/DataError.h"
#include "host/data/DelimitedReader.h"
#include "host/data/Describe.h"
#include "host/data/NumberText.h"
#include "host/data/ReadData.h"
#include "host/data/TextEncoding.h"
#include "tests/fuzz/Scratch.h"

#include <cstdint>
#include <set>

namespace korvana::fuzz {
namespace {

ReadOptions optionsOf(unsigned choice) {
    constexpr char separators[] = {',', ';', '\t', '|'};
    ReadOptions options;
    if ((choice & 4U) != 0) options.separator = separators[choice & 3U];
    if ((choice & 8U) != 0) options.decimalMark = (choice & 16U) != 0 ? '.' : ',';
    if ((choice & 32U) != 0) options.header = (choice & 64U) != 0 ? HeaderLine::Yes : HeaderLine::No;
    return options;
}

void check(const DataSet& data) {
    std::set<std::string> names;
    for (int v = 0; v < data.variableCount(); ++v) {
        const Variable& variable = data.variable(v);
        require(isUtf8(variable.name), "names are UTF-8", variable.name);
        require(!variable.name.empty() && names.insert(variable.name).second, "names are unique",
                variable.name);
        const VariableSummary summary = describeVariable(data, v);
        require(summary.validCount + summary.missingCount == data.caseCount(), "every case is counted once");
        if (variable.kind != VariableKind::Text) continue;
        for (const double cell : data.column(v))
            require(variable.isMissing(cell) || variable.labelOf(cell).has_value(),
                    "every text has its label", variable.name);
        for (const ValueLabel& label : variable.valueLabels)
            require(isUtf8(label.text), "texts are UTF-8", label.text);
    }
    for (const std::string& note : data.notes())
        require(isUtf8(note), "notes are UTF-8", note);
}

/// Cells and notes, or the message.
std::string outcome(const std::filesystem::path& path, const ReadOptions& options,
                    const ReaderTuning& tuning) {
    std::string all;
    try {
        const DataSet data = readDelimited(*openSource(path), options, tuning);
        for (int v = 0; v < data.variableCount(); ++v)
            for (const double cell : data.column(v))
                all += numberText(cell) + ' ';
        for (const std::string& note : data.notes())
            all += note + '\n';
    } catch (const DataError& error) {
        all = error.what();
    }
    return all;
}

} // namespace
} // namespace korvana::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace korvana;
    if (size == 0) return 0;
    const std::string_view text(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    const auto path = fuzz::scratch().write("data.csv", text);
    try {
        fuzz::check(readData(path, fuzz::optionsOf(bytes[0])));
    } catch (const DataError& error) {
        fuzz::require(isUtf8(error.what()), "messages are UTF-8", error.what());
        fuzz::require(error.what() != std::string_view{}, "an error has a message");
    }
    const ReadOptions options = fuzz::optionsOf(bytes[0]);
    const std::string alone = fuzz::outcome(path, options, {1, 1U << 20U});
    fuzz::require(fuzz::outcome(path, options, {2, 1 + size % 20}) == alone, "several threads read the same",
                  alone);
    return 0;
}
