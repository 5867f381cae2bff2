// Tests of every analysis: refusing every memory request of a whole run in turn, stopping at every stop test
// in turn, and failing every allocation of the C++ runtime in turn leave nothing behind, and the next run
// succeeds.

#include "tests/module/AnalysisFixture.h"

#include "module/resources/Shared.h"
#include "module/resources/Startup.h"

#include <bit>
#include <cctype>
#include <cmath>
#include <set>

namespace ozm::survival {
namespace {

class EveryAnalysis : public test::AnalysisFixture,
                      public testing::WithParamInterface<const test::Analysis*> {
protected:
    EveryAnalysis() : AnalysisFixture(*GetParam()) {}
    /// From the specification's OK through every output and back; true when it reached the results.
    bool Whole() {
        host.messages.clear();
        host.sheets.clear();
        host.report.clear();
        host.requests = host.questions = 0;
        const bool results = host.Press(analysis, ControlOk) == of.results;
        if (results) {
            MakeEveryOutput();
            EXPECT_EQ(host.Press(analysis, ControlCancel), of.specification);
        }
        EXPECT_EQ(of.observations(), 0);
        EXPECT_EQ(host.outstanding, 0);
        EXPECT_EQ(host.progressShown, 0);
        EXPECT_FALSE(host.beyondUnits);
        return results;
    }
};
INSTANTIATE_TEST_SUITE_P(Analyses, EveryAnalysis,
                         testing::Values(&test::lifeRaw, &test::lifeOfTable, &test::kaplan, &test::twoSamples,
                                         &test::kSamples, &test::coxStratified, &test::coxTime,
                                         &test::coxTimeStratified, &test::exponentialRegression,
                                         &test::normalRegression),
                         [](const auto& one) { return std::string{one.param->name}; });

/// Those with times, a censoring indicator and codes.
class EveryAnalysisOfCases : public EveryAnalysis {};
INSTANTIATE_TEST_SUITE_P(Analyses, EveryAnalysisOfCases,
                         testing::Values(&test::lifeRaw, &test::kaplan, &test::twoSamples, &test::kSamples,
                                         &test::coxStratified, &test::coxTimeStratified,
                                         &test::exponentialRegression),
                         [](const auto& one) { return std::string{one.param->name}; });

TEST_P(EveryAnalysisOfCases, ChecksSelectionsAndLeavesTheDialogOpen) {
    Specify();
    const auto refusal = [this](const char* property, const AutomationValue& value) {
        host.messages.clear();
        host.Script().Put(property, value);
        EXPECT_EQ(host.Press(analysis, ControlOk), -1);
        EXPECT_FALSE(host.Dialog().IsClosed());
        return host.messages.empty() ? test::Shown{} : host.messages[0];
    };
    const test::Shown codes = refusal("CodeForCensoredResponses", 1);
    EXPECT_EQ(codes.id, StrIdenticalCensoringCodes);
    EXPECT_TRUE(codes.detail.starts_with("Codes of '")) << codes.detail;
    AutomationValue::List variables = of.variables;
    variables[0] = AutomationValue::List{1, 2, 1};
    const test::Shown times = refusal("Variables", variables);
    EXPECT_EQ(times.id, StrInvalidTimeVariables);
    EXPECT_TRUE(times.detail.starts_with("3 variables are selected: '")) << times.detail;
    variables = of.variables;
    variables[1] = AutomationValue::List{};
    EXPECT_EQ(refusal("Variables", variables).id, StrNoCensoringVariable);
}

TEST_P(EveryAnalysis, NamesItsColumnsForPrograms) {
    host.caseNames.assign(21, "patient");
    Run();
    MakeEveryOutput();
    EXPECT_FALSE(host.sheets.empty());
    for (const test::Sheet& sheet : host.sheets) {
        for (const std::string& id : sheet.ids) // a word in lowerCamelCase
            EXPECT_TRUE(
                !id.empty() && std::islower(static_cast<unsigned char>(id[0])) != 0 &&
                std::all_of(id.begin(), id.end(), [](unsigned char c) { return std::isalnum(c) != 0; }))
                << sheet.title << ": '" << id << "'";
        const std::set<std::string> different(sheet.ids.begin(), sheet.ids.end());
        EXPECT_EQ(different.size(), sheet.ids.size()) << sheet.title;
    }
}

TEST_P(EveryAnalysis, NamesEachOutputThatFails) {
    Run();
    host.failCharts = host.failSheets = true;
    for (const AutomationMember& output : Outputs()) {
        SCOPED_TRACE(output.name);
        host.messages.clear();
        const AutomationResult result = host.Script().Call(output.name);
        EXPECT_TRUE(result.ok);
        EXPECT_EQ(result.value, AutomationValue{false});
        ASSERT_EQ(host.messages.size(), 1U);
        const test::Shown& told = host.messages[0];
        EXPECT_TRUE(told.id == StrSpreadsheetFailed || told.id == StrGraphicsError);
        EXPECT_NE(told.detail.find("(" + std::string(output.name) + ")."), std::string::npos) << told.detail;
    }
    EXPECT_EQ(host.Press(analysis, ControlCancel), of.specification);
}

TEST_P(EveryAnalysis, GivesEverythingBackToAHostThatThrowsWhileReading) {
    ManyCases(of.several);
    Specify();
    host.throwsFrom = 300;
    EXPECT_FALSE(Whole());
    EXPECT_EQ(host.statusTexts.back(), "") << "the status line is cleared";
    host.throwsFrom = of.several + 1;
    EXPECT_TRUE(Whole());
}

TEST_P(EveryAnalysisOfCases, OtherDataUnsetEveryCode) {
    Run();
    host.Press(analysis, ControlCancel);
    analysis.InitializeAfterFileChanged();
    host.Dialog().DataChanged();
    int codes = 0;
    for (const AutomationMember& member : host.Dialog().Interface()->members) {
        if (member.type != MemberType::Code) continue;
        EXPECT_TRUE(std::isnan(std::get<double>(host.Script().Get(member.name).value.value))) << member.name;
        ++codes;
    }
    EXPECT_GE(codes, 2);
}

/// Two analysis objects share the module's one state: the one that acts has it.
TEST_P(EveryAnalysisOfCases, TakesTurnsWithAnotherOne) {
    ManyCases(of.several);
    CSurvival other{&host};
    host.Go(other, of.specification);
    CAnalysisDialog& others = host.Dialog();
    Specify();
    CAnalysisDialog& own = host.Dialog();
    // What the other one selects, or forgets, does not change what this one shows and computes.
    AutomationObject{others}.Put("CodeForCompleteResponses", 7);
    host.Go(other, StepStart);
    host.Dialog().Press(TaskResetSelections);
    own.Press(ControlOk);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(ModuleState().shared.completeCode),
              std::bit_cast<std::uint64_t>(1.0));
    ASSERT_EQ(host.Go(analysis, host.nextStep), of.results);
    EXPECT_GT(of.observations(), 0);
    CAnalysisDialog& results = host.Dialog();
    // The other one acts: the results of this one are gone, and so they are when it has results of its own.
    AutomationObject{others}.Put("CodeForCompleteResponses", test::none);
    EXPECT_EQ(host.outstanding, 0);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(ModuleState().shared.completeCode), ~std::uint64_t{0});
    host.Go(other, of.specification);
    AutomationObject script = host.Script();
    script.Put("Variables", of.variables);
    for (const auto& [code, value] : {std::pair{"CodeForCompleteResponses", 1},
                                      {"CodeForCensoredResponses", 0},
                                      {"CodeForGroup1", 1},
                                      {"CodeForGroup2", 2}})
        script.Put(code, value);
    host.Dialog().Press(ControlOk);
    host.Go(other, host.nextStep);
    const int kept = host.outstanding;
    EXPECT_EQ(kept, of.arrays);
    const std::string output{Outputs(results).front().name};
    EXPECT_EQ(AutomationObject{results}.Call(output).value, AutomationValue{false});
    EXPECT_EQ(host.messages.back().id, StrNoResults);
    results.Press(ControlCancel);
    EXPECT_EQ(host.outstanding, kept) << "which are the other one's";
}

