#pragma once

#include "host/session/ActiveData.h"

#include <CLI/App.hpp>
#include <cstddef>
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
    /// Finds the covariates in the data, and appends the indicators to them. Throws UsageError.
    void prepare(ActiveData& data);

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
    };
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
};

} // namespace korvana::cli
