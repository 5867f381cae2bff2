// A product-limit table in each format, all of its rows, by the writers alone: to a stream that counts the
// bytes.

#include "bench/Times.h"
#include "host/results/CsvWriter.h"
#include "host/results/HtmlTable.h"
#include "host/results/JsonWriter.h"
#include "host/results/TextWriter.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <streambuf>
#include <vector>

namespace {

using korvana::ResultsBook;
using korvana::Spreadsheet;
using korvana::bench::Case;

constexpr std::size_t rows = 1'000'000;

class Counter final : public std::streambuf {
public:
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }

private:
    std::streamsize xsputn(const char*, std::streamsize size) override {
        bytes_ += size;
        return size;
    }
    int_type overflow(int_type c) override {
        ++bytes_;
        return c;
    }

    std::int64_t bytes_ = 0;
};

ResultsBook bookOfOneTable() {
    korvana::bench::Times times(korvana::bench::Kind::Continuous);
    std::vector<Case> cases(rows);
    std::generate(cases.begin(), cases.end(), [&times] { return times.next(); });
    std::ranges::sort(cases, {}, &Case::time);
    std::vector<double> time;
    Spreadsheet::Dictionary censored{{}, {"", "+"}};
    std::vector<double> survival;
    std::vector<double> error;
    std::vector<std::int32_t> number;
    double estimate = 1.0;
    double sum = 0.0;
    for (const Case& one : cases) {
        const auto atRisk = static_cast<double>(rows - time.size());
        time.push_back(one.time);
        censored.index.push_back(one.event ? 0 : 1);
        if (one.event && atRisk > 1) {
            estimate *= (atRisk - 1) / atRisk;
            sum += 1 / (atRisk * (atRisk - 1));
        }
        survival.push_back(one.event ? estimate : std::numeric_limits<double>::quiet_NaN());
        error.push_back(one.event ? estimate * std::sqrt(sum) : survival.back());
        number.push_back(static_cast<std::int32_t>(time.size()));
    }
    ResultsBook book;
    Spreadsheet& sheet = book.append(Spreadsheet{});
    sheet.columns.push_back({"Time", "", ozm::CellFormat::general(8), std::move(time)});
    sheet.columns.push_back({"Censored", "", {}, std::move(censored)});
    sheet.columns.push_back({"Survival", "", ozm::CellFormat::fixed(6), std::move(survival)});
    sheet.columns.push_back({"Error", "", ozm::CellFormat::fixed(6), std::move(error)});
    sheet.columns.push_back({"Case", "", ozm::CellFormat::integer(), std::move(number)});
    return book;
}

/// `write(book, sheet, stream)`
template <class Write>
void measure(benchmark::State& state, Write write) {
    static const ResultsBook book = bookOfOneTable();
    Counter counter;
    std::ostream out(&counter);
    for (auto round : state)
        write(book, std::get<Spreadsheet>(book.outputs.front()), out);
    state.SetBytesProcessed(counter.bytes());
}

void writeTableAsCsv(benchmark::State& state) {
    measure(state, [](const auto&, const auto& sheet, auto& out) { korvana::writeCsv(sheet, out); });
}

void writeTableAsJson(benchmark::State& state) {
    measure(state, [](const auto& book, const auto&, auto& out) { korvana::writeJson(book, out); });
}

void writeTableAsText(benchmark::State& state) {
    measure(state, [](const auto&, const auto& sheet, auto& out) { korvana::writeText(sheet, out); });
}

void writeTableAsHtml(benchmark::State& state) {
    measure(state, [](const auto&, const auto& sheet, auto& out) {
        korvana::writeHtmlTable(sheet, out, {.mostRows = rows});
    });
}

BENCHMARK(writeTableAsCsv)->Unit(benchmark::kMillisecond);
BENCHMARK(writeTableAsJson)->Unit(benchmark::kMillisecond);
BENCHMARK(writeTableAsText)->Unit(benchmark::kMillisecond);
BENCHMARK(writeTableAsHtml)->Unit(benchmark::kMillisecond);

} // namespace