TEST_P(EveryAnalysis, EveryMemoryRequestRefusedInTurn) {
    ManyCases(of.many);
    Specify();
    ASSERT_TRUE(Whole());
    const std::string whole = host.Output();
    int n = 1;
    for (;; ++n) {
        ASSERT_LT(n, 200);
        SCOPED_TRACE("request " + std::to_string(n));
        host.refuseRequest = n;
        const bool results = Whole();
        if (host.requests < n) break;
        // An output that lacks something without the memory says so.
        std::string told = host.report;
        for (const test::Sheet& sheet : host.sheets)
            told += sheet.notes.empty() ? "" : sheet.notes.back();
        if (!host.messages.empty()) {
            EXPECT_EQ(host.messages.front().id, of.noMemory);
        } else if (results || !of.sortsSilently) {
            EXPECT_TRUE(told.find("cannot be computed") != std::string::npos || host.Output() == whole);
        }
    }
    EXPECT_GE(n, of.requests);
}

TEST_P(EveryAnalysis, EveryStopQuestionAnsweredYesInTurn) {
    for (const int cases : {of.several, of.many}) {
        ManyCases(cases);
        host.stopAt = 0;
        Specify();
        ASSERT_TRUE(Whole());
        const int all = host.questions;
        EXPECT_GE(all, cases);
        // Reading asks once per case: tries some of those, and each one that follows.
        for (int n = 1; n <= all; n += n > cases ? 1 : cases / 50) {
            SCOPED_TRACE("question " + std::to_string(n));
            host.stopAt = n;
            const bool results = Whole();
            EXPECT_TRUE(!results || n > cases);
            EXPECT_TRUE(results || host.messages.empty());
        }
    }
    host.stopAt = 0;
    EXPECT_TRUE(Whole());
}

