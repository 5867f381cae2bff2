#include "module/frame/Lum6NewAnalysis.h"
#include "module/frame/SurvivalState.h"
#include "module/resources/StringIds.h"
#include "tests/module/FailingNew.h"
#include "tests/module/kaplan/KaplanFixture.h"

#include <gtest/gtest.h>

#include <memory>

namespace ozm::survival {
namespace {

using test::KaplanFixture;

TEST(Factory, AnObjectWithoutADocumentFailsQuietly) {
    const std::unique_ptr<CAnalysisSupport> analysis{Lum6NewAnalysis()};
    ASSERT_NE(analysis, nullptr);
    EXPECT_EQ(analysis->GetAnalysisID(), 3001);
    EXPECT_EQ(analysis->GetAnalysisName(), "Survival Analysis");
    const auto table = analysis->SequenceTable();
    ASSERT_EQ(table.size(), 14U);
    analysis->Initialize();
    for (const SEQFUNCTTBL& row : table) {
        const int answer = row.function(*analysis);
        EXPECT_TRUE(answer == 0 || answer == 1 || answer == StepStart) << row.step;
    }
    void* memory = &memory;
    EXPECT_FALSE(analysis->AllocMem(memory, 8));
    EXPECT_EQ(memory, nullptr);
    std::unique_ptr<CompiledExpression> compiled;
    std::string error;
    EXPECT_NE(analysis->COMP("1", {}, compiled, error), 0);
}

TEST_F(KaplanFixture, DefaultsOfTheModuleWideState) {
    const SurvivalState& state = ModuleState();
    EXPECT_EQ(state.shared.analysisType, 1);
    EXPECT_EQ(state.shared.timeVariables, 0);
    EXPECT_EQ(state.shared.reportTitleLower, "korvana: survival analysis");
    EXPECT_EQ(state.shared.fileName.size(), 40U);
    EXPECT_EQ(state.regression.settings.convergenceCriterion, 0.0001);
    EXPECT_EQ(state.regression.settings.maximumIterations, 50);
    EXPECT_TRUE(state.regression.settings.nonDefaultEstimation);
    host.Go(analysis, StepInitialize);
    EXPECT_EQ(analysis.Commons().size(), 5U);
    EXPECT_EQ(analysis.ForwardSequence(StepStart, StepSpecifyKaplan), 1);
    EXPECT_EQ(analysis.ForwardSequence(StepStart, 99), 0);
}

TEST_F(KaplanFixture, CancelGoesBackWithTheSelectionsInPlace) {
    ASSERT_EQ(Run(), StepKaplanResults);
    EXPECT_EQ(host.exitMode, ExitMode::Forward);
    EXPECT_EQ(host.Press(analysis, ControlCancel), StepSpecifyKaplan);
    EXPECT_EQ(host.exitMode, ExitMode::Back);
    EXPECT_EQ(host.outstanding, 0);
    AutomationObject again = host.Script();
    const AutomationValue::List both{AutomationValue::List{1}, AutomationValue::List{2}};
    EXPECT_EQ(again.Get("Variables").value, AutomationValue{both});
    EXPECT_EQ(again.Get("CodeForCompleteResponses").value, AutomationValue{1.0});
    EXPECT_EQ(host.Press(analysis, ControlCancel), StepStart);
    EXPECT_EQ(host.Script().Get("TypeOfAnalysis").value, AutomationValue{2});
    EXPECT_EQ(host.Press(analysis, ControlCancel), StepEnd);
    EXPECT_TRUE(host.menus);
}

TEST_F(KaplanFixture, ChangedDataUnsetTheCodesAndKeepTheVariables) {
    ASSERT_EQ(Run(), StepKaplanResults);
    host.Press(analysis, ControlCancel);
    analysis.InitializeAfterFileChanged();
    host.Press(analysis, ControlCancel);
    host.Press(analysis, ControlOk);
    AutomationObject script = host.Script();
    EXPECT_TRUE(std::isnan(std::get<double>(script.Get("CodeForCompleteResponses").value.value)));
    EXPECT_EQ(std::get<AutomationValue::List>(script.Get("Variables").value.value)[1],
              (AutomationValue{AutomationValue::List{2}}));
}

TEST_F(KaplanFixture, SpecificationChecksLeaveTheDialogOpen) {
    Specify();
    AutomationObject script = host.Script();
    script.Put("CodeForCensoredResponses", 1);
    EXPECT_EQ(host.Press(analysis, ControlOk), -1);
    EXPECT_EQ(host.messages.back().id, StrIdenticalCensoringCodes);
    EXPECT_TRUE(host.messages.back().detail.starts_with("Codes of ")) << host.messages.back().detail;
    script.Put("Variables", AutomationValue::List{AutomationValue::List{1, 2, 1}, AutomationValue::List{2}});
    host.Press(analysis, ControlOk);
    EXPECT_EQ(host.messages.back().id, StrInvalidTimeVariables);
    EXPECT_TRUE(host.messages.back().detail.starts_with("3 variables are selected: '"));
    script.Put("Variables", AutomationValue::List{AutomationValue::List{1}, AutomationValue::List{}});
    host.Press(analysis, ControlOk);
    EXPECT_EQ(host.messages.back().id, StrNoCensoringVariable);
    EXPECT_FALSE(host.Dialog().IsClosed());
}

TEST_F(KaplanFixture, ADialogThatCannotBeCreatedEndsTheSequence) {
    host.refuseDialogs = true;
    EXPECT_EQ(host.Go(analysis, StepInitialize), 0);
}

TEST_F(KaplanFixture, AStepWithoutMemoryEndsAndSaysSo) {
    int ended = 0;
    for (long n = 1;; ++n) {
        ASSERT_LT(n, 1000);
        host.messages.clear();
        test::failingNew = n;
        const int step = host.Go(analysis, StepStart);
        const bool through = test::failingNew > 0;
        test::failingNew = 0;
        if (through) break;
        if (step != StepEnd) continue; // it struck the dialog while it opened, which then stays as it is
        ++ended;
        ASSERT_EQ(host.messages.size(), 1U) << "allocation " << n;
        EXPECT_EQ(host.messages[0].id, StrUnexpectedError);
    }
    EXPECT_GT(ended, 0);
}

TEST_F(KaplanFixture, DestroyingTheAnalysisReleasesItsResults) {
    host.columns = {{"weeks", std::vector<double>(3000, 1.0)}, {"relapse", std::vector<double>(3000, 1.0)}};
    {
        CSurvival other{&host};
        host.Go(other, StepInitialize);
        ModuleState().shared.timeVariables = 1;
        ModuleState().shared.lists[ListSurvivalTimes] = {1};
        ModuleState().shared.lists[ListCensoring] = {2};
        host.Go(other, StepSpecifyKaplan);
        host.Script().Put("CodeForCompleteResponses", 1);
        EXPECT_EQ(host.Press(other, ControlOk), StepKaplanResults);
        EXPECT_EQ(host.outstanding, 7);
        host.dialogs.clear();
    }
    EXPECT_EQ(host.outstanding, 0);
}

TEST_F(KaplanFixture, AutomationErrorsNameTheAccessor) {
    Specify();
    AutomationObject script = host.Script();
    const AutomationResult unknown = script.Put(
        "Variables", AutomationValue::List{AutomationValue::List{"days"}, AutomationValue::List{}});
    EXPECT_FALSE(unknown.ok);
    EXPECT_EQ(unknown.error, "Exception in analysis method: CDefineKaplanDlg::put_Variables");
    EXPECT_EQ(unknown.detail, "the data have no variable 'days'");
    for (const AutomationValue& wrong : {AutomationValue{1}, AutomationValue{"weeks"}, AutomationValue{},
                                         AutomationValue{AutomationValue::List{1}},
                                         AutomationValue{AutomationValue::List{AutomationValue::List{99}}},
                                         AutomationValue{AutomationValue::List{AutomationValue::List{1.5}}},
                                         AutomationValue{AutomationValue::List{{}, {}, {}}}})
        EXPECT_FALSE(script.Put("Variables", wrong).ok);
    EXPECT_FALSE(script.Put("CodeForCompleteResponses", "no label").ok);
    EXPECT_FALSE(script.Put("OK", 1).ok);
    EXPECT_FALSE(script.Call("Variables").ok);
    EXPECT_FALSE(script.Get("NoSuchMember").ok);
    // What was refused changed nothing; a label stands for its code.
    host.columns[1].labels = {{1, "relapsed"}};
    EXPECT_TRUE(script.Put("CodeForCompleteResponses", "relapsed").ok);
    EXPECT_EQ(host.Press(analysis, ControlOk), StepKaplanResults);
    EXPECT_EQ(script.Get("Variables").error, "Exception in analysis method: CDefineKaplanDlg::get_Variables");
    EXPECT_EQ(script.Get("Variables").detail, "the dialog has been closed");
}

} // namespace
} // namespace ozm::survival
