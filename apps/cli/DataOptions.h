#pragma once

#include "apps/cli/Console.h"
#include "apps/cli/DefineOptions.h"
#include "host/session/ActiveData.h"

#include <CLI/App.hpp>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace korvana::cli {

/// The data file and how it is read, which cases take part and what weights them.
class DataOptions {
public:
    void declare(CLI::App& app);

    /// Reads the file into `data` and applies the options. Throws UsageError, DataError, ExpressionError.
    /// @param given  taken in place of a file
    /// @param stop  lets another thread stop it: ReadingStopped (ReadData.h) is thrown then
    void open(ActiveData& data, std::optional<DataSet> given = {}, const std::stop_token& stop = {}) const;
    [[nodiscard]] const std::string& path() const { return path_; }
    /// The name of the data in messages.
    [[nodiscard]] std::string source() const { return path_ == "-" ? "standard input" : path_; }

private:
    [[nodiscard]] DataSet readFile(const std::stop_token& stop) const;

    std::string path_;
    DefineOptions define_;
    std::string select_;
    std::string weight_;
    std::vector<std::string> missing_;
    std::string separator_;
    std::string decimal_;
    std::string dates_;
    bool header_ = false;
    bool noHeader_ = false;
};

/// The 0-based number of a variable, given by name or number.
int variableOf(const DataSet& data, const std::string& option, const std::string& name);

} // namespace korvana::cli
