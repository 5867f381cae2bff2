#pragma once
// Survival times for the benchmarks and their data files: the same on every machine, since the language
// standard fixes the generator and the conversion.

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace korvana::bench {

enum class Kind : std::uint8_t {
    Continuous, ///< exponential with mean 100, practically without ties
    Ties,       ///< whole numbers from 1 to 1000, equally frequent
};

struct Case {
    double time;
    bool event; ///< false in about 30 of 100 cases
};

/// Generates cases, the same sequence for the same kind.
class Times {
public:
    explicit Times(Kind kind) : kind_(kind) {}

    Case next() {
        const double time = kind_ == Kind::Continuous ? -100.0 * std::log(unit())
                                                      : static_cast<double>(1 + generator_() % 1000);
        return {time, unit() >= 0.3};
    }

private:
    /// Strictly between 0 and 1.
    double unit() { return (static_cast<double>(generator_() >> 11) + 0.5) * 0x1p-53; }

    Kind kind_;
    std::mt19937_64 generator_{19580601};
};

inline constexpr const char* fileHeader = "time,status\n";

/// The line of a case in a CSV file (1 event, 0 censored): time with all digits needed to restore the double.
inline void appendLine(std::string& text, const Case& one) {
    char digits[32];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, one.time).ptr);
    text += one.event ? ",1\n" : ",0\n";
}

} // namespace korvana::bench