TEST_P(EveryAnalysis, AStopEndsAnOutputAtOnce) {
    ManyCases(of.many);
    Run();
    int inAll = 0;
    for (const AutomationMember& output : Outputs()) {
        SCOPED_TRACE(output.name);
        host.stopAt = 0;
        do {
            host.questions = 0;
            ASSERT_LT(++host.stopAt, 100);
            const bool made = host.Script().Call(output.name).value == AutomationValue{true};
            EXPECT_EQ(made, host.questions < host.stopAt);
            EXPECT_LE(host.questions, host.stopAt); // and no further row
        } while (host.questions == host.stopAt);
        inAll += host.questions;
    }
    EXPECT_GE(inAll, 2);
}

TEST_P(EveryAnalysis, EveryAllocationOfTheRuntimeFailingInTurn) {
    ManyCases(of.several);
    Specify();
    const auto atResults = [&] { return host.Dialog().Template().title.ends_with("Results"); };
    FailEveryAllocation([&] { host.Dialog().Press(ControlOk); },
                        [&] { // nothing is kept, unless it struck the host after the run
                            EXPECT_EQ(host.outstanding, of.observations() > 0 ? of.arrays : 0);
                            if (host.nextStep > 0) host.Go(analysis, host.nextStep);
                            if (atResults()) host.Press(analysis, ControlCancel);
                            EXPECT_EQ(host.outstanding, 0);
                        });
    host.Go(analysis, host.nextStep);
    ASSERT_TRUE(atResults());
    for (const AutomationMember& output : Outputs())
        FailEveryAllocation([&] { host.Dialog().Press(output.control); },
                            [&] { EXPECT_EQ(host.outstanding, of.arrays); });
    EXPECT_EQ(host.Press(analysis, ControlCancel), of.specification);
    EXPECT_TRUE(Whole());
}

TEST_P(EveryAnalysis, CurvesOverTimeAskForTheNumbersAtRisk) {
    Specify();
    ASSERT_TRUE(Whole());
    ASSERT_FALSE(host.charts.empty());
    for (const CChartInfo& chart : host.charts) {
        const bool tell =
            std::any_of(chart.series.begin(), chart.series.end(), [](const ChartSeries& series) {
                return !series.leaving.empty() || !series.atRisk.empty();
            });
        const bool survival = chart.yAxis.title.starts_with("Cum");
        const bool overTime = survival && chart.xAxis.title.find("Log") == std::string::npos;
        EXPECT_EQ(tell && chart.numbersAtRisk, overTime) << chart.title;
    }
}

} // namespace
} // namespace ozm::survival
