#include "module/frame/Lum6NewAnalysis.h"
#include "module/resources/Shared.h"
#include "tests/module/AnalysisFixture.h"

#include <memory>

namespace ozm::survival {
namespace {

using test::KaplanFixture;

TEST(Factory, AnObjectWithoutADocumentFailsQuietly) {
    const std::unique_ptr<CAnalysisSupport> analysis{Lum6NewAnalysis()};
    ASSERT_NE(analysis, nullptr);
    EXPECT_EQ(analysis->GetAnalysisID(), 3001); // by which hosts know it
    EXPECT_EQ(analysis->GetAnalysisName(), "Survival Analysis");
    analysis->Initialize();
    ASSERT_FALSE(analysis->SequenceTable().empty());
    for (const SEQFUNCTTBL& row : analysis->SequenceTable()) {
        const int answer = row.function(*analysis);
        const bool estimates = row.step == StepRegSpec || row.step == StepRegEst;
        EXPECT_TRUE(answer == 0 || answer == 1 || answer == StepStart ||
                    (estimates && answer == StepSpecifyRegression))
            << row.step;
    }
    void* memory = &memory;
    EXPECT_FALSE(analysis->AllocMem(memory, 8));
    EXPECT_EQ(memory, nullptr);
    std::unique_ptr<CompiledExpression> compiled;
    std::string error;
    EXPECT_NE(analysis->COMP("1", {}, compiled, error), 0);
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
    EXPECT_EQ(analysis.ForwardSequence(StepStart, StepSpecifyKaplan), 1);
    EXPECT_EQ(analysis.ForwardSequence(StepStart, 99), 0);
}

TEST_F(KaplanFixture, OtherDataKeepTheVariablesThatTheyHaveByName) {
    const auto columns = host.columns;
    const AutomationValue both{AutomationValue::List{AutomationValue::List{1}, AutomationValue::List{2}}};
    const AutomationValue moved{AutomationValue::List{AutomationValue::List{2}, AutomationValue::List{1}}};
    const AutomationValue timesOnly{AutomationValue::List{AutomationValue::List{1}, AutomationValue::List{}}};
    const AutomationValue codesOnly{AutomationValue::List{AutomationValue::List{}, AutomationValue::List{2}}};
    struct {
        const char* what;
        std::vector<std::size_t> order; ///< of the columns before
        bool renamed;                   ///< the censoring variable
        bool texts;                     ///< where the times were
        AutomationValue left;
    } const rows[] = {{"the same", {0, 1}, false, false, both},
                      {"the other way round", {1, 0}, false, false, moved},
                      {"one is called otherwise", {0, 1}, true, false, timesOnly},
                      {"the times are texts", {0, 1}, false, true, codesOnly}};
    for (const auto& row : rows) {
        for (const bool whileResults : {true, false}) {
            host.columns = columns;
            ASSERT_EQ(Run(), StepKaplanResults) << row.what;
            if (!whileResults) host.Press(analysis, ControlCancel);
            host.columns.clear();
            for (const std::size_t place : row.order)
                host.columns.push_back(columns[place]);
            host.columns[0].texts = row.texts;
            if (row.renamed) host.columns[1].name += "2";
            analysis.InitializeAfterFileChanged();
            EXPECT_EQ(host.outstanding, 0) << "results of the data before";
            host.nextStep = -1;
            host.Dialog().DataChanged();
            EXPECT_EQ(host.nextStep, whileResults ? StepSpecifyKaplan : -1) << row.what;
            if (whileResults) host.Go(analysis, host.nextStep);
            AutomationObject script = host.Script();
            EXPECT_EQ(script.Get("Variables").value, row.left) << row.what;
            EXPECT_TRUE(std::isnan(std::get<double>(script.Get("CodeForCompleteResponses").value.value)));
            EXPECT_TRUE(std::isnan(std::get<double>(script.Get("CodeForCensoredResponses").value.value)));
        }
    }
}

TEST_F(KaplanFixture, ADialogThatCannotBeCreatedEndsTheSequence) {
    host.refuseDialogs = true;
    EXPECT_EQ(host.Go(analysis, StepInitialize), 0);
}

TEST_F(KaplanFixture, AStepWithoutMemoryEndsAndSaysSo) {
    int ended = 0;
    int step = 0;
    FailEveryAllocation([&] { step = host.Go(analysis, StepStart); },
                        [&] {
                            if (step != StepEnd) return; // it struck the dialog while it opened, which stays
                            ++ended;
                            ASSERT_EQ(host.messages.size(), 1U);
                            EXPECT_EQ(host.messages[0].id, StrUnexpectedError);
                        });
    EXPECT_GT(ended, 0);
}

TEST_F(KaplanFixture, DestroyingTheAnalysisReleasesItsResults) {
    ManyCases(of.several);
    Specify();
    {
        CSurvival other{&host};
        host.Go(other, StepSpecifyKaplan);
        EXPECT_EQ(host.Press(other, ControlOk), StepKaplanResults);
        EXPECT_EQ(host.outstanding, of.arrays);
        host.dialogs.clear();
    }
    EXPECT_EQ(host.outstanding, 0);
}

TEST_F(KaplanFixture, OutputsAreOfTheResultsOfTheirOwnAnalysis) {
    ManyCases(of.several);
    ASSERT_EQ(Run(), of.results);
    { const CSurvival another{&host}; } // comes and goes
    EXPECT_EQ(host.outstanding, of.arrays);
    EXPECT_EQ(std::get<bool>(host.Script().Call("Summary").value.value), true);

    CSurvival other{&host};
    other.Initialize();
    EXPECT_EQ(host.outstanding, 0);
    host.messages.clear();
    const AutomationResult late = host.Script().Call("Summary");
    EXPECT_TRUE(late.ok);
    EXPECT_EQ(std::get<bool>(late.value.value), false);
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_EQ(host.messages[0].id, StrNoResults);
    EXPECT_EQ(host.Press(analysis, ControlCancel), of.specification);
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
