#pragma once
// Results of the parametric regressions of the golden file, beside what an independent program found.

#include "tests/module/regression/GoldenRows.h"
#include "tests/module/regression/ParametricCases.h"
#include "tests/module/regression/RegResultsFixture.h"

#include <cctype>
#include <string>
#include <vector>

namespace ozm::survival {

struct Model {
    const char* name;
    RegressionKind kind;
};
inline constexpr Model parametricModels[] = {{"exponential", RegressionKind::Exponential},
                                             {"lognormal", RegressionKind::Lognormal},
                                             {"normal", RegressionKind::Normal}};

class ParametricResults : public RegResultsFixture {
protected:
    void OpenGolden(const std::string& dataset, const Model& model) {
        host.sheets.clear();
        host.charts.clear();
        host.report.clear();
        golden_ = GoldenRowsOf(GoldenParametric(), dataset);
        Open(ParametricCasesNamed(dataset), model.kind, 1e-10);
    }
    [[nodiscard]] bool Has(const std::string& run) const {
        return std::ranges::find(golden_, run, &GoldenRow::run) != golden_.end();
    }
    /// The place of a parameter that the golden file names.
    std::size_t Place(const std::string& of) {
        std::string name = of;
        if (of == "constant" || of == "sigma")
            name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
        return PlaceOf(Results().parameterNames, name);
    }
    Ours Parameter(const char* id) {
        const Values& column = Column(SheetOf("Parameter Estimates"), id);
        return {[this, &column](const GoldenRow& row) { return column.at(Place(row.of)); }};
    }
    Ours At(const char* title, const char* row, const char* id, double size = 0.0) {
        const double cell = Cell(SheetOf(title), row, id);
        return {[cell](const GoldenRow&) { return cell; }, size};
    }
    Ours Row(const Values& column, double size = 1.0) {
        return {[&column](const GoldenRow& row) { return column.at(row.row - 1); }, size};
    }
    void PutAt(const std::string& run) {
        AutomationValue::List values(Results().names.size());
        for (const GoldenRow& row : golden_)
            if (row.run == run && row.quantity == "x") values[PlaceOf(Results().names, row.of)] = row.value;
        ASSERT_TRUE(host.Script().Put("CovariateValues", values).ok);
    }
    std::vector<GoldenRow> golden_;
};

} // namespace ozm::survival
