#pragma once

#include "apps/cli/Script.h"
#include "host/data/DataSet.h"

#include <CLI/App.hpp>
#include <cstddef>
#include <string>
#include <vector>

namespace korvana::cli {

/// Covariates that are defined by expressions: given one by one, read from a file, and written to one.
class ExpressionOptions {
public:
    static constexpr std::size_t most = 40;
    static constexpr std::size_t longestName = 8; ///< characters
    static constexpr std::size_t longestExpression = 60;

    void declare(CLI::App& app);
    /// Checks what can be judged without the data. Throws UsageError.
    void check();
    /// Checks that the expressions given can be understood. Throws UsageError.
    void check(const DataSet& data) const;
    /// Sets them in the specification dialog: those of the file, then those given one by one, which take the
    /// place of the file's with the same name. Throws UsageError, also after a message of the analysis about
    /// the file, and ScriptError.
    void put(Script& script);
    /// Writes all of them to a file, if one was given; to be called after `put`. Throws as `put`.
    void save(Script& script) const;
    /// The names of the covariates; to be called after `put`.
    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }

private:
    struct Defined {
        std::string name;
        std::string expression;
    };
    [[nodiscard]] static Defined read(const std::string& text);
    void openFile(Script& script);
    /// @param source  of the covariate, for the error
    static void check(const Defined& covariate, const std::string& source, const DataSet& data);
    void merge(const Defined& covariate);

    std::vector<std::string> texts_;
    std::string fileToOpen_;
    std::string fileToSave_;
    std::vector<Defined> given_;
    std::vector<std::string> names_;
    std::vector<std::string> expressions_;
};

} // namespace korvana::cli
