// From a CSV file to a data set, and from a data set to the times of an analysis (the pass over the cases
// through the host's services, with a host that holds its columns in memory).

#include "bench/Sizes.h"
#include "bench/Times.h"
#include "host/data/ReadData.h"
#include "module/survdata/CaseReader.h"
#include "support/CAnalysisSupport.h"
#include "support/services/NullServices.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using korvana::bench::Kind;
using korvana::bench::Times;
using korvana::bench::upToTenMillion;

/// Two columns in memory, time and status.
class Columns final : public ozm::NullData {
public:
    explicit Columns(std::int64_t size) {
        Times times(Kind::Continuous);
        for (std::int64_t i = 0; i < size; ++i) {
            const auto [time, event] = times.next();
            columns_[0].push_back(time);
            columns_[1].push_back(event ? 1.0 : 0.0);
        }
    }
    short cstart(int caseNumber, std::span<double> values, std::span<const int> variables) override {
        for (std::size_t k = 0; k < variables.size(); ++k)
            values[k] = columns_[static_cast<std::size_t>(variables[k] - 1)]
                                [static_cast<std::size_t>(caseNumber - 1)];
        return ozm::UseCase;
    }
    int ss_nb() override { return static_cast<int>(columns_[0].size()); }

private:
    std::vector<double> columns_[2];
};

/// A host that has data and nothing else.
class Document final : public ozm::CAnalysisDoc, public ozm::NullHost {
public:
    explicit Document(std::int64_t size) : columns_(size) {}
    ozm::HostServices& Services() override { return *this; }
    ozm::DataService& Data() override { return columns_; }

private:
    Columns columns_;
};

void readingPass(benchmark::State& state) {
    Document document(state.range(0));
    ozm::CAnalysisSupport host(&document);
    ozm::survival::SharedSettings settings;
    settings.timeVariables = 1;
    settings.List(ozm::survival::ListSurvivalTimes) = {1};
    settings.List(ozm::survival::ListCensoring) = {2};
    settings.completeCode = 1;
    settings.censoredCode = 0;
    std::vector<double> times[2];
    for (auto& list : times)
        list.resize(static_cast<std::size_t>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        std::size_t counts[2]{};
        ozm::survival::CaseReader reader(host, settings);
        const auto status =
            reader.Read(static_cast<std::int32_t>(state.range(0)), [&](const auto& observation) {
                const std::size_t list = observation.complete ? 0 : 1;
                times[list][counts[list]++] = observation.time;
            });
        if (status != ozm::survival::Status::Success) state.SkipWithError("the pass did not come through");
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void readCsv(benchmark::State& state) {
    const auto path = std::filesystem::temp_directory_path() / "korvana-bench.csv";
    {
        std::ofstream out(path, std::ios::binary);
        std::string text = korvana::bench::fileHeader;
        Times times(Kind::Continuous);
        for (std::int64_t i = 0; i < state.range(0); ++i)
            korvana::bench::appendLine(text, times.next());
        if (!out.write(text.data(), static_cast<std::streamsize>(text.size())).flush())
            state.SkipWithError("cannot write the file to be read");
    }
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(korvana::readData(path).caseCount());
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(path)));
    std::filesystem::remove(path);
}

} // namespace

BENCHMARK(readingPass)->Apply(upToTenMillion);
BENCHMARK(readCsv)
    ->RangeMultiplier(10)
    ->Range(10'000, 1'000'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
