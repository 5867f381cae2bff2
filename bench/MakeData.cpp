// Writes a CSV file of survival times: korvana-make-data continuous|ties ROWS FILE. Columns time and status
// (1 event, 0 censored); times with all digits needed to restore the double.

#include "bench/Times.h"

#include <charconv>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

int main(int count, char** arguments) {
    using korvana::bench::Kind;
    std::uint64_t rows = 0;
    const std::string kind = count == 4 ? arguments[1] : "";
    const char* end = count == 4 ? arguments[2] + std::strlen(arguments[2]) : nullptr;
    if ((kind != "continuous" && kind != "ties") || std::from_chars(arguments[2], end, rows).ptr != end) {
        std::cerr << "usage: korvana-make-data continuous|ties ROWS FILE\n";
        return 2;
    }
    std::ofstream out(arguments[3], std::ios::binary);
    korvana::bench::Times times(kind == "ties" ? Kind::Ties : Kind::Continuous);
    std::string block = korvana::bench::fileHeader;
    for (std::uint64_t row = 0; row < rows && out; ++row) {
        korvana::bench::appendLine(block, times.next());
        if (block.size() > 1 << 20) {
            out << block;
            block.clear();
        }
    }
    out << block << std::flush;
    if (!out) {
        std::cerr << "cannot write " << arguments[3] << '\n';
        return 1;
    }
    return 0;
}
