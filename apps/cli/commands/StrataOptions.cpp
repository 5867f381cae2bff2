#include "apps/cli/commands/StrataOptions.h"

#include "apps/cli/UsageError.h"

#include <algorithm>
#include <span>

namespace korvana::cli {

void StrataOptions::declare(CLI::App& app) {
    strata_.declare(app);
    app.add_flag("--separate", separate_,
                 "with --strata: the output stratified also has the coefficients of each stratum")
        ->group(TimesAndCodesOptions::helpGroup);
}

void StrataOptions::check() const {
    strata_.check();
    if (separate_ && !strata_.isGiven())
        throw UsageError("--separate needs --strata: each stratum gets coefficients of its own");
}

void StrataOptions::keepCounting(const ActiveData& data, std::vector<std::uint8_t>& cases) const {
    if (!strata_.isGiven()) return;
    TimesAndCodes others; // its remarks come again
    const Groups strata = strata_.resolve(data, others);
    const std::span<const double> codes = data.dataSet().column(strata.variable - 1);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const bool isOne = std::ranges::find(strata.codes, codes[i]) != strata.codes.end();
        if (data.dataSet().isMissing(strata.variable - 1, static_cast<int>(i)) ||
            (!strata.codes.empty() && !isOne))
            cases[i] = 0;
    }
}

} // namespace korvana::cli
