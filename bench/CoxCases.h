#pragma once
// Cases of Cox regressions for the benchmarks and their data files: the same on every machine with the same
// library of mathematical functions.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace korvana::bench {

struct CoxCase {
    double time;
    bool event; ///< in about half of the cases
    std::vector<double> x;
};

/// Cases with normal covariates, of which every third has no influence; their times are exponential.
class CoxCases {
public:
    explicit CoxCases(std::size_t covariates) : covariates_(covariates) {}

    CoxCase next() {
        CoxCase one{0, false, {}};
        double eta = 0;
        for (std::size_t k = 0; k < covariates_; ++k) {
            one.x.push_back(std::sqrt(-2 * std::log(unit())) * std::cos(2 * 3.141592653589793 * unit()));
            eta += 0.1 * (static_cast<double>(k % 3) - 1) * one.x.back();
        }
        const double death = -std::log(unit()) / std::exp(eta);
        const double censoring = -std::log(unit());
        one.event = death <= censoring;
        one.time = std::ceil(1e5 * std::min(death, censoring)) / 1e5; // a few ties
        return one;
    }

private:
    /// Strictly between 0 and 1.
    double unit() { return (static_cast<double>(generator_() >> 11) + 0.5) * 0x1p-53; }

    std::size_t covariates_;
    std::mt19937_64 generator_{19720187};
};

inline std::string coxHeader(std::size_t covariates) {
    std::string text = "time,status";
    for (std::size_t k = 1; k <= covariates; ++k)
        text += ",x" + std::to_string(k);
    return text + "\n";
}

/// The line of a case in a CSV file, with all digits.
inline void appendLine(std::string& text, const CoxCase& one) {
    const auto append = [&text](double value) {
        char digits[32];
        text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    };
    append(one.time);
    text += one.event ? ",1" : ",0";
    for (const double x : one.x) {
        text += ',';
        append(x);
    }
    text += '\n';
}

} // namespace korvana::bench
