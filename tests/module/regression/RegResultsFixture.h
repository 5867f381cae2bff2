#pragma once
// Results of a regression, filled in as a run leaves them, and the dialog that reads them.

#include "module/frame/SurvivalState.h"
#include "module/regression/RegressionModels.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ReportLines.h"
#include "tests/module/regression/CoxCases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace ozm::survival {

class RegResultsFixture : public testing::Test {
protected:
    test::FakeHost host;
    CSurvival analysis{&host};

    void SetUp() override { analysis.Initialize(); }
    void TearDown() override { ModuleState().regression = {}; }

    RegressionState& State() { return ModuleState().regression; }
    RegressionResults& Results() { return State().results; }

    /// The fit of these cases, as close to the maximum as the criterion says, and its dialog.
    void Open(const CoxCases& cases, RegressionKind kind = RegressionKind::ProportionalHazards,
              double criterion = 1e-11) {
        ModuleState().shared.Enter(analysis);
        State() = {};
        const auto strata = cases.Strata();
        host.columns = {{"time", cases.time}, {"status", cases.status}, {"arm", cases.code}};
        ModuleState().shared.List(ListSurvivalTimes) = {1};
        ModuleState().shared.timeVariables = 1;
        ModuleState().shared.List(ListCensoring) = {2};
        RegressionResults& results = Results();
        ASSERT_TRUE(results.sample.Obtain(analysis, cases.time.size(), cases.x.size()));
        for (std::size_t i = 0; i < cases.time.size(); ++i) {
            Values row;
            for (const Values& column : cases.x)
                row.push_back(column[i]);
            results.sample.Add(cases.time[i], cases.status[i] == 1, static_cast<std::int32_t>(i) + 1,
                               cases.code.empty() ? std::int16_t{0} : strata.at(cases.code[i]), row);
        }
        results.sample.Summarise();
        results.names = cases.names;
        for (std::size_t k = results.names.size(); k < cases.x.size(); ++k)
            results.names.push_back("x" + std::to_string(k + 1));
        const RegressionModel& model = ModelOf(kind);
        results.kind = kind;
        results.variableNames = results.parameterNames = results.names;
        for (const int own : model.ownParameters)
            results.parameterNames.push_back(Whole(own));
        results.covariates.assign(results.names.size(), 0);
        results.missing.assign(cases.x.size(), 0);
        if (!cases.code.empty()) {
            results.stratumVariable = 3;
            for (const auto& [code, stratum] : strata)
                results.strata.push_back(code);
        }
        results.criterion = criterion;
        State().settings.maximumIterations = 20000;
        EstimationRun run{.host = analysis,
                          .sample = results.sample,
                          .covariates = results.names,
                          .compiled = results.compiled,
                          .variables = results.covariates,
                          .strata = strata.size(),
                          .limits = {criterion, 20000},
                          .parameters = results.estimates,
                          .estimate = results.estimate,
                          .show = {},
                          .watch = [](int, double, std::span<const double>) { return false; }};
        const Outcome outcome = model.fit(run);
        ASSERT_EQ(outcome.ending, Ending::Estimated) << outcome.message << outcome.detail;
        results.prepared = results.held = true;
        Show();
    }
    void Show() { ASSERT_EQ(host.Go(analysis, StepRegressionResults), StepRegressionResults); }

    /// Makes an output; false when it failed.
    bool Make(const char* output) {
        host.messages.clear();
        const AutomationResult result = host.Script().Call(output);
        EXPECT_TRUE(result.ok) << output;
        return result.value == AutomationValue{true};
    }
    int MessageOf(const char* output) {
        EXPECT_FALSE(Make(output)) << output;
        return host.messages.empty() ? 0 : host.messages.back().id;
    }
    const test::Sheet& SheetOf(const std::string& title) {
        const auto found =
            std::ranges::find(host.sheets.rbegin(), host.sheets.rend(), title, &test::Sheet::title);
        if (found == host.sheets.rend()) throw std::runtime_error("no sheet " + title);
        return *found;
    }
    static const Values& Column(const test::Sheet& sheet, const std::string& id) {
        return sheet.numbers.at(PlaceOf(sheet.ids, id));
    }
    static const std::vector<std::string>& Words(const test::Sheet& sheet, const std::string& id) {
        return sheet.texts.at(PlaceOf(sheet.ids, id));
    }
    static double Cell(const test::Sheet& sheet, const std::string& row, const std::string& id) {
        return Column(sheet, id).at(PlaceOf(sheet.rowHeadings, row));
    }
    /// Of the report.
    [[nodiscard]] std::size_t LongestLine() const {
        std::size_t longest = 0;
        std::size_t current = 0;
        for (const char c : host.report)
            longest = std::max(longest, current = c == '\n' ? 0 : current + 1);
        return longest;
    }
    static bool Mentions(const std::vector<std::string>& texts, const std::string& what) {
        return std::ranges::any_of(
            texts, [&](const std::string& text) { return text.find(what) != std::string::npos; });
    }
};

} // namespace ozm::survival
