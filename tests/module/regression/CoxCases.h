#pragma once
// Cases of the golden Cox regressions, of random ones, and samples made of them.

#include "module/regression/cox/FitCox.h"
#include "tests/module/FakeHost.h"
#include "tests/support/Golden.h"

#include <cstdint>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {

using Values = std::vector<double>;

/// Cases as they are read.
struct CoxCases {
    std::vector<std::string> names; ///< of the covariates
    Values time;
    Values status;         ///< 1: event
    Values code;           ///< of the stratum; empty: one
    std::vector<Values> x; ///< by covariate

    /// The codes, ascending: stratum 0 is the first.
    [[nodiscard]] std::map<double, std::int16_t> Strata() const {
        std::map<double, std::int16_t> strata;
        for (const double each : code)
            strata[each] = 0;
        std::int16_t next = 0;
        for (auto& [value, stratum] : strata)
            stratum = next++;
        if (strata.empty()) strata[0] = 0;
        return strata;
    }
    /// Any number of cases with ties among events, and of events with censored cases.
    static CoxCases Random(std::size_t n, std::size_t p, int strata, unsigned seed) {
        std::mt19937 draw(seed);
        const auto upTo = [&draw](unsigned most) { return static_cast<double>(draw() % most); };
        CoxCases cases;
        cases.x.resize(p);
        for (std::size_t i = 0; i < n; ++i) {
            cases.time.push_back(1 + upTo(static_cast<unsigned>(n / 2 + 2)));
            cases.status.push_back(upTo(3) > 0 ? 1 : 0);
            if (strata > 1) cases.code.push_back(upTo(static_cast<unsigned>(strata)));
            for (Values& column : cases.x)
                column.push_back((upTo(2001) - 1000) / 700);
        }
        return cases;
    }
};

/// A sample in the order of the partial likelihood, with the host that gave its memory.
struct CoxSample {
    explicit CoxSample(const CoxCases& cases) {
        const auto strata = cases.Strata();
        if (!sample.Obtain(analysis, cases.time.size(), cases.x.size())) throw std::bad_alloc();
        for (std::size_t i = 0; i < cases.time.size(); ++i) {
            Values row;
            for (const Values& column : cases.x)
                row.push_back(column[i]);
            sample.Add(cases.time[i], cases.status[i] == 1, static_cast<std::int32_t>(i) + 1,
                       cases.code.empty() ? std::int16_t{0} : strata.at(cases.code[i]), row);
        }
        sample.Summarise();
        if (!sample.Order(analysis, strata.size())) throw std::bad_alloc();
    }
    test::FakeHost host;
    CAnalysisSupport analysis{&host};
    RegressionSample sample;
};

inline const korvana::golden::Table& GoldenCox() {
    static const auto table = korvana::golden::Table::read("cox.csv");
    return table;
}

inline std::size_t PlaceOf(const std::vector<std::string>& names, const std::string& name) {
    for (std::size_t k = 0; k < names.size(); ++k)
        if (names[k] == name) return k;
    throw std::runtime_error("no covariate " + name);
}

/// Cases that stand in a golden file.
inline CoxCases CasesIn(const std::string& dataset, const korvana::golden::Table& golden = GoldenCox()) {
    const auto data = golden.where("dataset", dataset).where("run", "data");
    const auto quantities = data.texts("quantity");
    const auto of = data.texts("of");
    const Values values = data.numbers("value");
    CoxCases cases;
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (quantities[i] == "time") cases.time.push_back(values[i]);
        if (quantities[i] == "status") cases.status.push_back(values[i]);
        if (quantities[i] == "stratum") cases.code.push_back(values[i]);
        if (quantities[i] != "covariate") continue;
        if (cases.names.empty() || cases.names.back() != of[i]) {
            cases.names.push_back(of[i]);
            cases.x.emplace_back();
        }
        cases.x.back().push_back(values[i]);
    }
    return cases;
}

