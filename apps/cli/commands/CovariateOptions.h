#pragma once

#include "host/session/ActiveData.h"

#include <CLI/App.hpp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace korvana::cli {

/// The covariates of a regression. A variable of groups is taken apart into indicators: "celltype:cat" stands
/// for an indicator of every code but the first, "celltype:cat=adeno" names the code without one.
class CovariateOptions {
public:
    static constexpr std::size_t most = 40;

    void declare(CLI::App& app);
    /// Checks what can be judged without the data. Throws UsageError.
    void check() const;
    /// Whether a variable of groups may be among them.
    [[nodiscard]] bool mayHaveGroups() const;
    /// Finds the covariates in the data, and appends the indicators to them. Throws UsageError.
    /// @param counting  the cases (1) that have groups: those that count for the analysis whatever their
    ///                  covariates; empty: all selected ones
    /// @param complete  whether a case without one of the covariates does not count
    void prepare(ActiveData& data, std::vector<std::uint8_t> counting, bool complete);

    /// Numbers from 1, and names, of the covariates.
    [[nodiscard]] std::vector<int> variables() const;
    [[nodiscard]] std::vector<std::string> names() const;
    /// The variables (from 1) that the user named: a variable of groups in place of its indicators.
    [[nodiscard]] const std::vector<int>& named() const { return named_; }

    /// The values that a text such as "karno=60,celltype=adeno" gives the covariates, NaN for the others. The
    /// code of a variable of groups sets all of its indicators. Throws UsageError.
    [[nodiscard]] std::vector<double> valuesAt(const ActiveData& active, const std::string& text) const;

private:
    struct Covariate {
        int variable0 = 0;
        std::string name;
    };
    /// A variable of groups, with the codes that have indicators, the first one at a place.
    struct Factor {
        int variable0 = 0;
        double reference = 0.0;
        std::vector<double> codes;
        std::size_t first = 0;
        std::vector<double> absent; ///< codes of selected cases of which none counts
    };
    /// An entry of the list: the variable's name, and what follows it for a variable of groups.
    struct Entry {
        std::string name;
        bool isGroups = false;
        std::string reference;
    };
    [[nodiscard]] std::vector<Entry> entries(const DataSet& data) const;
    void leaveOutIncomplete(const DataSet& data, const std::vector<Entry>& entries);
    void addNumbers(const DataSet& data, const std::string& name);
    void addGroups(const ActiveData& data, const std::string& name, const std::string& reference);
    void name(const DataSet& data, int variable0);
    void addIndicators(ActiveData& data, const Factor& factor);
    [[nodiscard]] std::string noteOn(const DataSet& data, const Factor& factor) const;
    [[nodiscard]] const Factor* factorOf(const DataSet& data, const std::string& name) const;

    std::string list_;
    std::vector<int> named_;
    std::vector<Covariate> covariates_;
    std::vector<Factor> factors_;
    std::vector<std::uint8_t> counting_;
};

} // namespace korvana::cli
