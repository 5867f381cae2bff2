#pragma once
// What the tests of the analyses share: a fake host with a small data set, and the way from the startup
// dialog to the specification dialog of an analysis and to its results.

#include "module/frame/SurvivalState.h"
#include "module/resources/KSamples.h"
#include "module/resources/Kaplan.h"
#include "module/resources/LifeTables.h"
#include "module/resources/Regression.h"
#include "module/resources/StepNumbers.h"
#include "module/resources/TwoSamples.h"
#include "tests/module/FakeHost.h"
#include "tests/support/FailingNew.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <string_view>

namespace ozm::test {

/// What is particular to an analysis, or to one of its inputs.
struct Analysis {
    const char* name;
    int entry;         ///< of the startup dialog
    int specification; ///< the steps of its dialogs
    int results;
    int noMemory;                ///< the message
    int several;                 ///< enough cases that memory comes from the host
    int many;                    ///< enough cases that sorting them takes memory and checks for a stop
    int arrays;                  ///< arrays of the host that its results keep, for more than a few cases
    int requests;                ///< the fewest memory requests of a run
    std::vector<Column> columns; ///< the data
    AutomationValue::List variables;
    int (*observations)();                   ///< how many its results hold
    bool sortsSilently = false;              ///< a run without memory for its sorting ends without a message
    bool table = false;                      ///< the input is a table: each case is a row, not an observation
    int model = 0;                           ///< of the regression, from 1; 0: there is nothing to choose
    std::vector<std::string_view> without{}; ///< outputs of its dialog that it has not
    AutomationValue::List covariates{};      ///< names of those that expressions define
    AutomationValue::List expressions{};
};

/// The 6-MP group of Freireich et al. 1963, unsorted.
inline const Analysis kaplan{
    .name = "Kaplan",
    .entry = 2,
    .specification = survival::StepSpecifyKaplan,
    .results = survival::StepKaplanResults,
    .noMemory = survival::StrKaplanNoMemory,
    .several = 2600,
    .many = 50000,
    .arrays = 7,
    .requests = 20,
    .columns = {{"weeks", {10, 6, 7, 6, 32, 6, 23, 22, 11, 16, 34, 32, 25, 10, 9, 6, 13, 20, 17, 19, 35}},
                {"relapse", {1, 1, 1, 0, 0, 1, 1, 1, 0, 1, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0}}},
    .variables = {AutomationValue::List{1}, AutomationValue::List{2}},
    .observations = [] { return survival::ModuleState().kaplan.results.Valid(); }};

/// Ten patients of Lee 1980; group 3 takes no part.
inline const Analysis twoSamples{
    .name = "TwoSamples",
    .entry = 3,
    .specification = survival::StepSpecifyTwoSamples,
    .results = survival::StepTwoResults,
    .noMemory = survival::StrTwoNoMemory,
    .several = 600,
    .many = 600,
    .arrays = 1,
    .requests = 14,
    .columns = {{"months", {23, 16, 18, 20, 24, 15, 18, 19, 19, 20, 7}},
                {"died", {1, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1}},
                {"arm", {1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 3}, none, {{1, "CMF"}, {2, "control"}}}},
    .variables = {AutomationValue::List{1}, AutomationValue::List{2}, AutomationValue::List{3}},
    .observations = [] { return survival::ModuleState().twoSamples.results.Sample().Total().All(); }};

/// The ten patients and two more of the third group.
inline const Analysis kSamples{
    .name = "KSamples",
    .entry = 4,
    .specification = survival::StepSpecifyKSamples,
    .results = survival::StepKsResults,
    .noMemory = survival::StrKsNoMemory,
    .several = 6000,
    .many = 20000,
    .arrays = 2,
    .requests = 30,
    .columns = {{"months", {23, 16, 18, 20, 24, 15, 18, 19, 19, 20, 7, 9, 30}},
                {"died", {1, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 0}},
                {"arm", {1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 3, 3, 3}, none, {{1, "CMF"}, {2, "control"}}}},
    .variables = {AutomationValue::List{1}, AutomationValue::List{2}, AutomationValue::List{3}},
    .observations = [] { return survival::ModuleState().kSamples.results.Sample().Total().All(); }};

inline int LifeObservations() {
    return static_cast<int>(survival::ModuleState().lifeTables.results.valid);
}

inline const Analysis lifeRaw{
    .name = "LifeTable",
    .entry = 1,
    .specification = survival::StepSpecifyLifeTables,
    .results = survival::StepLifeResults,
    .noMemory = survival::StrLifeNoMemory,
    .several = 9000,
    .many = 20000,
    .arrays = 0,
    .requests = 20,
    .columns = {{"weeks", {10, 6, 7, 6, 32, 6, 23, 22, 11, 16, 34, 32, 25, 10, 9, 6, 13, 20, 17, 19, 35}},
                {"relapse", {1, 1, 1, 0, 0, 1, 1, 1, 0, 1, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0}}},
    .variables = {AutomationValue::List{1}, AutomationValue::List{2}},
    .observations = LifeObservations};

/// 2418 men with angina pectoris by the years since the diagnosis.
inline const Analysis lifeOfTable{
    .name = "LifeTableOfTable",
    .entry = 1,
    .specification = survival::StepSpecifyLifeTables,
    .results = survival::StepLifeResults,
    .noMemory = survival::StrLifeNoMemory,
    .several = 600,
    .many = 600,
    .arrays = 0,
    .requests = 20,
    .columns = {{"year", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}},
                {"withdrawn", {0, 39, 22, 23, 24, 107, 133, 102, 68, 64, 45, 53, 33, 27, 23, 30}},
                {"died", {456, 226, 152, 171, 135, 125, 83, 74, 51, 42, 43, 34, 18, 9, 6, 0}}},
    .variables = {AutomationValue::List{1}, AutomationValue::List{2}, AutomationValue::List{3}},
    .observations = LifeObservations,
    .table = true};

