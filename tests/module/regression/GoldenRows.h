#pragma once
// Golden files of regressions: a row per value, and their comparison with what we find.

#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace ozm::survival {

struct GoldenRow {
    std::string run;
    std::string quantity;
    std::string of;
    std::size_t row = 0;
    double value = 0.0;
};

inline std::vector<GoldenRow> GoldenRowsOf(const korvana::golden::Table& golden, const std::string& dataset) {
    const auto table = golden.where("dataset", dataset);
    const auto runs = table.texts("run");
    const auto quantities = table.texts("quantity");
    const auto of = table.texts("of");
    const auto rows = table.numbers("row");
    const auto values = table.numbers("value");
    std::vector<GoldenRow> all;
    for (std::size_t i = 0; i < table.size(); ++i)
        all.push_back({runs[i], quantities[i], of[i], static_cast<std::size_t>(rows[i]), values[i]});
    return all;
}

/// A quantity as we find it, and the size of which `precision` is a part where the quantity itself is
/// smaller.
struct Ours {
    std::function<double(const GoldenRow&)> value;
    double size = 0.0;
};

/// Every quantity named here is in the golden file, and every value of it agrees.
inline void Agree(const std::vector<GoldenRow>& golden, const std::string& run,
                  const std::map<std::string, Ours>& all, double precision) {
    std::set<std::string> seen;
    for (const GoldenRow& row : golden) {
        const auto ours = all.find(row.quantity);
        if (row.run != run || ours == all.end()) continue;
        seen.insert(row.quantity);
        if (std::isnan(row.value)) continue; // what the other program has not
        EXPECT_NEAR(ours->second.value(row), row.value,
                    precision * std::max(std::abs(row.value), ours->second.size))
            << run << " " << row.quantity << " " << row.of << " " << row.row;
    }
    EXPECT_EQ(seen.size(), all.size()) << run;
}

} // namespace ozm::survival
