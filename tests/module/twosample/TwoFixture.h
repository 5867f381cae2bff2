#pragma once
// The two-sample comparison on a fake host, from its specification dialog to its results.

#include "module/frame/SurvivalState.h"
#include "module/resources/ControlIds.h"
#include "module/resources/StepNumbers.h"
#include "tests/module/FakeHost.h"

#include <gtest/gtest.h>

namespace ozm::test {

class TwoFixture : public testing::Test {
protected:
    FakeHost host;
    survival::CSurvival analysis{&host};

    void SetUp() override {
        analysis.Initialize();
        // Ten patients of Lee 1980; group 3 takes no part.
        host.columns = {{"months", {23, 16, 18, 20, 24, 15, 18, 19, 19, 20, 7}},
                        {"died", {1, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1}},
                        {"arm", {1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 3}}};
        host.columns[2].labels = {{1, "CMF"}, {2, "control"}};
    }
    /// To the specification dialog with the selections made.
    int Specify() {
        host.Go(analysis, survival::StepInitialize);
        host.Script().Put("TypeOfAnalysis", 3);
        const int step = host.Press(analysis, ControlOk);
        AutomationObject script = host.Script();
        script.Put("Variables", AutomationValue::List{AutomationValue::List{1}, AutomationValue::List{2},
                                                      AutomationValue::List{3}});
        script.Put("CodeForCompleteResponses", 1);
        script.Put("CodeForCensoredResponses", 0);
        script.Put("CodeForGroup1", 1);
        script.Put("CodeForGroup2", 2);
        return step;
    }
    /// From there to the step after OK.
    int Run() {
        Specify();
        return host.Press(analysis, ControlOk);
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