/// Cases that are shipped as an example.
inline CoxCases CasesOf(const std::string& file, const char* time, const char* status,
                        const std::vector<std::string>& names, const std::string& of = "") {
    const auto table = korvana::golden::Table::read("../../examples/data/" + file);
    CoxCases cases{names, table.numbers(time), table.numbers(status), {}, {}};
    for (const std::string& name : names) {
        const std::size_t sign = name.find('=');
        const std::string column = sign == std::string::npos ? name : name.substr(0, sign);
        if (sign == std::string::npos && of.empty()) {
            cases.x.push_back(table.numbers(column));
            continue;
        }
        Values& indicator = cases.x.emplace_back();
        for (const std::string& text : table.texts(column))
            indicator.push_back(text == (of.empty() ? name.substr(sign + 1) : of) ? 1 : 0);
    }
    return cases;
}

/// 2000 cases, heavily tied, drawn as the golden script draws them.
inline CoxCases LargerCases(bool stratified) {
    std::uint64_t s = 1;
    const auto drawn = [&s](unsigned modulus) {
        s = 16807 * s % 2147483647;
        return static_cast<double>(s % modulus);
    };
    CoxCases cases{{"x1", "x2", "x3", "x4", "x5", "x6", "x7"}, {}, {}, {}, std::vector<Values>(7)};
    for (int i = 0; i < 2000; ++i) {
        Values x;
        x.push_back(drawn(2));
        x.push_back(drawn(5) - 2);
        x.push_back(drawn(101) / 16);
        x.push_back(drawn(41) + 40);
        x.push_back(drawn(7) / 8 + x[0]);
        x.push_back(drawn(10) + 1000000);
        x.push_back(drawn(3) == 0 ? 1 : 0);
        const double risk = 40 + 30 * x[0] - 8 * x[1] + (x[3] - 40) + 25 * x[6];
        cases.time.push_back(1 + std::floor(drawn(1000) * 3 / risk));
        cases.status.push_back(drawn(5) < 3 ? 1 : 0);
        const double stratum = drawn(3) + 1;
        if (stratified) cases.code.push_back(stratum);
        for (std::size_t k = 0; k < 7; ++k)
            cases.x[k].push_back(x[k]);
    }
    return cases;
}

/// The cases of a data set of the golden file.
inline CoxCases CasesNamed(const std::string& dataset) {
    if (dataset == "leukaemia") return CasesOf("leukaemia-6mp.csv", "weeks", "relapse", {"group"}, "6-MP");
    if (dataset == "aml") return CasesOf("aml.csv", "time", "status", {"group"}, "Nonmaintained");
    if (dataset == "veteran")
        return CasesOf("veteran.csv", "time", "status",
                       {"trt", "celltype=smallcell", "celltype=adeno", "celltype=large", "karno", "diagtime",
                        "age", "prior"});
    if (dataset == "veteran-strata") {
        CoxCases cases = CasesOf("veteran.csv", "time", "status", {"trt", "karno", "age"});
        const CoxCases types = CasesOf("veteran.csv", "time", "status",
                                       {"celltype=smallcell", "celltype=adeno", "celltype=large"});
        for (std::size_t i = 0; i < cases.time.size(); ++i)
            cases.code.push_back(1 + types.x[0][i] + 2 * types.x[1][i] + 3 * types.x[2][i]);
        return cases;
    }
    if (dataset == "larger" || dataset == "larger-strata") return LargerCases(dataset == "larger-strata");
    if (dataset == "leukaemia-sex" || dataset == "leukaemia-copy") {
        CoxCases cases = CasesIn("leukaemia-wbc");
        const Values sex = std::exchange(cases.code, {});
        const bool copy = dataset == "leukaemia-copy";
        cases.names.insert(copy ? cases.names.end() : cases.names.begin(), copy ? "copy" : "sex");
        const Values added = copy ? cases.x[1] : sex;
        cases.x.insert(copy ? cases.x.end() : cases.x.begin(), added);
        return cases;
    }
    return CasesIn(dataset);
}

} // namespace ozm::survival
