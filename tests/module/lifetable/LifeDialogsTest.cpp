// The dialogs of life tables: two forms of one specification, and what they show and keep.

#include "module/resources/Startup.h"
#include "tests/module/AnalysisFixture.h"

#include <limits>

namespace ozm::survival {
namespace {

using List = AutomationValue::List;
using test::LifeFixture;

class LifeOfTableFixture : public LifeFixture {
protected:
    LifeOfTableFixture() : LifeFixture(test::lifeOfTable) {}
    AutomationValue Entering() { return host.Script().Get("NumberEnteringFirstInterval").value; }
};

TEST_F(LifeFixture, DialogsAreThoseOfTheStepTable) {
    EXPECT_EQ(Specify(), 103);
    EXPECT_EQ(host.Dialog().Template().number, 3023);
    ASSERT_EQ(host.Press(analysis, ControlOk), 108);
    EXPECT_EQ(host.Dialog().Template().number, 3026);
    EXPECT_EQ(host.exitMode, ExitMode::Forward);
    EXPECT_EQ(host.statusTexts,
              (std::vector<std::string>{" Reading data file ... ", " Sorting survival times ... ",
                                        " Computing life table ... ", ""}));
    EXPECT_EQ(host.Press(analysis, ControlCancel), 103);
    EXPECT_EQ(host.Script().Get("Variables").value, AutomationValue{of.variables});
    EXPECT_EQ(host.Press(analysis, ControlCancel), StepStart);
    ModuleState().shared.inputDataType = static_cast<InputDataType>(3);
    const std::size_t dialogs = host.dialogs.size();
    EXPECT_EQ(host.Go(analysis, StepSpecifyLifeTables), StepEnd);
    EXPECT_EQ(host.dialogs.size(), dialogs);
}

TEST_F(LifeFixture, TheOtherFormOpensWithAllSettingsInPlace) {
    Specify();
    AutomationObject raw = host.Script();
    raw.Put("NumberOfIntervals", 7);
    raw.Put("CorrectIntervalsContainingNoTerminations", false);
    host.nextStep = -1;
    EXPECT_TRUE(raw.Put("TypeOfInputData", 1).ok); // this form
    EXPECT_FALSE(raw.Put("TypeOfInputData", 3).ok);
    EXPECT_EQ(host.nextStep, -1);
    EXPECT_FALSE(host.Dialog().IsClosed());

    EXPECT_TRUE(raw.Put("TypeOfInputData", 2).ok);
    EXPECT_EQ(host.exitMode, ExitMode::SwitchForm);
    EXPECT_EQ(raw.Get("Variables").detail, "the dialog has been closed");
    ASSERT_EQ(host.Go(analysis, host.nextStep), StepSpecifyLifeTables);
    AutomationObject table = host.Script();
    EXPECT_EQ(host.Dialog().ClassName(), "CDefineLifeTableDlg");
    EXPECT_EQ(table.Get("TypeOfInputData").value, AutomationValue{2});
    EXPECT_EQ(table.Get("CorrectIntervalsContainingNoTerminations").value, AutomationValue{false});
    table.Put("Variables", List{List{1}, List{2}, List{2}});
    table.Put("NumberEnteringFirstInterval", 99);
    table.Put("TypeOfInputData", 1);
    ASSERT_EQ(host.Go(analysis, host.nextStep), StepSpecifyLifeTables);
    raw = host.Script();
    EXPECT_EQ(host.Dialog().ClassName(), "CDefineLifeRawDlg");
    EXPECT_EQ(raw.Get("Variables").value, AutomationValue{of.variables});
    EXPECT_EQ(raw.Get("CodeForCompleteResponses").value, AutomationValue{1.0});
    EXPECT_EQ(raw.Get("NumberOfIntervals").value, AutomationValue{7});
    ASSERT_EQ(host.Press(analysis, ControlOk), StepLifeResults);
    EXPECT_EQ(State().results.table.rows, 7);
    EXPECT_FALSE(State().results.fromTable);
    EXPECT_FALSE(State().results.corrected);
    EXPECT_EQ(State().settings.entering, 99);
}

TEST_F(LifeFixture, OnlyTheRuleInUseCanBeSetAndAStepThatDoesNotFitIsGivenUp) {
    const auto byStep = [this] { return host.Script().Get("UseUserDefinedStepSize").value; };
    const auto shows = [this](bool step) {
        EXPECT_EQ(host.Dialog().IsEnabled(LifeStep), step);
        EXPECT_EQ(host.Dialog().IsEnabled(LifeIntervals), !step);
        EXPECT_EQ(host.Script().Get("UseUserDefinedNumberOfIntervals").value, AutomationValue{!step});
    };
    Specify();
    shows(false);
    host.Script().Put("UseUserDefinedStepSize", true);
    shows(true);
    host.Script().Put("StepSize", 5.0); // 35 weeks: 7 of them
    ASSERT_EQ(host.Press(analysis, ControlOk), StepLifeResults);
    EXPECT_TRUE(host.messages.empty());
    EXPECT_EQ(State().results.table.rows, 8);
    host.Press(analysis, ControlCancel);
    EXPECT_EQ(byStep(), AutomationValue{true});
    host.Script().Put("StepSize", 1.0); // 35 of them
    CAnalysisDialog& accepted = host.Dialog();
    ASSERT_EQ(host.Press(analysis, ControlOk), StepLifeResults);
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_EQ(host.messages[0].id, StrLifeStepAdjusted);
    EXPECT_EQ(State().results.table.rows, 12);
    EXPECT_EQ(accepted.Value(LifeIntervalMode), ControlValue{int{LifeByNumber}}) << "which results record";
    host.Press(analysis, ControlCancel);
    shows(false);
    EXPECT_EQ(host.Script().Get("StepSize").value, AutomationValue{1.0});
}

TEST_F(LifeFixture, TooFewIntervalsAreLeftWhereLimitsCannotTellTimesApart) {
    // Three units of the smallest number in two intervals: the limit between them is rounded up to two units.
    const double unit = std::numeric_limits<double>::denorm_min();
    Data({unit, 2 * unit, 3 * unit}, {1, 1, 1});
    Specify();
    host.Script().Put("NumberOfIntervals", 3);
    EXPECT_EQ(host.Press(analysis, ControlOk), StepSpecifyLifeTables);
    EXPECT_EQ(host.exitMode, ExitMode::Back);
    EXPECT_EQ(host.messages.back().id, StrLifeTabulation);
    EXPECT_FALSE(State().results.held);
}

TEST_F(LifeOfTableFixture, ATableNeedsItsThreeVariables) {
    Specify();
    for (const AutomationValue& two :
         {AutomationValue{List{List{1}, List{2}, List{}}}, AutomationValue{List{List{}, List{2}, List{3}}},
          AutomationValue{List{}}}) {
        host.messages.clear();
        EXPECT_TRUE(host.Script().Put("Variables", two).ok);
        EXPECT_EQ(Entering(), AutomationValue{5});
        EXPECT_EQ(host.Press(analysis, ControlOk), -1);
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_EQ(host.messages[0].id, StrLifeSelectTable);
    }
}

TEST_F(LifeOfTableFixture, TheNumberEnteringIsThatOfTheDataUntilSomebodyGivesOne) {
    Specify();
    EXPECT_EQ(Entering(), AutomationValue{2418});
    host.selected.assign(16, true); // other rows at the moment of the run
    host.selected[15] = false;
    host.Press(analysis, SelectCases);
    EXPECT_EQ(Entering(), AutomationValue{2388});
    host.selected[14] = false; // by other means, which the dialog does not hear of
    CAnalysisDialog& accepted = host.Dialog();
    ASSERT_EQ(host.Press(analysis, ControlOk), StepLifeResults);
    EXPECT_EQ(State().results.valid, 2359.0);
    EXPECT_EQ(accepted.Value(LifeEntering), ControlValue{2359}) << "which results record";
    host.Press(analysis, ControlCancel);
    EXPECT_EQ(Entering(), AutomationValue{2359});
    for (const int wrong : {4, 100'000'000})
        EXPECT_FALSE(host.Script().Put("NumberEnteringFirstInterval", wrong).ok);
    EXPECT_FALSE(State().settings.enteringGiven);

    EXPECT_TRUE(host.Script().Put("NumberEnteringFirstInterval", 2388).ok); // the same number, but given
    host.selected.clear();
    host.Script().Put("Variables", of.variables);
    EXPECT_EQ(Entering(), AutomationValue{2388});
    EXPECT_EQ(host.Press(analysis, ControlOk), StepLifeResults); // more leave than entered: said in a note
    EXPECT_NE(host.notes.back().find("than enter it"), std::string::npos) << host.notes.back();
    host.Press(analysis, ControlCancel);
    EXPECT_EQ(Entering(), AutomationValue{2388});

    host.columns[2].values[0] = 400;
    analysis.InitializeAfterFileChanged();
    host.Dialog().DataChanged();
    EXPECT_EQ(Entering(), AutomationValue{2362}) << "that of the other data";
}

TEST_F(LifeOfTableFixture, TablesTurnCaseWeightsOff) {
    host.columns.push_back({"w", std::vector<double>(16, 7.0)});
    const auto turnedOff = [this] {
        const bool told = host.messages.size() == 1 && host.messages[0].id == StrLifeWeightsOff;
        const bool off = host.weight == 0;
        host.messages.clear();
        host.weight = 4;
        return told && off;
    };
    host.weight = 4;
    host.Go(analysis, StepInitialize);
    host.Script().Put("TypeOfAnalysis", of.entry);
    host.Press(analysis, ControlOk);
    EXPECT_EQ(host.weight, 4) << "raw data take weights";
    host.Script().Put("TypeOfInputData", 2);
    EXPECT_TRUE(turnedOff()) << "when tables are chosen";
    host.Go(analysis, host.nextStep);
    EXPECT_TRUE(turnedOff()) << "when the dialog opens";
    host.Script().Put("Variables", of.variables);
    EXPECT_EQ(host.Press(analysis, ControlOk), StepLifeResults);
    EXPECT_TRUE(turnedOff()) << "when it runs";
    EXPECT_EQ(State().results.valid, 2418.0);
}

/// Another analysis object starts while a form is open: the form's own settings hold again when it is used.
TEST_F(LifeFixture, AFormKeepsItsTypeAndSettingsWhenAnotherAnalysisActsInBetween) {
    Specify();
    host.Script().Put("NumberOfIntervals", 9);
    CAnalysisDialog& raw = host.Dialog();
    CSurvival other{&host};
    other.Initialize();
    ModuleState().shared.inputDataType = InputDataType::Table;
    host.Go(other, StepSpecifyLifeTables);
    CAnalysisDialog& table = host.Dialog();
    AutomationObject{table}.Put("Variables", List{List{1}, List{2}, List{2}});
    const AutomationValue shown = AutomationObject{table}.Get("NumberEnteringFirstInterval").value;

    host.nextStep = -1;
    raw.Press(ControlOk);
    ASSERT_EQ(host.nextStep, StepLifeResults);
    EXPECT_FALSE(State().results.fromTable);
    EXPECT_EQ(State().results.table.rows, 9);
    host.nextStep = -1;
    AutomationObject{table}.Put("CorrectIntervalsContainingNoTerminations", false);
    EXPECT_EQ(host.nextStep, -1) << "no form is changed";
    EXPECT_EQ(ModuleState().shared.inputDataType, InputDataType::Table);
    EXPECT_FALSE(State().settings.enteringGiven) << "a number that nobody gave";
    AutomationObject{table}.Put("NumberEnteringFirstInterval", 1000);
    AutomationObject late{table};
    other.Initialize();
    CSurvival third{&host};
    third.Initialize();
    host.Go(third, StepStart);
    host.Dialog().PutValue(TaskList, 1);
    late.Put("CorrectIntervalsContainingNoTerminations", true);
    EXPECT_TRUE(State().settings.enteringGiven);
    EXPECT_EQ(State().settings.entering, 1000);
    EXPECT_NE(shown, AutomationValue{1000});
}

} // namespace
} // namespace ozm::survival
