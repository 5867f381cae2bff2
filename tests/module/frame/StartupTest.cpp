#include "tests/module/AnalysisFixture.h"

#include "module/resources/Shared.h"
#include "module/resources/Startup.h"

namespace ozm::survival {
namespace {

using test::KaplanFixture;

TEST_F(KaplanFixture, StartupEntriesLeadToTheirAnalyses) {
    struct {
        int member;
        AnalysisType type;
        int modelKind;
    } const rows[] = {{5, AnalysisType::Regression, 1}, {6, AnalysisType::Regression, 5}};
    for (const auto& row : rows) {
        host.Go(analysis, StepInitialize);
        ModuleState().shared.timeVariables = 1;
        EXPECT_TRUE(host.Script().Put("TypeOfAnalysis", row.member).ok);
        EXPECT_EQ(host.Press(analysis, ControlOk), StepSpecifyRegression) << row.member;
        EXPECT_EQ(ModuleState().shared.analysisType, row.type);
        EXPECT_EQ(static_cast<int>(ModuleState().regression.settings.kind), row.modelKind);
        EXPECT_EQ(ModuleState().shared.timeVariables, row.type == AnalysisType::Regression ? 0 : 1);
        // The same when the analysis is started again.
        analysis.Initialize();
        host.Go(analysis, StepInitialize);
        EXPECT_EQ(host.Script().Get("TypeOfAnalysis").value, AutomationValue{row.member});
    }
}

TEST_F(KaplanFixture, ADoubleClickPerformsTheEntryAndTheSixthDoesNothing) {
    host.Go(analysis, StepInitialize);
    EXPECT_FALSE(host.Dialog().PutValue(TaskList, 7).done);
    host.Dialog().PutValue(TaskList, 5);
    EXPECT_EQ(host.Press(analysis, ControlOk), -1);
    EXPECT_FALSE(host.Dialog().IsClosed());
    host.Dialog().PutValue(TaskList, 1);
    EXPECT_EQ(host.Press(analysis, TaskList), StepSpecifyKaplan);
    EXPECT_FALSE(host.menus);
}

TEST_F(KaplanFixture, OpeningDataClearsEverySelection) {
    ASSERT_EQ(Run(), StepKaplanResults);
    host.Press(analysis, ControlCancel);
    host.Press(analysis, ControlCancel);
    host.asked.clear();
    host.Press(analysis, TaskOpenData); // the user opened nothing
    EXPECT_EQ(ModuleState().shared.timeVariables, 1);
    EXPECT_EQ(host.asked, std::vector<std::string>{"results"});
    host.opensData = true;
    host.Press(analysis, TaskOpenData);
    EXPECT_EQ(ModuleState().shared.timeVariables, 0);
    EXPECT_TRUE(ModuleState().shared.lists[ListCensoring].empty());
    host.Press(analysis, CaseWeights);
    host.Press(analysis, SelectCases);
    EXPECT_EQ(host.asked.back(), "selection");
}

} // namespace
} // namespace ozm::survival
