#pragma once
// The two-sample comparison on a fake host, from its specification dialog to its results.

#include "tests/module/AnalysisFixture.h"

namespace ozm::test {

class TwoFixture : public AnalysisFixture {
protected:
    void SetUp() override {
        AnalysisFixture::SetUp();
        // Ten patients of Lee 1980; group 3 takes no part.
        host.columns = {{"months", {23, 16, 18, 20, 24, 15, 18, 19, 19, 20, 7}},
                        {"died", {1, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1}},
                        {"arm", {1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 3}}};
        host.columns[2].labels = {{1, "CMF"}, {2, "control"}};
    }
    using AnalysisFixture::Specify;
    int Specify() override {
        using List = AutomationValue::List;
        const int step = Specify(3, List{List{1}, List{2}, List{3}});
        host.Script().Put("CodeForGroup1", 1);
        host.Script().Put("CodeForGroup2", 2);
        return step;
    }
    /// Other data of the same three variables.
    void Data(std::vector<double> times, std::vector<double> died, std::vector<double> arm) {
        host.columns[0].values = std::move(times);
        host.columns[1].values = std::move(died);
        host.columns[2].values = std::move(arm);
    }
    /// `cases` observations, all of group 1 and uncensored but for a few.
    void ManyCases(int cases) {
        const auto n = static_cast<std::size_t>(cases);
        Data(std::vector<double>(n), std::vector<double>(n, 1.0), std::vector<double>(n, 1.0));
        for (std::size_t i = 0; i < n; ++i)
            host.columns[0].values[i] = static_cast<double>((i * 31) % 977);
    }
    survival::TwoState& State() { return survival::ModuleState().twoSamples; }
    /// The sheet of that title; fails when there is none.
    Sheet SheetOf(const std::string& title) {
        for (const Sheet& sheet : host.sheets)
            if (sheet.title == title) return sheet;
        throw std::runtime_error("no sheet " + title);
    }
};

} // namespace ozm::test
