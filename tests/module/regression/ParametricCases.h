#pragma once
// Cases of the golden parametric regressions, as the models take them.

#include "module/regression/parametric/CensoredCases.h"
#include "tests/module/regression/CoxCases.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace ozm::survival {

inline const korvana::golden::Table& GoldenParametric() {
    static const auto table = korvana::golden::Table::read("parametric.csv");
    return table;
}

/// The cases of a data set of the golden file.
inline CoxCases ParametricCasesNamed(const std::string& dataset) {
    if (dataset == "leukaemia" || dataset == "aml" || dataset == "veteran") return CasesNamed(dataset);
    if (dataset == "leukaemia-wbc" || dataset == "leukaemia-copy") {
        CoxCases cases =
            CasesOf("leukaemia-wbc.csv", "weeks", "relapse", {"sex=male", "logwbc", "group=6-MP"});
        cases.names = {"sex", "logwbc", "group"};
        if (dataset == "leukaemia-wbc") return cases;
        cases.names.emplace_back("copy");
        cases.x.push_back(Values(cases.x[1]));
        return cases;
    }
    const std::size_t plus = dataset.find('+');
    CoxCases cases = CasesIn(dataset.substr(0, plus), GoldenParametric());
    if (plus != std::string::npos)
        for (double& x : cases.x[1])
            x += std::stod(dataset.substr(plus));
    return cases;
}

/// They stay, column by column, for as long as it lives.
struct ParametricCases {
    explicit ParametricCases(const CoxCases& cases, const std::string& model = "normal")
        : names(cases.names), covariates(cases.x.size()), y(cases.time) {
        for (const double status : cases.status)
            flags.push_back(static_cast<std::uint8_t>(status));
        for (const Values& column : cases.x)
            x.insert(x.end(), column.begin(), column.end());
        if (model == "lognormal")
            for (double& time : y)
                time = std::log(time);
        names.emplace_back("constant");
        if (model != "exponential") names.emplace_back("sigma");
    }
    [[nodiscard]] CensoredCases Cases() const { return {y, flags, covariates, y.size(), x, upper}; }

    std::vector<std::string> names; ///< of the parameters
    std::size_t covariates;
    Values y;
    Values upper;
    std::vector<std::uint8_t> flags;
    Values x;
};

} // namespace ozm::survival
