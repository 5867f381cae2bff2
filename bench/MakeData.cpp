// Writes a CSV file of survival times: korvana-make-data continuous|ties|cox-P ROWS FILE. Columns time and
// status (1 event, 0 censored), and with cox-P so many covariates x1, x2, ...; numbers with all digits needed
// to restore the double.

#include "bench/CoxCases.h"
#include "bench/Times.h"

#include <charconv>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

namespace {

bool readNumber(std::string_view text, std::uint64_t& number) {
    const char* const end = text.data() + text.size();
    return !text.empty() && std::from_chars(text.data(), end, number).ptr == end;
}

/// Lines of what `source` generates, below the header. False if the file cannot be written.
template <class Source>
bool write(const char* file, std::string block, Source source, std::uint64_t rows) {
    std::ofstream out(file, std::ios::binary);
    for (std::uint64_t row = 0; row < rows && out; ++row) {
        korvana::bench::appendLine(block, source.next());
        if (block.size() > 1 << 20) {
            out << block;
            block.clear();
        }
    }
    out << block << std::flush;
    return static_cast<bool>(out);
}

} // namespace

int main(int count, char** arguments) {
    using namespace korvana::bench;
    std::uint64_t rows = 0;
    std::uint64_t covariates = 0;
    const std::string_view kind = count == 4 ? arguments[1] : "";
    const bool cox = kind.starts_with("cox-") && readNumber(kind.substr(4), covariates);
    if ((!cox && kind != "continuous" && kind != "ties") || !readNumber(arguments[2], rows)) {
        std::cerr << "usage: korvana-make-data continuous|ties|cox-P ROWS FILE\n";
        return 2;
    }
    const bool written =
        cox ? write(arguments[3], coxHeader(covariates), CoxCases(covariates), rows)
            : write(arguments[3], fileHeader, Times(kind == "ties" ? Kind::Ties : Kind::Continuous), rows);
    if (!written) {
        std::cerr << "cannot write " << arguments[3] << '\n';
        return 1;
    }
    return 0;
}