/// Cox regression on the treatment of Freireich et al. 1963 (6-MP is 1) and a covariate made up for it.
inline const Analysis coxRegression{
    .name = "CoxRegression",
    .entry = 5,
    .specification = survival::StepSpecifyRegression,
    .results = survival::StepRegressionResults,
    .noMemory = survival::StrRegNoMemory,
    .several = 300,
    .many = 300,
    .arrays = 5,
    .requests = 20,
    .columns = {{"weeks", {10, 7,  32, 23, 22, 6,  16, 34, 32, 25, 11, 20, 19, 6,  17, 35, 6, 13, 9, 6, 10,
                           1,  22, 3,  12, 8,  17, 2,  11, 8,  12, 2,  5,  4,  15, 8,  23, 5, 11, 4, 1, 8}},
                {"relapse", {1, 1, 0, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0,
                             1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}},
                {"drug", {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
                          0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
                {"sex", {1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1,
                         1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1}}},
    .variables = {AutomationValue::List{1}, AutomationValue::List{2}, AutomationValue::List{3},
                  AutomationValue::List{}},
    .observations =
        [] { return static_cast<int>(survival::ModuleState().regression.results.sample.Cases()); },
    .sortsSilently = true};

/// The same, stratified: with all outputs.
inline const Analysis coxStratified = [] {
    Analysis of = coxRegression;
    of.name = "CoxStratified";
    of.variables[3] = AutomationValue::List{4};
    of.without = {"ModelComparison"};
    return of;
}();

/// With covariates that expressions define; the values of one of them change with the time.
inline const Analysis coxTime = [] {
    Analysis of = coxRegression;
    of.name = "CoxTime";
    of.entry = 6;
    of.variables = {AutomationValue::List{1}, AutomationValue::List{2}, AutomationValue::List{}};
    of.covariates = {"Rx", "Rx_T"};
    of.expressions = {"drug", "drug*(T_-10)"};
    of.without = {"StratitifiedAnalysis",
                  "Plot1",
                  "Plot2",
                  "Plot3",
                  "UserDefinedPlot",
                  "SurvivalTable",
                  "Residuals",
                  "ProportionalHazardsTest",
                  "ScaledSchoenfeldResiduals",
                  "PlotOfScaledSchoenfeldResiduals",
                  "ModelComparison"};
    return of;
}();
inline const Analysis coxTimeStratified = [] {
    Analysis of = coxTime;
    of.name = "CoxTimeStratified";
    of.variables[2] = AutomationValue::List{4};
    of.without.erase(of.without.begin());
    return of;
}();

inline Analysis ParametricRegression(const char* name, survival::RegressionKind kind) {
    Analysis of = coxRegression;
    of.name = name;
    of.model = static_cast<int>(kind);
    of.without = {"StratitifiedAnalysis", "ProportionalHazardsTest", "ScaledSchoenfeldResiduals",
                  "PlotOfScaledSchoenfeldResiduals"};
    of.sortsSilently = false;
    return of;
}
inline const Analysis exponentialRegression =
    ParametricRegression("Exponential", survival::RegressionKind::Exponential);
/// Which takes times of 0, as the lognormal one does not; else they are the same.
inline const Analysis normalRegression = [] {
    Analysis of = ParametricRegression("Normal", survival::RegressionKind::Normal);
    of.without.emplace_back("ForestPlot");
    return of;
}();

class AnalysisFixture : public testing::Test {
protected:
    explicit AnalysisFixture(const Analysis& one) : of(one) {}

    const Analysis& of;
    FakeHost host;
    survival::CSurvival analysis{&host};

    void SetUp() override {
        survival::ModuleState().kaplan.settings = {}; // which the module keeps from one analysis to the next
        survival::ModuleState().startupPosition = 0;
        analysis.Initialize();
        host.columns = of.columns;
    }
    /// From the startup dialog to the specification dialog with the selections made; returns its step.
    int Specify() {
        host.Go(analysis, survival::StepInitialize);
        host.Script().Put("TypeOfAnalysis", of.entry);
        int step = host.Press(analysis, ControlOk);
        if (of.table && host.Script().Put("TypeOfInputData", survival::LifeFromTable).ok)
            step = host.Go(analysis, host.nextStep);
        AutomationObject script = host.Script();
        if (of.model > 0) script.Put("TypeOfSurvivalRegressionModel", of.model);
        script.Put("Variables", of.variables);
        script.Put("CodeForCompleteResponses", 1);
        script.Put("CodeForCensoredResponses", 0);
        if (!of.expressions.empty()) {
            script.Put("TimeDependentCovariateNames", of.covariates);
            script.Put("TimeDependentCovariateExpressions", of.expressions);
        }
        script.Put("CodeForGroup1", 1); // where there are groups
        script.Put("CodeForGroup2", 2);
        return step;
    }
    /// From there to the step after OK.
    int Run() {
        Specify();
        return host.Press(analysis, ControlOk);
    }
    /// Other data of the same variables; the third list has the groups, if there are any.
    void Data(std::vector<double> times, std::vector<double> complete, std::vector<double> groups = {}) {
        host.columns[0].values = std::move(times);
        host.columns[1].values = std::move(complete);
        if (!groups.empty()) host.columns[2].values = std::move(groups);
    }
    /// Tied observations, every other one censored, in two groups alike; or the rows of a table.
    void ManyCases(int cases) {
        for (Column& column : host.columns)
            column.values.resize(static_cast<std::size_t>(cases));
        for (int i = 0; i < cases; ++i) {
            const auto n = static_cast<std::size_t>(i);
            host.columns[0].values[n] = (i * 31) % 977;
            host.columns[1].values[n] = i % 2;
            if (of.table) { // fifteen intervals; the other rows are left out
                const int every = cases / 15;
                host.columns[0].values[n] = i % every == 0 ? i : none;
                host.columns[1].values[n] = 3;
            }
            if (host.columns.size() > 2) host.columns[2].values[n] = 1 + i / 2 % 2;
        }
    }
    /// The run is refused with that message and keeps nothing.
    void ExpectRefused(int message) {
        host.messages.clear();
        EXPECT_EQ(Run(), of.specification);
        EXPECT_EQ(host.messages.empty() ? 0 : host.messages.back().id, message);
        EXPECT_EQ(of.observations(), 0);
        EXPECT_EQ(host.outstanding, 0);
    }
    /// The outputs that scripts know, and the analysis has.
    std::vector<AutomationMember> Outputs() { return Outputs(host.Dialog()); }
    [[nodiscard]] std::vector<AutomationMember> Outputs(const CAnalysisDialog& dialog) const {
        std::vector<AutomationMember> outputs;
        for (const AutomationMember& member : dialog.Interface()->members)
            if (member.kind == MemberKind::Action &&
                std::ranges::find(of.without, member.name) == of.without.end())
                outputs.push_back(member);
        return outputs;
    }
    void MakeEveryOutput() {
        for (const AutomationMember& output : Outputs())
            EXPECT_TRUE(host.Script().Call(output.name).ok) << output.name;
    }
    /// The sheet of that title; fails when there is none.
    Sheet SheetOf(const std::string& title) {
        for (const Sheet& sheet : host.sheets)
            if (sheet.title == title) return sheet;
        throw std::runtime_error("no sheet " + title);
    }
    /// Calls `act` with every allocation of the C++ runtime failing in turn, and `after` each time, until
    /// `act` succeeds.
    void FailEveryAllocation(const std::function<void()>& act, const std::function<void()>& after) {
        for (long n = 1; n < 5000; ++n) {
            host.messages.clear();
            host.nextStep = -1;
            failingNew = n;
            act();
            const bool through = failingNew > 0;
            failingNew = 0;
            if (through) return;
            SCOPED_TRACE("allocation " + std::to_string(n));
            after();
        }
        ADD_FAILURE() << "no end of allocations";
    }
};

class KaplanFixture : public AnalysisFixture {
protected:
    KaplanFixture() : AnalysisFixture(kaplan) {}
    survival::KaplanState& State() { return survival::ModuleState().kaplan; }
};

class TwoFixture : public AnalysisFixture {
protected:
    TwoFixture() : AnalysisFixture(twoSamples) {}
    survival::TwoState& State() { return survival::ModuleState().twoSamples; }
};

class LifeFixture : public AnalysisFixture {
protected:
    explicit LifeFixture(const Analysis& one = lifeRaw) : AnalysisFixture(one) {}
    survival::LifeState& State() { return survival::ModuleState().lifeTables; }
};

class CoxFixture : public AnalysisFixture {
protected:
    CoxFixture() : AnalysisFixture(coxRegression) {}
    survival::RegressionState& State() { return survival::ModuleState().regression; }
};

class KsFixture : public AnalysisFixture {
protected:
    KsFixture() : AnalysisFixture(kSamples) {}
    survival::KsState& State() { return survival::ModuleState().kSamples; }
};

} // namespace ozm::test
