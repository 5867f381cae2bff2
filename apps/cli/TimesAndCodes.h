#pragma once

#include "apps/cli/Console.h"
#include "host/results/ResultsBook.h"
#include "host/session/ActiveData.h"

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace korvana::cli {

/// Times with a censoring indicator and its codes, for the specification dialogs.
struct TimesAndCodes {
    std::vector<int> times; ///< variable numbers from 1
    int censor = 0;
    double complete = 0;
    double censored = 0;
    std::vector<ResultMessage> remarks; ///< what the user should know about the codes
};

/// Refuses a variable that is given two roles (numbers from 1). Throws UsageError.
void refuseTwice(const DataSet& data, std::vector<int> variables);
/// Refuses variables (numbers from 0) that hold texts, naming the option and what is wanted instead ("times
/// are numbers"). Throws UsageError.
void refuseTexts(const DataSet& data, const std::string& option, const std::vector<int>& variables0,
                 const std::string& wanted);

/// The options that name times, censoring indicator and codes.
class TimesAndCodesOptions {
public:
    /// The heading in the help above the options for variables and codes.
    static constexpr const char* helpGroup =
        "Variables (by name or number) and codes (numbers or value labels)";

    void declare(CLI::App& app);
    /// Checks the options against the data. Throws UsageError.
    [[nodiscard]] TimesAndCodes resolve(const ActiveData& data) const;
    /// The names of those that were given.
    [[nodiscard]] std::vector<std::string> given() const;

private:
    std::string times_;
    std::string censor_;
    std::string complete_;
    std::string censored_;
};

} // namespace korvana::cli
