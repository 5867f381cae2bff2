// The dialog of covariates that expressions define, and its files.

#include "module/regression/timedependent/CovariateFaults.h"
#include "module/resources/TimeDependent.h"
#include "tests/module/AnalysisFixture.h"

#include <algorithm>
#include <random>

namespace ozm::survival {
namespace {

using List = AutomationValue::List;
using Covariates = std::vector<DefinedCovariate>;

class ExpressionsDialog : public test::AnalysisFixture {
protected:
    ExpressionsDialog() : AnalysisFixture(test::coxTime) {}
    void SetUp() override {
        AnalysisFixture::SetUp();
        Specify();
        Give({});
    }
    /// As a script does.
    void Give(const Covariates& covariates) {
        List names;
        List expressions;
        for (const DefinedCovariate& each : covariates) {
            names.emplace_back(each.name);
            expressions.emplace_back(each.expression);
        }
        host.Script().Put("TimeDependentCovariateNames", names);
        host.Script().Put("TimeDependentCovariateExpressions", expressions);
    }
    static Covariates& Held() { return ModuleState().regression.settings.expressions; }
    void Type(const std::string& name, const std::string& expression) {
        host.Dialog().PutValue(TimeName, name);
        host.Dialog().PutValue(TimeExpression, expression);
    }
    std::string Field(int control) { return std::get<std::string>(host.Dialog().Value(control)); }
    /// Whether a button did what it is for.
    bool Does(int control) {
        host.messages.clear();
        return host.Dialog().Press(control).succeeded;
    }
    void Refuses(int control, int message, const std::string& detail) {
        const Covariates before = Held();
        EXPECT_FALSE(Does(control));
        ExpectTold({message}, detail);
        EXPECT_EQ(Held(), before);
        EXPECT_FALSE(host.Dialog().IsClosed());
    }
    void ExpectTold(const std::vector<int>& ids, const std::string& detail = {}) {
        ASSERT_EQ(host.messages.size(), ids.size());
        for (std::size_t i = 0; i < ids.size(); ++i)
            EXPECT_EQ(host.messages[i].id, ids[i]);
        if (ids.empty()) return;
        EXPECT_NE(host.messages.back().detail.find(detail), std::string::npos) << host.messages.back().detail;
    }
    static Covariates Many(int count) {
        Covariates many;
        for (int k = 0; k < count; ++k)
            many.push_back({"n" + std::to_string(k), "drug+" + std::to_string(k)});
        return many;
    }
};

TEST_F(ExpressionsDialog, FieldsAndButtonsEditTheList) {
    Refuses(TimeDelete, StrTimeNothingToDelete, "");
    EXPECT_EQ(Field(TimeName), "X_COV_1");
    Type("X_COV_2", " drug\t*T_ ");
    ASSERT_TRUE(Does(TimeAdd));
    EXPECT_EQ(Held(), (Covariates{{"X_COV_2", "drug *T_"}}));
    EXPECT_EQ(Field(TimeName), "X_COV_1");
    EXPECT_EQ(Field(TimeExpression), "");
    Type("x_cov_1", "drug");
    ASSERT_TRUE(Does(TimeAdd));
    EXPECT_EQ(Field(TimeName), "X_COV_3") << "names are the same without regard to case";
    Refuses(TimeDelete, StrTimeDeleteWhat, "");
    host.Dialog().PutValue(TimeTable, 1);
    EXPECT_EQ(Field(TimeName) + Field(TimeExpression), "x_cov_1drug");
    Type("Rx", "sex");
    ASSERT_TRUE(Does(TimeReplace));
    EXPECT_EQ(host.Dialog().EntriesOf(TimeTable), (ListRows{{"X_COV_2", "drug *T_"}, {"Rx", "sex"}}));
    EXPECT_EQ(std::get<int>(host.Dialog().Value(TimeTable)), 1);
    Type("RX", "1+sex"); // its own name may change its case
    ASSERT_TRUE(Does(TimeReplace));
    host.Dialog().PutValue(TimeTable, 0);
    ASSERT_TRUE(Does(TimeDelete));
    EXPECT_EQ(Held(), (Covariates{{"RX", "1+sex"}}));
    EXPECT_EQ(std::get<int>(host.Dialog().Value(TimeTable)), 0);
    ASSERT_TRUE(Does(TimeDelete));
    Refuses(TimeDelete, StrTimeNothingToDelete, "");
}

TEST_F(ExpressionsDialog, WhatCannotBeACovariateIsRefusedWhereverItComesFrom) {
    const std::string sixty = "sex" + std::string(56, ' ') + "1";
    const std::string wide = "\xC3\xA4\xC3\xB6\xF0\x9D\x84\x9E\xE2\x82\xAC"; // four characters
    struct {
        DefinedCovariate covariate;
        const char* why;
    } const rows[] = {{{"", "drug"}, "Give the covariate a name."},
                      {{" \t", "drug"}, "Give the covariate a name."},
                      {{"a=b", "drug"}, "The name 'a=b'"},
                      {{"[a", "drug"}, "nor begin with"},
                      {{";", "drug"}, "nor begin with"},
                      {{"#1", "drug"}, "nor begin with"},
                      {{"123456789", "drug"}, "'123456789' of a covariate has 9 characters"},
                      {{wide + wide + "x", "drug"}, "has 9 characters"},
                      {{"\xFF\xFE", "drug"}, "The name '\\xFF\\xFE' of a covariate is not in UTF-8"},
                      {{"\xC3\xA4\xC3", "drug"}, "'\xC3\xA4\\xC3' of"},         // cut off
                      {{"\xED\xA0\x80", "drug"}, "'\\xED\\xA0\\x80' of"},       // half of a pair
                      {{"\xF4\x90\x80\x80", "drug"}, "'\\xF4\\x90\\x80\\x80'"}, // beyond the last
                      {{"X", "  "}, "the covariate 'X'"},
                      {{"rX", "sex"}, "Two covariates have the name 'rX'"}};
    for (const auto& [covariate, why] : rows) {
        SCOPED_TRACE(covariate.name);
        Give({{"Rx", "drug"}, covariate});
        host.chosen = "a.ini";
        Refuses(ControlOk, StrTimeBadCovariate, why);
        Refuses(TimeSave, StrTimeBadCovariate, why);
        EXPECT_TRUE(host.files.empty()) << "no file is touched";
        Give({{"Rx", "drug"}});
        Type(covariate.name, covariate.expression);
        Refuses(TimeAdd, StrTimeBadCovariate, why);
    }
    // As long as there is room for, in characters and not in bytes.
    Give({{wide + wide, sixty}});
    EXPECT_TRUE(Does(TimeSave));
    Give({{"Rx", sixty + "2"}});
    Refuses(ControlOk, StrTimeBadCovariate, "The expression of 'Rx' has 61 characters");
    Refuses(TimeSave, StrTimeBadCovariate, "The expression of 'Rx' has 61 characters");
    // People are told and see what is left.
    Give({});
    std::string names;
    for (int k = 0; k < 20; ++k)
        names += wide;
    Type("long", names);
    EXPECT_TRUE(Does(TimeAdd));
    ExpectTold({StrTimeTooLong});
    EXPECT_EQ(Held(), (Covariates{{"long", names.substr(0, 15 * wide.size())}}));
}

TEST_F(ExpressionsDialog, ThereIsRoomForForty) {
    Refuses(ControlOk, StrTimeNoCovariates, "");
    Give(Many(40));
    Type("more", "drug");
    Refuses(TimeAdd, StrTimeTooMany, "");
    Type("", "");
    Give(Many(42));
    Refuses(TimeSave, StrTimeTooMany, "Covariates that are given: 42");
    EXPECT_FALSE(Does(ControlOk));
    ExpectTold({StrTimeTooMany}, "Covariates that are given: 42");
    EXPECT_EQ(Held(), Many(40)) << "with which OK goes on when it is pressed again";
    EXPECT_TRUE(Does(ControlOk));
    ExpectTold({});
}

TEST_F(ExpressionsDialog, AScriptSetsNamesAndExpressionsInAnyOrder) {
    const auto put = [this](const char* list, const List& texts) {
        EXPECT_TRUE(host.Script().Put(std::string{"TimeDependentCovariate"} + list, texts).ok);
    };
    Give({{"old", "1"}, {"older", "2"}, {"oldest", "3"}});
    put("Expressions", {"drug", "sex"});
    put("Names", {"a", "b"});
    EXPECT_EQ(Held(), (Covariates{{"a", "drug"}, {"b", "sex"}}));
    put("Names", {"x", "y", "z"});
    put("Expressions", {"drug", "sex"});
    Refuses(ControlOk, StrTimeBadCovariate, "the covariate 'z'.\nNames of covariates: 3; expressions: 2.");
    put("Expressions", {"drug", "sex", "drug*T_", "sex*T_"});
    Refuses(ControlOk, StrTimeBadCovariate, "a name.\nNames of covariates: 3; expressions: 4.");
    put("Names", {"x", "y"});
    EXPECT_EQ(Held(), (Covariates{{"x", "drug"}, {"y", "sex"}}));
    EXPECT_EQ(host.Script().Get("TimeDependentCovariateNames").value, (AutomationValue{List{"x", "y"}}));
}

TEST_F(ExpressionsDialog, OkTakesWhatWasTypedAndNotAdded) {
    Type("Rx", "drug"); // a new one
    EXPECT_TRUE(Does(ControlOk));
    EXPECT_EQ(Held(), (Covariates{{"Rx", "drug"}}));
    Specify();
    Give({{"Rx", "drug"}, {"s", "sex"}});
    host.Dialog().PutValue(TimeTable, 1); // only looked at
    EXPECT_EQ(Field(TimeExpression), "sex");
    Type("s", "sex*T_"); // the one selected
    EXPECT_TRUE(Does(ControlOk));
    EXPECT_EQ(Held(), (Covariates{{"Rx", "drug"}, {"s", "sex*T_"}}));
    Specify();
    Give({{"Rx", "drug"}, {"s", "sex"}});
    host.Dialog().PutValue(TimeTable, 1);
    Type("Rx", "drug*T_"); // which of them?
    Refuses(ControlOk, StrTimeBadCovariate, "Two covariates have the name 'Rx'");
    Type("cut", "drug" + std::string(60, '+') + "1");
    EXPECT_FALSE(Does(ControlOk)) << "nothing runs with an expression that was cut";
    ExpectTold({StrTimeTooLong});
    EXPECT_EQ(Held().size(), 3U);
}

TEST_F(ExpressionsDialog, FaultyExpressionsAreNamedBeforeAnythingRuns) {
    const std::pair<const char*, const char*> rows[] = {
        {"drug > > 5", "Rx = drug > > 5\nexpression \"drug > > 5\", character 8: "},
        {"drug*wbc", "character 6: "},
        {"drug*wbc", "'wbc'"},
        {"log(drug", "character "},
        {"v9", "'v9'"}};
    for (const auto& [expression, detail] : rows) {
        Give({{"ok", "drug"}, {"Rx", expression}});
        host.requests = 0;
        Refuses(ControlOk, StrTimeFault, detail);
        EXPECT_EQ(host.requests, 0);
    }
}

TEST_F(ExpressionsDialog, ExpressionsHaveRoomFor200Variables) {
    host.columns.resize(202, host.columns[3]);
    for (std::size_t k = 4; k < host.columns.size(); ++k)
        host.columns[k].name = "a" + std::to_string(k);
    for (const int variables : {200, 201}) {
        Specify();
        Covariates list;
        for (int v = 0; v < variables; ++v) {
            if (v % 11 == 0) list.push_back({"c" + std::to_string(v), "T_"});
            list.back().expression += "+v" + std::to_string(v + 2);
        }
        Give(list);
        EXPECT_EQ(Does(ControlOk), variables == 200);
        // The covariates are the same column over and over: that is told by other messages.
        EXPECT_EQ(!host.messages.empty() && host.messages[0].id == StrTimeTooManyVariables, variables > 200);
    }
}

TEST_F(ExpressionsDialog, FilesAreWrittenInFullOrNotAtAll) {
    Refuses(TimeSave, StrTimeNothingToSave, "");
    Give({{"Rx", "drug"}, {"RxT", "drug * (T_ - 10)"}});
    EXPECT_FALSE(Does(TimeSave)); // cancelled
    ExpectTold({});
    EXPECT_EQ(host.fileDialogs, (std::vector<std::string>{"Save As File", "NEW.INI", ".INI"}));
    host.chosen = "b.ini";
    host.files["b.ini"] = "; mine\r\n[Expressions]\r\nold=1\r\n\r\n[Other]\r\nkept=1\r\n";
    ASSERT_TRUE(Does(TimeSave));
    EXPECT_EQ(host.files["b.ini"], "; mine\r\n[Expressions]\r\nHowManyExpressions=2\r\nRx=drug\r\n"
                                   "RxT=drug * (T_ - 10)\r\n\r\n[Other]\r\nkept=1\r\n");
    host.failWriting = true;
    Refuses(TimeSave, StrTimeNotWritten, "b.ini");
    host.fileDialogs.clear();
    host.chosen.clear();
    EXPECT_FALSE(Does(TimeOpen));
    ExpectTold({});
    EXPECT_EQ(host.fileDialogs, (std::vector<std::string>{"Open File", "*.INI", ".INI"}));
}

/// A text of characters that have a meaning somewhere.
std::string OddText(std::mt19937& draw, std::size_t longest) {
    static const std::vector<std::string> characters = {"a",
                                                        "B",
                                                        "1",
                                                        "_",
                                                        " ",
                                                        "  ",
                                                        "\t",
                                                        "\n",
                                                        "\r\n",
                                                        "=",
                                                        ";",
                                                        "#",
                                                        "[",
                                                        "]",
                                                        "\"",
                                                        "'",
                                                        "`",
                                                        "\\",
                                                        "%",
                                                        "@A[1]",
                                                        "@",
                                                        "B[2]",
                                                        "T_",
                                                        ",",
                                                        "\xC3\xA4",
                                                        "\xE2\x82\xAC",
                                                        "\xF0\x9F\x99\x82",
                                                        "\xC2\xA0",
                                                        "\xE2\x80\x83",
                                                        "\xEF\xBB\xBF",
                                                        "\x01",
                                                        "\x7F"};
    std::string text;
    for (std::size_t k = draw() % (longest + 1); k > 0; --k)
        text += characters[draw() % characters.size()];
    return text;
}

TEST_F(ExpressionsDialog, WhatIsWrittenIsReadBackEqual) {
    std::mt19937 draw(7);
    host.chosen = "c.ini";
    int written = 0;
    for (int round = 0; round < 4000; ++round) {
        Covariates list;
        for (auto k = 1 + draw() % 4; k > 0; --k)
            list.push_back({OddText(draw, 4), OddText(draw, 12)});
        Give(list);
        const Covariates held = Held();
        host.files["c.ini"] = round % 2 == 0 ? "" : "[expressions]\r\na=9\r\n";
        const std::string before = host.files["c.ini"];
        if (!Does(TimeSave)) {
            EXPECT_NE(FaultOf(held).message, 0);
            EXPECT_EQ(host.files["c.ini"], before);
            continue;
        }
        ++written;
        Give({});
        ASSERT_TRUE(Does(TimeOpen)) << host.files["c.ini"];
        ExpectTold({});
        EXPECT_EQ(Held(), held) << host.files["c.ini"];
    }
    EXPECT_GT(written, 800);
}

TEST_F(ExpressionsDialog, OpeningAFileLosesNothingInSilence) {
    host.chosen = "l.ini";
    Type("typed", "drug / 2");
    host.files["l.ini"] = "[Expressions]\nHowManyExpressions=1\nk=drug\n";
    ASSERT_TRUE(Does(TimeOpen));
    ExpectTold({});
    EXPECT_EQ(Field(TimeName) + " = " + Field(TimeExpression), "typed = drug / 2");
    for (const char* const lost : {"sex * T_", "K=sex", "// sex", "k = drug"}) {
        Give({});
        host.files["l.ini"] = std::string{"[Expressions]\nHowManyExpressions=1\nk=drug\n"} + lost + "\n";
        ASSERT_TRUE(Does(TimeOpen)) << lost;
        ExpectTold({StrTimeNotAllTaken}, "Left out");
        EXPECT_EQ(Held(), (Covariates{{"k", "drug"}}));
    }
    Give({});
    host.files["l.ini"] = "[Expressions]\nHowManyExpressions=3\nk=drug\n";
    ASSERT_TRUE(Does(TimeOpen));
    ExpectTold({StrTimeNotAllTaken}, "says it has: 3; there are 1");
}

TEST_F(ExpressionsDialog, NamesThatAreThereAreReplacedOrAppendedByOneAnswer) {
    host.chosen = "d.ini";
    host.files["d.ini"] = "[EXPRESSIONS]\nnew=1\nRX=2\nhowmanyexpressions=3\nSEX=3\n";
    const Covariates before{{"Rx", "drug"}, {"sex", "sex"}};
    for (const bool yes : {true, false}) {
        Give(before);
        host.yes = yes ? 1 : 0;
        host.questionsAsked.clear();
        ASSERT_TRUE(Does(TimeOpen));
        ExpectTold({});
        EXPECT_EQ(host.questionsAsked, (std::vector<int>{StrTimeOverwrite}));
        EXPECT_EQ(
            Held(),
            yes ? (Covariates{{"Rx", "2"}, {"sex", "3"}, {"new", "1"}})
                : (Covariates{{"Rx", "drug"}, {"sex", "sex"}, {"new", "1"}, {"RX", "2"}, {"SEX", "3"}}));
    }
    Refuses(ControlOk, StrTimeBadCovariate, "Two covariates have the name 'RX'");
}

TEST_F(ExpressionsDialog, WhatAFileCannotGiveIsTold) {
    host.chosen = "e.ini";
    const std::string begin = "[Expressions]\nHowManyExpressions=";
    Give({{"Rx", "drug"}});
    const std::string wrong[] = {"",
                                 "Rx=1",
                                 begin,
                                 begin + "0\na=1",
                                 begin + "-1\na=1",
                                 begin + "two\na=1",
                                 begin + "2 3\na=1",
                                 begin + "1",
                                 begin + "1\na=\n=1\n[b=2\n",
                                 "[Expression]\nHowManyExpressions=1\na=1"};
    for (const std::string& text : wrong) {
        host.files["e.ini"] = text;
        Refuses(TimeOpen, StrTimeNoExpressions, "e.ini");
    }
    host.files["e.ini"] =
        begin + "7\nempty=\nkarnoTime1=drug\nkarnoTime2=sex\nlong=1" + std::string(70, '+') + "1\n";
    ASSERT_TRUE(Does(TimeOpen));
    ExpectTold({StrTimeTooLong, StrTimeNotAllTaken}, "Names that were cut to 8 characters: 'karnoTime1'.");
    EXPECT_NE(host.messages[1].detail.find(": 'empty', 'karnoTime2'."), std::string::npos)
        << host.messages[1].detail;
    EXPECT_EQ(Held(),
              (Covariates{{"Rx", "drug"}, {"karnoTim", "drug"}, {"long", "1" + std::string(59, '+')}}));
}

TEST_F(ExpressionsDialog, NoMoreOfAFileIsReadThanThereIsRoomFor) {
    std::string text = "[Expressions]\nHowManyExpressions=9\n";
    for (int k = 0; k < 3000; ++k)
        text += "Covariate" + std::to_string(k % 100) + "=" + std::to_string(k) + "\nn" + std::to_string(k) +
                "=1\n";
    host.chosen = "f.ini";
    for (const bool yes : {true, false}) {
        Give(Many(30));
        host.files["f.ini"] = text;
        host.valuesRead = 0;
        host.yes = yes ? 1 : 0;
        ASSERT_TRUE(Does(TimeOpen));
        ExpectTold({StrTimeTooMany, StrTimeNotAllTaken});
        EXPECT_EQ(Held().size(), 40U);
        EXPECT_LE(host.valuesRead, 1 + 40);
        EXPECT_LT(host.messages[1].detail.size(), 1000U);
    }
}

TEST_F(ExpressionsDialog, BrokenFilesLeaveAListThatHolds) {
    std::mt19937 draw(11);
    host.chosen = "g.ini";
    int all = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string text = "[Expressions]\nHowManyExpressions=2\n";
        for (auto k = draw() % 6; k > 0; --k)
            text += OddText(draw, 10) + "=" + OddText(draw, 90) + "\n";
        for (auto k = draw() % 4U; k > 0; --k)
            text[draw() % text.size()] = static_cast<char>(draw());
        host.files["g.ini"] = text.substr(0, draw() % 3 == 0 ? draw() % text.size() : text.size());
        const Covariates before{{"a", "drug"}, {"B", "sex"}};
        Give(before);
        host.yes = 1;
        const bool opened = Does(TimeOpen);
        if (!opened) {
            EXPECT_EQ(Held(), before) << text;
            EXPECT_FALSE(host.messages.empty()) << text;
        }
        all += opened ? 1 : 0;
        EXPECT_EQ(FaultOf(Held()).detail, "") << text;
    }
    EXPECT_GT(all, 300);
    EXPECT_LT(all, 2700);
}

TEST_F(ExpressionsDialog, AnotherAnalysisLeavesTheDialogItsOwnList) {
    Give({{"Rx", "drug"}, {"s", "sex"}});
    host.Dialog().PutValue(TimeTable, 1);
    Type("s", "sex*T_");
    CAnalysisDialog& own = host.Dialog();
    CSurvival other{&host};
    ModuleState().shared.Enter(other);
    ModuleState().regression.settings = {};
    EXPECT_TRUE(own.Press(ControlOk).succeeded);
    EXPECT_EQ(Held(), (Covariates{{"Rx", "drug"}, {"s", "sex*T_"}}));
    EXPECT_EQ(ModuleState().regression.settings.kind, RegressionKind::TimeDependent);
}

} // namespace
} // namespace ozm::survival
