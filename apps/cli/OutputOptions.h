#pragma once

#include "apps/cli/Console.h"
#include "host/results/ResultsBook.h"
#include "host/results/WriteBook.h"

#include <CLI/App.hpp>
#include <memory>
#include <string>

namespace korvana::cli {

/// Where results go: the report to standard output, or everything to files in a directory.
class OutputOptions {
public:
    void declare(CLI::App& app);
    /// Refuses wrong combinations, and files in the way, before any work is done. Throws UsageError and
    /// std::runtime_error.
    /// @param dataFile  is never written to
    void check(const std::string& dataFile);
    /// Refuses formats that can only hold charts when `outputs` (the value of --outputs) makes none.
    void checkWithoutChart(const std::string& outputs) const;

    [[nodiscard]] bool toFiles() const { return !directory_.empty(); }
    [[nodiscard]] bool quiet() const { return quiet_; }
    /// Writes the book; returns an exit code. Throws std::runtime_error naming a file that cannot be written.
    int write(const ResultsBook& book, Console& console) const;
    /// Writes the script of --record, if it was given. Throws as `write`.
    /// @param run  that of the results
    void record(const ResultsBook& book, const std::shared_ptr<const RunOrigin>& run, Console& console) const;

private:
    std::string directory_;
    std::string record_;
    std::string format_;
    bool quiet_ = false;
    FormatSet formats_;
};

} // namespace korvana::cli
