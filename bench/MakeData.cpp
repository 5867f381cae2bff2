// Writes a CSV file of survival times: korvana-make-data continuous|ties|quoted|texts|cox-P ROWS FILE.
// Columns time and status (1 event, 0 censored), with texts also a centre and a patient, with cox-P so many
// covariates x1, x2, ...; numbers with all digits needed to restore the double. Quoted is continuous with
// each cell in quotation marks.

#include "bench/CoxCases.h"
#include "bench/Times.h"

#include <charconv>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <string_view>

namespace {

using namespace korvana::bench;

bool readNumber(std::string_view text, std::uint64_t& number) {
    const char* const end = text.data() + text.size();
    return !text.empty() && std::from_chars(text.data(), end, number).ptr == end;
}

/// Continuous cases, each cell in quotation marks.
class QuotedCases {
public:
    std::string next() {
        std::string cells;
        appendLine(cells, times_.next());
        const std::size_t comma = cells.find(',');
        return "\"" + cells.substr(0, comma) + "\",\"" + cells[comma + 1] + "\"\n";
    }

private:
    Times times_{Kind::Continuous};
};

/// Continuous cases with two texts: one of 40 centres, and a patient of whom there is no other case.
class TextCases {
public:
    std::string next() {
        std::string line;
        appendLine(line, times_.next());
        line.back() = ',';
        line += "Centre " + std::to_string(10 + generator_() % 40);
        // An odd factor makes other numbers of the rows, no two alike, in no order.
        constexpr std::uint32_t factor = 2654435769U;
        return line + ",P-" + std::to_string(factor * ++row_) + "\n";
    }

private:
    Times times_{Kind::Continuous};
    std::mt19937_64 generator_{19610423};
    std::uint32_t row_ = 0;
};

void appendLine(std::string& text, const std::string& line) {
    text += line;
}

/// Lines of what `source` generates, below the header. False if the file cannot be written.
template <class Source>
bool write(const char* file, std::string block, Source source, std::uint64_t rows) {
    std::ofstream out(file, std::ios::binary);
    for (std::uint64_t row = 0; row < rows && out; ++row) {
        appendLine(block, source.next());
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
    std::uint64_t rows = 0;
    std::uint64_t covariates = 0;
    const std::string_view kind = count == 4 ? arguments[1] : "";
    const char* const file = arguments[count == 4 ? 3 : 0];
    bool known = count == 4 && readNumber(arguments[2], rows);
    bool written = false;
    if (!known) {
        // the usage is shown
    } else if (kind == "continuous" || kind == "ties") {
        written = write(file, fileHeader, Times(kind == "ties" ? Kind::Ties : Kind::Continuous), rows);
    } else if (kind == "quoted") {
        written = write(file, "\"time\",\"status\"\n", QuotedCases(), rows);
    } else if (kind == "texts") {
        written = write(file, "time,status,centre,patient\n", TextCases(), rows);
    } else if (kind.starts_with("cox-") && readNumber(kind.substr(4), covariates)) {
        written = write(file, coxHeader(covariates), CoxCases(covariates), rows);
    } else {
        known = false;
    }
    if (!known) {
        std::cerr << "usage: korvana-make-data continuous|ties|quoted|texts|cox-P ROWS FILE\n";
        return 2;
    }
    if (!written) {
        std::cerr << "cannot write " << file << '\n';
        return 1;
    }
    return 0;
}
